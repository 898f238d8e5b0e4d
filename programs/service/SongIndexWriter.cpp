// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongIndexWriter.h"

#include "SearchTerms.h"
#include "SongIndex.h"

#include <QFile>
#include <QRandomGenerator>
#include <QSqlError>
#include <QSqlQuery>

#include <unicode/uchar.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView WriterConnection("scan");
constexpr int TableVersion = 1;       // increase when tables or tokens change
constexpr int TransactionSize = 2000; // songs

// A row id from the length of the title, the length of the artist and a serial number, which sorts songs as SongIndex
// expects.
qint64 rowId(const SongIndexWriter::SongName &name, qint64 serial)
{
    constexpr qsizetype MaxArtist = 63;
    return qint64(name.title.size()) << 38 | qint64(std::min(name.artist.size(), MaxArtist)) << 32 | serial;
}

} // namespace

SongIndexWriter::SongIndexWriter(const QString &file)
    : m_file(file)
{
}

SongIndexWriter::~SongIndexWriter()
{
    close();
}

void SongIndexWriter::close()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(WriterConnection);
}

void SongIndexWriter::open(const QString &library)
{
    // Tokens also depend on the version of Unicode.
    const QString identity = u"%1 %2 %3"_s.arg(TableVersion).arg(u"" U_UNICODE_VERSION, library);
    m_database = SongIndex::open(WriterConnection, m_file);
    execute("PRAGMA journal_mode = WAL"_L1);
    execute("PRAGMA synchronous = NORMAL"_L1);
    execute("CREATE TABLE IF NOT EXISTS origin (identity TEXT NOT NULL)"_L1);
    QSqlQuery query("SELECT identity FROM origin"_L1, m_database);
    const bool isCurrent = query.next() && query.value(0).toString() == identity;
    query.finish();
    if (!isCurrent) {
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
    execute("SELECT rowid FROM words WHERE words MATCH 'a' LIMIT 1"_L1); // throws when the index is damaged
    if (!query.exec("SELECT max(id & 0xFFFFFFFF) FROM song"_L1) || !query.next())
        throw StorageError(query.lastError().text());
    m_lastSerial = query.value(0).toLongLong();
}

void SongIndexWriter::discard()
{
    close();
    for (const QLatin1StringView part : {""_L1, "-wal"_L1, "-shm"_L1})
        QFile::remove(m_file + part);
}

QHash<QString, SongIndexWriter::Entry> SongIndexWriter::begin()
{
    QHash<QString, Entry> entries;
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec("SELECT path, id, size, modified FROM song"_L1))
        throw StorageError(query.lastError().text());
    while (query.next()) {
        entries.insert(
            query.value(0).toString(),
            {query.value(1).toLongLong(), {query.value(2).toLongLong(), query.value(3).toLongLong()}});
    }
    query.finish();
    m_added = 0;
    m_database.transaction();
    return entries;
}

void SongIndexWriter::add(const QString &path, const Stamp &stamp, const SongName &name, const QString &link)
{
    const qint64 id = rowId(name, ++m_lastSerial);
    execute("INSERT INTO song VALUES (?, ?, ?, ?, ?, ?, ?)"_L1,
            {id, path, stamp.size, stamp.modified, name.title, name.artist, link});
    execute("INSERT INTO words (rowid, title, artist) VALUES (?, ?, ?)"_L1,
            {id, SearchTerms::tokenList(name.title), SearchTerms::tokenList(name.artist)});
    if (++m_added % TransactionSize == 0) {
        m_database.commit();
        m_database.transaction();
    }
}

void SongIndexWriter::remove(qint64 id)
{
    execute("DELETE FROM song WHERE id = ?"_L1, {id});
    execute("DELETE FROM words WHERE rowid = ?"_L1, {id});
}

void SongIndexWriter::commit()
{
    if (!m_database.commit())
        throw StorageError(m_database.lastError().text());
}

QString SongIndexWriter::link(qint64 id)
{
    QSqlQuery query(m_database);
    query.prepare("SELECT link FROM song WHERE id = ?"_L1);
    query.addBindValue(id);
    if (!query.exec())
        throw StorageError(query.lastError().text());
    return query.next() ? query.value(0).toString() : QString();
}

QString SongIndexWriter::newLink()
{
    return u"%1%2"_s.arg(QRandomGenerator::system()->generate64(), 16, 16, QChar(u'0'))
        .arg(QRandomGenerator::system()->generate64(), 16, 16, QChar(u'0'));
}

void SongIndexWriter::execute(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(m_database);
    query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw StorageError(query.lastError().text());
}
