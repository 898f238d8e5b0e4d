// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

// The library's work as the shortest loops that give the same kind of result, without its interface and its
// special cases. The benchmarks compare the library with it.
namespace Baseline {

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

/// Reads text without properties, and writes it back: finds the tags with the library's scanner, allocates
/// one shared object per line with its times and a slice of the text, and writes everything once.
Document build(const QString &text);

/// Copies \p text line by line from the lines' ranges, and sets the ranges.
QString copyWithRanges(const QVSongLineList &lines, const QString &text);

/// The lines that are not at one of \p indexes, which must be sorted.
QVSongLineList without(const QVSongLineList &lines, const std::vector<qsizetype> &indexes);

} // namespace Baseline
