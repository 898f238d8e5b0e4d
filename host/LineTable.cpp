// SPDX-License-Identifier: MIT
#include "LineTable.h"

#include "LineDelegate.h"
#include "LineTableModel.h"

#include <QHeaderView>

using namespace Qt::StringLiterals;

LineTable::LineTable(LineTableModel &model, QWidget *parent)
    : QTableView(parent)
    , m_delegate(new LineDelegate(this))
{
    setModel(&model);
    setItemDelegate(m_delegate);
    setSelectionBehavior(SelectRows);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    const QFontMetrics metrics = fontMetrics();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(metrics.height() * 3 / 2);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setColumnWidth(LineTableModel::Times, metrics.horizontalAdvance(u"[00:00.00]"_s) * 10 / 3);
    setColumnWidth(LineTableModel::Kind, metrics.horizontalAdvance(u"Property ti"_s) * 3 / 2);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { Q_EMIT linesSelected(selectionModel()->hasSelection()); });
}

SongDocument::Rows LineTable::selectedRows() const
{
    SongDocument::Rows rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.insert(quint64(row));
    }
    return rows;
}

void LineTable::select(qsizetype row)
{
    const QModelIndex index = model()->index(int(row), LineTableModel::Text);
    setCurrentIndex(index);
    scrollTo(index);
}

void LineTable::editText(qsizetype row)
{
    edit(model()->index(int(row), LineTableModel::Text));
}

void LineTable::commitOpenEditor()
{
    m_delegate->commitOpenEditor();
}
