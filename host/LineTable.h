// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QTableView>

class LineDelegate;
class LineTableModel;

/// The table of a song's lines, of which whole lines are selected.
class LineTable : public QTableView
{
    Q_OBJECT

public:
    explicit LineTable(LineTableModel &model, QWidget *parent = nullptr);

    /// -1 where there are no lines.
    qsizetype currentRow() const { return currentIndex().row(); }
    SongDocument::Rows selectedRows() const;

    /// Makes the line the current one, and the only one selected.
    void select(qsizetype row);
    void editText(qsizetype row);

    /// Makes what is being typed into a cell an edit, as leaving the cell would. An edit of the same line would
    /// show the cell anew, and what was typed would be lost.
    void commitOpenEditor();

Q_SIGNALS:
    void linesSelected(bool areAny);

private:
    LineDelegate *m_delegate;
};
