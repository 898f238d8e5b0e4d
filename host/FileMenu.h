// SPDX-License-Identifier: MIT
#pragma once

#include "SongDocument.h"

#include <QMenu>
#include <QMessageBox>

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

    /// Whether the user is being asked about the song, which must not change under the question.
    bool isAsking() const { return m_isAsking; }

    /// Tells of a file that somebody else has changed, unless the user knows, and offers to read it again.
    void checkDisk();

    /// Those for a tool bar.
    QList<QAction *> mainActions() const { return m_mainActions; }

Q_SIGNALS:
    /// What is typed into a cell must become an edit before the song is looked at.
    void aboutToLook();
    void message(const QString &text);

private:
    void newSong();
    void chooseFile();
    bool save();
    bool saveAs();
    bool write(const QString &name);
    void read(const QString &name);
    QMessageBox::StandardButton ask(const QString &title, const QString &text,
                                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton normal);
    void showRecent();
    void remember(const QString &name);
    QString startFolder() const;

    SongDocument &m_document;
    QMenu *m_recent;
    QList<QAction *> m_mainActions;
    bool m_isAsking = false;
    bool m_knowsOfChange = false;
};
