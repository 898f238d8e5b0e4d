// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QTableView>

/// The table of a song's lines, and the commands on the selected lines.
class LineTable : public QTableView
{
    Q_OBJECT

public:
    explicit LineTable(SongModel &song);

    /// -1 if there are no lines.
    qsizetype currentRow() const { return currentIndex().row(); }

    /// Makes the line the current one and the only one selected.
    void select(qsizetype row);

    /// Commits the cell that is being edited. Another edit of the line would reset the cell.
    void commitOpenEditor();

    void insertLine();                   ///< below the current one, and opens its text
    void deleteLines();                  ///< the selected ones
    void moveLines(qint64 milliseconds); ///< the selected ones
    void moveLinesByAmount();            ///< asks for the amount
    void stamp(qint64 milliseconds);     ///< sets the current line's first time, and selects the next line

Q_SIGNALS:
    void message(const QString &text);

private:
    SongModel::Rows selectedRows() const;

    SongModel &m_song;
};
