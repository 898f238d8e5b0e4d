// SPDX-License-Identifier: MIT
#pragma once

// What the documents do with every line, inline since they do it in loops over whole lyrics.

#include "TimeText.h"

#include <QVSongLrc/QVSongLine.h>

#include <algorithm>

/// What stands in a text for an absent string.
inline QStringView shownText(QStringView text)
{
    return text.isNull() ? QStringView(u"(null)") : text;
}

inline const QVTimeList &QVSongLine::times() const
{
    return m_sharedTimes ? *m_sharedTimes : m_ownTimes;
}

inline QVTimeList &QVSongLine::times()
{
    return m_sharedTimes ? *m_sharedTimes : m_ownTimes;
}

inline qint64 QVSongLine::firstTime() const
{
    const QVTimeList &list = times();
    return list.isEmpty() ? 0 : list.front();
}

/// lineText() without making it a string of the line's own; null when absent.
inline QStringView QVSongLine::text() const
{
    const QStringView all(m_text);
    return m_sliceLength == WholeText ? all : all.sliced(m_sliceBegin, m_sliceLength);
}

inline void QVSongLine::setTextSlice(const QString &source, qsizetype begin, qsizetype length)
{
    m_text = source;
    m_sliceBegin = begin;
    m_sliceLength = length;
}

/// Lets the text, if it is a slice, be the same characters at \p begin of \p source.
inline void QVSongLine::moveTextSlice(const QString &source, qsizetype begin)
{
    if (m_sliceLength != WholeText)
        setTextSlice(source, begin, m_sliceLength);
}

inline qsizetype QVSongLine::displayLength() const
{
    const qsizetype textLength = shownText(text()).size();
    if (m_isProperty)
        return shownText(m_propertyStr).size() + textLength + 3;
    qsizetype length = textLength;
    for (const qint64 time : times())
        length += TimeText::tagLength(time);
    return length;
}

inline char16_t *writeText(char16_t *out, QStringView text)
{
    return std::copy_n(text.utf16(), text.size(), out);
}

/// Writes displayText(), displayLength() code units, and answers the place after it.
inline char16_t *QVSongLine::writeDisplayText(char16_t *out) const
{
    if (m_isProperty) {
        *out++ = u'[';
        out = writeText(out, shownText(m_propertyStr));
        *out++ = u':';
        out = writeText(out, shownText(text()));
        *out++ = u']';
        return out;
    }
    for (const qint64 time : times())
        out = TimeText::writeTag(out, time);
    return writeText(out, shownText(text()));
}
