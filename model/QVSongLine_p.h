// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// Functions that the documents call for every line of a lyric, inline for speed.

#include "TimeText.h"

#include <QVSongLrc/QVSongLine.h>

#include <algorithm>
#include <cstring>

/// The data of a line that a host has changed or asked for.
struct QVSongLine::Extra
{
    QString text;                      // the text, or a copy of the slice that was asked for
    QString key;                       // unless it is a slice
    std::shared_ptr<QVTimeList> times; // null while the line's own array holds the times
};

namespace QVSongLrcPrivate {

/// \p text, or "(null)" if it is absent.
inline QStringView textOrPlaceholder(QStringView text)
{
    return text.isNull() ? QStringView(u"(null)") : text;
}

inline char16_t *writeText(char16_t *out, QStringView text)
{
    // Most texts are short. Copying them in blocks of 16 bytes, of which the last one overlaps, is faster
    // than a call.
    const char16_t *const from = text.utf16();
    const qsizetype length = text.size();
    if (length >= 8 && length <= 64) {
        for (qsizetype i = 0; i + 8 <= length; i += 8)
            std::memcpy(out + i, from + i, 16);
        std::memcpy(out + length - 8, from + length - 8, 16);
        return out + length;
    }
    return std::copy_n(from, length, out);
}

/// Writes "[key:value]" and returns the end of it.
inline char16_t *writePropertyTag(char16_t *out, QStringView key, QStringView value)
{
    *out++ = u'[';
    out = writeText(out, key);
    *out++ = u':';
    out = writeText(out, value);
    *out++ = u']';
    return out;
}

} // namespace QVSongLrcPrivate

inline QStringView QVSongLine::textView() const
{
    if (m_textIsSlice)
        return {m_source->constData() + m_position, qsizetype(m_textLength)};
    return m_extra ? QStringView(m_extra->text) : QStringView();
}

inline QStringView QVSongLine::keyView() const
{
    if (m_keyIsSlice) // between "[" and ":"
        return {m_source->constData() + m_position - m_prefixLength + 1, qsizetype(m_prefixLength) - 2};
    return m_extra ? QStringView(m_extra->key) : QStringView();
}

inline qsizetype QVSongLine::timeCount() const
{
    return m_extra && m_extra->times ? m_extra->times->size() : m_ownTimeCount;
}

inline qint64 QVSongLine::timeAt(qsizetype index) const
{
    return m_extra && m_extra->times ? m_extra->times->at(index) : m_ownTimes[index];
}

inline qint64 QVSongLine::firstTime() const
{
    return timeCount() == 0 ? 0 : timeAt(0);
}

/// displayText() as a part of the source, or an absent text if it is none.
inline QStringView QVSongLine::displaySlice() const
{
    if (!m_displayIsSlice)
        return {};
    return {m_source->constData() + m_position - m_prefixLength,
            m_prefixLength + qsizetype(m_textLength) + (m_isProperty ? 1 : 0)};
}

inline qsizetype QVSongLine::displayLength() const
{
    using namespace QVSongLrcPrivate;
    if (m_displayIsSlice)
        return displaySlice().size();
    qsizetype length = textOrPlaceholder(textView()).size();
    if (m_isProperty)
        return textOrPlaceholder(keyView()).size() + length + 3;
    for (qsizetype i = 0; i < timeCount(); ++i)
        length += TimeText::tagLength(timeAt(i));
    return length;
}

/// Writes displayText(), which has displayLength() code units, and returns the end of it.
inline char16_t *QVSongLine::writeDisplayText(char16_t *out) const
{
    using namespace QVSongLrcPrivate;
    if (m_displayIsSlice)
        return writeText(out, displaySlice());
    if (m_isProperty)
        return writePropertyTag(out, textOrPlaceholder(keyView()), textOrPlaceholder(textView()));
    for (qsizetype i = 0; i < timeCount(); ++i)
        out = TimeText::writeTag(out, timeAt(i));
    return writeText(out, textOrPlaceholder(textView()));
}
