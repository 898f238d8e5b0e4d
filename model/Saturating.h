// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <limits>

/// 64-bit arithmetic whose results stop at the limits instead of overflowing.
namespace QVSongLrcPrivate::Saturating {

inline constexpr qint64 Max = std::numeric_limits<qint64>::max();
inline constexpr qint64 Min = std::numeric_limits<qint64>::min();

constexpr qint64 add(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? (b < 0 ? Min : Max) : sum;
}

constexpr qint64 subtract(qint64 a, qint64 b)
{
    qint64 difference = 0;
    return __builtin_sub_overflow(a, b, &difference) ? (b < 0 ? Max : Min) : difference;
}

constexpr qint64 multiply(qint64 a, qint64 b)
{
    qint64 product = 0;
    return __builtin_mul_overflow(a, b, &product) ? ((a < 0) == (b < 0) ? Max : Min) : product;
}

/// \p value, which must not be NaN, cut toward zero.
constexpr qint64 fromDouble(double value)
{
    constexpr double TwoTo63 = 9223372036854775808.0;
    if (value >= TwoTo63)
        return Max;
    if (value < -TwoTo63)
        return Min;
    return qint64(value);
}

} // namespace QVSongLrcPrivate::Saturating
