// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

/// Lyrics of invented words to measure with. They are the same in every run.
namespace Corpus {

struct Texts
{
    std::vector<QString> songs;
    qint64 lineCount = 0; // line feeds of all songs

    void add(const QString &song);
};

/// Songs like those in people's folders: a few properties, then lines with one time tag, or with two or three in
/// a refrain; some blank lines, some lines without a time; a third of the songs in Chinese or Japanese characters.
Texts songs(int count);

/// One song of 63 lines.
Texts oneSong();

/// The songs of a large folder one after the other in one text of 32 MB in UTF-8.
Texts bigText();

} // namespace Corpus
