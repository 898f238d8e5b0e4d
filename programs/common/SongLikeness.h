// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

struct SongName
{
    QString title;
    QString artist;
};

/// How much \p found is like what was \p asked for, from 0 to 100: 100 minus the edit distance as a percentage of the
/// longer text, for title and artist together. What was not asked for does not count.
///
/// Case, accents, width and punctuation do not count, nor do additions such as "(Live)", "- Remastered 2011" or
/// "feat. Somebody".
int songLikeness(const SongName &asked, const SongName &found);
