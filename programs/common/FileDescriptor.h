// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <string>
#include <unistd.h>

/// Owns a file descriptor. Invalid when it was made from a negative one.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor()
    {
        if (isValid())
            close(m_descriptor);
    }

    bool isValid() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }

private:
    const int m_descriptor;
};

/// Reads everything up to the end. \throws FileError with \p name
QByteArray readAll(int descriptor, const std::string &name);

/// Writes all \p bytes. Returns 0, or the error number.
int writeAll(int descriptor, const QByteArray &bytes);
