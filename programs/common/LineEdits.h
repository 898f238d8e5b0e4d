// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVEditSong.h>

#include <optional>
#include <stdexcept>

/// What the programs do to the lines of a song.
namespace LineEdits {

/// The latest time that QVLyricImport reads, 9999:59.99, in ms.
inline constexpr qint64 LatestTime = 599'999'990;

/// The song can't be changed as asked; what() says why.
class Error : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class Words {
    Stay,
    Move,
};

enum class BelowZero {
    Fails,
    BecomesZero,
};

/// Adds \p milliseconds to all times of lyric lines, and with Words::Move to those of word tags, too. \throws Error
/// when a time would be past 9999:59.99, or below 0 with BelowZero::Fails.
void shift(QVSongLineList &lines, qint64 milliseconds, BelowZero belowZero, Words words);

/// Removes the header "[offset:MS]", on which QVLyricImport remarks in \p text, from its \p lines, and the blank lines
/// that are then the first or the last. Returns its value in ms; nothing when there is none. \throws Error when there
/// are two, or the value is not a whole number.
std::optional<qint64> takeOffset(QVSongLineList &lines, const QString &text);

/// QVEditSong::insertCopyrightMark() with blank lines left out of account, as if the documents had read the song.
void mark(QVEditSong &song);

/// The number of times that lose a last digit when they are written, because time tags have hundredths.
qsizetype timesWithThousandths(const QVSongLineList &lines);

} // namespace LineEdits
