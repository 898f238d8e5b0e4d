// SPDX-License-Identifier: MIT
#include "LineTable.h"

#include "LineTableModel.h"

#include <QComboBox>
#include <QHeaderView>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

// Edits the kind in a list of the usual ones, which takes other keys too.
class KindDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *const kinds = new QComboBox(parent);
        kinds->setEditable(true);
        kinds->setInsertPolicy(QComboBox::NoInsert);
        kinds->addItem(LineTableModel::lyricKind());
        kinds->addItems({u"ti"_s, u"ar"_s, u"al"_s, u"au"_s, u"by"_s, u"la"_s, u"re"_s, u"ve"_s});
        kinds->setAccessibleName(LineTable::tr("Kind"));
        return kinds;
    }
};

} // namespace

LineTable::LineTable(LineTableModel &model, QWidget *parent)
    : QTableView(parent)
{
    setModel(&model);
    setItemDelegateForColumn(LineTableModel::Kind, new KindDelegate(this));
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
    if (state() == EditingState)
        setFocus(); // which the cell then loses
}
