// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QToolBar>

class QComboBox;
class QLabel;
class QSlider;

/// The song's clock and its controls, like those of a player, but without sound. Times are ms from the start of
/// the song, 0 to SongModel::LatestTime.
class ClockBar : public QToolBar
{
    Q_OBJECT

public:
    explicit ClockBar(QWidget *parent = nullptr);

    qint64 now() const;
    bool isPlaying() const { return m_timer.isActive(); }

    void setPlaying(bool isPlaying);
    void seek(qint64 time); ///< clamps to the clock's range
    void stepSpeed(int steps);

    /// The song's length in ms; the slider covers at least that.
    void setLength(qint64 milliseconds);

Q_SIGNALS:
    void moved(qint64 now); ///< about 30 times a second while the clock runs, and when it is set
    void playingChanged(bool isPlaying);

private:
    void startFrom(qint64 time);
    void showTime();

    QSlider *m_slider;
    QLabel *m_time;
    QComboBox *m_speeds;
    QTimer m_timer;
    QElapsedTimer m_elapsed; // since the clock was at m_start
    qint64 m_start = 0;
    double m_speed = 1; // ms of song per ms
    qint64 m_length = 0;
};
