// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QLockFile>
#include <QThreadPool>
#include <QTimer>

#include <memory>

/// Keeps a song's unsaved changes in a recovery file, so that they survive if the program is killed.
///
/// The file is written 0.3 s after an edit. It is deleted when the song is saved and when this object is
/// destroyed, that is, when a window closes. A file whose program has ended is abandoned() and can be taken over.
class Recovery : public QObject
{
    Q_OBJECT

public:
    explicit Recovery(SongModel &song);
    ~Recovery() override;

    /// The recovery files whose programs have ended.
    static QStringList abandoned();

    /// The file name of a recovery file's song; empty if the song had none.
    static QString songOf(const QString &recoveryFile);

    /// Loads the song from \p recoveryFile, which becomes this object's file. False if another program uses it or
    /// it can't be read.
    bool takeOver(const QString &recoveryFile);

    /// Deletes a recovery file unless a program uses it.
    static void discard(const QString &recoveryFile);

Q_SIGNALS:
    /// The recovery file is up to date, or \p error is a message that says why not. Also emitted in the thread
    /// that writes.
    void written(const QString &error);

private:
    void write();
    void remove();

    SongModel &m_song;
    QString m_file;
    std::unique_ptr<QLockFile> m_lock; // held while m_file may exist
    QTimer m_timer;
    QThreadPool m_writer; // one thread: a slow disk does not block the user, and writes stay in order
};
