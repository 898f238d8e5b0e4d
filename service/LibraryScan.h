// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QSqlDatabase>
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
    ~LibraryScan() override;

    /// Opens the index, makes it when it is missing, damaged or of another library, and scans.
    void start();

Q_SIGNALS:
    /// The index holds what the library held at the start.
    void ready();
    /// The index can't be used; \p why is one line.
    void failed(const QString &why);

private:
    struct Stamp
    {
        qint64 id = 0;
        qint64 size = 0;
        qint64 modified = 0; // ms since 1970
    };
    using Stamps = QHash<QString, Stamp>;

    void openIndex();
    void discardIndex();
    void rescan();
    void scan();
    bool walk(Stamps &known, QStringList &directories);
    void update(const QFileInfo &file, const QString &path, const Stamp &old);
    void tell(const QString &path, const Stamp &stamp, const QString &why);
    void remove(qint64 id);
    void execute(const QString &statement, const QVariantList &values = {});
    void watch(const QStringList &directories);

    const QDir m_library;
    const QString m_indexFile;
    QSqlDatabase m_database;
    Stamps m_unusable; // files that were told, by path
    qint64 m_lastSerial = 0;
    int m_pending = 0; // changes in the open transaction
    QFileSystemWatcher m_watcher{this};
    QTimer m_soon{this};
    QTimer m_regular{this};
};
