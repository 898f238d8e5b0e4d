// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineTable.h"

#include <QComboBox>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QStyledItemDelegate>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

// Edits the kind in a combo box of the usual ones, in which other keys can be typed.
class KindDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *const kinds = new QComboBox(parent);
        kinds->setEditable(true);
        kinds->setInsertPolicy(QComboBox::NoInsert);
        kinds->addItems(
            {SongModel::lyricKind(), u"ti"_s, u"ar"_s, u"al"_s, u"au"_s, u"by"_s, u"la"_s, u"re"_s, u"ve"_s});
        kinds->setAccessibleName(LineTable::tr("Kind"));
        return kinds;
    }
};

// Edits texts and times of any length. A QLineEdit cuts at 32,767 characters by default.
class TextDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override
    {
        QWidget *const editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto *const line = qobject_cast<QLineEdit *>(editor))
            line->setMaxLength(std::numeric_limits<int>::max());
        return editor;
    }
};

} // namespace

LineTable::LineTable(SongModel &song)
    : m_song(song)
{
    setModel(&song);
    setItemDelegate(new TextDelegate(this));
    setItemDelegateForColumn(SongModel::Kind, new KindDelegate(this));
    setSelectionBehavior(SelectRows);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setColumnWidth(SongModel::Times, fontMetrics().horizontalAdvance(u"[00:00.00]"_s) * 10 / 3);
    connect(&song, &SongModel::refused, this, &LineTable::message);
}

SongModel::Rows LineTable::selectedRows() const
{
    SongModel::Rows rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.insert(quint64(row));
    }
    return rows;
}

void LineTable::select(qsizetype row)
{
    // With Ctrl or Shift held, as for undo and redo, the table would extend the selection. Using the selection
    // model instead would leave Shift's anchor at the last click.
    setSelectionMode(SingleSelection);
    setCurrentIndex(m_song.index(int(row), SongModel::Text));
    setSelectionMode(ExtendedSelection);
    scrollTo(currentIndex());
}

void LineTable::commitOpenEditor()
{
    if (state() == EditingState)
        setFocus(); // a cell commits when it loses the focus
}

void LineTable::insertLine()
{
    const qsizetype row = currentRow() + 1;
    m_song.insertLine(row);
    select(row);
    edit(currentIndex());
}

void LineTable::deleteLines()
{
    const SongModel::Rows rows = selectedRows();
    if (rows.empty())
        return;
    m_song.deleteLines(rows);
    select(std::min(qsizetype(*rows.begin()), m_song.lines().size() - 1));
    Q_EMIT message(rows.size() == 1 ? tr("Deleted a line") : tr("Deleted %1 lines").arg(rows.size()));
}

void LineTable::moveLines(qint64 milliseconds)
{
    if (!m_song.moveLines(selectedRows(), milliseconds))
        Q_EMIT message(tr("A time tag can't exceed 9999:59.99"));
}

void LineTable::moveLinesByAmount()
{
    if (selectedRows().empty())
        return;
    bool isChosen = false;
    const int milliseconds = QInputDialog::getInt(
        window(), tr("Move Lines"), tr("Move the selected lines by this many milliseconds:"), 0,
        -int(SongModel::LatestTime), int(SongModel::LatestTime), 10, &isChosen);
    if (isChosen)
        moveLines(milliseconds);
}

void LineTable::stamp(qint64 milliseconds)
{
    const qsizetype row = currentRow();
    if (row < 0)
        return;
    if (m_song.stamp(row, milliseconds))
        select(std::min(row + 1, m_song.lines().size() - 1));
    else
        Q_EMIT message(tr("A property has no time"));
}
