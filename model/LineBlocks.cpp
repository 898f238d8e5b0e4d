// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineBlocks.h"

#include "HugePages.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace QVSongLrcPrivate {
namespace {

constexpr qsizetype MaxLinesPerSmallBlock = 64;
constexpr qsizetype LinesPerHugePage = HugePageSize / qsizetype(sizeof(QVSongLine));
constexpr qsizetype LargeDocument = 4 * LinesPerHugePage;

} // namespace

LineBlocks::Block::Block(qsizetype capacity)
{
    const bool isLarge = capacity == LinesPerHugePage;
    lines = static_cast<QVSongLine *>(std::aligned_alloc(isLarge ? HugePageSize : alignof(QVSongLine),
                                                         std::size_t(capacity) * sizeof(QVSongLine)));
    if (!lines)
        throw std::bad_alloc();
    preferHugePages(lines, capacity);
}

LineBlocks::Block::~Block()
{
    std::destroy_n(lines, lineCount);
    std::free(lines);
}

LineBlocks::LineBlocks(qsizetype expectedLines)
    : m_linesPerBlock(expectedLines >= LargeDocument
                          ? LinesPerHugePage
                          : std::clamp<qsizetype>(expectedLines, 8, MaxLinesPerSmallBlock))
{
}

void LineBlocks::setText(const QString &text)
{
    for (const auto &block : m_blocks)
        block->text = text;
}

std::shared_ptr<QVSongLineList> LineBlocks::lines() const
{
    auto all = std::make_shared<QVSongLineList>();
    if (!m_blocks.empty())
        all->reserve(qsizetype(m_blocks.size() - 1) * m_linesPerBlock + m_blocks.back()->lineCount);
    preferHugePages(all->data(), all->capacity());
    for (const auto &block : m_blocks) {
        for (qsizetype i = 0; i < block->lineCount; ++i)
            all->emplaceBack(block, block->lines + i);
    }
    return all;
}

} // namespace QVSongLrcPrivate
