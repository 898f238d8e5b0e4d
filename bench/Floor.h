// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

// The least work that the library's data model allows, to measure the library against: no interface, no odd
// cases, just the loops.
namespace Floor {

struct Line
{
    QString source;
    qsizetype begin = 0;
    qsizetype length = 0;
    QVTextRange range;
    QVTimeList times;
};

struct Document
{
    QList<std::shared_ptr<Line>> lines;
    QString songText;
};

/// Reads text without properties and writes it back: the same scan, one shared line object, its times, a
/// slice of the text, and everything written once.
Document build(const QString &text);

/// Copies a finished text line by line from where the lines' ranges say, and sets the ranges.
QString copyWithRanges(const QVSongLineList &lines, const QString &text);

/// The lines that are not at one of the indexes, which ascend.
QVSongLineList without(const QVSongLineList &lines, const std::vector<qsizetype> &indexes);

} // namespace Floor
