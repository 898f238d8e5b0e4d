// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricResultsModel.h"

#include "lookup/SafeModel.h"

#include <QVSongLrc/QVSongLrcConstants.h>

#include <QCollator>
#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace QVSongLrcPrivate {

namespace {

/// In UTF-16 code units: more than fits any cell, and few enough to lay out quickly.
constexpr qsizetype LongestShown = 1000;

} // namespace

void LyricResultsModel::setResults(const QList<QJsonObject> &results)
{
    beginResetModel();
    m_results = results;
    endResetModel();
}

int LyricResultsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_results.size());
}

int LyricResultsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString LyricResultsModel::text(qsizetype row, int column) const
{
    return stringForKeySafeModel(m_results[row],
                                 column == TrackColumn ? Key_Lyric_Trackname : Key_Lyric_Artist);
}

QVariant LyricResultsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole: // one line
        return text(index.row(), index.column()).left(LongestShown).replace(u'\n', u' ');
    case Qt::ToolTipRole: // escaped, since the text is not markup; a paragraph, so that it wraps
        return QLatin1StringView("<p>%1</p>")
            .arg(text(index.row(), index.column()).left(LongestShown).toHtmlEscaped());
    default:
        return {};
    }
}

QVariant LyricResultsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == TrackColumn ? QCoreApplication::translate("QVLyricSearchWndCtl", "Title")
                                  : QCoreApplication::translate("QVLyricSearchWndCtl", "Artist");
}

void LyricResultsModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount || m_results.isEmpty())
        return;
    struct Entry
    {
        QCollatorSortKey key;
        qsizetype row;
    };
    const QCollator collator;
    std::vector<Entry> entries;
    entries.reserve(size_t(m_results.size()));
    for (qsizetype row = 0; row < m_results.size(); ++row)
        entries.push_back({collator.sortKey(text(row, column)), row});
    const auto isBefore = [order](const Entry &left, const Entry &right) {
        return order == Qt::AscendingOrder ? left.key < right.key : right.key < left.key;
    };
    std::stable_sort(entries.begin(), entries.end(), isBefore);

    QList<QJsonObject> sorted;
    sorted.reserve(m_results.size());
    for (const Entry &entry : entries)
        sorted.append(m_results[entry.row]);
    m_results = sorted;
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

} // namespace QVSongLrcPrivate
