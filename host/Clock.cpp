// SPDX-License-Identifier: MIT
#include "Clock.h"

#include <algorithm>

Clock::Clock(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(33);
    connect(&m_timer, &QTimer::timeout, this, [this] { Q_EMIT moved(now()); });
}

qint64 Clock::now() const
{
    return isPlaying() ? m_start + qint64(double(m_elapsed.elapsed()) * m_speed) : m_start;
}

void Clock::setPlaying(bool isPlaying)
{
    if (isPlaying == m_timer.isActive())
        return;
    startFrom(now());
    isPlaying ? m_timer.start() : m_timer.stop();
    Q_EMIT playingChanged(isPlaying);
}

void Clock::seek(qint64 milliseconds)
{
    startFrom(std::max<qint64>(milliseconds, 0));
    Q_EMIT moved(now());
}

void Clock::setSpeed(double speed)
{
    if (speed == m_speed)
        return;
    startFrom(now());
    m_speed = speed;
    Q_EMIT speedChanged(speed);
}

void Clock::startFrom(qint64 milliseconds)
{
    m_start = milliseconds;
    m_elapsed.start();
}
