// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <optional>

/// The service's view of the index of songs, an SQLite file that a LibraryScan keeps up to date. Only reads.
///
/// A search stops at the rows it needs: the index numbers songs so that its own order is by length of title,
/// then of artist. Among songs that hold all words of a query the shortest is the one most like it, so
/// nothing has to be scored, however common the words.
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

    /// \throws ServiceError when \p file can't be opened.
    explicit SongIndex(const QString &file);
    SongIndex(const SongIndex &) = delete;
    SongIndex &operator=(const SongIndex &) = delete;
    ~SongIndex();

    /// The songs that \p track and \p artist, where they hold anything to look for, both describe: first
    /// those by exactly that artist, then the others, each part by length of title. At most MaxCandidates.
    ///
    /// \throws ServiceError when the index can't be read.
    QList<Candidate> search(const QString &track, const QString &artist);

    /// The path, relative to the library, of the song that a search gave as \p link; nothing when there is
    /// none.
    ///
    /// \throws ServiceError when the index can't be read.
    std::optional<QString> path(const QString &link);

    /// Opens \p file as the connection \p name. For the two sides of the index only.
    ///
    /// \throws ServiceError when that fails.
    static QSqlDatabase open(const QString &name, const QString &file);

private:
    QSqlDatabase m_database;
    QSqlQuery m_search;
    QSqlQuery m_path;
};
