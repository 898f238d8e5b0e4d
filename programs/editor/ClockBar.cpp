// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ClockBar.h"

#include "SongModel.h"

#include <QVSongLrc/QVUtils.h>

#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QSlider>

using namespace Qt::StringLiterals;

ClockBar::ClockBar(QWidget *parent)
    : QToolBar(tr("Clock"), parent)
    , m_slider(new QSlider(Qt::Horizontal, this))
    , m_time(new QLabel(this))
    , m_speeds(new QComboBox(this))
{
    setObjectName(u"clockBar"_s);
    setMovable(false);

    m_slider->setObjectName(u"clockSlider"_s);
    m_slider->setAccessibleName(tr("Position in the song"));
    m_slider->setToolTip(tr("Set the clock"));
    m_slider->setSingleStep(1000);
    m_slider->setPageStep(10'000);
    connect(m_slider, &QSlider::valueChanged, this, &ClockBar::seek);
    addWidget(m_slider);

    m_time->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_time->setAccessibleName(tr("Time"));
    m_time->setMargin(6);
    addWidget(m_time);

    m_speeds->setAccessibleName(tr("Speed"));
    m_speeds->setToolTip(tr("How fast the clock runs"));
    for (const double speed : {0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 2.0})
        m_speeds->addItem(tr("%1×").arg(locale().toString(speed)), speed);
    m_speeds->setCurrentIndex(m_speeds->findData(m_speed));
    connect(m_speeds, &QComboBox::currentIndexChanged, this, [this] {
        startFrom(now()); // at the old speed
        m_speed = m_speeds->currentData().toDouble();
    });
    addWidget(m_speeds);

    m_timer.setInterval(33);
    connect(&m_timer, &QTimer::timeout, this, [this] { Q_EMIT moved(now()); });
    connect(this, &ClockBar::moved, this, &ClockBar::showTime);
    setLength(0);
}

qint64 ClockBar::now() const
{
    const qint64 passed = isPlaying() ? qint64(double(m_elapsed.elapsed()) * m_speed) : 0;
    return std::min(m_start + passed, SongModel::LatestTime);
}

void ClockBar::setPlaying(bool isPlaying)
{
    if (isPlaying == m_timer.isActive())
        return;
    startFrom(now());
    isPlaying ? m_timer.start() : m_timer.stop();
    Q_EMIT playingChanged(isPlaying);
}

void ClockBar::seek(qint64 time)
{
    startFrom(std::clamp<qint64>(time, 0, SongModel::LatestTime));
    Q_EMIT moved(now());
}

void ClockBar::stepSpeed(int steps)
{
    m_speeds->setCurrentIndex(std::clamp(m_speeds->currentIndex() + steps, 0, m_speeds->count() - 1));
}

void ClockBar::setLength(qint64 milliseconds)
{
    // At least a minute, so that a song without times can be timed too.
    m_length = std::clamp<qint64>(milliseconds + 5000, 60'000, SongModel::LatestTime);
    showTime();
}

void ClockBar::startFrom(qint64 time)
{
    m_start = time;
    m_elapsed.start();
}

void ClockBar::showTime()
{
    m_time->setText(QVUtils::getTimeIntervalMMSSMSStr(now()));
    const QSignalBlocker blocker(m_slider); // setValue() must not seek
    m_slider->setMaximum(int(std::max(m_length, now())));
    m_slider->setValue(int(now()));
}
