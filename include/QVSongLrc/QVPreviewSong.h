// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

#include <memory>

/// A lyric as it plays: a line for every time tag, in order of play time.
///
/// Reads the same text as QVEditSong by the same rules, except that a line with several time tags becomes as
/// many lines, that lines without any tag are left out, and that the n-th property of the text, counted from
/// 0, gets the time n * 1000 + 200 ms. Lines of equal play time keep the order of the text. Use from one
/// thread at a time.
class QVSONGLRC_CORE_EXPORT QVPreviewSong
{
public:
    /// A preview without lines.
    QVPreviewSong();
    QVPreviewSong(const QVPreviewSong &) = delete;
    QVPreviewSong &operator=(const QVPreviewSong &) = delete;
    virtual ~QVPreviewSong();

    /// A text of the host's; the preview neither reads nor writes it.
    QString songText() const { return m_songText; }
    void setSongText(const QString &text);

    /// A second text of the host's; the preview neither reads nor writes it.
    QString tagSongText() const { return m_tagSongText; }
    void setTagSongText(const QString &text);

    /// The lines in play order; null before the first build. The list itself, not a copy.
    std::shared_ptr<QVSongLineList> aryLines() { return m_aryLines; }
    std::shared_ptr<const QVSongLineList> aryLines() const { return m_aryLines; }

    /// Makes \p lines itself, not a copy, the preview's list.
    void setAryLines(std::shared_ptr<QVSongLineList> lines) { m_aryLines = std::move(lines); }

    /// Replaces the lines by those of \p text, in a new list. Their ranges are provisional until
    /// previewSongTextWithHasTag(). No text fails; an absent one counts as empty.
    void buildWithLrcText(const QString &text);

    /// The lines as a text, a line feed after each: with \p hasTag the time and property tags too, else the
    /// bare texts. Sets every line's range to its place in that text, line feed excluded. "" before any
    /// build.
    /// A line of n tags shows its text n times, which is what time and memory are linear in.
    QString previewSongTextWithHasTag(bool hasTag);

private:
    QString m_songText;
    QString m_tagSongText;
    std::shared_ptr<QVSongLineList> m_aryLines;
};
