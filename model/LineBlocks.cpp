// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineBlocks.h"

#include "QVSongLine_p.h"

#include <utility>

namespace QVSongLrcPrivate {
namespace {

constexpr qsizetype LinesPerBlock = 64;
} // namespace

LineBlocks::LineBlocks(qsizetype textLength)
{
    constexpr qsizetype UsualLineLength = 32;
    m_lines->reserve(textLength / UsualLineLength);
}

QVSongLine &LineBlocks::append(const LineSlice &slice, QVTextRange range)
{
    if (m_blocks.empty() || m_used == LinesPerBlock) {
        closeBlock();
        m_blocks.push_back(std::make_shared<Block>());
        m_blocks.back()->lines = std::make_unique<QVSongLine[]>(LinesPerBlock);
    }
    Block &block = *m_blocks.back();
    QVSongLine &line = block.lines[std::size_t(m_used++)];
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

void LineBlocks::addTime(QVSongLine &line, qint64 milliseconds)
{
    const bool displayIsSlice = line.m_displayIsSlice;
    line.appendTime(milliseconds);
    line.m_displayIsSlice = displayIsSlice;
}

std::shared_ptr<QVSongLineList> LineBlocks::finish(const QString &text)
{
    if (!m_blocks.empty() && m_used < LinesPerBlock) {
        auto exact = std::make_unique<QVSongLine[]>(std::size_t(m_used));
        for (qsizetype i = 0; i < m_used; ++i)
            exact[std::size_t(i)] = std::move(m_blocks.back()->lines[std::size_t(i)]);
        m_blocks.back()->lines = std::move(exact);
    }
    closeBlock();
    for (const auto &block : m_blocks)
        block->text = text;
    m_blocks.clear();
    m_lines->squeeze();
    return std::move(m_lines);
}

void LineBlocks::closeBlock()
{
    for (qsizetype i = 0; i < m_used; ++i)
        m_lines->emplaceBack(m_blocks.back(), &m_blocks.back()->lines[std::size_t(i)]);
    m_used = 0;
}

} // namespace QVSongLrcPrivate
