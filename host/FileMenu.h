// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QMenu>

/// Opening and saving, with all that is asked of the user on the way so that no lyric is lost.
class FileMenu : public QMenu
{
    Q_OBJECT

public:
    FileMenu(SongDocument &document, QWidget *parent);

    /// Opens \p file, unless the user wants to keep the song that is open.
    void open(const QString &file);

    /// Whether the song may be given up: it is saved, or the user has said so.
    bool mayGiveUp();

    /// Where the user finds the song again that lay in the folder last.
    void newSong();
    void chooseFile();
    bool save();
    bool saveAs();

    /// Tells of a file that was changed by somebody else and offers to read it again; once for each change.
    void checkDisk();

Q_SIGNALS:
    /// What is typed into a cell must become an edit before the song is looked at.
    void aboutToLook();
    void message(const QString &text);

private:
    bool write(const QString &name);
    void read(const QString &name);
    void showRecent();
    void remember(const QString &name);
    QString startFolder() const;

    SongDocument &m_document;
    QMenu *m_recent;
    bool m_isAsking = false;
    bool m_knowsOfChange = false;
};
