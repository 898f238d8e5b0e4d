// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace QVSongLrcPrivate {

/// The score of a text of \p receiverLength code units, not 0, at \p distance from another. The greater the
/// distance, the smaller the score or, for lack of digits, the same.
inline float likenessAtDistance(qint64 distance, qint64 receiverLength)
{
    return float(100.0 - double(distance) * 100.0 / double(receiverLength));
}

} // namespace QVSongLrcPrivate
