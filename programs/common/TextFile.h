// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "TextEncoding.h"

#include <QString>

#include <stdexcept>

/// A file that can't be read or written; what() is one line, "name: reason".
class FileError : public std::runtime_error
{
public:
    FileError(const QString &file, const QString &reason);
};

/// The name that stands for standard input and output.
inline constexpr QLatin1StringView StandardStream("-");

/// Reads a file, or standard input, in the encoding named or in its own (decodeText()).
/// \throws FileError
DecodedText readTextFile(const QString &file, const QByteArray &encoding = {});

/// Replaces a file's content, or writes to standard output. A file that could not be written in full is left
/// as it was; a device or pipe is written to directly. \throws FileError
void writeTextFile(const QString &file, const QString &text, const TextEncoding &encoding);

/// Writes bytes to standard output at once.
/// \throws FileError
void writeStandardOutput(const QByteArray &bytes);
