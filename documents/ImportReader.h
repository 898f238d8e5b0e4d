// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ImportedLine.h"
#include "model/LineBlocks.h"
#include "model/TextScan.h"

namespace QVSongLrcPrivate {

/// Reads a text for QVLyricImport, and makes the lines as the documents do.
class ImportReader
{
public:
    explicit ImportReader(const QString &text);

    std::shared_ptr<QVSongLineList> takeLines()
    {
        m_lines.setText(m_text);
        return m_lines.lines();
    }
    QList<QVLyricRemark> takeRemarks() { return m_remarks.take(); }

private:
    quint16 survey();
    void replaceCarriageReturns();
    void readLines();
    void remarkOnLineEnd(QStringView lineEnd);
    void appendUsual(QStringView line, qsizetype tagsLength);
    void appendAny(QStringView raw);
    QVSongLine &append(const LineSlice &slice);
    qsizetype positionOf(QStringView part) const;

    const QString &m_original;
    QString m_text; // the same with line feeds for carriage returns alone
    LineBlocks m_lines;
    RemarkList m_remarks;
    const quint16 m_findings;
    ImportedLine m_line;
    QVarLengthArray<TextScan::UsualTag, 8> m_tags; // that a line begins with
    qsizetype m_lineEnd = 0;                       // length of the first line end; -1 after a remark
    qsizetype m_blankLines = -1;                   // since the last line; -1 before the first
};

} // namespace QVSongLrcPrivate
