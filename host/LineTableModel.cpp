// SPDX-License-Identifier: MIT
#include "LineTableModel.h"

#include <QVSongLrc/QVUtils.h>

LineTableModel::LineTableModel(SongDocument &document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
{
    connect(&document, &SongDocument::aboutToSplice, this, &LineTableModel::beginSplice);
    connect(&document, &SongDocument::spliced, this, &LineTableModel::endSplice);
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
    const QVSongLine &line = *m_document.lines()[index.row()];
    const bool isShown = role == Qt::DisplayRole;
    if (!isShown && role != Qt::EditRole)
        return {};
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
        if (line.isProperty())
            return isShown ? tr("Property %1").arg(line.propertyStr()) : line.propertyStr();
        return isShown ? (line.aryTimes()->isEmpty() ? tr("No time") : tr("Lyric")) : QString();
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
    switch (index.column()) {
    case Times:
        if (!m_document.setTimes(index.row(), typed)) {
            Q_EMIT refused(tr("“%1” is no time: write [mm:ss.xx], several in a row").arg(typed));
            return false;
        }
        break;
    case Kind:
        if (!m_document.setKey(index.row(), typed)) {
            Q_EMIT refused(tr("“%1” is no property: write two letters a to z").arg(typed));
            return false;
        }
        break;
    default:
        m_document.setText(index.row(), typed);
    }
    return true;
}

Qt::ItemFlags LineTableModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    if (!index.isValid())
        return flags;
    const bool hasNoTimes = index.column() == Times && m_document.lines()[index.row()]->isProperty();
    return hasNoTimes ? flags : flags | Qt::ItemIsEditable;
}

void LineTableModel::beginSplice(qsizetype row, qsizetype removed, qsizetype inserted)
{
    if (removed > inserted)
        beginRemoveRows({}, int(row + inserted), int(row + removed - 1));
    else if (inserted > removed)
        beginInsertRows({}, int(row + removed), int(row + inserted - 1));
}

void LineTableModel::endSplice(qsizetype row, qsizetype removed, qsizetype inserted)
{
    if (removed > inserted)
        endRemoveRows();
    else if (inserted > removed)
        endInsertRows();
    if (const qsizetype changed = std::min(removed, inserted); changed > 0)
        Q_EMIT dataChanged(index(int(row), 0), index(int(row + changed - 1), ColumnCount - 1));
}
