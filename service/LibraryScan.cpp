// SPDX-License-Identifier: MIT
#include "LibraryScan.h"

#include "LyricText.h"
#include "SearchTerms.h"
#include "ServiceError.h"
#include "SongIndex.h"

#include <QVSongLrc/QVEditSong.h>

#include <QDateTime>
#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <unicode/uchar.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView ScanConnection("scan");
constexpr QLatin1StringView Suffix(".lrc");
constexpr int TableVersion = 1;                   // another one, another table or meaning of tokens
constexpr int TransactionSize = 2000;             // changes
constexpr qsizetype MaxNameLength = 255;          // code units
constexpr qsizetype MaxWatchedDirectories = 1000; // of a number that all programs of the user share

struct SongName
{
    QString title;
    QString artist;
};

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

SongName nameOf(const QString &text, const QString &fileName)
{
    constexpr QLatin1StringView Separator(" - ");
    QVEditSong song;
    song.buildWithLrcText(text);
    SongName name{propertyOf(song, u"ti"), propertyOf(song, u"ar")};
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

// The number under which a song is kept: the length of its title, that of its artist, a serial number. See
// SongIndex for why.
qint64 numberOf(const SongName &name, qint64 serial)
{
    constexpr qsizetype MaxArtist = 63;
    return qint64(name.title.size()) << 38 | qint64(std::min(name.artist.size(), MaxArtist)) << 32 | serial;
}

QString newLink()
{
    return u"%1%2"_s.arg(QRandomGenerator::system()->generate64(), 16, 16, QChar(u'0'))
        .arg(QRandomGenerator::system()->generate64(), 16, 16, QChar(u'0'));
}

} // namespace

LibraryScan::LibraryScan(const QString &library, const QString &indexFile)
    : m_library(library)
    , m_indexFile(indexFile)
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

LibraryScan::~LibraryScan()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(ScanConnection);
}

void LibraryScan::start()
{
    try {
        try {
            openIndex();
            scan();
        } catch (const ServiceError &) {
            // The index only repeats what the library holds, so a damaged one is made anew.
            discardIndex();
            openIndex();
            scan();
        }
    } catch (const ServiceError &error) {
        Q_EMIT failed(QString::fromUtf8(error.what()));
        return;
    }
    if (!thread()->isInterruptionRequested())
        Q_EMIT ready();
}

void LibraryScan::openIndex()
{
    // The tokens depend on the version of Unicode as well.
    const QString identity = u"%1 %2 %3"_s.arg(TableVersion).arg(u"" U_UNICODE_VERSION, m_library.path());
    m_database = SongIndex::open(ScanConnection, m_indexFile);
    execute("PRAGMA journal_mode = WAL"_L1);
    execute("PRAGMA synchronous = NORMAL"_L1);
    execute("CREATE TABLE IF NOT EXISTS origin (identity TEXT NOT NULL)"_L1);
    QSqlQuery query("SELECT identity FROM origin"_L1, m_database);
    const bool isOurs = query.next() && query.value(0).toString() == identity;
    query.finish();
    if (!isOurs) {
        m_database.transaction();
        execute("DROP TABLE IF EXISTS song"_L1);
        execute("DROP TABLE IF EXISTS words"_L1);
        execute(
            "CREATE TABLE song (id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, size INTEGER NOT NULL, "
            "modified INTEGER NOT NULL, title TEXT NOT NULL, artist TEXT NOT NULL, "
            "link TEXT NOT NULL UNIQUE)"_L1);
        execute("CREATE VIRTUAL TABLE words USING fts5(title, artist, columnsize = 0, prefix = '3 4', "
                "tokenize = \"ascii tokenchars '='\")"_L1);
        execute("DELETE FROM origin"_L1);
        execute("INSERT INTO origin VALUES (?)"_L1, {identity});
        m_database.commit();
    }
    execute("SELECT rowid FROM words WHERE words MATCH 'a' LIMIT 1"_L1); // throws when it is damaged
    if (!query.exec("SELECT max(id & 0xFFFFFFFF) FROM song"_L1) || !query.next())
        throw ServiceError(query.lastError().text());
    m_lastSerial = query.value(0).toLongLong();
}

