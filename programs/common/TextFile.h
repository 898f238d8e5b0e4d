// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "FileError.h"
#include "TextEncoding.h"

#include <QString>

#include <string>
#include <string_view>

/// The file name that means standard input or output.
inline constexpr std::string_view StandardStream("-");

/// Reads a file or standard input; see decodeText() for the encoding. \throws FileError
DecodedText readTextFile(const std::string &file, const QByteArray &encoding = {});

enum class Writing {
    Replace,
    DryRun, ///< changes nothing, but refuses what Replace refuses, as far as can be found out
};

/// Replaces the content of \p file, through replaceFile(), or writes to standard output.
///
/// \return whether the content changes.
/// \throws FileError when writing fails, or the text has characters that the encoding does not have. The old file is
/// unchanged then.
bool writeTextFile(const std::string &file, const QString &text, const TextEncoding &encoding,
                   Writing writing = Writing::Replace);

/// Writes \p bytes to standard output. \throws StandardOutputError
void writeStandardOutput(const QByteArray &bytes);
