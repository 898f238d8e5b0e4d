// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QMessageBox>

/// The commands that open and save files. They ask the user first where a song or file could be lost.
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

    /// Opens \p file if confirmDiscard() agrees. Does nothing while a question is open.
    void openFile(const QString &file);

    /// Whether the song may be closed or replaced. Offers to save unsaved changes first.
    bool confirmDiscard();

    /// Whether a question about the song is open. The song must not change until it is answered.
    bool isAsking() const { return m_isAsking; }

    /// Offers to reload the file if another program has changed it. Asks once for each opened or saved file.
    void checkDisk();

    /// The files opened or saved last, newest first.
    static QStringList recentFiles();

Q_SIGNALS:
    /// Emitted before the song is checked or saved. An open cell must be committed now.
    void aboutToUseSong();
    void recentFilesChanged();
    void message(const QString &text);

private:
    bool write(const QString &name);
    void read(const QString &name);
    QMessageBox::StandardButton ask(const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton defaultButton);
    void remember(const QString &name);
    QString startFolder() const;

    SongModel &m_song;
    QWidget *m_window;
    bool m_isAsking = false;
    bool m_isChangeKnown = false; // the user was asked about the change on disk
};
