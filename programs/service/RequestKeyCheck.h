// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What a request key says to the service.
enum class RequestKeyState { Good, Missing, Undecipherable, OutOfTime };

/// How far a key's time may lie from the service's, either way, in seconds.
inline constexpr qint64 RequestKeyTolerance = 300;

/// Deciphers \p apiKey and compares its time with \p now, in seconds since 1970. A key is good when its time
/// lies at most RequestKeyTolerance seconds before or after.
RequestKeyState checkRequestKey(const QString &apiKey, qint64 now);
