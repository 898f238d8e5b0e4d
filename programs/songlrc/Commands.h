// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/common/LookupOptions.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <exception>

/// The program's exit status.
enum ExitStatus {
    Done = 0,
    NegativeAnswer = 1, ///< the lyrics differ, nothing was found, or the service replied with an error
    WrongUsage = 2,
    Failed = 3, ///< a file or the network failed, or memory ran out
    Interrupted = 130,
};

/// \p text for a terminal, in UTF-8, with control characters, such as the carriage returns of a lyric, replaced by
/// visible symbols.
QByteArray visible(QString text);

/// Prints "songlrc: " and \p message as one line on standard error.
void reportError(const QString &message);

/// The same, and with \p json also prints the error as an object on standard output, with \p file unless it is null.
void reportError(const QString &message, int code, bool json, const QString &file = {});

/// Reports an exception; std::bad_alloc gets a message of its own.
void reportFailure(const std::exception &error, bool json, const QString &file = {});

/// The command line. Each command reads only the options that it has.
struct Options
{
    QStringList files;
    QByteArray encoding;       ///< for reading; empty: detected
    QByteArray outputEncoding; ///< for writing; empty: that of the input, UTF-8 on standard output
    QString output;
    bool inPlace = false;
    bool json = false;
    bool noTags = false;
    qint64 milliseconds = 0;
    QString title;
    QString artist;
    QString link;
    LookupOptions lookup;
};

/// The commands. parse() and preview() report a file that fails and continue with the next.
namespace Commands {

ExitStatus parse(const Options &options);
ExitStatus format(const Options &options);
ExitStatus preview(const Options &options);
ExitStatus shift(const Options &options);
ExitStatus mark(const Options &options);
ExitStatus compare(const Options &options);

} // namespace Commands
