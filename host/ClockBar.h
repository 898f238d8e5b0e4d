// SPDX-License-Identifier: MIT
#pragma once

#include "Clock.h"

#include <QToolBar>

class QComboBox;
class QLabel;
class QMenu;
class QSlider;

/// The clock's controls, and its commands in a menu.
class ClockBar : public QToolBar
{
    Q_OBJECT

public:
    ClockBar(Clock &clock, QMenu *menu, QWidget *parent = nullptr);

    /// So far reaches the slider at least, in ms.
    void setLength(qint64 milliseconds);

private:
    void addCommands(QMenu *menu);
    void showTime(qint64 now);
    void stepSpeed(int steps);

    Clock &m_clock;
    QSlider *m_slider;
    QLabel *m_time;
    QComboBox *m_speeds;
    qint64 m_length = 0;
};
