// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TimeText.h"

#include "Saturating.h"
#include "TagScanner.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace QVSongLrcPrivate::TimeText {
namespace {

constexpr qint64 MillisecondsPerMinute = 60'000;

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

// Skips white space and a sign. Returns where the digits begin, and whether the sign is "-".
std::pair<const char16_t *, bool> startOfNumber(QStringView text)
{
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    while (at != end && TagScanner::isWhiteSpace(*at))
        ++at;
    const bool negative = at != end && *at == u'-';
    if (negative || (at != end && *at == u'+'))
        ++at;
    return {at, negative};
}

qint64 leadingInteger(QStringView text)
{
    const char16_t *const end = text.utf16() + text.size();
    const auto [begin, negative] = startOfNumber(text);
    qint64 value = 0;
    for (const char16_t *at = begin; at != end && isDigit(*at); ++at) {
        const qint64 digit = *at - u'0';
        value = Saturating::add(Saturating::multiply(value, 10), negative ? -digit : digit);
    }
    return value;
}

// The double nearest to a decimal number of any length, written as digits with at most one ".".
double nearestDouble(const char16_t *begin, const char16_t *end)
{
    QVarLengthArray<char, 64> number(end - begin);
    std::transform(begin, end, number.begin(), [](char16_t c) { return char(c); });
    double value = 0;
    const auto [_, error] = std::from_chars(number.cbegin(), number.cend(), value, std::chars_format::fixed);
    if (error == std::errc::result_out_of_range) {
        const bool isUnderflow =
            std::all_of(begin, std::find(begin, end, u'.'), [](char16_t c) { return c == u'0'; });
        return isUnderflow ? 0 : std::numeric_limits<double>::infinity();
    }
    return value;
}

double leadingDouble(QStringView text)
{
    static constexpr double PowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr qsizetype ExactDigits = 15; // a double holds this many digits exactly

    const char16_t *const end = text.utf16() + text.size();
    const auto [begin, negative] = startOfNumber(text);
    const char16_t *at = begin;
    qint64 digits = 0;
    const auto takeDigits = [&] {
        const char16_t *const first = at;
        for (; at != end && isDigit(*at); ++at)
            digits = Saturating::add(Saturating::multiply(digits, 10), *at - u'0');
        return at - first;
    };
    const qsizetype whole = takeDigits();
    qsizetype fraction = 0;
    if (at != end && *at == u'.') {
        ++at;
        fraction = takeDigits();
    }
    if (whole + fraction == 0)
        return 0;
    // With few digits both operands are exact, so the division gives the nearest double.
    const double value =
        whole + fraction <= ExactDigits ? double(digits) / PowersOfTen[fraction] : nearestDouble(begin, at);
    return negative ? -value : value;
}

char16_t *writeField(char16_t *out, qint64 value)
{
    char digits[24];
    const auto [end, _] = std::to_chars(std::begin(digits), std::end(digits), value);
    if (end - digits < 2)
        *out++ = u'0';
    return std::transform(digits, end, out, [](char c) { return char16_t(c); });
}

} // namespace

qint64 fromTag(QStringView tag)
{
    const QStringView inner = tag.sliced(1, tag.size() - 2);
    const qsizetype firstColon = inner.indexOf(u':');
    const QStringView minutes = firstColon < 0 ? inner : inner.first(firstColon);
    const QStringView seconds = inner.sliced(inner.lastIndexOf(u':') + 1);
    return Saturating::add(Saturating::fromDouble(leadingDouble(seconds) * 1000.0),
                           Saturating::multiply(leadingInteger(minutes), MillisecondsPerMinute));
}

char16_t *writeAnyTag(char16_t *out, qint64 milliseconds)
{
    // Division cuts toward zero, so every field of a negative time is negative or 0.
    const qint64 rest = milliseconds % MillisecondsPerMinute;
    *out++ = u'[';
    out = writeField(out, milliseconds / MillisecondsPerMinute);
    *out++ = u':';
    out = writeField(out, rest / 1000);
    *out++ = u'.';
    out = writeField(out, rest % 1000 / 10);
    *out++ = u']';
    return out;
}

} // namespace QVSongLrcPrivate::TimeText
