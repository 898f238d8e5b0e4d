// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <stop_token>

namespace QVSongLrcPrivate {

/// The Levenshtein distance of \p a and \p b in UTF-16 code units when it is at most \p limit, else any number
/// greater than \p limit. Takes memory linear in the shorter text, and at worst time proportional to the shorter
/// length times \p limit, 64 code units at a step. After a stop request it returns soon, with any number.
qint64 editDistance(QStringView a, QStringView b, qint64 limit, const std::stop_token &stop = {});

} // namespace QVSongLrcPrivate
