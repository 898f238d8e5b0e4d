// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "StorageError.h"

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <optional>

/// Reads the index of songs, an SQLite file that a LibraryScanner keeps up to date.
///
/// Row ids sort songs by length of title, then of artist. Among songs that contain all words of a query the shortest
/// is the most similar, so a search takes the first rows and scores nothing, however common the words are.
class SongIndex
{
public:
    static constexpr int MaxCandidates = 50;

    struct Candidate
    {
        QString track;
        QString artist;
        QString link;
    };

    /// \throws StorageError when \p file can't be opened.
    explicit SongIndex(const QString &file);
    SongIndex(const SongIndex &) = delete;
    SongIndex &operator=(const SongIndex &) = delete;
    ~SongIndex();

    /// The songs that match both \p track and \p artist; a text without tokens (see SearchTerms) is
    /// ignored, and nothing is found when both have none. Songs by exactly that artist come first; each group is sorted
    /// by length of title. At most MaxCandidates.
    ///
    /// \throws StorageError when the index can't be read.
    QList<Candidate> search(const QString &track, const QString &artist);

    /// The path, relative to the library, of the song with \p link; nothing when there is none.
    ///
    /// \throws StorageError when the index can't be read.
    std::optional<QString> path(const QString &link);

    /// Opens \p file as the connection \p name. For SongIndex and SongIndexWriter only.
    ///
    /// \throws StorageError when the file can't be opened.
    static QSqlDatabase open(const QString &name, const QString &file);

private:
    QSqlDatabase m_database;
    QSqlQuery m_search;
    QSqlQuery m_path;
};
