// SPDX-License-Identifier: MIT
#include "Clock.h"

#include "SongDocument.h"

#include <algorithm>

Clock::Clock(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(33);
    connect(&m_timer, &QTimer::timeout, this, [this] { Q_EMIT moved(now()); });
}

qint64 Clock::now() const
{
    const qint64 passed = isPlaying() ? qint64(double(m_elapsed.elapsed()) * m_speed) : 0;
    return std::min(m_start + passed, SongDocument::LatestTime);
}

void Clock::setPlaying(bool isPlaying)
{
    if (isPlaying == m_timer.isActive())
        return;
    startFrom(now());
    isPlaying ? m_timer.start() : m_timer.stop();
    Q_EMIT playingChanged(isPlaying);
}

void Clock::seek(qint64 time)
{
    startFrom(std::clamp<qint64>(time, 0, SongDocument::LatestTime));
    Q_EMIT moved(now());
}

void Clock::setSpeed(double speed)
{
    startFrom(now());
    m_speed = speed;
}

void Clock::startFrom(qint64 time)
{
    m_start = time;
    m_elapsed.start();
}
