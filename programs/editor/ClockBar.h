// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QToolBar>

class QComboBox;
class QLabel;
class QSlider;

/// The song's clock with its controls: runs, stops and is set like a player, but plays nothing. Times are ms from
/// the start of the song, 0 to SongModel::LatestTime.
class ClockBar : public QToolBar
{
    Q_OBJECT

public:
    explicit ClockBar(QWidget *parent = nullptr);

    qint64 now() const;
    bool isPlaying() const { return m_timer.isActive(); }

    void setPlaying(bool isPlaying);
    void seek(qint64 time); ///< to the nearest time that the clock has
    void stepSpeed(int steps);

    /// So far reaches the slider at least.
    void setLength(qint64 milliseconds);

Q_SIGNALS:
    void moved(qint64 now); ///< often while the clock runs, and when it is set
    void playingChanged(bool isPlaying);

private:
    void startFrom(qint64 time);
    void showTime();

    QSlider *m_slider;
    QLabel *m_time;
    QComboBox *m_speeds;
    QTimer m_timer;
    QElapsedTimer m_elapsed; // since the clock stood at m_start
    qint64 m_start = 0;
    double m_speed = 1; // so many ms of song pass in one
    qint64 m_length = 0;
};
