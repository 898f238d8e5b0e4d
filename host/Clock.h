// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/// The song's clock: runs, stops and is set like a player, but plays nothing. Times are ms from the start of
/// the song, and there is no end.
class Clock : public QObject
{
    Q_OBJECT

public:
    explicit Clock(QObject *parent = nullptr);

    qint64 now() const;
    bool isPlaying() const { return m_timer.isActive(); }
    double speed() const { return m_speed; }

    void setPlaying(bool isPlaying);
    void seek(qint64 milliseconds); ///< what lies below 0 counts as 0

    /// So many ms of song pass in one; above 0.
    void setSpeed(double speed);

Q_SIGNALS:
    void moved(qint64 now); ///< often while the clock runs, and when it is set
    void playingChanged(bool isPlaying);
    void speedChanged(double speed);

private:
    void startFrom(qint64 milliseconds);

    QTimer m_timer;
    QElapsedTimer m_elapsed; // since the clock stood at m_start
    qint64 m_start = 0;
    double m_speed = 1;
};
