// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongIndex.h"

#include "SearchTerms.h"
#include "ServiceError.h"

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
        throw ServiceError("can't open the index "_L1 + file + ": "_L1 + database.lastError().text());
    return database;
}

SongIndex::SongIndex(const QString &file)
    : m_database(open(SearchConnection, file))
    , m_search(m_database)
    , m_path(m_database)
{
    // CROSS JOIN keeps the full-text side outside, whose order the rows come in.
    const std::pair<QSqlQuery *, QLatin1StringView> queries[] = {
        {&m_search,
         "SELECT song.title, song.artist, song.link FROM words CROSS JOIN song "
         "ON song.id = words.rowid WHERE words MATCH ? ORDER BY words.rowid LIMIT ?"_L1},
        {&m_path, "SELECT path FROM song WHERE link = ?"_L1}};
    for (const auto &[query, statement] : queries) {
        query->setForwardOnly(true);
        if (!query->prepare(statement))
            throw ServiceError("can't read the index "_L1 + file + ": "_L1 + query->lastError().text());
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
    const QString title = SearchTerms::match("title"_L1, track);
    QList<Candidate> found;
    for (const QString &name :
         {SearchTerms::matchWhole("artist"_L1, artist), SearchTerms::match("artist"_L1, artist)}) {
        QStringList conditions{title, name};
        conditions.removeAll(QString());
        if (conditions.isEmpty() || found.size() >= MaxCandidates)
            break;
        m_search.addBindValue(conditions.join(" AND "_L1));
        m_search.addBindValue(MaxCandidates);
        if (!m_search.exec())
            throw ServiceError(m_search.lastError().text());
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
        m_search.finish(); // ends the read, so that the index's log can be folded back
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
        throw ServiceError(m_path.lastError().text());
    if (m_path.next())
        result = m_path.value(0).toString();
    m_path.finish();
    return result;
}
