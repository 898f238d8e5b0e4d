// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/// The song's clock: runs, stops and is set like a player, but plays nothing. Times are ms from the start of
/// the song, 0 to SongDocument::LatestTime.
class Clock : public QObject
{
    Q_OBJECT

public:
    explicit Clock(QObject *parent = nullptr);

    qint64 now() const;
    bool isPlaying() const { return m_timer.isActive(); }
    double speed() const { return m_speed; }

    void setPlaying(bool isPlaying);
    void seek(qint64 time); ///< to the nearest time that the clock has

    /// So many ms of song pass in one; above 0.
    void setSpeed(double speed);

Q_SIGNALS:
    void moved(qint64 now); ///< often while the clock runs, and when it is set
    void playingChanged(bool isPlaying);

private:
    void startFrom(qint64 time);

    QTimer m_timer;
    QElapsedTimer m_elapsed; // since the clock stood at m_start
    qint64 m_start = 0;
    double m_speed = 1;
};
