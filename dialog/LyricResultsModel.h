// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QJsonObject>
#include <QList>

namespace QVSongLrcPrivate {

/// The candidates of a search as a table of titles and artists. A row is an index into the list.
class LyricResultsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TrackColumn, ArtistColumn, ColumnCount };

    QList<QJsonObject> results() const { return m_results; }
    bool isEmpty() const { return m_results.isEmpty(); }

    /// Replaces all rows.
    void setResults(const QList<QJsonObject> &results);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Sorts the list itself, by the rules of the default locale's language. The sort is stable: equal rows keep the
    /// order of the previous sort. Views see changed cells, not moved rows, and keep their selected row number.
    void sort(int column, Qt::SortOrder order) override;

private:
    QString text(qsizetype row, int column) const;

    QList<QJsonObject> m_results;
};

} // namespace QVSongLrcPrivate
