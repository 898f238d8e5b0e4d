// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

#include <vector>

namespace QVSongLrcPrivate {

/// A document's line, as a part of the text that the document keeps.
struct LineSlice
{
    qsizetype position = 0;     // of the text after "[key:" or the time tags
    QStringView text;           // what it says
    qsizetype prefixLength = 0; // of "[key:", or of the time tags if isDisplay
    QStringView key;            // null: a lyric line
    bool isDisplay = false;     // whether displayText() is what is there
};

/// Makes the lines of a document, in blocks that take two allocations for up to 64 lines.
///
/// Blocks are small, because a line that a host keeps keeps its block.
class LineBlocks
{
public:
    /// Lines are made for about \p textLength code units of lyrics.
    explicit LineBlocks(qsizetype textLength);

    /// Appends a line with the range of its displayed text. The reference holds until the next call.
    QVSongLine &append(const LineSlice &slice, QVTextRange range);

    /// Adds a time to a line that append() made.
    static void addTime(QVSongLine &line, qint64 milliseconds);

    /// Gives the lines the text that they are slices of, and returns all of them.
    std::shared_ptr<QVSongLineList> finish(const QString &text);

private:
    struct Block
    {
        QString text;
        std::unique_ptr<QVSongLine[]> lines;
    };

    void closeBlock();

    std::shared_ptr<QVSongLineList> m_lines = std::make_shared<QVSongLineList>();
    std::vector<std::shared_ptr<Block>> m_blocks; // the last one is open
    qsizetype m_used = 0;                         // of the open block
};

} // namespace QVSongLrcPrivate
