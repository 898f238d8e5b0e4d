// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLine.h>

#include <optional>

/// Lines as text, which the editor reads by QVLyricImport.
namespace LineText {

/// The line as LRC text. Unlike in displayText(), times keep their thousandths.
QString exact(const QVSongLine &line);

/// What \p line will be when it is written and read again. Words that look like tags may be some. Line ends in the
/// words make further lines. At least one line.
QVSongLineList reread(const QVSongLine &line);

/// The times in what the user typed, in ms: time tags, or one without its brackets. Nothing if there are words.
std::optional<QVTimeList> typedTimes(const QString &typed);

} // namespace LineText
