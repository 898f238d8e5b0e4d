// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QTableView>

/// The table of a song's lines, of which whole lines are selected, and the commands on those.
class LineTable : public QTableView
{
    Q_OBJECT

public:
    explicit LineTable(SongModel &song, QWidget *parent = nullptr);

    /// -1 where there are no lines.
    qsizetype currentRow() const { return currentIndex().row(); }

    /// Makes the line the current one, and the only one selected.
    void select(qsizetype row);

    /// Makes what is being typed into a cell an edit. Another edit of the line would show the cell anew, and what
    /// was typed would be lost.
    void commitOpenEditor();

    void insertLine();                   ///< below the current one, and opens it
    void deleteLines();                  ///< all that are selected
    void moveLines(qint64 milliseconds); ///< all that are selected
    void moveLinesByAmount();            ///< that the user is asked for
    void stamp(qint64 milliseconds);     ///< the current line, and goes to the next

Q_SIGNALS:
    void message(const QString &text);

private:
    SongModel::Rows selectedRows() const;

    SongModel &m_song;
};
