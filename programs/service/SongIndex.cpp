// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongIndex.h"

#include "SearchTerms.h"

#include <QSqlError>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView SearchConnection("search");

} // namespace

QSqlDatabase SongIndex::open(const QString &name, const QString &file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE"_L1, name);
    database.setDatabaseName(file);
    database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=5000"_L1);
    if (!database.open())
        throw StorageError("can't open the song index "_L1 + file + ": "_L1 + database.lastError().text());
    return database;
}

SongIndex::SongIndex(const QString &file)
    : m_database(open(SearchConnection, file))
    , m_search(m_database)
    , m_path(m_database)
{
    // CROSS JOIN makes SQLite scan "words" in the outer loop, so that rows come in the order of their ids.
    const std::pair<QSqlQuery *, QLatin1StringView> queries[] = {
        {&m_search,
         "SELECT song.title, song.artist, song.link FROM words CROSS JOIN song "
         "ON song.id = words.rowid WHERE words MATCH ? ORDER BY words.rowid LIMIT ?"_L1},
        {&m_path, "SELECT path FROM song WHERE link = ?"_L1}};
    for (const auto &[query, statement] : queries) {
        query->setForwardOnly(true);
        if (!query->prepare(statement))
            throw StorageError("can't read the song index "_L1 + file + ": "_L1 + query->lastError().text());
    }
}

SongIndex::~SongIndex()
{
    m_search = QSqlQuery();
    m_path = QSqlQuery();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(SearchConnection);
}

QList<SongIndex::Candidate> SongIndex::search(const QString &track, const QString &artist)
{
    const QString title = SearchTerms::matchExpression("title"_L1, track);
    QList<Candidate> found;
    for (const QString &name : {SearchTerms::exactMatchExpression("artist"_L1, artist),
                                SearchTerms::matchExpression("artist"_L1, artist)}) {
        QStringList conditions{title, name};
        conditions.removeAll(QString());
        if (conditions.isEmpty() || found.size() >= MaxCandidates)
            break;
        m_search.addBindValue(conditions.join(" AND "_L1));
        m_search.addBindValue(MaxCandidates);
        if (!m_search.exec())
            throw StorageError(m_search.lastError().text());
        const qsizetype exact = found.size();
        while (found.size() < MaxCandidates && m_search.next()) {
            Candidate candidate{m_search.value(0).toString(), m_search.value(1).toString(),
                                m_search.value(2).toString()};
            const bool isNew =
                std::none_of(found.cbegin(), found.cbegin() + exact,
                             [&](const Candidate &other) { return other.link == candidate.link; });
            if (isNew)
                found.append(std::move(candidate));
        }
        m_search.finish(); // ends the read transaction, so that SQLite can checkpoint the write-ahead log
        if (name.isEmpty())
            break;
    }
    return found;
}

std::optional<QString> SongIndex::path(const QString &link)
{
    std::optional<QString> result;
    m_path.addBindValue(link);
    if (!m_path.exec())
        throw StorageError(m_path.lastError().text());
    if (m_path.next())
        result = m_path.value(0).toString();
    m_path.finish();
    return result;
}
