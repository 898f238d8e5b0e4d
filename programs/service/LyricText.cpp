// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricText.h"

#include "programs/common/TextEncoding.h"

#include <QFile>

std::optional<QString> readLyricText(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly)) {
        *error = file.errorString();
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxLyricSize + 1);
    if (bytes.size() > MaxLyricSize) {
        *error = QStringLiteral("too large for a lyric");
        return std::nullopt;
    }
    if (bytes.isEmpty() && file.error() != QFile::NoError) {
        *error = file.errorString();
        return std::nullopt;
    }
    auto decoded = decodeText(bytes);
    if (!decoded || decoded->text.contains(QChar::Null)) {
        *error = QStringLiteral("not text in any known encoding");
        return std::nullopt;
    }
    return std::move(decoded->text);
}
