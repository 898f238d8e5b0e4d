// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>

/// The key of the title in lookup parameters and in search results.
inline constexpr QLatin1StringView Key_Lyric_Trackname("track");

/// The key of the artist in lookup parameters and in search results.
inline constexpr QLatin1StringView Key_Lyric_Artist("artist");

/// The key of the lyric text in a detail answer.
inline constexpr QLatin1StringView Key_Lyric_Lyric("lyric");
