// SPDX-License-Identifier: MIT
#include "TextEncoding.h"

#include <QByteArrayList>

#include <unicode/localpointer.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/ucsdet.h>

#include <algorithm>

namespace {

constexpr char16_t ByteOrderMark = 0xFEFF;

// A converter that stops at what it can't convert, null when there is none of that name.
icu::LocalUConverterPointer openConverter(const QByteArray &name)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::LocalUConverterPointer converter(ucnv_open(name.constData(), &status));
    ucnv_setToUCallBack(converter.getAlias(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter.getAlias(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &status);
    if (U_FAILURE(status))
        converter.adoptInstead(nullptr);
    return converter;
}

// Feeds all of source through convert, which takes (target, targetEnd, source, sourceEnd, status) as ICU's
// conversions do, in blocks of output. False when it stops at a piece that it can't convert.
template <typename Result, typename Target, typename Source, typename Convert>
bool convertAll(Result &result, const Source *source, const Source *sourceEnd, Convert convert)
{
    constexpr qsizetype Block = 64 * 1024;
    qsizetype length = 0;
    result.resize(sourceEnd - source);
    for (;;) {
        if (result.size() - length < Block)
            result.resize(std::max(length + Block, length * 3 / 2));
        auto *const begin = reinterpret_cast<Target *>(result.data());
        Target *target = begin + length;
        UErrorCode status = U_ZERO_ERROR;
        convert(&target, begin + result.size(), &source, sourceEnd, &status);
        length = target - begin;
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            result.truncate(length);
            return U_SUCCESS(status);
        }
    }
}

std::optional<QString> decode(const QByteArray &bytes, const QByteArray &name)
{
    const icu::LocalUConverterPointer converter = openConverter(name);
    QString text;
    const bool done =
        converter.isValid()
        && convertAll<QString, char16_t>(
            text, bytes.cbegin(), bytes.cend(),
            [&](auto target, auto targetEnd, auto source, auto end, auto status) {
                ucnv_toUnicode(converter.getAlias(), target, targetEnd, source, end, nullptr, true, status);
            });
    return done ? std::optional(text) : std::nullopt;
}

// The encodings that bytes look like, likeliest first.
QByteArrayList likelyEncodings(const QByteArray &bytes)
{
    constexpr qsizetype Sample = 1 << 20;
    QByteArrayList names;
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUCharsetDetectorPointer detector(ucsdet_open(&status));
    ucsdet_setText(detector.getAlias(), bytes.constData(), int32_t(std::min(bytes.size(), Sample)), &status);
    int32_t count = 0;
    const UCharsetMatch **const matches = ucsdet_detectAll(detector.getAlias(), &count, &status);
    for (int32_t i = 0; U_SUCCESS(status) && i < count; ++i)
        names += ucsdet_getName(matches[i], &status);
    return names;
}

DecodedText withoutMark(const QString &text, const QByteArray &name)
{
    const bool hasMark = text.startsWith(QChar(ByteOrderMark));
    return {hasMark ? text.sliced(1) : text, {name, hasMark}};
}

} // namespace

QString wellFormed(QString text)
{
    if (text.isValidUtf16())
        return text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

bool isTextEncoding(const QByteArray &name)
{
    return openConverter(name).isValid();
}

TextEncoding textEncodingToWrite(const QByteArray &name)
{
    const QByteArray upper = name.toUpper();
    if (upper == "UTF-16" || upper == "UTF-32")
        return {upper + "LE", true};
    return {name, false};
}

std::optional<DecodedText> decodeText(const QByteArray &bytes, const QByteArray &name)
{
    const bool littleEndian = bytes.startsWith("\xFF\xFE");
    const bool hasUtf16Mark = littleEndian || bytes.startsWith("\xFE\xFF");
    QByteArrayList candidates{name};
    if (name.toUpper() == "UTF-16" || (name.isEmpty() && hasUtf16Mark)) {
        candidates = {littleEndian ? "UTF-16LE" : "UTF-16BE"};
    } else if (name.isEmpty()) {
        candidates = {"UTF-8"};
        if (!bytes.contains('\0')) // no legacy text holds NUL: such bytes are no text at all
            candidates += likelyEncodings(bytes);
    }
    for (const QByteArray &candidate : std::as_const(candidates)) {
        if (const auto text = decode(bytes, candidate))
            return withoutMark(*text, candidate);
    }
    return std::nullopt;
}

std::optional<QByteArray> encodeText(const QString &text, const TextEncoding &encoding)
{
    const icu::LocalUConverterPointer converter = openConverter(encoding.name);
    const QString marked = wellFormed(encoding.hasMark ? QChar(ByteOrderMark) + text : text);
    const auto *const begin = reinterpret_cast<const char16_t *>(marked.constData());
    QByteArray bytes;
    const bool done = converter.isValid()
        && convertAll<QByteArray, char>(bytes, begin, begin + marked.size(),
                                        [&](auto target, auto targetEnd, auto source, auto end, auto status) {
                                            ucnv_fromUnicode(converter.getAlias(), target, targetEnd, source,
                                                             end, nullptr, true, status);
                                        });
    return done ? std::optional(bytes) : std::nullopt;
}
