// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>

/// The index of songs as a LibraryScan writes it. SongIndex is how the service reads it.
///
/// Functions throw ServiceError when the index can't be used.
class SongIndexWriter
{
public:
    /// What shows that a file has changed.
    struct Stamp
    {
        qint64 size = 0;
        qint64 modified = 0; // ms since 1970
        bool operator==(const Stamp &) const = default;
    };

    struct Entry
    {
        qint64 id = 0; // 0: none
        Stamp stamp;
    };

    struct SongName
    {
        QString title;
        QString artist;
    };

    explicit SongIndexWriter(const QString &file);
    SongIndexWriter(const SongIndexWriter &) = delete;
    SongIndexWriter &operator=(const SongIndexWriter &) = delete;
    ~SongIndexWriter();

    /// Opens the index of the songs in \p library, and makes it when it is missing or of another library.
    void open(const QString &library);

    /// Closes the index and removes its files.
    void discard();

    /// Begins changes, and gives what is there so far, by path in the library.
    QHash<QString, Entry> begin();
    void add(const QString &path, const Stamp &stamp, const SongName &name, const QString &link);
    void remove(qint64 id);
    void commit();
    void rollback() { m_database.rollback(); }

    /// The link under which clients know a song; empty when there is none.
    QString link(qint64 id);

    static QString newLink();

private:
    void close();
    void execute(const QString &statement, const QVariantList &values = {});

    const QString m_file;
    QSqlDatabase m_database;
    qint64 m_lastSerial = 0;
    int m_added = 0; // since begin()
};
