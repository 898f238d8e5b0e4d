// SPDX-License-Identifier: MIT
#include "ClockBar.h"

#include "Command.h"
#include "SongDocument.h"

#include <QVSongLrc/QVUtils.h>

#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QSlider>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 SeekStep = 5000;
constexpr qint64 LeastLength = 60'000; // a song that has no times yet can be timed too

} // namespace

ClockBar::ClockBar(Clock &clock, QMenu *menu, QWidget *parent)
    : QToolBar(tr("Clock"), parent)
    , m_clock(clock)
    , m_slider(new QSlider(Qt::Horizontal, this))
    , m_time(new QLabel(this))
    , m_speeds(new QComboBox(this))
{
    setObjectName(u"clockBar"_s);
    setMovable(false);
    addCommands(menu);

    m_slider->setObjectName(u"clockSlider"_s);
    m_slider->setAccessibleName(tr("Position in the song"));
    m_slider->setToolTip(tr("Set the clock"));
    m_slider->setSingleStep(int(SeekStep));
    m_slider->setPageStep(int(SeekStep) * 2);
    connect(m_slider, &QSlider::valueChanged, this, [this](int position) { m_clock.seek(position); });
    addWidget(m_slider);

    m_time->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_time->setObjectName(u"clockTime"_s);
    m_time->setAccessibleName(tr("Time"));
    m_time->setMargin(6);
    addWidget(m_time);

    m_speeds->setObjectName(u"clockSpeed"_s);
    m_speeds->setAccessibleName(tr("Speed"));
    m_speeds->setToolTip(tr("How fast the clock runs"));
    for (const double speed : {0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 2.0})
        m_speeds->addItem(tr("%1×").arg(locale().toString(speed)), speed);
    m_speeds->setCurrentIndex(m_speeds->findData(m_clock.speed()));
    connect(m_speeds, &QComboBox::currentIndexChanged, this,
            [this] { m_clock.setSpeed(m_speeds->currentData().toDouble()); });
    addWidget(m_speeds);

    connect(&clock, &Clock::moved, this, &ClockBar::showTime);
    setLength(0);
}

void ClockBar::setLength(qint64 milliseconds)
{
    m_length = std::clamp(milliseconds + SeekStep, LeastLength, SongDocument::LatestTime);
    showTime(m_clock.now());
}

void ClockBar::addCommands(QMenu *menu)
{
    QAction *const play = addCommand(menu, "playAction", tr("&Play"), Qt::Key_F5, tr("Run or stop the clock"),
                                     &m_clock, [this] { m_clock.setPlaying(!m_clock.isPlaying()); });
    connect(&m_clock, &Clock::playingChanged, play,
            [play](bool isPlaying) { play->setText(isPlaying ? tr("&Pause") : tr("&Play")); });
    QAction *const back = addCommand(menu, "seekBackAction", tr("&Back 5 Seconds"), Qt::Key_F6,
                                     tr("Set the clock 5 seconds back"), &m_clock,
                                     [this] { m_clock.seek(m_clock.now() - SeekStep); });
    QAction *const forward = addCommand(menu, "seekForwardAction", tr("&Forward 5 Seconds"), Qt::Key_F7,
                                        tr("Set the clock 5 seconds forward"), &m_clock,
                                        [this] { m_clock.seek(m_clock.now() + SeekStep); });
    back->setIconText(tr("−5 s")); // the style's icons for these are black in a dark palette too
    forward->setIconText(tr("+5 s"));
    addActions({play, back, forward});
    menu->addSeparator();
    addCommand(menu, "slowerAction", tr("S&lower"), Qt::SHIFT | Qt::Key_F6, tr("Let the clock run slower"),
               this, [this] { stepSpeed(-1); });
    addCommand(menu, "fasterAction", tr("Fas&ter"), Qt::SHIFT | Qt::Key_F7, tr("Let the clock run faster"),
               this, [this] { stepSpeed(1); });
}

void ClockBar::showTime(qint64 now)
{
    m_time->setText(QVUtils::getTimeIntervalMMSSMSStr(now));
    const QSignalBlocker blocker(m_slider); // it shows the clock's time, and must not set it
    m_slider->setMaximum(int(std::max(m_length, now)));
    m_slider->setValue(int(now));
}

void ClockBar::stepSpeed(int steps)
{
    m_speeds->setCurrentIndex(std::clamp(m_speeds->currentIndex() + steps, 0, m_speeds->count() - 1));
}
