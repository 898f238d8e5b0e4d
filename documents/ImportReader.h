// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ImportedLine.h"

#include <QVSongLrc/QVSongLine.h>

namespace QVSongLrcPrivate {

/// Reads a text for QVLyricImport, and makes the lines.
class ImportReader
{
public:
    explicit ImportReader(QStringView text);

    std::shared_ptr<QVSongLineList> lines() const { return m_lines; }
    QList<QVLyricRemark> takeRemarks() { return m_remarks.take(); }

private:
    void readLine(QStringView raw);

    const std::shared_ptr<QVSongLineList> m_lines = std::make_shared<QVSongLineList>();
    RemarkList m_remarks;
    ImportedLine m_line;
    qsizetype m_blankLines = 0; // since the last line
};

} // namespace QVSongLrcPrivate
