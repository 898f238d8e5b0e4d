// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace QVSongLrcPrivate {

Q_DECLARE_LOGGING_CATEGORY(lookupLog)

} // namespace QVSongLrcPrivate
