// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <stdexcept>

/// A file, a folder or the song index can't be used; what() says why, in one line.
class StorageError : public std::runtime_error
{
public:
    explicit StorageError(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};
