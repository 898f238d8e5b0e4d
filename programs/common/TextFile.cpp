// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "TextFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace {

void writeAll(QFileDevice &device, const QString &file, const QByteArray &bytes)
{
    if (device.write(bytes) != bytes.size() || !device.flush())
        throw FileError(file, device.errorString());
}

// Qt reads a name that starts with ":" as a resource.
QString localName(const QString &file)
{
    return file.startsWith(u':') ? QStringLiteral("./") + file : file;
}

constexpr QLatin1StringView StandardOutput("standard output");

} // namespace

FileError::FileError(const QString &file, const QString &reason)
    : std::runtime_error(QStringLiteral("%1: %2").arg(file, reason).toStdString())
{
}

DecodedText readTextFile(const QString &file, const QByteArray &encoding)
{
    const bool isStandardInput = file == StandardStream;
    const QString name = isStandardInput ? QStringLiteral("standard input") : file;
    QFile device(localName(file));
    const bool opened =
        isStandardInput ? device.open(stdin, QIODevice::ReadOnly) : device.open(QIODevice::ReadOnly);
    if (!opened)
        throw FileError(name, device.errorString());
    const QByteArray bytes = device.readAll();
    if (device.error() != QFileDevice::NoError)
        throw FileError(name, device.errorString());
    auto decoded = decodeText(bytes, encoding);
    if (!decoded) {
        const QString kind = encoding.isEmpty()
            ? QStringLiteral("any known encoding")
            : QStringLiteral("the encoding %1").arg(QString::fromLatin1(encoding));
        throw FileError(name, QStringLiteral("not text in ") + kind);
    }
    return *std::move(decoded);
}

void writeTextFile(const QString &file, const QString &text, const TextEncoding &encoding)
{
    const auto bytes = encodeText(text, encoding);
    if (!bytes) {
        throw FileError(file == StandardStream ? QString(StandardOutput) : file,
                        QStringLiteral("the text has characters that the encoding %1 does not have")
                            .arg(QString::fromLatin1(encoding.name)));
    }
    if (file == StandardStream) {
        writeStandardOutput(*bytes);
        return;
    }
    // QSaveFile would replace a device or pipe by a regular file.
    const QString path = localName(file);
    if (const QFileInfo info(path); info.exists() && !info.isFile() && !info.isDir()) {
        QFile device(path);
        if (!device.open(QIODevice::WriteOnly))
            throw FileError(file, device.errorString());
        writeAll(device, file, *bytes);
        return;
    }
    QSaveFile device(path);
    if (!device.open(QIODevice::WriteOnly))
        throw FileError(file, device.errorString());
    writeAll(device, file, *bytes);
    if (!device.commit())
        throw FileError(file, device.errorString());
}

void writeStandardOutput(const QByteArray &bytes)
{
    QFile device;
    if (!device.open(stdout, QIODevice::WriteOnly))
        throw FileError(StandardOutput, device.errorString());
    writeAll(device, StandardOutput, bytes);
}
