// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// A stretch of a text in UTF-16 code units: half-open, from `location` up to `location + length`.
struct QVTextRange
{
    quint64 location = 0; ///< Of the first code unit.
    quint64 length = 0;   ///< The number of code units.

    friend constexpr bool operator==(const QVTextRange &, const QVTextRange &) = default;
};
