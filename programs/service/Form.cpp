// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Form.h"

#include <QStringDecoder>

namespace {

bool isHex(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::optional<QString> decoded(QByteArray text)
{
    for (qsizetype at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1)) {
        if (at + 2 >= text.size() || !isHex(text[at + 1]) || !isHex(text[at + 2]))
            return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    QString result = decoder.decode(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
    if (decoder.hasError())
        return std::nullopt;
    return result;
}

} // namespace

std::optional<QHash<QString, QString>> readForm(const QByteArray &body)
{
    QHash<QString, QString> form;
    const QList<QByteArray> fields = body.split('&');
    for (const QByteArray &field : fields) {
        if (field.isEmpty())
            continue;
        const qsizetype equals = field.indexOf('=');
        const auto name = decoded(equals < 0 ? field : field.first(equals));
        const auto value = decoded(equals < 0 ? QByteArray() : field.sliced(equals + 1));
        if (!name || !value || form.contains(*name))
            return std::nullopt;
        form.insert(*name, *value);
    }
    return form;
}
