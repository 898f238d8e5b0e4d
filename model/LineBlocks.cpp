// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineBlocks.h"

#include "HugePages.h"

#include <cstdlib>
#include <new>

namespace QVSongLrcPrivate {
namespace {

constexpr qsizetype LinesPerBlock = 64;
constexpr qsizetype LinesPerHugePage = HugePageSize / qsizetype(sizeof(QVSongLine));
constexpr qsizetype LargeDocument = 4 * LinesPerHugePage;

} // namespace

LineBlocks::Block::Block(qsizetype lineCapacity, std::size_t alignment)
    : lines(static_cast<QVSongLine *>(
        std::aligned_alloc(alignment, std::size_t(lineCapacity) * sizeof(QVSongLine))))
    , capacity(lineCapacity)
{
    if (!lines)
        throw std::bad_alloc();
}

LineBlocks::Block::~Block()
{
    std::destroy_n(lines, lineCount);
    std::free(lines);
}

LineBlocks::LineBlocks(qsizetype expectedLines)
    : m_isLarge(expectedLines >= LargeDocument)
{
    m_lines->reserve(expectedLines);
    preferHugePages(m_lines->data(), m_lines->capacity());
}

std::shared_ptr<QVSongLineList> LineBlocks::finish(const QString &text)
{
    closeBlock();
    for (const auto &block : m_blocks)
        block->text = text;
    m_blocks.clear();
    m_lines->squeeze();
    return std::move(m_lines);
}

void LineBlocks::openBlock()
{
    closeBlock();
    if (m_isLarge) {
        m_blocks.push_back(std::make_shared<Block>(LinesPerHugePage, HugePageSize));
        preferHugePages(m_blocks.back()->lines, LinesPerHugePage);
    } else {
        m_blocks.push_back(std::make_shared<Block>(LinesPerBlock, alignof(QVSongLine)));
    }
}

void LineBlocks::closeBlock()
{
    if (m_blocks.empty())
        return;
    const auto &block = m_blocks.back();
    for (qsizetype i = 0; i < block->lineCount; ++i)
        m_lines->emplaceBack(block, block->lines + i);
}

} // namespace QVSongLrcPrivate
