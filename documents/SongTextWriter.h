// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/OwnedString.h"

#include <QString>

namespace QVSongLrcPrivate {

/// Writes the song text of a lyric while the lyric is read. Lines that stay as they are get copied in runs.
class SongTextWriter
{
public:
    explicit SongTextWriter(const QString &source);

    /// Takes over a line of the source with its line feed, which is added if it is missing at the end of the text.
    /// Returns the position of the line in the song text.
    qsizetype keep(QStringView line)
    {
        if (line.utf16() != m_runEnd) {
            closeRun();
            m_runBegin = line.utf16();
        }
        const qsizetype position = m_length + (line.utf16() - m_runBegin);
        m_runEnd = line.utf16() + line.size() + 1;
        return position;
    }

    /// Makes room for a line of \p length code units, and writes the line feed behind it. The pointer holds until
    /// the next call.
    char16_t *addLine(qsizetype length)
    {
        closeRun();
        reserve(length + 1);
        char16_t *const line = m_text + m_length;
        line[length] = u'\n';
        m_length += length + 1;
        return line;
    }

    /// The position of the next line.
    qsizetype position() const { return m_length + (m_runEnd - m_runBegin); }

    QString finish();

private:
    void closeRun();
    void reserve(qsizetype length);

    const QString &m_source;
    QString m_songText;
    char16_t *m_text = nullptr;           // of m_songText
    qsizetype m_length = 0;               // of what is written
    const char16_t *m_runBegin = nullptr; // lines of the source that follow what is written
    const char16_t *m_runEnd = nullptr;
};

} // namespace QVSongLrcPrivate
