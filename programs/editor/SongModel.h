// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "SongFile.h"
#include "programs/common/LineEdits.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVLyricRemark.h>

#include <QAbstractTableModel>
#include <QUndoStack>

#include <functional>
#include <set>

/// The song that a window edits: the library's QVEditSong as a table of its lines, with its file and undo stack.
/// Texts are read by QVLyricImport, so that a song loses nothing however often it is saved and opened.
///
/// Lines in the song are never changed. An edit makes a draft that shares the song's lines, and replaces those
/// that it changes by changed copies. The difference between the song and the draft is one undo step, so undo
/// restores the old line objects. A step keeps only the lines that it replaces. Each step rewrites the song's
/// text, which takes some ms for 20,000 lines.
class SongModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Times, Kind, Text, ColumnCount };
    using Rows = std::set<quint64>;

    static constexpr qint64 LatestTime = LineEdits::LatestTime;

    /// The kind of a line that is not a property. The kind of a property is its key.
    static QString lyricKind() { return tr("Lyric"); }

    SongModel();

    const QVSongLineList &lines() const { return *m_song.aryLines(); }
    QString text() const { return m_song.songText(); }
    QString exactText() const; ///< the text with thousandths of seconds, which text() lacks

    /// The value of the first property with this key, such as "ti"; null if there is none.
    QString property(QStringView key) const;

    QUndoStack &undoStack() { return m_undoStack; }
    bool isModified() const { return !m_undoStack.isClean(); }

    const SongFile &file() const { return m_file; }

    /// Identifies the song: replaceSong() gives each one a new number.
    int number() const { return m_number; }

    /// Replaces the song by \p text, which counts as saved in \p file. Clears the undo stack.
    void replaceSong(const SongFile &file, const QString &text);

    /// Writes the song to \p file, which becomes its file. \throws FileError; the song keeps its old file.
    void save(SongFile file);

    // Edits. Each that changes something is one undo step.
    void insertLine(qsizetype row);
    void deleteLines(const Rows &rows);
    /// Word tags move too. False if a time would exceed LatestTime.
    bool moveLines(const Rows &rows, qint64 milliseconds);
    bool stamp(qsizetype row,
               qint64 milliseconds); ///< sets the first time, in hundredths; false for a property
    bool insertMakerMark();          ///< false if it is there already
    void load(const QString &text);  ///< replaces all lines

    /// An edit; emits refused() and returns false if \p value is not valid in the cell.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// The song was read. \p remarks are those on its text, whose line \p firstLine, from 1, is in the first row.
    void songReplaced(const QList<QVLyricRemark> &remarks, qint64 firstLine);
    void saved();

    /// \p removed lines from \p row on were replaced by \p inserted others.
    void changed(qsizetype row, qsizetype removed, qsizetype inserted);

    /// The user typed something that is not valid in its cell; \p why is a message for them.
    void refused(const QString &why);

private:
    class Step;

    bool setTimes(qsizetype row, const QString &typed); // "[00:01.00][00:09.50]", "1:02.5" or nothing
    bool setKey(qsizetype row, const QString &typed);   // two letters a to z, or nothing for a lyric line
    void setText(qsizetype row, QString typed);
    bool edit(const QString &name, const std::function<void(QVEditSong &draft)> &change);
    void splice(qsizetype row, qsizetype removed, const QVSongLineList &inserted);

    QVEditSong m_song;
    SongFile m_file;
    QUndoStack m_undoStack;
    int m_number = 0;
};
