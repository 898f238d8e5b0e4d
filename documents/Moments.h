// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <vector>

namespace QVSongLrcPrivate {

/// When something plays, and its index. Times are not negative.
struct Moment
{
    qint64 milliseconds;
    qsizetype index;
};

/// Sorts moments by time. Moments with equal times are in order of their indexes.
///
/// The work is least for a usual lyric: \p firsts, from the first tags of the lines, ascends, and there are few
/// \p repeats, from their other tags. Both must be in order of their indexes.
std::vector<Moment> sortedMoments(std::vector<Moment> firsts, std::vector<Moment> repeats);

} // namespace QVSongLrcPrivate
