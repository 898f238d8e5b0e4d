// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Recovery.h"
#include "SongModel.h"

#include <QMainWindow>

class ClockBar;
class FileCommands;
class LineTable;
class LyricView;
class PreviewPane;
class QSplitter;
class RemarkBar;

/// A window that edits a song: its lines as a table, its text, its preview, and a clock.
class EditorWindow : public QMainWindow
{
    Q_OBJECT

public:
    EditorWindow();
    ~EditorWindow() override;

    /// Opens \p file, like the Open command.
    void open(const QString &file);

    /// Opens the song in a recovery file; false if Recovery::takeOver() fails.
    bool recover(const QString &recoveryFile);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void addPanes();
    void addCommands(); // in EditorCommands.cpp
    void connectPanes();
    void searchOnline();

    void showSong(qsizetype row, qsizetype removed, qsizetype inserted);
    void showCurrentLine();
    void showTitle();
    void showMessage(const QString &text);

    SongModel m_song;
    Recovery m_recovery{m_song};
    FileCommands *m_files;
    ClockBar *m_clock;
    RemarkBar *m_remarks;
    LineTable *m_table;
    LyricView *m_text;
    PreviewPane *m_preview;
    QSplitter *m_panes;
};
