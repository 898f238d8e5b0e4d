// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongFile.h"

#include <QVSongLrc/QVEditSong.h>

#include <QAbstractTableModel>
#include <QUndoStack>

#include <functional>
#include <set>

/// The song that a window edits: the library's QVEditSong as a table of its lines, with its file and undo stack.
///
/// A line that has got into the song never changes again. An edit works on a draft that shares the song's lines:
/// it puts a changed copy in the place of each line that it changes. What the draft then has in place of which
/// lines is one undo step, so that undoing puts the very lines back that were there before. A step costs what it
/// changes, and the song's text is written anew each time, in some ms for 20,000 lines.
class SongModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Times, Kind, Text, ColumnCount };
    using Rows = std::set<quint64>;

    /// In ms. A tag that has more than two digits for the minutes is none, and would be read as words.
    static constexpr qint64 LatestTime = 100 * 60'000 - 1;

    /// What the kind of a line that is no property is called; that of a property is its key.
    static QString lyricKind() { return tr("Lyric"); }

    SongModel();

    const QVSongLineList &lines() const { return *m_song.aryLines(); }
    QString text() const { return m_song.songText(); }

    /// The value of the first property \p key, such as "ti"; absent when there is none.
    QString property(QStringView key) const;

    QUndoStack &undoStack() { return m_undoStack; }
    bool isModified() const { return !m_undoStack.isClean(); }

    const SongFile &file() const { return m_file; }

    /// Each song that was begun has another number.
    int number() const { return m_number; }

    /// Gives up the song for another, which counts as saved in \p file.
    void begin(const SongFile &file, const QString &text);

    /// Writes the song to \p file, its own from then on. \throws FileError; nothing changes
    void save(SongFile file);

    // Edits. Each is one undo step; one that changes nothing is none. Those that answer false were given what
    // they can't take.
    void insertLine(qsizetype row);
    void deleteLines(const Rows &rows);
    bool moveLines(const Rows &rows, qint64 milliseconds); ///< false when one would pass LatestTime
    bool stamp(qsizetype row, qint64 milliseconds);        ///< sets the first time; false for a property
    bool insertMakerMark();                                ///< false when it is there
    void load(const QString &text);                        ///< in the place of all lines

    // What is typed into a cell becomes an edit.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    void begun();
    void saved();

    /// The song has \p inserted lines from \p row on where it had \p removed others.
    void changed(qsizetype row, qsizetype removed, qsizetype inserted);

    /// A cell was given what it can't take; \p why is for people.
    void refused(const QString &why);

private:
    class Step;

    bool setTimes(qsizetype row, const QString &typed); // "[00:01.00][00:09.50]", "1:02.5" or nothing
    bool setKey(qsizetype row, const QString &typed);   // two letters a to z; nothing makes a lyric line
    bool setText(qsizetype row, QString typed);
    bool edit(const QString &name, const std::function<void(QVEditSong &draft)> &change);
    void splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted);

    QVEditSong m_song;
    SongFile m_file;
    QUndoStack m_undoStack;
    int m_number = 0;
};
