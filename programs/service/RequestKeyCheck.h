// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The result of checking a request key.
enum class RequestKeyState { Valid, Missing, Invalid, OutOfTime };

/// The largest difference between a key's time and the service's, either way, in s.
inline constexpr qint64 RequestKeyTolerance = 300;

/// Decrypts \p apiKey and compares its time with \p now, in s since 1970. The key is OutOfTime when they differ by
/// more than RequestKeyTolerance.
RequestKeyState checkRequestKey(const QString &apiKey, qint64 now);
