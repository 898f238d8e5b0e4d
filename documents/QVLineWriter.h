// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

namespace QVSongLrcPrivate {

/// Writes the lines of a document into one text, with a line feed after each, and sets every line's range to its
/// place in that text. Null pointers in a host's list are skipped.
class QVLineWriter
{
public:
    QVLineWriter() = delete;

    /// Writes the display texts.
    static QString writeDisplayTexts(const QVSongLineList &lines);

    /// Writes the display texts of lines whose texts are slices of their source, into a text that the caller makes
    /// their source then. Does not set the lines' ranges. \p total is the length of all display texts with their
    /// line feeds.
    static QString gatherDisplayTexts(const QVSongLineList &lines, qsizetype total);

    /// Writes the lines' texts without tags. Intended: the range of an absent text has length 0, although
    /// "(null)" is written.
    static QString writeLineTexts(const QVSongLineList &lines);

private:
    static QString placeDisplayTexts(const QVSongLineList &lines, qsizetype &total);

    template <typename WriteLine>
    static QString write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine);
};

} // namespace QVSongLrcPrivate
