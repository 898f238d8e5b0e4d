// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongModel.h"

#include <QLockFile>
#include <QThreadPool>
#include <QTimer>

#include <memory>

/// Keeps what was not saved of a song in a recovery file, so that a program that is killed loses nothing.
///
/// The file is written shortly after each edit, and goes when the song is saved or this object is destroyed,
/// which a window does when its user has decided what becomes of the song. A file that outlives its program
/// is left(), and can be taken over.
class Recovery : public QObject
{
    Q_OBJECT

public:
    explicit Recovery(SongModel &song);
    ~Recovery() override;

    /// The recovery files whose programs have ended.
    static QStringList left();

    /// The name of the song's file that a recovery file belongs to; empty when it had none.
    static QString songOf(const QString &recoveryFile);

    /// Gives this object's song the content of \p recoveryFile, which becomes its own. False when another program
    /// has it, or it can't be read.
    bool takeOver(const QString &recoveryFile);

    /// Deletes a recovery file that nobody wants, and that no program has.
    static void discard(const QString &recoveryFile);

Q_SIGNALS:
    /// The last edits are in the recovery file, or need none, or \p why says to people why they are in none.
    /// Emitted in the thread that writes, too.
    void written(const QString &why);

private:
    void write();
    void remove();

    SongModel &m_song;
    QString m_file;
    std::unique_ptr<QLockFile> m_lock; // held for as long as there may be a file of ours
    QTimer m_timer;
    QThreadPool m_writer; // of one thread: a slow disk holds no key up, and the last text is written last
};
