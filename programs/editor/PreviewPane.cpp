// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "PreviewPane.h"

#include <algorithm>

namespace {

// A preview's line has one time. Not playTime(): its seconds can be 1 ms less when converted back.
qint64 timeOf(const std::shared_ptr<QVSongLine> &line)
{
    return line->aryTimes()->first();
}

} // namespace

PreviewPane::PreviewPane()
{
    m_song.buildWithLrcText({});
    const auto choose = [this](const QModelIndex &index) {
        Q_EMIT lineChosen(timeOf(m_song.aryLines()->at(index.row())));
    };
    connect(this, &QListView::clicked, this, choose);
    connect(this, &QListView::activated, this, choose);
}

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

void PreviewPane::setNow(qint64 now)
{
    m_now = now;
    // The last line that has begun. The lines are in order of play time.
    const QVSongLineList &lines = *m_song.aryLines();
    const auto next = std::upper_bound(lines.cbegin(), lines.cend(), now,
                                       [](qint64 time, const auto &line) { return time < timeOf(line); });
    const qsizetype current = next - lines.cbegin() - 1;
    if (current == m_current)
        return;
    m_current = current;
    highlight(current < 0 ? std::nullopt : std::optional(lines[current]->txtRg()));
    scrollTo(currentIndex(), PositionAtCenter); // shows the next lines too
}

qint64 PreviewPane::length() const
{
    const QVSongLineList &lines = *m_song.aryLines();
    return lines.isEmpty() ? 0 : timeOf(lines.last());
}

void PreviewPane::showText()
{
    setLyric(m_song.previewSongTextWithHasTag(m_hasTags)); // also sets the lines' ranges
    m_current = -1;
    setNow(m_now);
}
