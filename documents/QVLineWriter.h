// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

namespace QVSongLrcPrivate {

/// Writes the lines of a document into one text, with a line feed after each. Each function but gatherTexts()
/// sets every line's range to its place in that text. Null pointers in a host's list are skipped.
class QVLineWriter
{
public:
    QVLineWriter() = delete;

    /// Writes the display texts. Line texts that are slices become slices of the result.
    static QString writeSongText(const QVSongLineList &lines);

    /// Writes the display texts into a new text, and makes line texts that are slices slices of it. Does nothing
    /// if the new text would be longer than \p maxLength.
    static void gatherTexts(const QVSongLineList &lines, qsizetype maxLength);

    /// Writes the display texts. The lines' slices stay as they are.
    static QString writeDisplayTexts(const QVSongLineList &lines);

    /// Writes the lines' texts without tags. Intended: the range of an absent text has length 0, although
    /// "(null)" is written.
    static QString writeLineTexts(const QVSongLineList &lines);

private:
    static qsizetype displayLength(const QVSongLineList &lines);
    static char16_t *writeAndSlice(QVSongLine &line, char16_t *at, const QString &text);

    template <typename WriteLine>
    static QString write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine);
};

} // namespace QVSongLrcPrivate
