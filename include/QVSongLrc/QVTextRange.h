// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <algorithm>
#include <limits>

/// A range of a text in UTF-16 code units, half-open: from location up to, but not including, end().
struct QVTextRange
{
    quint64 location = 0; ///< The index of the first code unit.
    quint64 length = 0;   ///< The number of code units.

    /// Whether the length is 0.
    constexpr bool isEmpty() const { return length == 0; }

    /// The index after the last code unit: location + length, at most the largest quint64.
    constexpr quint64 end() const
    {
        return location + std::min(length, std::numeric_limits<quint64>::max() - location);
    }

    /// The part of \p text in the range. If the range extends beyond the end of \p text, the result is shorter
    /// than length, or empty. It refers to the characters of \p text, which must outlive it.
    constexpr QStringView sliceOf(QStringView text) const
    {
        const quint64 begin = std::min(location, quint64(text.size()));
        return text.sliced(qsizetype(begin), qsizetype(std::min(length, quint64(text.size()) - begin)));
    }

    friend constexpr bool operator==(const QVTextRange &, const QVTextRange &) = default;
};
