// SPDX-License-Identifier: MIT
#include "LineTableModel.h"

#include <QVSongLrc/QVUtils.h>

LineTableModel::LineTableModel(SongDocument &document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
{
    connect(&document, &SongDocument::aboutToReplace, this, &LineTableModel::beginReplace);
    connect(&document, &SongDocument::replaced, this, &LineTableModel::endReplace);
}

int LineTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_document.lines().size());
}

int LineTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LineTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::DisplayRole && orientation == Qt::Vertical)
        return section + 1;
    if (orientation == Qt::Vertical || section >= ColumnCount)
        return {};
    const QString titles[] = {tr("Times"), tr("Kind"), tr("Text")};
    const QString tips[] = {tr("When the line is sung: time tags such as [01:02.50], or 1:02.5"),
                            tr("A lyric line, or a property: two letters, such as “ti” for the title"),
                            tr("What is sung, or the property's value")};
    if (role == Qt::DisplayRole)
        return titles[section];
    return role == Qt::ToolTipRole ? tips[section] : QVariant();
}

QVariant LineTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const QVSongLine &line = *m_document.lines()[index.row()];
    switch (index.column()) {
    case Times: {
        QString tags;
        if (!line.isProperty()) {
            for (const qint64 time : *line.aryTimes())
                tags += QVUtils::getTimeIntervalPeerStr(time);
        }
        return tags;
    }
    case Kind:
        if (role == Qt::EditRole)
            return line.isProperty() ? line.propertyStr() : lyricKind();
        if (line.isProperty())
            return tr("Property %1").arg(line.propertyStr());
        return line.aryTimes()->isEmpty() ? tr("No time") : lyricKind();
    default:
        return line.lineText();
    }
}

bool LineTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const QString typed = value.toString();
    if (typed == data(index, Qt::EditRole).toString())
        return true;
    bool isTaken = true;
    switch (index.column()) {
    case Times:
        isTaken = m_document.setTimes(index.row(), typed);
        if (!isTaken)
            Q_EMIT refused(tr("“%1” is no time: write [mm:ss.xx], several in a row").arg(typed));
        break;
    case Kind:
        isTaken = m_document.setKey(index.row(), typed == lyricKind() ? QString() : typed.trimmed());
        if (!isTaken)
            Q_EMIT refused(tr("“%1” is no property: write two letters a to z").arg(typed));
        break;
    default:
        m_document.setText(index.row(), typed);
    }
    return isTaken;
}

Qt::ItemFlags LineTableModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || (index.column() == Times && m_document.lines()[index.row()]->isProperty()))
        return flags; // a property has no times
    return flags | Qt::ItemIsEditable;
}

void LineTableModel::beginReplace(qsizetype row, qsizetype removed, qsizetype inserted)
{
    if (inserted == 0)
        beginRemoveRows({}, int(row), int(row + removed - 1));
    else if (removed == 0)
        beginInsertRows({}, int(row), int(row + inserted - 1));
}

void LineTableModel::endReplace(qsizetype row, qsizetype removed, qsizetype inserted)
{
    if (inserted == 0)
        endRemoveRows();
    else if (removed == 0)
        endInsertRows();
    else
        Q_EMIT dataChanged(index(int(row), 0), index(int(row + inserted - 1), ColumnCount - 1));
}
