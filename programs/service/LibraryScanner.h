// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongIndexWriter.h"

#include <QDir>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

class QFileInfo;

/// Keeps the index of the songs in a folder up to date. Lives in its own thread, so that requests never wait for a
/// scan. QThread::requestInterruption() ends a scan early.
///
/// A scan compares sizes and modification times and reads only files that differ. It runs at the start, soon after a
/// watched directory changes, and periodically, because writing a file in place does not change its directory, and
/// not every directory of a large library is watched. Symbolic links are skipped. Each unusable file is logged once.
class LibraryScanner : public QObject
{
    Q_OBJECT

public:
    LibraryScanner(const QString &library, const QString &indexFile);

    /// Opens the index and scans. Creates the index when it is missing, damaged or of another library.
    void start();

Q_SIGNALS:
    /// The first scan is complete.
    void ready();
    /// The index can't be used; \p reason is one line.
    void failed(const QString &reason);

private:
    using Stamp = SongIndexWriter::Stamp;
    using Entry = SongIndexWriter::Entry;
    using Entries = QHash<QString, Entry>;

    void rescan();
    void scan();
    bool walk(Entries &known, QStringList &directories);
    void update(const QFileInfo &file, const QString &path, qint64 oldId);
    void report(const QString &path, const Stamp &stamp, const QString &reason);
    void watch(const QStringList &directories);

    const QDir m_library;
    SongIndexWriter m_index;
    QHash<QString, Stamp> m_unusable; // reported files, by path
    QFileSystemWatcher m_watcher{this};
    QTimer m_changeTimer{this};
    QTimer m_periodicTimer{this};
};
