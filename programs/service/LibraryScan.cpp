// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LibraryScan.h"

#include "LyricText.h"
#include "ServiceError.h"

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
constexpr qsizetype MaxWatchedDirectories = 1000; // of a number that all programs of the user share

QString propertyOf(const QVEditSong &song, QStringView key)
{
    for (const auto &line : *song.aryLines()) {
        if (line->isProperty() && line->propertyStr() == key) {
            if (QString value = line->lineText().simplified(); !value.isEmpty())
                return value;
        }
    }
    return {};
}

SongIndexWriter::SongName nameOf(const QString &text, const QString &fileName)
{
    constexpr QLatin1StringView Separator(" - ");
    QVEditSong song;
    song.buildWithLrcText(text);
    SongIndexWriter::SongName name{propertyOf(song, u"ti"), propertyOf(song, u"ar")};
    const qsizetype at = fileName.indexOf(Separator);
    if (name.title.isEmpty())
        name.title = (at > 0 ? fileName.sliced(at + Separator.size()) : fileName).simplified();
    if (name.artist.isEmpty() && at > 0)
        name.artist = fileName.first(at).simplified();
    if (name.artist.isNull())
        name.artist = ""_L1; // absent would be NULL in the index
    name.title.truncate(MaxNameLength);
    name.artist.truncate(MaxNameLength);
    return name;
}

SongIndexWriter::Stamp stampOf(const QFileInfo &file)
{
    return {file.size(), file.lastModified().toMSecsSinceEpoch()};
}

} // namespace

LibraryScan::LibraryScan(const QString &library, const QString &indexFile)
    : m_library(library)
    , m_index(indexFile)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(200);
    m_regular.setSingleShot(true);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_soon, [this] {
        if (!m_soon.isActive())
            m_soon.start();
    });
    connect(&m_soon, &QTimer::timeout, this, &LibraryScan::rescan);
    connect(&m_regular, &QTimer::timeout, this, &LibraryScan::rescan);
}

void LibraryScan::start()
{
    try {
        try {
            m_index.open(m_library.path());
            scan();
        } catch (const ServiceError &) {
            // The index only repeats what the library holds, so a damaged one is made anew.
            m_index.discard();
            m_index.open(m_library.path());
            scan();
        }
    } catch (const ServiceError &error) {
        Q_EMIT failed(QString::fromUtf8(error.what()));
        return;
    }
    if (!thread()->isInterruptionRequested())
        Q_EMIT ready();
}

void LibraryScan::rescan()
{
    try {
        scan();
    } catch (const ServiceError &error) {
        qWarning("can't update the index: %s", error.what());
    }
}

void LibraryScan::scan()
{
    QElapsedTimer clock;
    clock.start();
    // A large library is not scanned all the time.
    const auto planNext = qScopeGuard([&] {
        m_soon.setInterval(int(std::clamp<qint64>(clock.elapsed() * 5, 200, 30'000)));
        m_regular.start(int(std::clamp<qint64>(clock.elapsed() * 50, 15'000, 3'600'000)));
    });
    try {
        QStringList directories;
        Entries known = m_index.begin();
        // What a walk that was cut short did not meet may still be there.
        if (walk(known, directories)) {
            for (const Entry &gone : std::as_const(known))
                m_index.remove(gone.id);
            watch(directories);
        }
        m_index.commit();
    } catch (const ServiceError &) {
        m_index.rollback();
        throw;
    }
}

bool LibraryScan::walk(Entries &known, QStringList &directories)
{
    if (!QFileInfo(m_library.path()).isReadable()) {
        qWarning() << "can't read the library" << m_library.path();
        return false;
    }
    constexpr QDir::Filters Wanted = QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    directories = {m_library.path()};
    const qsizetype prefix = m_library.path().size() + (m_library.isRoot() ? 0 : 1);
    for (qsizetype at = 0; at < directories.size(); ++at) {
        const QFileInfoList entries = QDir(directories[at]).entryInfoList(Wanted, QDir::Unsorted);
        if (entries.isEmpty() && !QFileInfo(directories[at]).isReadable())
            tell(directories[at], {}, u"not readable"_s);
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
            if (!old.id || old.stamp != stampOf(entry))
                update(entry, path, old.id);
        }
    }
    return true;
}

void LibraryScan::update(const QFileInfo &file, const QString &path, qint64 oldId)
{
    const Stamp stamp = stampOf(file);
    if (m_unusable.contains(path) && m_unusable[path] == stamp)
        return;
    QString link = oldId ? m_index.link(oldId) : QString(); // one that was given out stays good
    if (oldId)
        m_index.remove(oldId);
    QString error;
    const auto text = readLyricText(file.filePath(), &error);
    if (!text) {
        // What can't be opened is tried again: its modes may change, which leaves its stamp alone.
        tell(path, file.isReadable() ? stamp : Stamp{stamp.size, -1}, error);
        return;
    }
    m_unusable.remove(path);
    m_index.add(path, stamp, nameOf(*text, file.completeBaseName()),
                link.isEmpty() ? SongIndexWriter::newLink() : link);
}

void LibraryScan::tell(const QString &path, const Stamp &stamp, const QString &why)
{
    if (!m_unusable.contains(path) || m_unusable[path].modified != stamp.modified)
        qWarning().noquote() << "skipped" << QDebug::toString(path) << '-' << why;
    m_unusable.insert(path, stamp);
}

void LibraryScan::watch(const QStringList &directories)
{
    const QStringList wanted = directories.first(std::min(directories.size(), MaxWatchedDirectories));
    const QStringList watched = m_watcher.directories();
    const QSet<QString> old(watched.begin(), watched.end());
    const QSet<QString> now(wanted.begin(), wanted.end());
    if (const auto gone = old - now; !gone.isEmpty())
        m_watcher.removePaths(gone.values());
    if (const auto added = now - old; !added.isEmpty()) {
        m_watcher.addPaths(added.values());
        m_soon.start(); // something may have changed before it was watched
    }
}
