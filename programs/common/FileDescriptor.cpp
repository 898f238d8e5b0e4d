// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "FileDescriptor.h"

#include "FileError.h"

#include <cerrno>

QByteArray readAll(int descriptor, const std::string &name)
{
    constexpr qsizetype Block = 64 * 1024;
    QByteArray bytes;
    for (;;) {
        const qsizetype size = bytes.size();
        bytes.resize(size + std::max(Block, size / 2));
        const ssize_t count = read(descriptor, bytes.data() + size, size_t(bytes.size() - size));
        if (count < 0 && errno != EINTR)
            throw FileError(name, systemError(errno));
        bytes.truncate(size + std::max<ssize_t>(count, 0));
        if (count == 0)
            return bytes;
    }
}

int writeAll(int descriptor, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count = write(descriptor, bytes.constData() + done, size_t(bytes.size() - done));
        if (count < 0 && errno != EINTR)
            return errno;
        done += std::max<ssize_t>(count, 0);
    }
    return 0;
}
