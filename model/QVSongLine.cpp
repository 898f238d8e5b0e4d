// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QVSongLine_p.h"

#include "OwnedString.h"
#include "Saturating.h"
#include "TagScanner.h"

#include <QVSongLrc/QVUtils.h>

using namespace QVSongLrcPrivate;

static_assert(sizeof(void *) != 8 || sizeof(QVSongLine) == 64);

// The copy is in no block that would keep the source alive, so its text and key are its own.
QVSongLine::QVSongLine(const QVSongLine &other)
    : m_isProperty(other.m_isProperty)
    , m_txtRg(other.m_txtRg)
{
    extra().text = other.lineText();
    extra().key = other.propertyStr();
    for (qsizetype i = 0; i < other.timeCount(); ++i)
        appendTime(other.timeAt(i));
}

void QVSongLine::DeleteExtra::operator()(Extra *extra) const
{
    delete extra;
}

QVSongLine::Extra &QVSongLine::extra() const
{
    if (!m_extra)
        m_extra.reset(new Extra);
    return *m_extra;
}

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
    m_displayIsSlice = false; // the list may change without notice
    if (!extra().times)
        m_extra->times = std::make_shared<QVTimeList>(m_ownTimes, m_ownTimes + m_ownTimeCount);
    return m_extra->times;
}

std::shared_ptr<QVTimeList> QVSongLine::aryTimes()
{
    return std::const_pointer_cast<QVTimeList>(std::as_const(*this).aryTimes());
}

void QVSongLine::setAryTimes(std::shared_ptr<QVTimeList> times)
{
    if (times || m_extra)
        extra().times = std::move(times);
    m_ownTimeCount = 0;
    m_displayIsSlice = false;
}

QString QVSongLine::lineText() const
{
    if (m_textIsSlice && extra().text.isNull())
        m_extra->text = textView().toString();
    return m_extra ? m_extra->text : QString();
}

void QVSongLine::setLineText(const QString &text)
{
    extra().text = ownedString(text);
    m_textIsSlice = false;
    m_displayIsSlice = false;
}

QString QVSongLine::propertyStr() const
{
    return m_keyIsSlice ? keyView().toString() : m_extra ? m_extra->key : QString();
}

void QVSongLine::setPropertyStr(const QString &key)
{
    extra().key = ownedString(key);
    m_keyIsSlice = false;
    m_displayIsSlice = false;
}

double QVSongLine::playTime() const
{
    return double(firstTime()) / 1000.0;
}

void QVSongLine::setIsProperty(bool isProperty)
{
    m_displayIsSlice = false;
    m_isProperty = isProperty;
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
        return equal(keyView(), other->keyView()) && equal(textView(), other->textView());
    if (timeCount() != other->timeCount())
        return false;
    for (qsizetype i = 0; i < timeCount(); ++i) {
        if (timeAt(i) != other->timeAt(i))
            return false;
    }
    return equal(textView(), other->textView());
}

QString QVSongLine::description() const
{
    QString shownTimes;
    if (timeCount() < 2)
        shownTimes = QString::number(firstTime());
    else
        for (qsizetype i = 0; i < timeCount(); ++i)
            shownTimes += QString::number(timeAt(i)) + QLatin1StringView(" |");
    return QStringLiteral("%1 | {%2, %3} | %4\n")
        .arg(shownTimes, QString::number(m_txtRg.location), QString::number(m_txtRg.length),
             textOrPlaceholder(textView()));
}

void QVSongLine::shiftAllTime(qint64 milliseconds)
{
    if (m_isProperty)
        return;
    for (qsizetype i = 0; i < timeCount(); ++i)
        setTimeAt(i, std::max<qint64>(Saturating::add(timeAt(i), milliseconds), 0));
}

void QVSongLine::setTimeAt(qsizetype index, qint64 milliseconds)
{
    m_displayIsSlice = false;
    const bool isInList = m_extra && m_extra->times;
    if (!isInList && milliseconds == qint32(milliseconds))
        m_ownTimes[index] = qint32(milliseconds);
    else
        (*aryTimes())[index] = milliseconds;
}

void QVSongLine::appendTime(qint64 milliseconds)
{
    m_displayIsSlice = false;
    const bool isInList = m_extra && m_extra->times;
    if (!isInList && milliseconds == qint32(milliseconds) && m_ownTimeCount < std::size(m_ownTimes))
        m_ownTimes[m_ownTimeCount++] = qint32(milliseconds);
    else
        aryTimes()->append(milliseconds);
}

void QVSongLine::updateWithText(const QString &text)
{
    if (m_isProperty && TagScanner::propertyTag(text)) {
        const auto [key, value] = TagScanner::splitProperty(text);
        setPropertyStr(key.toString());
        setLineText(value.toString());
        return;
    }
    setIsProperty(false);
    setLineText(text);
}

void QVSongLine::updateWithTimeStr(const QString &timeStr, qint64 atIndex)
{
    if (atIndex < 0 || atIndex >= timeCount())
        return;
    if (timeStr.isEmpty())
        aryTimes()->remove(atIndex);
    else
        setTimeAt(atIndex, QVUtils::getTimeInterval(timeStr));
}
