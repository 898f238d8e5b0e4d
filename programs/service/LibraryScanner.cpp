// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LibraryScanner.h"

#include "LyricText.h"
#include "StorageError.h"

#include <QVSongLrc/QVEditSong.h>

#include <QDateTime>
#include <QDebug>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QSet>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView Suffix(".lrc");
constexpr qsizetype MaxNameLength = 255;          // code units
constexpr qsizetype MaxWatchedDirectories = 1000; // the system's limit counts all programs of the user

QString propertyValue(const QVEditSong &song, QStringView key)
{
    for (const auto &line : *song.aryLines()) {
        if (line->isProperty() && line->propertyStr() == key) {
            if (QString value = line->lineText().simplified(); !value.isEmpty())
                return value;
        }
    }
    return {};
}

SongIndexWriter::SongName songName(const QString &text, const QString &fileName)
{
    constexpr QLatin1StringView Separator(" - ");
    QVEditSong song;
    song.buildWithLrcText(text);
    SongIndexWriter::SongName name{propertyValue(song, u"ti"), propertyValue(song, u"ar")};
    const qsizetype at = fileName.indexOf(Separator);
    if (name.title.isEmpty())
        name.title = (at > 0 ? fileName.sliced(at + Separator.size()) : fileName).simplified();
    if (name.artist.isEmpty() && at > 0)
        name.artist = fileName.first(at).simplified();
    if (name.artist.isNull())
        name.artist = ""_L1; // a null string would be NULL in the index
    name.title.truncate(MaxNameLength);
    name.artist.truncate(MaxNameLength);
    return name;
}

SongIndexWriter::Stamp fileStamp(const QFileInfo &file)
{
    return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

} // namespace

LibraryScanner::LibraryScanner(const QString &library, const QString &indexFile)
    : m_library(library)
    , m_index(indexFile)
{
    m_changeTimer.setSingleShot(true);
    m_changeTimer.setInterval(200);
    m_periodicTimer.setSingleShot(true);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_changeTimer, [this] {
        if (!m_changeTimer.isActive())
            m_changeTimer.start();
    });
    connect(&m_changeTimer, &QTimer::timeout, this, &LibraryScanner::rescan);
    connect(&m_periodicTimer, &QTimer::timeout, this, &LibraryScanner::rescan);
}

void LibraryScanner::start()
{
    try {
        try {
            m_index.open(m_library.path());
            scan();
        } catch (const StorageError &) {
            // The index holds nothing that is not in the library, so a damaged one is rebuilt.
            m_index.discard();
            m_index.open(m_library.path());
            scan();
        }
    } catch (const StorageError &error) {
        Q_EMIT failed(QString::fromUtf8(error.what()));
        return;
    }
    if (!thread()->isInterruptionRequested())
        Q_EMIT ready();
}

void LibraryScanner::rescan()
{
    try {
        scan();
    } catch (const StorageError &error) {
        qWarning("can't update the song index: %s", error.what());
    }
}

void LibraryScanner::scan()
{
    QElapsedTimer clock;
    clock.start();
    // The pause grows with the duration of a scan, so that a large library is not scanned all the time.
    const auto scheduleNext = qScopeGuard([&] {
        m_changeTimer.setInterval(int(std::clamp<qint64>(clock.elapsed() * 5, 200, 30'000)));
        m_periodicTimer.start(int(std::clamp<qint64>(clock.elapsed() * 50, 15'000, 3'600'000)));
    });
    try {
        QStringList directories;
        Entries known = m_index.begin();
        // After an interrupted walk the remaining songs may still exist.
        if (walk(known, directories)) {
            for (const Entry &missing : std::as_const(known))
                m_index.remove(missing.id);
            watch(directories);
        }
        m_index.commit();
    } catch (const StorageError &) {
        m_index.rollback();
        throw;
    }
}

bool LibraryScanner::walk(Entries &known, QStringList &directories)
{
    if (!QFileInfo(m_library.path()).isReadable()) {
        qWarning() << "can't read the library" << m_library.path();
        return false;
    }
    constexpr QDir::Filters Wanted = QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    directories = {m_library.path()};
    const qsizetype prefix = m_library.path().size() + (m_library.isRoot() ? 0 : 1);
    for (qsizetype i = 0; i < directories.size(); ++i) {
        const QFileInfoList entries = QDir(directories[i]).entryInfoList(Wanted, QDir::Unsorted);
        if (entries.isEmpty() && !QFileInfo(directories[i]).isReadable())
            report(directories[i], {}, u"not readable"_s);
        for (const QFileInfo &entry : entries) {
            if (QThread::currentThread()->isInterruptionRequested())
                return false;
            if (entry.isDir()) {
                directories += entry.filePath();
                continue;
            }
            if (!entry.fileName().endsWith(Suffix, Qt::CaseInsensitive))
                continue;
            const QString path = entry.filePath().sliced(prefix);
            const Entry old = known.take(path);
            if (!old.id || old.stamp != fileStamp(entry))
                update(entry, path, old.id);
        }
    }
    return true;
}

void LibraryScanner::update(const QFileInfo &file, const QString &path, qint64 oldId)
{
    const Stamp stamp = fileStamp(file);
    if (m_unusable.contains(path) && m_unusable[path] == stamp)
        return;
    QString link = oldId ? m_index.link(oldId) : QString(); // links that clients have stay valid
    if (oldId)
        m_index.remove(oldId);
    QString error;
    const auto text = readLyricText(file.filePath(), &error);
    if (!text) {
        // Try an unreadable file again next time: a change of permissions does not change its stamp.
        report(path, file.isReadable() ? stamp : Stamp{stamp.size, -1}, error);
        return;
    }
    m_unusable.remove(path);
    m_index.add(path, stamp, songName(*text, file.completeBaseName()),
                link.isEmpty() ? SongIndexWriter::newLink() : link);
}

void LibraryScanner::report(const QString &path, const Stamp &stamp, const QString &reason)
{
    if (!m_unusable.contains(path) || m_unusable[path].modified != stamp.modified)
        qWarning().noquote() << "skipped" << QDebug::toString(path) << '-' << reason;
    m_unusable.insert(path, stamp);
}

void LibraryScanner::watch(const QStringList &directories)
{
    const QStringList wanted = directories.first(std::min(directories.size(), MaxWatchedDirectories));
    const QStringList watched = m_watcher.directories();
    const QSet<QString> old(watched.begin(), watched.end());
    const QSet<QString> current(wanted.begin(), wanted.end());
    if (const auto removed = old - current; !removed.isEmpty())
        m_watcher.removePaths(removed.values());
    if (const auto added = current - old; !added.isEmpty()) {
        m_watcher.addPaths(added.values());
        m_changeTimer.start(); // for changes before the watch began
    }
}
