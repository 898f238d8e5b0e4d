// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

namespace QVSongLrcPrivate {

/// Writes the lines of a document as one text, a line feed after each, and sets every line's range to its
/// place there, but for gatherTexts(). The text is measured first and then written once. Absent lines in a
/// list of the host's write nothing.
class QVLineWriter
{
public:
    QVLineWriter() = delete;

    /// The display texts. Lines that slice an older text slice the new one from now on.
    static QString writeSongText(const QVSongLineList &lines);

    /// Writes the display texts for the lines to slice and for nothing else: their ranges stay. Does nothing
    /// when the texts take more than \p most code units.
    static void gatherTexts(const QVSongLineList &lines, qsizetype most);

    /// The display texts; the lines keep the text that they slice.
    static QString writeDisplayTexts(const QVSongLineList &lines);

    /// The bare texts. An absent text has length 0 although "(null)" is written for it.
    static QString writeLineTexts(const QVSongLineList &lines);

private:
    static qsizetype displayLength(const QVSongLineList &lines);
    static char16_t *writeAndSlice(QVSongLine &line, char16_t *at, const QString &text);

    template <typename WriteLine>
    static QString write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine);
};

} // namespace QVSongLrcPrivate
