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

// Not buildWithLrcText(), which reads the song's text otherwise than it was imported.
QVSongLineList inPlayOrder(const QVSongLineList &lines)
{
    QVSongLineList played;
    qint64 propertyTime = 200; // as in a preview that was built
    const auto append = [&](const QVSongLine &line, qint64 time) {
        played += std::make_shared<QVSongLine>(line);
        played.last()->setAryTimes(std::make_shared<QVTimeList>(QVTimeList{time}));
    };
    for (const auto &line : lines) {
        if (line->isProperty()) {
            append(*line, propertyTime);
            propertyTime += 1000;
            continue;
        }
        for (const qint64 time : *std::as_const(*line).aryTimes())
            append(*line, time);
    }
    std::stable_sort(played.begin(), played.end(),
                     [](const auto &a, const auto &b) { return timeOf(a) < timeOf(b); });
    return played;
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

void PreviewPane::setSong(const QVSongLineList &lines)
{
    m_song.setAryLines(std::make_shared<QVSongLineList>(inPlayOrder(lines)));
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
