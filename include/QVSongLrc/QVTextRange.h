// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// A stretch of a text in UTF-16 code units: half-open, from `location` up to `location + length`.
struct QVTextRange
{
    quint64 location = 0;
    quint64 length = 0;

    friend constexpr bool operator==(const QVTextRange &, const QVTextRange &) = default;
};
