// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

#include <memory>

/// A lyric as it plays: one line for each time tag, in order of play time.
///
/// QVPreviewSong reads LRC text by the rules of QVEditSong::buildWithLrcText(), with these differences: a
/// line with several time tags becomes one line for each tag; lines without a tag are left out; the n-th
/// property line, counted from 0, gets the time n * 1000 + 200 ms. Lines with equal play times stay in the
/// order of the text. The list and the lines are shared with everyone who holds a pointer to them. Previews
/// cannot be copied. Use a preview and its lines from one thread at a time.
class QVSONGLRC_CORE_EXPORT QVPreviewSong
{
public:
    /// A preview without a list of lines. Its texts are absent.
    QVPreviewSong();
    virtual ~QVPreviewSong();

    /// Replaces the lines by those of \p text, in a new list. The lines' ranges are provisional until
    /// previewSongTextWithHasTag() sets them. Every text can be read; an absent one counts as empty.
    void buildWithLrcText(const QString &text);

    /// Writes the lines into a text, with a line feed after each: with time and property tags if \p hasTag,
    /// else only the lines' texts. Sets every line's range to its place in the returned text, line feed
    /// excluded. The result is "" if there is no list of lines. Time and memory are linear in the result,
    /// which repeats a line's text for each of its time tags.
    QString previewSongTextWithHasTag(bool hasTag);

    /// The index of the line to show at \p milliseconds of play time: the first of the lyric lines with the greatest
    /// time that is not later; -1 before the first one. It refers to the list as buildWithLrcText() made it,
    /// whatever became of the list since. Takes logarithmic time.
    qsizetype lineIndexAt(qint64 milliseconds) const;

    /// The list of lines in play order; null before the first build. It is the list itself, not a copy.
    std::shared_ptr<QVSongLineList> aryLines();
    std::shared_ptr<const QVSongLineList> aryLines() const;

    /// Uses \p lines itself, not a copy, as the list of lines. The pointer may be null.
    void setAryLines(std::shared_ptr<QVSongLineList> lines);

    /// A text for the host's own use; the preview neither reads nor changes it.
    QString songText() const;
    void setSongText(const QString &text);

    /// Another text for the host's own use; the preview neither reads nor changes it.
    QString tagSongText() const;
    void setTagSongText(const QString &text);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
