// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QStringView>

/// Similarity of texts.
namespace Distance {

/// The similarity of \p receiver to \p argument: 100 minus the edit distance as a percentage of the
/// receiver's length. Equal texts score 100. The score is not symmetric, and it is negative when the distance
/// exceeds the receiver's length. When one of the texts is empty or absent, the result is the length of the
/// other one instead of a score, on purpose.
///
/// This is the Levenshtein distance in UTF-16 code units, which are compared exactly: without case folding or
/// normalisation. It takes memory linear in the shorter text. The time is at worst proportional to the product
/// of both lengths, 64 code units at a step; for similar texts it depends on their distance instead. Callable
/// from any thread.
QVSONGLRC_LOOKUP_EXPORT float likePercent(QStringView receiver, QStringView argument);

} // namespace Distance
