// SPDX-License-Identifier: MIT
#pragma once

#include "SongFile.h"

#include <QVSongLrc/QVEditSong.h>

#include <QObject>
#include <QUndoStack>

#include <functional>
#include <set>

/// The song that a window edits: the library's QVEditSong, its file, and its undo stack.
///
/// A line that has got into the document never changes again. An edit works on a draft that shares the
/// document's lines: it puts a changed copy in the place of each line that it changes. What the draft then has in
/// place of which lines is one undo step, so that undoing puts the very lines back that were there before. A
/// step costs what it changes, and the song's text is written anew each time, in some ms for 20,000 lines.
class SongDocument : public QObject
{
    Q_OBJECT

public:
    using Rows = std::set<quint64>;

    /// In ms. A tag that has more than two digits for the minutes is none, and would be read as words.
    static constexpr qint64 LatestTime = 100 * 60'000 - 1;

    explicit SongDocument(QObject *parent = nullptr);

    const QVSongLineList &lines() const { return *m_song.aryLines(); }
    QString text() const { return m_song.songText(); }

    /// The value of the first property \p key, such as "ti"; absent when there is none.
    QString property(QStringView key) const;

    QUndoStack &undoStack() { return m_undoStack; }
    bool isModified() const { return !m_undoStack.isClean(); }

    const SongFile &file() const { return m_file; }

    /// Each song that was opened or begun has another number.
    int number() const { return m_number; }

    void clear();

    /// Gives up the song for the one in a file. \return whether the song's text is the file's, which may
    /// hold blank lines and words in front of tags that a song does not. \throws FileError; nothing changes
    bool open(const QString &name);

    /// Writes the song to \p file, its own from then on, and counts as unmodified. \throws FileError; nothing
    /// changes
    void save(SongFile file);

    /// Takes a song up that was not saved; it counts as modified.
    void restore(const SongFile &file, const QString &text);

    // Edits. Each is one undo step; one that changes nothing is none. Those that answer false were given what
    // they can't take.
    bool setTimes(qsizetype row, const QString &typed); ///< "[00:01.00][00:09.50]", "1:02.5" or nothing
    bool setKey(qsizetype row, const QString &key);     ///< two letters a to z; nothing makes a lyric line
    void setText(qsizetype row, const QString &text);
    void insertLine(qsizetype row);
    void deleteLines(const Rows &rows);
    bool moveLines(const Rows &rows, qint64 milliseconds); ///< repeated on the same lines it stays one step
    bool stamp(qsizetype row, qint64 milliseconds);        ///< sets the first time; false for a property
    bool insertMakerMark();                                ///< false when it is there
    void load(const QString &text);                        ///< in the place of all lines

Q_SIGNALS:
    /// Lines from \p row on make room for others: for as many, or one of the counts is 0. The song's text and
    /// the lines' ranges come later, with changed().
    void aboutToReplace(qsizetype row, qsizetype removed, qsizetype inserted);
    void replaced(qsizetype row, qsizetype removed, qsizetype inserted);

    /// The song has \p inserted lines from \p row on where it had \p removed others.
    void changed(qsizetype row, qsizetype removed, qsizetype inserted);

    void fileChanged();

    /// Another song, with its file and its lines.
    void begun();

private:
    class Step;
    enum StepKind { Plain = -1, Move = 1 }; // as QUndoCommand::id()

    bool edit(const QString &name, const std::function<void(QVEditSong &draft)> &change,
              StepKind kind = Plain);
    void splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted);
    void replace(qsizetype row, qsizetype removed, const QVSongLineList &inserted);
    void begin(const SongFile &file, const QString &text);

    QVEditSong m_song;
    SongFile m_file;
    QUndoStack m_undoStack;
    int m_number = 0;
};
