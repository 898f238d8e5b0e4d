// SPDX-License-Identifier: MIT
#include "LyricText.h"

#include <QFile>
#include <QStringDecoder>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <memory>

namespace {

std::optional<QString> strictly(QStringConverter::Encoding encoding, const QByteArray &bytes)
{
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    const bool isCut =
        encoding != QStringConverter::Utf8 && bytes.size() % 2 != 0; // the decoder lets that pass
    if (decoder.hasError() || isCut)
        return std::nullopt;
    return text;
}

// The text in the likeliest encoding in which all bytes have a meaning.
std::optional<QString> detected(const QByteArray &bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status),
                                                                              ucsdet_close);
    ucsdet_setText(detector.get(), bytes.constData(), int32_t(bytes.size()), &status);
    int32_t count = 0;
    const UCharsetMatch **matches = ucsdet_detectAll(detector.get(), &count, &status);
    for (int32_t i = 0; U_SUCCESS(status) && i < count; ++i) {
        UErrorCode convert = U_ZERO_ERROR;
        const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
            ucnv_open(ucsdet_getName(matches[i], &convert), &convert), ucnv_close);
        ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &convert);
        if (U_FAILURE(convert))
            continue;
        QString text(bytes.size() * 2, Qt::Uninitialized);
        const int32_t size =
            ucnv_toUChars(converter.get(), reinterpret_cast<UChar *>(text.data()), int32_t(text.size()),
                          bytes.constData(), int32_t(bytes.size()), &convert);
        if (U_FAILURE(convert))
            continue;
        text.truncate(size);
        return text;
    }
    return std::nullopt;
}

std::optional<QString> decoded(const QByteArray &bytes)
{
    if (const auto marked = QStringConverter::encodingForData(bytes);
        marked && *marked != QStringConverter::Utf8)
        return strictly(*marked, bytes);
    if (auto text = strictly(QStringConverter::Utf8, bytes))
        return text;
    return detected(bytes);
}

} // namespace

std::optional<QString> readLyricText(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly)) {
        *error = file.errorString();
        return std::nullopt;
    }
    const QByteArray bytes = file.read(MaxLyricSize + 1);
    if (bytes.size() > MaxLyricSize) {
        *error = QStringLiteral("larger than a lyric can be");
        return std::nullopt;
    }
    if (bytes.isEmpty() && file.error() != QFile::NoError) {
        *error = file.errorString();
        return std::nullopt;
    }
    auto text = decoded(bytes);
    if (!text || text->contains(QChar::Null)) {
        *error = QStringLiteral("not a text in a known encoding");
        return std::nullopt;
    }
    return text;
}
