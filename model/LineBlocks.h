// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "QVSongLine_p.h"

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

/// Makes the lines of a document, in blocks that take one allocation for many lines.
///
/// A line keeps its block alive, so blocks are small: at most 64 lines. In a text of many megabytes, which the line
/// keeps alive anyway, a block is one huge page.
class LineBlocks
{
public:
    explicit LineBlocks(qsizetype expectedLines);

    /// Appends a line with the range of its displayed text. The reference holds until the next call.
    QVSongLine &append(const LineSlice &slice, QVTextRange range);

    /// Adds a time to a line that append() made.
    static void addTime(QVSongLine &line, qint64 milliseconds);

    /// Gives the lines the text that they are slices of.
    void setText(const QString &text);

    /// The line that was appended as the \p index-th one, counted from 0.
    std::shared_ptr<QVSongLine> line(qsizetype index) const
    {
        const auto &block = m_blocks[std::size_t(index / m_linesPerBlock)];
        return {block, block->lines + index % m_linesPerBlock};
    }

    /// All lines in the order in which they were appended.
    std::shared_ptr<QVSongLineList> lines() const;

private:
    struct Block
    {
        explicit Block(qsizetype capacity);
        ~Block();
        Block(const Block &) = delete;
        Block &operator=(const Block &) = delete;

        QString text;
        QVSongLine *lines = nullptr;
        qsizetype lineCount = 0;
    };

    qsizetype m_linesPerBlock;
    std::vector<std::shared_ptr<Block>> m_blocks;
};

inline QVSongLine &LineBlocks::append(const LineSlice &slice, QVTextRange range)
{
    if (m_blocks.empty() || m_blocks.back()->lineCount == m_linesPerBlock)
        m_blocks.push_back(std::make_shared<Block>(m_linesPerBlock));
    Block &block = *m_blocks.back();
    QVSongLine &line = *std::construct_at(block.lines + block.lineCount++);
    line.m_source = &block.text;
    line.m_isProperty = !slice.key.isNull();
    line.m_txtRg = range;
    line.m_position = slice.position;
    line.m_textLength = quint32(slice.text.size());
    line.m_prefixLength = quint8(slice.prefixLength);
    if (line.m_textLength == slice.text.size() && line.m_prefixLength == slice.prefixLength) [[likely]] {
        line.m_textIsSlice = true;
        line.m_keyIsSlice = line.m_isProperty;
        line.m_displayIsSlice = slice.isDisplay;
    } else {
        line.setLineText(slice.text.toString());
        line.setPropertyStr(slice.key.toString());
    }
    return line;
}

inline void LineBlocks::addTime(QVSongLine &line, qint64 milliseconds)
{
    if (line.m_ownTimeCount < std::size(line.m_ownTimes) && milliseconds == qint32(milliseconds)) [[likely]] {
        line.m_ownTimes[line.m_ownTimeCount++] = qint32(milliseconds);
        return;
    }
    const bool displayIsSlice = line.m_displayIsSlice;
    line.appendTime(milliseconds);
    line.m_displayIsSlice = displayIsSlice;
}

} // namespace QVSongLrcPrivate
