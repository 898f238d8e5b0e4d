// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstring>

/// Conversions between times in ms and time tags, "[mm:ss.xx]".
namespace QVSongLrcPrivate::TimeText {

/// See QVUtils::getTimeInterval(). \p tag must have at least two code units.
qint64 fromTag(QStringView tag);

/// Enough for the tag of any 64-bit time.
inline constexpr qsizetype MaxTagLength = 32;

/// 100 minutes in ms. Times from 0 to below that have two digits in each field.
inline constexpr qint64 TwoDigitLimit = 6'000'000;
inline constexpr qsizetype TwoDigitTagLength = 10;

/// Writes the tag of any time and returns the end of it. Slower than writeTag().
char16_t *writeAnyTag(char16_t *out, qint64 milliseconds);

/// A field for each value from 0 to 99, brackets and separators included, so that writing a tag is three
/// copies.
template <std::size_t N>
using FieldTable = std::array<std::array<char16_t, N>, 100>;

template <std::size_t N>
consteval FieldTable<N - 1> fieldTable(const char16_t (&form)[N], std::size_t digitsAt)
{
    FieldTable<N - 1> table{};
    for (std::size_t value = 0; value < table.size(); ++value) {
        std::copy_n(form, N - 1, table[value].begin());
        table[value][digitsAt] = char16_t(u'0' + value / 10);
        table[value][digitsAt + 1] = char16_t(u'0' + value % 10);
    }
    return table;
}

inline constexpr auto MinuteFields = fieldTable(u"[mm:", 1);
inline constexpr auto SecondFields = fieldTable(u"ss", 0);
inline constexpr auto HundredthFields = fieldTable(u".xx]", 1);

/// Writes the tag of a time, at most MaxTagLength code units, and returns the end of it.
inline char16_t *writeTag(char16_t *out, qint64 milliseconds)
{
    if (quint64(milliseconds) >= quint64(TwoDigitLimit))
        return writeAnyTag(out, milliseconds);
    const quint32 hundredths = quint32(milliseconds) / 10; // the last digit is dropped, not rounded
    const quint32 minutes = hundredths / 6000;
    const quint32 seconds = hundredths / 100;
    std::memcpy(out, MinuteFields[minutes].data(), sizeof(MinuteFields[0]));
    std::memcpy(out + 4, SecondFields[seconds - minutes * 60].data(), sizeof(SecondFields[0]));
    std::memcpy(out + 6, HundredthFields[hundredths - seconds * 100].data(), sizeof(HundredthFields[0]));
    return out + TwoDigitTagLength;
}

/// The number of code units that writeTag() writes.
inline qsizetype tagLength(qint64 milliseconds)
{
    if (quint64(milliseconds) < quint64(TwoDigitLimit))
        return TwoDigitTagLength;
    char16_t tag[MaxTagLength];
    return writeAnyTag(tag, milliseconds) - tag;
}

} // namespace QVSongLrcPrivate::TimeText
