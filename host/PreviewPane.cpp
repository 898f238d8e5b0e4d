// SPDX-License-Identifier: MIT
#include "PreviewPane.h"

#include <algorithm>

void PreviewPane::setSong(const QString &songText)
{
    m_song.buildWithLrcText(songText);
    showText();
}

void PreviewPane::setHasTags(bool hasTags)
{
    m_hasTags = hasTags;
    showText();
}

void PreviewPane::setNow(qint64 milliseconds)
{
    m_now = milliseconds;
    highlightNow();
}

qint64 PreviewPane::length() const
{
    const auto lines = m_song.aryLines();
    return lines && !lines->isEmpty() ? qint64(lines->last()->playTime() * 1000) : 0;
}

void PreviewPane::showText()
{
    setLyric(m_song.previewSongTextWithHasTag(m_hasTags)); // which also tells the lines their ranges
    m_current = -1;
    highlightNow();
}

void PreviewPane::highlightNow()
{
    const auto lines = m_song.aryLines();
    if (!lines)
        return;
    // The last line that has begun. The lines are in order of play time.
    const auto next =
        std::upper_bound(lines->cbegin(), lines->cend(), double(m_now) / 1000,
                         [](double seconds, const auto &line) { return seconds < line->playTime(); });
    const qsizetype current = next - lines->cbegin() - 1;
    if (current == m_current && current >= 0)
        return;
    m_current = current;
    highlight(current < 0 ? std::nullopt : std::optional(lines->at(current)->txtRg()));
}
