// SPDX-License-Identifier: MIT
#include "LineMenu.h"

#include "Clock.h"
#include "Command.h"
#include "LineTable.h"

#include <QInputDialog>

#include <limits>

LineMenu::LineMenu(SongDocument &document, LineTable &table, const Clock &clock, QWidget *parent)
    : QMenu(tr("&Line"), parent)
    , m_document(document)
    , m_table(table)
    , m_clock(clock)
{
    const auto add = [&](const char *name, const QString &text, const QKeySequence &keys, const QString &tip,
                         auto slot) {
        QAction *const action = addCommand(this, name, text, keys, tip, this, slot);
        action->setEnabled(false);
        connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, action,
                [&table, action] { action->setEnabled(table.selectionModel()->hasSelection()); });
        return action;
    };
    QAction *const insert = addCommand(this, "insertAction", tr("&Insert Line"), Qt::Key_Insert,
                                       tr("Insert a line below this one"), this, &LineMenu::insertLine);
    QAction *const remove = add("deleteAction", tr("&Delete Lines"), Qt::Key_Delete,
                                tr("Delete the selected lines"), &LineMenu::deleteLines);
    addSeparator();
    QAction *const stamp = add("stampAction", tr("&Stamp Time"), Qt::Key_F8,
                               tr("Give the line the clock's time, and go to the next"), &LineMenu::stamp);
    addSeparator();
    add("moveAction", tr("&Move By…"), Qt::CTRL | Qt::Key_M,
        tr("Move the times of the selected lines by an amount"), &LineMenu::moveByAmount);
    add("earlier10Action", tr("10 ms &Earlier"), Qt::ALT | Qt::Key_Left,
        tr("Move the selected lines 10 ms back"), [this] { moveLines(-10); });
    add("later10Action", tr("10 ms L&ater"), Qt::ALT | Qt::Key_Right, tr("Move the selected lines 10 ms on"),
        [this] { moveLines(10); });
    add("earlier100Action", tr("100 ms Ea&rlier"), Qt::ALT | Qt::SHIFT | Qt::Key_Left,
        tr("Move the selected lines 100 ms back"), [this] { moveLines(-100); });
    add("later100Action", tr("100 ms La&ter"), Qt::ALT | Qt::SHIFT | Qt::Key_Right,
        tr("Move the selected lines 100 ms on"), [this] { moveLines(100); });
    m_mainActions = {insert, remove, stamp};
}

void LineMenu::insertLine()
{
    m_table.commitOpenEditor();
    const qsizetype row = m_table.currentRow() + 1;
    m_document.insertLine(row);
    m_table.select(row);
    m_table.editText(row);
}

void LineMenu::deleteLines()
{
    m_table.commitOpenEditor();
    const SongDocument::Rows rows = m_table.selectedRows();
    if (rows.empty())
        return;
    m_document.deleteLines(rows);
    m_table.select(std::min(qsizetype(*rows.begin()), m_document.lines().size() - 1));
    Q_EMIT message(rows.size() == 1 ? tr("Deleted a line") : tr("Deleted %1 lines").arg(rows.size()));
}

void LineMenu::stamp()
{
    m_table.commitOpenEditor();
    const qsizetype row = m_table.currentRow();
    if (row < 0)
        return;
    if (m_document.stamp(row, m_clock.now()))
        m_table.select(std::min(row + 1, m_document.lines().size() - 1));
    else
        Q_EMIT message(tr("A property has no time"));
}

void LineMenu::moveByAmount()
{
    bool isChosen = false;
    const int milliseconds = QInputDialog::getInt(
        parentWidget(), tr("Move Lines"), tr("Move the selected lines by so many milliseconds:"), 0,
        std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 10, &isChosen);
    if (isChosen)
        moveLines(milliseconds);
}

void LineMenu::moveLines(qint64 milliseconds)
{
    m_table.commitOpenEditor();
    if (!m_document.moveLines(m_table.selectedRows(), milliseconds))
        Q_EMIT message(tr("No time tag can say more than 99:59.99"));
}
