// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TextFile.h"

#include "FileDescriptor.h"
#include "ReplaceFile.h"

#include <cerrno>
#include <fcntl.h>

DecodedText readTextFile(const std::string &file, const QByteArray &encoding)
{
    const bool isStandardInput = file == StandardStream;
    const std::string name = isStandardInput ? "standard input" : file;
    const FileDescriptor opened(isStandardInput ? dup(STDIN_FILENO)
                                                : open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened.isValid())
        throw FileError(name, systemError(errno));
    auto decoded = decodeText(readAll(opened.get(), name), encoding);
    if (!decoded) {
        throw FileError(
            name,
            "not text in "
                + (encoding.isEmpty() ? "any known encoding" : "the encoding " + encoding.toStdString()));
    }
    return *std::move(decoded);
}

bool writeTextFile(const std::string &file, const QString &text, const TextEncoding &encoding,
                   Writing writing)
{
    const bool isStandardOutput = file == StandardStream;
    const auto bytes = encodeText(text, encoding);
    if (!bytes) {
        throw FileError(isStandardOutput ? "standard output" : file,
                        "the text has characters that the encoding " + encoding.name.toStdString()
                            + " does not have");
    }
    if (!isStandardOutput)
        return replaceFile(file, *bytes, writing);
    writeStandardOutput(*bytes);
    return true;
}

void writeStandardOutput(const QByteArray &bytes)
{
    if (const int error = writeAll(STDOUT_FILENO, bytes))
        throw StandardOutputError(systemError(error));
}
