// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QTableView>

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

    /// Makes what is being typed into a cell an edit. Another edit of the line would show the cell anew, and what
    /// was typed would be lost.
    void commitOpenEditor();
};
