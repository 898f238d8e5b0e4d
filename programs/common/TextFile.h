// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "TextEncoding.h"

#include <QString>

#include <stdexcept>

/// A file can't be read or written; what() is one line, "name: reason".
class FileError : public std::runtime_error
{
public:
    FileError(const QString &file, const QString &reason);
};

/// The file name that means standard input or output.
inline constexpr QLatin1StringView StandardStream("-");

/// Reads a file or standard input; see decodeText() for the encoding. \throws FileError
DecodedText readTextFile(const QString &file, const QByteArray &encoding = {});

/// Replaces a file atomically, or writes to standard output. When writing fails, the old file is unchanged. Devices and
/// pipes are written directly. \throws FileError
void writeTextFile(const QString &file, const QString &text, const TextEncoding &encoding);

/// Writes \p bytes to standard output and flushes. \throws FileError
void writeStandardOutput(const QByteArray &bytes);
