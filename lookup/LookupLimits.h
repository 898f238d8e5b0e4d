// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

/// What the client of the lyric service accepts; docs/lookup-protocol.md documents these limits.
namespace QVSongLrcPrivate::LookupLimits {

inline constexpr std::chrono::seconds IdleTime(60);      // without any progress
inline constexpr qsizetype ReplySize = 16 * 1024 * 1024; // bytes, unpacked
inline constexpr int Redirects = 5;

} // namespace QVSongLrcPrivate::LookupLimits
