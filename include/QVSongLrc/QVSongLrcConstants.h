// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>

/// The key of the title in search parameters and search results.
inline constexpr QLatin1StringView Key_Lyric_Trackname("track");

/// The key of the artist in search parameters and search results.
inline constexpr QLatin1StringView Key_Lyric_Artist("artist");

/// The key of the lyric in the service's reply to a detail request.
inline constexpr QLatin1StringView Key_Lyric_Lyric("lyric");
