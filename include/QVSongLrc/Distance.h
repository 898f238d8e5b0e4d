// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QStringView>

/// How alike two texts are.
namespace Distance {

/// The similarity of \p receiver to \p argument: 100 less the edit distance in percent of the receiver's
/// length. Equal texts score 100; a score is negative when the distance exceeds the receiver's length, and it
/// is not symmetric. When one of the two is empty or absent the answer is the length of the other, which is
/// meant: an empty text is not scored.
///
/// The distance is Levenshtein's, in UTF-16 code units, compared exactly: case and composition count. Memory
/// is linear in the shorter text. Time is the product of both lengths over 64 at worst, and in proportion to
/// the distance where the texts are close to each other. Callable from any thread.
QVSONGLRC_LOOKUP_EXPORT float likePercent(QStringView receiver, QStringView argument);

} // namespace Distance
