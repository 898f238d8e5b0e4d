// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QAbstractTableModel>

/// The lines of a song as a table. What is typed into a cell becomes an edit of the document.
class LineTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Times, Kind, Text, ColumnCount };

    explicit LineTableModel(SongDocument &document, QObject *parent = nullptr);

    /// What the kind of a line that is no property is called; that of a property is its key.
    static QString lyricKind() { return tr("Lyric"); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// A cell was given what it can't take; \p why is for people.
    void refused(const QString &why);

private:
    void beginReplace(qsizetype row, qsizetype removed, qsizetype inserted);
    void endReplace(qsizetype row, qsizetype removed, qsizetype inserted);

    SongDocument &m_document;
};
