// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <stop_token>

namespace QVSongLrcPrivate {

/// The Levenshtein distance of \p a and \p b in UTF-16 code units when it is at most \p limit, else any
/// number beyond it. Memory is linear in the shorter text; time is the product of the shorter length and of
/// limit over 64 at most. A stop asked for makes the answer meaningless and soon.
qint64 editDistance(QStringView a, QStringView b, qint64 limit, const std::stop_token &stop = {});

} // namespace QVSongLrcPrivate
