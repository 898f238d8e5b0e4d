// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace QVSongLrcPrivate {

/// The score of a text of \p receiverLength code units, not 0, at edit distance \p distance from another. A
/// greater distance never scores higher.
inline float likenessAtDistance(qint64 distance, qint64 receiverLength)
{
    return float(100.0 - double(distance) * 100.0 / double(receiverLength));
}

} // namespace QVSongLrcPrivate
