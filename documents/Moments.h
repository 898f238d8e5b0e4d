// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <vector>

namespace QVSongLrcPrivate {

/// When something plays, and its index.
struct Moment
{
    qint64 milliseconds;
    qsizetype index;

    static bool isEarlier(const Moment &a, const Moment &b) { return a.milliseconds < b.milliseconds; }
};

/// Sorts by time. Moments with equal times keep their order. Times must not be negative.
void sortMoments(std::vector<Moment> &moments);

} // namespace QVSongLrcPrivate
