// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "RemarkList.h"

#include <QString>
#include <QVarLengthArray>

namespace QVSongLrcPrivate {

/// Reads single lines for an import, and remarks on what the documents would read otherwise.
///
/// Every "[" of a line is looked at once, in order. A tag of the documents' grammar is either read as they read
/// it or remarked on, so a line without remarks is what they make of it.
class ImportedLine
{
public:
    ImportedLine(RemarkList &remarks, bool mayHaveWideBrackets);

    /// Reads \p raw, a line without its line end. What the functions below return holds until the next call.
    void read(QStringView raw);

    /// Whether the line has only white space.
    bool isBlank() const { return m_isBlank; }

    /// A property's key as it is written; empty for a lyric line.
    QStringView key() const { return m_key; }
    bool isSmallKey() const { return (m_key[0].unicode() & m_key[1].unicode() & 0x20) != 0; }

    /// The times in ms.
    const QVarLengthArray<qint64, 8> &times() const { return m_times; }

    /// The words or the value: a part of the line unless isRewritten().
    QStringView words() const { return isRewritten() ? QStringView(m_rewritten) : m_words; }
    bool isRewritten() const { return !m_rewritten.isEmpty(); }

private:
    using Kind = QVLyricRemark::Kind;

    qsizetype readTimes(QStringView line);
    qsizetype readTime(QStringView line, qsizetype from, qsizetype bracket);
    bool readProperty(QStringView line, qsizetype bracket);
    void readWords(QStringView line, qsizetype from);
    void remarkOnProperty(QStringView tags);

    RemarkList &m_remarks;
    const bool m_mayHaveWideBrackets;
    bool m_isBlank = false;
    QStringView m_key;
    QVarLengthArray<qint64, 8> m_times;
    QStringView m_words;
    QString m_rewritten;
};

} // namespace QVSongLrcPrivate
