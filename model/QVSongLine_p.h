// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

// Functions that the documents call for every line of a lyric, inline for speed.

#include "TimeText.h"

#include <QVSongLrc/QVSongLine.h>

#include <algorithm>
#include <cstring>

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

} // namespace QVSongLrcPrivate

inline const QVTimeList &QVSongLine::times() const
{
    return m_sharedTimes ? *m_sharedTimes : m_ownTimes;
}

inline QVTimeList &QVSongLine::times()
{
    m_tagsLength = 0; // the caller may change the times
    return m_sharedTimes ? *m_sharedTimes : m_ownTimes;
}

inline qint64 QVSongLine::firstTime() const
{
    const QVTimeList &list = times();
    return list.isEmpty() ? 0 : list.front();
}

/// Makes the text a part of \p source, which the line keeps alive.
inline void QVSongLine::setTextSlice(const QString &source, QStringView slice)
{
    m_text = source;
    m_textView = slice;
    m_textIsSlice = true;
    m_tagsLength = 0;
}

inline qsizetype QVSongLine::displayLength() const
{
    using namespace QVSongLrcPrivate;
    if (m_tagsLength > 0)
        return m_tagsLength + m_textView.size();
    qsizetype length = textOrPlaceholder(m_textView).size();
    if (m_isProperty)
        return textOrPlaceholder(m_propertyStr).size() + length + 3;
    for (const qint64 time : times())
        length += TimeText::tagLength(time);
    return length;
}

/// Writes displayText(), which has displayLength() code units, and returns the end of it.
inline char16_t *QVSongLine::writeDisplayText(char16_t *out) const
{
    using namespace QVSongLrcPrivate;
    if (m_tagsLength > 0) // tags and text are next to each other in m_text
        return writeText(out, {m_textView.data() - m_tagsLength, m_textView.size() + m_tagsLength});
    if (m_isProperty) {
        *out++ = u'[';
        out = writeText(out, textOrPlaceholder(m_propertyStr));
        *out++ = u':';
        out = writeText(out, textOrPlaceholder(m_textView));
        *out++ = u']';
        return out;
    }
    for (const qint64 time : times())
        out = TimeText::writeTag(out, time);
    return writeText(out, textOrPlaceholder(m_textView));
}
