// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "PreviewPane.h"

#include <algorithm>

namespace {

struct Moment
{
    qint64 time;
    std::shared_ptr<QVSongLine> line; // with this time alone
};

// A moment for each time of each line, in play order.
std::vector<Moment> momentsOf(const QVSongLineList &lines)
{
    std::vector<Moment> moments;
    const auto append = [&](const QVSongLine &line, qint64 time) {
        const auto single = std::make_shared<QVSongLine>();
        single->setIsProperty(line.isProperty());
        if (line.isProperty())
            single->setPropertyStr(line.propertyStr());
        single->setLineText(line.lineText());
        single->appendTime(time);
        moments.push_back({time, single});
    };
    qint64 propertyTime = 200; // as in a preview that was built
    for (const auto &line : lines) {
        if (line->isProperty()) {
            append(*line, propertyTime);
            propertyTime += 1000;
            continue;
        }
        for (const qint64 time : *line->aryTimes())
            append(*line, time);
    }
    std::stable_sort(moments.begin(), moments.end(),
                     [](const Moment &a, const Moment &b) { return a.time < b.time; });
    return moments;
}

} // namespace

PreviewPane::PreviewPane()
{
    m_song.setAryLines(std::make_shared<QVSongLineList>());
    const auto choose = [this](const QModelIndex &index) {
        Q_EMIT lineChosen(m_times.at(std::size_t(index.row())));
    };
    connect(this, &QListView::clicked, this, choose);
    connect(this, &QListView::activated, this, choose);
}

void PreviewPane::setSong(const QVSongLineList &lines)
{
    // Not buildWithLrcText(), which reads the song's text otherwise than it was imported.
    const auto played = std::make_shared<QVSongLineList>();
    m_times.clear();
    for (const Moment &moment : momentsOf(lines)) {
        m_times.push_back(moment.time);
        played->append(moment.line);
    }
    m_song.setAryLines(played);
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
    // The last line that has begun.
    const qsizetype current = std::upper_bound(m_times.cbegin(), m_times.cend(), now) - m_times.cbegin() - 1;
    if (current == m_current)
        return;
    m_current = current;
    highlight(current < 0 ? std::nullopt : std::optional(m_song.aryLines()->at(current)->txtRg()));
    scrollTo(currentIndex(), PositionAtCenter); // shows the next lines too
}

qint64 PreviewPane::length() const
{
    return m_times.empty() ? 0 : m_times.back();
}

void PreviewPane::showText()
{
    setLyric(m_song.previewSongTextWithHasTag(m_hasTags)); // also sets the lines' ranges
    m_current = -1;
    setNow(m_now);
}
