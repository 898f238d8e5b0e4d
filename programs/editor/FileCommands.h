// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QMessageBox>

/// Opening and saving, with all that is asked of the user on the way so that no lyric is lost.
class FileCommands : public QObject
{
    Q_OBJECT

public:
    /// Shows its dialogs over \p window.
    FileCommands(SongModel &song, QWidget *window);

    void newSong();
    void open(); ///< the file that the user chooses
    bool save();
    bool saveAs();

    /// Opens \p file, unless the user wants to keep the song that is open or is being asked about it.
    void openFile(const QString &file);

    /// Whether the song may be given up: it is saved, or the user has said so.
    bool mayGiveUp();

    /// Whether the user is being asked about the song, which must not change under the question.
    bool isAsking() const { return m_isAsking; }

    /// Tells of a file that somebody else has changed, unless the user knows, and offers to read it again.
    void checkDisk();

    /// The files that were opened or saved last, the last one first.
    static QStringList recentFiles();

Q_SIGNALS:
    /// What is typed into a cell must become an edit before the song is looked at.
    void aboutToLook();
    void recentFilesChanged();
    void message(const QString &text);

private:
    bool write(const QString &name);
    void read(const QString &name);
    QMessageBox::StandardButton ask(const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton normal);
    void remember(const QString &name);
    QString startFolder() const;

    SongModel &m_song;
    QWidget *m_window;
    bool m_isAsking = false;
    bool m_knowsOfChange = false;
};
