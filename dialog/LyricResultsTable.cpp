// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricResultsTable.h"

#include "LyricCellDelegate.h"

#include <QHeaderView>
#include <QMouseEvent>

namespace QVSongLrcPrivate {

namespace {

constexpr int FirstColumn = 0;
constexpr double FirstColumnShare = 0.6; // until the user drags the header

} // namespace

LyricResultsTable::LyricResultsTable(QWidget *parent)
    : QTableView(parent)
{
    setItemDelegate(new LyricCellDelegate(this));
    verticalHeader()->setDefaultSectionSize(verticalHeader()->minimumSectionSize());
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void LyricResultsTable::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    clearSortIndicator();
    setSortingEnabled(true);
    connect(model, &QAbstractItemModel::modelReset, this, &LyricResultsTable::clearSortIndicator);
}

qint64 LyricResultsTable::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void LyricResultsTable::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) // QTableView accepts any button
        QTableView::mouseDoubleClickEvent(event);
}

void LyricResultsTable::resizeEvent(QResizeEvent *event)
{
    const double share =
        m_fittedWidth > 0 ? double(columnWidth(FirstColumn)) / m_fittedWidth : FirstColumnShare;
    m_fittedWidth = viewport()->width();
    setColumnWidth(FirstColumn, qRound(share * m_fittedWidth)); // the last column takes the rest
    QTableView::resizeEvent(event);
}

/// New results are in the service's order.
void LyricResultsTable::clearSortIndicator()
{
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

} // namespace QVSongLrcPrivate
