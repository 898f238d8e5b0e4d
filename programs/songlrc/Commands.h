// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/common/LookupOptions.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <exception>

/// What a run of the program ends with.
enum ExitStatus {
    Done = 0,
    NegativeAnswer = 1, ///< the documents differ; nothing was found; the service refused
    WrongUsage = 2,
    Failed = 3, ///< a file could not be read or written, or the network failed
    Interrupted = 130,
};

/// Text for a terminal, in UTF-8: control characters, a lyric's carriage returns among them, as their symbols.
QByteArray visible(QString text);

/// Prints "songlrc: " and the message on standard error, in one line.
void reportError(const QString &message);

/// The same, and with \p json an object on standard output that says so, too, with \p file unless it is absent.
void reportError(const QString &message, int code, bool json, const QString &file = {});

/// Reports what went wrong with a file, memory that ran out included.
void reportFailure(const std::exception &error, bool json, const QString &file = {});

/// What the command line said; each command reads what concerns it.
struct Options
{
    QStringList files;
    QByteArray encoding;       ///< to read files in; empty: their own
    QByteArray outputEncoding; ///< to write in; empty: that of the file read, on standard output UTF-8
    QString output = QStringLiteral("-");
    bool inPlace = false;
    bool json = false;
    bool noTags = false;
    qint64 milliseconds = 0;
    QString title;
    QString artist;
    QString link;
    LookupOptions lookup;
};

/// The commands, each answering the exit status. A file that fails among several is reported and the others
/// are done.
namespace Commands {

ExitStatus parse(const Options &options);
ExitStatus format(const Options &options);
ExitStatus preview(const Options &options);
ExitStatus shift(const Options &options);
ExitStatus mark(const Options &options);
ExitStatus compare(const Options &options);

} // namespace Commands
