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

/// A window with a song in it: the table of its lines, its text, its preview, and the clock to time it by.
class EditorWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit EditorWindow(QWidget *parent = nullptr);
    ~EditorWindow() override;

    /// Opens \p file as the user would.
    void open(const QString &file);

    /// Takes a song up from a recovery file; false when it can't be had.
    bool recover(const QString &recoveryFile);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void addPanes();
    void addCommands();
    void connectPanes();
    void searchOnline();

    void showSong(qsizetype row, qsizetype removed, qsizetype inserted);
    void showCurrentLine();
    void showTitle();
    void say(const QString &text);

    SongModel m_song;
    Recovery m_recovery{m_song};
    FileCommands *m_files;
    ClockBar *m_clock;
    LineTable *m_table;
    LyricView *m_text;
    PreviewPane *m_preview;
    QSplitter *m_panes;
};
