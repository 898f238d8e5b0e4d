// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "RemarkList.h"

#include <QVSongLrc/QVSongLine.h>

#include <optional>

namespace QVSongLrcPrivate {

/// Reads a text for QVLyricImport, line by line.
///
/// Every "[" of a line is looked at once, in order, and a tag of the documents' grammar is either read as they do or
/// remarked on. So a line without remarks is what they make of it.
class ImportReader
{
public:
    explicit ImportReader(QStringView text);

    std::shared_ptr<QVSongLineList> lines() const { return m_lines; }
    QList<QVLyricRemark> takeRemarks() { return m_remarks.take(); }

private:
    using Kind = QVLyricRemark::Kind;

    void readLine(QStringView line);
    qsizetype readTimes(QStringView line);
    qsizetype readTime(QStringView line, qsizetype from, qsizetype bracket);
    bool readProperty(QStringView line, qsizetype bracket);
    QString readWords(QStringView line, qsizetype from);
    void remarkOnProperty(QStringView tags);
    QVSongLine &appendLine(const QString &text);

    const std::shared_ptr<QVSongLineList> m_lines = std::make_shared<QVSongLineList>();
    RemarkList m_remarks;
    bool m_hasWideBrackets = false;
    QVarLengthArray<qint64, 8> m_times; // of the line
    qsizetype m_blankLines = 0;         // since the last line
};

} // namespace QVSongLrcPrivate
