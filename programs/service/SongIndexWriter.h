// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>

/// Writes the index of songs for a LibraryScanner; SongIndex reads it. One per process.
///
/// Functions throw StorageError when the index can't be used.
class SongIndexWriter
{
public:
    /// A file whose stamp differs has changed.
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

    /// Opens the index of the songs in \p library. Creates it when it is missing or of another library.
    void open(const QString &library);

    /// Closes the index and removes its files.
    void discard();

    /// Begins a transaction and returns the indexed songs by path in the library.
    QHash<QString, Entry> begin();
    void add(const QString &path, const Stamp &stamp, const SongName &name, const QString &link);
    void remove(qint64 id);
    void commit();
    void rollback() { m_database.rollback(); }

    /// The link of a song, as clients send it; empty when there is no such song.
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
