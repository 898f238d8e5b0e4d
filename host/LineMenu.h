// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QMenu>

class Clock;
class LineTable;

/// The commands on lines: those that are selected in the table, or the current one.
class LineMenu : public QMenu
{
    Q_OBJECT

public:
    LineMenu(SongDocument &document, LineTable &table, const Clock &clock, QWidget *parent);

    /// Those for a tool bar.
    QList<QAction *> mainActions() const { return m_mainActions; }

Q_SIGNALS:
    void message(const QString &text);

private:
    void insertLine();
    void deleteLines();
    void stamp();
    void moveByAmount();
    void moveLines(qint64 milliseconds);

    SongDocument &m_document;
    LineTable &m_table;
    const Clock &m_clock;
    QList<QAction *> m_mainActions;
};
