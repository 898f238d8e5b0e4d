// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TextEncoding.h"

#include <QList>

#include <unicode/localpointer.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/ucsdet.h>

#include <algorithm>

namespace {

constexpr char16_t ByteOrderMark = 0xFEFF;

// A converter that stops at invalid input; null when ICU does not know the name.
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

// Converts all of source with convert, which takes (target, targetEnd, source, sourceEnd, status) like ICU's functions,
// growing the result as needed. False at invalid input.
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

struct Guess
{
    QByteArray name;
    int likelihood;
};

// The encodings that ICU detects, most likely first.
QList<Guess> likelyEncodings(const QByteArray &bytes)
{
    constexpr qsizetype Sample = 1 << 20;
    QList<Guess> guesses;
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUCharsetDetectorPointer detector(ucsdet_open(&status));
    ucsdet_setText(detector.getAlias(), bytes.constData(), int32_t(std::min(bytes.size(), Sample)), &status);
    int32_t count = 0;
    const UCharsetMatch **const matches = ucsdet_detectAll(detector.getAlias(), &count, &status);
    for (int32_t i = 0; U_SUCCESS(status) && i < count; ++i) {
        constexpr int32_t MerePossibility = 10; // ICU's confidence for encodings without positive evidence
        const QByteArray name = ucsdet_getName(matches[i], &status);
        const int likelihood = ucsdet_getConfidence(matches[i], &status);
        if (likelihood > MerePossibility && !name.startsWith("IBM")) // EBCDIC
            guesses.append({name, likelihood});
    }
    guesses.append({"windows-1252", 0});
    return guesses;
}

QByteArray canonicalName(const QByteArray &name)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUConverterPointer converter = openConverter(name);
    return converter.isValid() ? ucnv_getName(converter.getAlias(), &status) : name;
}

constexpr QByteArrayView LittleEndianMark("\xFF\xFE"), BigEndianMark("\xFE\xFF");

// The encodings, likeliest first, of whose byte order marks one is at the start.
QList<QByteArray> markedEncodings(const QByteArray &bytes)
{
    if (bytes.startsWith(QByteArrayView("\xFF\xFE\0\0", 4)))
        return {"UTF-32LE", "UTF-16LE"}; // the second if its text begins with a NUL
    if (bytes.startsWith(QByteArrayView("\0\0\xFE\xFF", 4)))
        return {"UTF-32BE"};
    if (bytes.startsWith(LittleEndianMark))
        return {"UTF-16LE"};
    return bytes.startsWith(BigEndianMark) ? QList<QByteArray>{"UTF-16BE"} : QList<QByteArray>();
}

// Without a byte order mark, "UTF-16" and "UTF-32" are big-endian.
QByteArray withByteOrder(const QByteArray &name, const QByteArray &bytes)
{
    if (name != "UTF-16" && name != "UTF-32")
        return name;
    return name + (bytes.startsWith(LittleEndianMark) ? "LE" : "BE");
}

// Whether the text has no unassigned, private-use or C1 control characters. A wrongly guessed encoding soon produces
// one.
bool isPlausibleText(const QString &text)
{
    return std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        const auto category = c.category();
        return category == QChar::Other_PrivateUse || category == QChar::Other_NotAssigned
            || (category == QChar::Other_Control && c > u'~');
    });
}

DecodedText withoutMark(const QString &text, const QByteArray &name)
{
    const bool hasMark = text.startsWith(QChar(ByteOrderMark));
    return {hasMark ? text.sliced(1) : text, {name, hasMark}, {}};
}

std::optional<DecodedText> decodeFirst(const QByteArray &bytes, const QList<QByteArray> &encodings)
{
    for (const QByteArray &encoding : encodings) {
        if (const auto text = decode(bytes, encoding))
            return withoutMark(*text, encoding);
    }
    return std::nullopt;
}

// The percentage of the pairs of bytes whose byte at `index`, 0 or 1, is NUL.
int percentOfNuls(const QByteArray &bytes, qsizetype index)
{
    const qsizetype pairs = bytes.size() / 2;
    qsizetype count = 0;
    for (qsizetype i = 0; i < pairs; ++i)
        count += bytes[2 * i + index] == '\0';
    return int(count * 100 / std::max<qsizetype>(pairs, 1));
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

TextEncoding outputEncoding(const QByteArray &name)
{
    const QByteArray canonical = canonicalName(name);
    if (canonical == "UTF-16" || canonical == "UTF-32")
        return {canonical + "LE", true};
    return {canonical, false};
}

std::optional<DecodedText> decodeText(const QByteArray &bytes, const QByteArray &given)
{
    if (!given.isEmpty())
        return decodeFirst(bytes, {withByteOrder(canonicalName(given), bytes)});
    if (const auto marks = markedEncodings(bytes); !marks.isEmpty())
        return decodeFirst(bytes, marks);
    // ASCII, of which tags consist, has a NUL in each pair of bytes in UTF-16. UTF-8 would read that as text, too.
    const int even = percentOfNuls(bytes, 0);
    const int odd = percentOfNuls(bytes, 1);
    if ((even > 50) != (odd > 50)) {
        auto wide = decodeFirst(bytes,
                                even > odd ? QList<QByteArray>{"UTF-32BE", "UTF-16BE"}
                                           : QList<QByteArray>{"UTF-32LE", "UTF-16LE"});
        if (wide)
            wide->guess = std::max(even, odd);
        return wide;
    }
    if (const auto text = decode(bytes, "UTF-8"))
        return withoutMark(*text, "UTF-8");
    if (bytes.contains('\0')) // a binary file: no legacy encoding uses NUL
        return std::nullopt;
    for (const auto &[name, likelihood] : likelyEncodings(bytes)) {
        const auto text = decode(bytes, name);
        if (text && isPlausibleText(*text) && encodeText(*text, {name, false}) == bytes)
            return DecodedText{*text, {name, false}, likelihood};
    }
    return DecodedText{QString::fromLatin1(bytes), {"ISO-8859-1", false}, 0};
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