void LibraryScan::discardIndex()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(ScanConnection);
    for (const QLatin1StringView part : {""_L1, "-wal"_L1, "-shm"_L1})
        QFile::remove(m_indexFile + part);
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
        Stamps known;
        QSqlQuery query(m_database);
        query.setForwardOnly(true);
        if (!query.exec("SELECT path, id, size, modified FROM song"_L1))
            throw ServiceError(query.lastError().text());
        while (query.next()) {
            known.insert(
                query.value(0).toString(),
                {query.value(1).toLongLong(), query.value(2).toLongLong(), query.value(3).toLongLong()});
        }
        query.finish();
        m_pending = 0;
        m_database.transaction();
        // What a walk that was cut short did not meet may still be there.
        if (walk(known, directories)) {
            for (const Stamp &gone : std::as_const(known))
                remove(gone.id);
            watch(directories);
        }
        if (!m_database.commit())
            throw ServiceError(m_database.lastError().text());
    } catch (const ServiceError &) {
        m_database.rollback();
        throw;
    }
}

bool LibraryScan::walk(Stamps &known, QStringList &directories)
{
    if (!QFileInfo(m_library.path()).isReadable()) {
        qWarning() << "can't read the library" << m_library.path();
        return false;
    }
    constexpr QDir::Filters Entries = QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    directories = {m_library.path()};
    const qsizetype prefix = m_library.path().size() + (m_library.isRoot() ? 0 : 1);
    for (qsizetype at = 0; at < directories.size(); ++at) {
        const QFileInfoList entries = QDir(directories[at]).entryInfoList(Entries, QDir::Unsorted);
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
            const Stamp old = known.take(path);
            if (old.size != entry.size() || old.modified != entry.lastModified().toMSecsSinceEpoch()
                || !old.id)
                update(entry, path, old);
        }
    }
    return true;
}

void LibraryScan::update(const QFileInfo &file, const QString &path, const Stamp &old)
{
    const Stamp stamp{0, file.size(), file.lastModified().toMSecsSinceEpoch()};
    const Stamp told = m_unusable.value(path);
    if (told.modified == stamp.modified && told.size == stamp.size && m_unusable.contains(path))
        return;
    QString link = newLink();
    if (old.id) {
        QSqlQuery query(m_database);
        query.prepare("SELECT link FROM song WHERE id = ?"_L1);
        query.addBindValue(old.id);
        if (query.exec() && query.next())
            link = query.value(0).toString(); // a link that was given out stays good
        query.finish();
        remove(old.id);
    }
    QString error;
    const auto text = readLyricText(file.filePath(), &error);
    if (!text) {
        // What can't be opened is tried again: its modes may change, which leaves its stamp alone.
        tell(path, file.isReadable() ? stamp : Stamp{0, stamp.size, -1}, error);
        return;
    }
    m_unusable.remove(path);
    const SongName name = nameOf(*text, file.completeBaseName());
    const qint64 id = numberOf(name, ++m_lastSerial);
    execute("INSERT INTO song VALUES (?, ?, ?, ?, ?, ?, ?)"_L1,
            {id, path, stamp.size, stamp.modified, name.title, name.artist, link});
    execute("INSERT INTO words (rowid, title, artist) VALUES (?, ?, ?)"_L1,
            {id, SearchTerms::indexed(name.title), SearchTerms::indexed(name.artist)});
    if (++m_pending % TransactionSize == 0) {
        m_database.commit();
        m_database.transaction();
    }
}

void LibraryScan::tell(const QString &path, const Stamp &stamp, const QString &why)
{
    if (!m_unusable.contains(path) || m_unusable[path].modified != stamp.modified)
        qWarning().noquote() << "skipped" << QDebug::toString(path) << '-' << why;
    m_unusable.insert(path, stamp);
}

void LibraryScan::remove(qint64 id)
{
    execute("DELETE FROM song WHERE id = ?"_L1, {id});
    execute("DELETE FROM words WHERE rowid = ?"_L1, {id});
}

void LibraryScan::execute(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(m_database);
    query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw ServiceError(query.lastError().text());
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
