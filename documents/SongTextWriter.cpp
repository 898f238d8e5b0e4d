// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SongTextWriter.h"

#include "model/HugePages.h"

#include <algorithm>

namespace QVSongLrcPrivate {

SongTextWriter::SongTextWriter(const QString &source)
    : m_source(source)
{
}

QString SongTextWriter::finish()
{
    if (position() == 0)
        return QStringLiteral("");
    const bool isSource =
        m_length == 0 && m_runBegin == QStringView(m_source).utf16() && position() == m_source.size();
    if (isSource)
        return ownedString(m_source); // shares the characters unless they are someone else's
    closeRun();
    m_songText.resize(m_length);
    m_songText.squeeze();
    return std::move(m_songText);
}

void SongTextWriter::closeRun()
{
    if (m_runBegin == m_runEnd)
        return;
    const qsizetype length = m_runEnd - m_runBegin;
    reserve(length);
    // The last line of the source may have no line feed.
    std::copy(m_runBegin, m_runEnd - 1, m_text + m_length);
    m_text[m_length + length - 1] = u'\n';
    m_length += length;
    m_runBegin = m_runEnd = nullptr;
}

void SongTextWriter::reserve(qsizetype length)
{
    const qsizetype needed = m_length + length;
    if (needed <= m_songText.size())
        return;
    m_songText.resize(std::max(needed + needed / 4, m_source.size() + m_source.size() / 64 + 64));
    m_text = reinterpret_cast<char16_t *>(m_songText.data());
    preferHugePages(m_text + m_length, m_songText.size() - m_length);
}

} // namespace QVSongLrcPrivate
