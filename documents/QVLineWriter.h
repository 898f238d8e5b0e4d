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

    /// Writes the lines' texts without tags. Intended: the range of an absent text has length 0, although
    /// "(null)" is written.
    static QString writeLineTexts(const QVSongLineList &lines);

private:
    static QString placeDisplayTexts(const QVSongLineList &lines, qsizetype &total);

    template <typename WriteLine>
    static QString write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine);
};

} // namespace QVSongLrcPrivate
