// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

#include <memory>
#include <set>

/// A lyric to edit: the lines of an LRC text, in the order of the text, and the text written from them.
///
/// Changes to lines and to their list leave songText() and the lines' ranges as they are; updateSongText()
/// brings them up to date. The list and the lines are shared with everyone who holds a pointer to them, and
/// live at least as long as anyone does. Reading, writing and comparing take time linear in the text. Documents
/// cannot be copied. Use a document and its lines from one thread at a time.
class QVSONGLRC_CORE_EXPORT QVEditSong
{
public:
    /// A document without lines. Its texts are absent.
    QVEditSong();
    virtual ~QVEditSong();

    /// Replaces the lines by those of \p text, in a new list, and calls updateSongText(). Lists and lines
    /// obtained earlier do not change. Every text can be read; an absent one counts as empty.
    ///
    /// A line ends at a line feed, and empty lines are left out. A line that contains a property tag becomes
    /// a property line. A line that contains time tags becomes a lyric line with their times and the text
    /// after the last tag. Any other line becomes a lyric line without times. If the value of a property tag
    /// is empty, the line is read twice: as the property, and again as if it had no property tag.
    void buildWithLrcText(const QString &text);

    /// The document as LRC text, as of the last buildWithLrcText() or updateSongText(); absent before.
    QString songText() const;
    void setSongText(const QString &text);

    /// Writes every line and a line feed into songText(), and sets every line's range to its place there,
    /// line feed excluded.
    void updateSongText();

    /// The list of lines; never null. It is the list itself, not a copy: changing it changes the document.
    std::shared_ptr<QVSongLineList> aryLines();
    std::shared_ptr<const QVSongLineList> aryLines() const;

    /// Uses \p lines itself, not a copy, as the list of lines. A null pointer stands for a new empty list.
    void setAryLines(std::shared_ptr<QVSongLineList> lines);

    /// Inserts \p line before the line at \p atIndex, or appends it if \p atIndex is the number of lines. Any
    /// other index, negative ones included, means before the last line.
    ///
    /// \throws std::invalid_argument if \p line is null; nothing changes.
    void insertLine(std::shared_ptr<QVSongLine> line, qint64 atIndex);

    /// Removes the line at \p index; does nothing if there is none.
    void deleteLineAtIndex(qint64 index);

    /// Removes the lines at all \p indexes in one pass.
    ///
    /// \throws std::out_of_range if an index is not below the number of lines; nothing changes.
    void deleteLineAtIndexs(const std::set<quint64> &indexes);

    /// Adds the maker mark: two lyric lines, one with the editor's name and one with its maker's web address.
    /// Does nothing if the texts of the lines already contain both. Calls updateSongText() after adding the
    /// mark.
    ///
    /// The mark goes after a line that is followed by a pause. The gap after a line is the first time of the next
    /// line minus its own first time; a line without times counts as 0 ms. Of the first eleven lines that have
    /// a next line, the mark goes after the last one whose gap is longer than the previous line's (for the
    /// first line, longer than 0), and its times are that line's first time plus 300 and 700 ms. If there is
    /// no such line, the mark goes to the top, at 300 and 700 ms.
    ///
    /// The name is the application's translation of "Maker Tool: Quendle" in the context "QVEditSong", in
    /// English if there is none.
    ///
    /// \return whether the mark was added.
    bool insertCopyrightMark();

    /// Whether both documents have the same number of lines and each line equals the other document's line at
    /// the same index (see QVSongLine::isEqual()). A null pointer, or a null line, equals nothing.
    bool isEqual(const QVEditSong *other) const;
    bool isEqual(const std::shared_ptr<const QVEditSong> &other) const { return isEqual(other.get()); }

    /// A text for the host's own use; the document neither reads nor changes it.
    QString tagSongText() const;
    void setTagSongText(const QString &text);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
