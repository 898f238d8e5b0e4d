// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QVSongLine_p.h"

#include "OwnedString.h"
#include "Saturating.h"
#include "TagScanner.h"

#include <QVSongLrc/QVUtils.h>

using namespace QVSongLrcPrivate;

QVSongLine::QVSongLine() = default;

QVSongLine::QVSongLine(const QVSongLine &other)
    : m_isProperty(other.m_isProperty)
    , m_textIsSlice(other.m_textIsSlice)
    , m_tagsLength(other.m_tagsLength)
    , m_textView(other.m_textView)
    , m_txtRg(other.m_txtRg)
    , m_ownTimes(other.times())
    , m_text(other.m_text)
    , m_propertyStr(other.m_propertyStr)
{
}

QVSongLine::~QVSongLine() = default;

std::shared_ptr<QVSongLine> QVSongLine::emptyLine()
{
    auto line = std::make_shared<QVSongLine>();
    line->setLineText(QStringLiteral(""));
    return line;
}

// The list has its own reference count, not the line's: a line may be on the stack, and two lines that
// swapped their lists would keep each other alive.
std::shared_ptr<const QVTimeList> QVSongLine::aryTimes() const
{
    m_tagsLength = 0;
    if (!m_sharedTimes)
        m_sharedTimes = std::make_shared<QVTimeList>(std::move(m_ownTimes));
    return m_sharedTimes;
}

std::shared_ptr<QVTimeList> QVSongLine::aryTimes()
{
    return std::const_pointer_cast<QVTimeList>(std::as_const(*this).aryTimes());
}

void QVSongLine::setAryTimes(std::shared_ptr<QVTimeList> times)
{
    m_tagsLength = 0;
    m_ownTimes.clear();
    m_sharedTimes = std::move(times);
}

QString QVSongLine::lineText() const
{
    if (m_textIsSlice) {
        m_text = m_textView.toString();
        m_textView = m_text;
        m_textIsSlice = false;
        m_tagsLength = 0;
    }
    return m_text;
}

void QVSongLine::setLineText(const QString &text)
{
    m_text = ownedString(text);
    m_textView = m_text;
    m_textIsSlice = false;
    m_tagsLength = 0;
}

double QVSongLine::playTime() const
{
    return double(firstTime()) / 1000.0;
}

void QVSongLine::setIsProperty(bool isProperty)
{
    m_isProperty = isProperty;
    m_tagsLength = 0;
}

void QVSongLine::setPropertyStr(const QString &key)
{
    m_propertyStr = ownedString(key);
}

QString QVSongLine::displayText() const
{
    QString display(displayLength(), Qt::Uninitialized);
    writeDisplayText(reinterpret_cast<char16_t *>(display.data()));
    return display;
}

bool QVSongLine::isEqual(const QVSongLine *other) const
{
    // Qt's == does not distinguish absent from empty, but an absent string equals nothing.
    const auto equal = [](QStringView a, QStringView b) { return !a.isNull() && !b.isNull() && a == b; };

    if (!other || m_isProperty != other->m_isProperty)
        return false;
    if (m_isProperty)
        return equal(m_propertyStr, other->m_propertyStr) && equal(m_textView, other->m_textView);
    return times() == other->times() && equal(m_textView, other->m_textView);
}

QString QVSongLine::description() const
{
    const QVTimeList &list = times();
    QString shownTimes;
    if (list.size() < 2) {
        shownTimes = QString::number(firstTime());
    } else {
        for (const qint64 time : list)
            shownTimes += QString::number(time) + QLatin1StringView(" |");
    }
    return QStringLiteral("%1 | {%2, %3} | %4\n")
        .arg(shownTimes, QString::number(m_txtRg.location), QString::number(m_txtRg.length),
             textOrPlaceholder(m_textView));
}

void QVSongLine::shiftAllTime(qint64 milliseconds)
{
    if (m_isProperty)
        return;
    for (qint64 &time : times())
        time = std::max<qint64>(Saturating::add(time, milliseconds), 0);
}

void QVSongLine::appendTime(qint64 milliseconds)
{
    times().append(milliseconds);
}

void QVSongLine::updateWithText(const QString &text)
{
    if (m_isProperty && TagScanner::propertyTag(text)) {
        const auto [key, value] = TagScanner::splitProperty(text);
        m_propertyStr = key.toString();
        setLineText(value.toString());
        return;
    }
    m_isProperty = false;
    setLineText(text);
}

void QVSongLine::updateWithTimeStr(const QString &timeStr, qint64 atIndex)
{
    QVTimeList &list = times();
    if (atIndex < 0 || atIndex >= list.size())
        return;
    if (timeStr.isEmpty())
        list.remove(atIndex);
    else
        list[atIndex] = QVUtils::getTimeInterval(timeStr);
}
