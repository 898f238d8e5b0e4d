// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <array>
#include <cstring>

/// Times to and from the text of a time tag, "[mm:ss.xx]".
namespace TimeText {

/// The time of a tag of at least two code units; see QVUtils::getTimeInterval().
qint64 fromTag(QStringView tag);

/// Room for the tag of any 64-bit time.
inline constexpr qsizetype MaxTagLength = 32;

/// Times from 0 up to here, 100 minutes, make a tag of two digits a field.
inline constexpr qint64 TwoDigitLimit = 6'000'000;
inline constexpr qsizetype TwoDigitTagLength = 10;

/// Writes the tag of a time outside 0 to TwoDigitLimit and answers the place after it.
char16_t *writeUnusualTag(char16_t *out, qint64 milliseconds);

inline constexpr auto TwoDigits = [] {
    std::array<std::array<char16_t, 2>, 100> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = {char16_t(u'0' + i / 10), char16_t(u'0' + i % 10)};
    return table;
}();

/// Writes the tag of a time and answers the place after it; at most MaxTagLength code units.
inline char16_t *writeTag(char16_t *out, qint64 milliseconds)
{
    if (milliseconds < 0 || milliseconds >= TwoDigitLimit)
        return writeUnusualTag(out, milliseconds);
    const auto hundredths = quint32(milliseconds) / 10; // the last digit is dropped, not rounded
    const quint32 seconds = hundredths / 100;
    const auto write = [](char16_t *at, quint32 field) {
        std::memcpy(at, TwoDigits[field].data(), sizeof(TwoDigits[field]));
    };
    out[0] = u'[';
    write(out + 1, seconds / 60);
    out[3] = u':';
    write(out + 4, seconds % 60);
    out[6] = u'.';
    write(out + 7, hundredths % 100);
    out[9] = u']';
    return out + TwoDigitTagLength;
}

/// The length of what writeTag() writes.
inline qsizetype tagLength(qint64 milliseconds)
{
    if (milliseconds >= 0 && milliseconds < TwoDigitLimit)
        return TwoDigitTagLength;
    char16_t tag[MaxTagLength];
    return writeUnusualTag(tag, milliseconds) - tag;
}

} // namespace TimeText
