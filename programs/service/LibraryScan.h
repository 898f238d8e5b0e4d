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

/// Keeps the index of the songs in a folder up to date. Lives in a thread of its own, so that no request
/// waits for it; asked to be interrupted, the thread ends a scan early.
///
/// A scan compares sizes and modification times and reads only the files that differ. It runs at the start,
/// soon after a watched directory reports a change, and from time to time, since a file written in place
/// reports nothing and a library may have more directories than can be watched. Links to elsewhere, files
/// and directories alike, are passed over. What can't be read is told on standard error, once.
class LibraryScan : public QObject
{
    Q_OBJECT

public:
    LibraryScan(const QString &library, const QString &indexFile);

    /// Opens the index, makes it when it is missing, damaged or of another library, and scans.
    void start();

Q_SIGNALS:
    /// The index holds what the library held at the start.
    void ready();
    /// The index can't be used; \p why is one line.
    void failed(const QString &why);

private:
    using Stamp = SongIndexWriter::Stamp;
    using Entry = SongIndexWriter::Entry;
    using Entries = QHash<QString, Entry>;

    void rescan();
    void scan();
    bool walk(Entries &known, QStringList &directories);
    void update(const QFileInfo &file, const QString &path, qint64 oldId);
    void tell(const QString &path, const Stamp &stamp, const QString &why);
    void watch(const QStringList &directories);

    const QDir m_library;
    SongIndexWriter m_index;
    QHash<QString, Stamp> m_unusable; // files that were told, by path
    QFileSystemWatcher m_watcher{this};
    QTimer m_soon{this};
    QTimer m_regular{this};
};
