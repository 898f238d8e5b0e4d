// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <stdexcept>
#include <string>
#include <string_view>

// File names are bytes, in std::string, because a QString can't hold those that are not UTF-8.

/// A file can't be read or written; what() is one line, "name: reason", with the bytes of the name.
class FileError : public std::runtime_error
{
public:
    FileError(const std::string &file, const std::string &reason);
};

/// A file must not be replaced, since something of it would be lost. Nothing was changed.
class FileRefused : public FileError
{
public:
    using FileError::FileError;
};

/// Standard output can't be written.
class StandardOutputError : public FileError
{
public:
    explicit StandardOutputError(const std::string &reason);
};

/// The system's description of the error number \p code.
std::string systemError(int code);

/// \p bytes read as UTF-8. Each byte that is not UTF-8 becomes a lone surrogate, U+DC00 plus the byte, so that nothing
/// is lost: valid UTF-8 has no surrogates.
QString textOfName(std::string_view bytes);

/// The reverse of textOfName().
std::string nameOfText(const QString &text);
