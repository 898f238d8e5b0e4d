// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

/// Runs the event loop and measures its longest turn by a timer with an interval of 1 ms.
class TurnWatch
{
public:
    /// Runs the loop until \p isOver; false when that takes more than 30 s.
    bool run(const std::function<bool()> &isOver)
    {
        QEventLoop loop;
        QElapsedTimer sinceStart;
        sinceStart.start();
        QElapsedTimer sinceTurn;
        sinceTurn.start();
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
            m_longest = std::max(m_longest, sinceTurn.nsecsElapsed());
            sinceTurn.start();
            if (isOver() || sinceStart.hasExpired(30'000))
                loop.quit();
        });
        timer.setTimerType(Qt::PreciseTimer);
        timer.start(1);
        loop.exec();
        return isOver();
    }

    double longestMs() const { return double(m_longest) / 1e6; }

private:
    qint64 m_longest = 0;
};
