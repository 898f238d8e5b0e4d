// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

#include <memory>
#include <set>

/// A lyric that is edited: the lines read from LRC text, in the order of the text, and the text written back
/// from them.
///
/// Operations that change lines leave songText() and the lines' ranges as they are; updateSongText() brings
/// them up to date. The document owns its list and the list its lines, all shared with whoever holds a
/// reference. Reading, writing and comparing take time linear in the text. Use from one thread at a time.
class QVSONGLRC_CORE_EXPORT QVEditSong
{
public:
    /// A document without lines and with absent texts.
    QVEditSong();
    QVEditSong(const QVEditSong &) = delete;
    QVEditSong &operator=(const QVEditSong &) = delete;
    virtual ~QVEditSong();

    /// The document as LRC text, as of the last build or updateSongText(); absent before the first.
    QString songText() const { return m_songText; }
    void setSongText(const QString &text);

    /// A text of the host's; the document neither reads nor writes it.
    QString tagSongText() const { return m_tagSongText; }
    void setTagSongText(const QString &text);

    /// The lines; never null. The list itself, not a copy: a change to it changes the document.
    std::shared_ptr<QVSongLineList> aryLines() { return m_aryLines; }
    std::shared_ptr<const QVSongLineList> aryLines() const { return m_aryLines; }

    /// Makes \p lines itself, not a copy, the document's list. An absent list counts as a new empty one.
    void setAryLines(std::shared_ptr<QVSongLineList> lines);

    /// Replaces the document by the lines read from \p text, in a new list, and calls updateSongText(). A
    /// list or line obtained earlier stays as it is.
    ///
    /// Lines end at line feeds; empty ones are left out. A line that holds a property tag becomes a property
    /// line, a line that holds time tags a line with these times and the text after the last of them, any
    /// other line a line with its text alone. A property tag with an empty value makes two lines: the
    /// property, and the whole line once more as if it held none. No text fails; an absent one counts as empty.
    void buildWithLrcText(const QString &text);

    /// Inserts \p line at \p atIndex, from 0 to the number of lines, which appends. Any other index,
    /// negative ones included, means the place in front of the last line.
    ///
    /// \throws std::invalid_argument when \p line is absent; nothing changes.
    void insertLine(std::shared_ptr<QVSongLine> line, qint64 atIndex);

    /// Removes the line at \p index; does nothing when there is none.
    void deleteLineAtIndex(qint64 index);

    /// Removes the lines at all of \p indexes in one pass.
    ///
    /// \throws std::out_of_range when one of them is not below the number of lines; nothing changes.
    void deleteLineAtIndexs(const std::set<quint64> &indexes);

    /// Whether \p other has as many lines, each equal to this document's line in its place. An absent
    /// document equals nothing.
    bool isEqual(const QVEditSong *other) const;
    bool isEqual(const std::shared_ptr<const QVEditSong> &other) const { return isEqual(other.get()); }

    /// Writes every line's display text and a line feed into songText(), and sets every line's range to its
    /// place there, line feed excluded.
    void updateSongText();

    /// Adds the maker mark, two timed lines that name the editor and its maker's web address, unless the
    /// texts of the lines mention both already. Calls updateSongText() when it adds the mark.
    ///
    /// The mark goes after an early line that a pause follows: of the first eleven lines that have a next one,
    /// the last whose first time is further from the next line's than the line before was from it (a line
    /// without times counts as 0 ms). Its lines are 300 and 700 ms behind that line. Where there is none, the
    /// mark goes to the top, at 300 and 700 ms.
    ///
    /// The name line's text is the translation of "Maker Tool: Quendle" in the context "QVEditSong" by the
    /// translators of the application, the English text where there is none.
    ///
    /// \return whether the mark was added.
    bool insertCopyrightMark();

private:
    QString m_songText;
    QString m_tagSongText;
    std::shared_ptr<QVSongLineList> m_aryLines;
};
