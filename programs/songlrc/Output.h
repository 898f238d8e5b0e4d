// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/common/TextEncoding.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <exception>
#include <string>

/// The program's exit status. Of several files the highest one counts.
enum ExitStatus {
    Done = 0,
    NegativeAnswer = 1, ///< the lyrics differ, nothing was found, a check has warnings, a file would change
    WrongUsage = 2,
    Failed = 3, ///< a file or the network failed, or memory ran out
    Interrupted = 130,
};

/// \p text for a terminal, in UTF-8, with control characters, such as the carriage returns of a lyric, replaced by
/// visible symbols, and those that change the direction of the text by U+FFFD.
QByteArray visible(const QString &text);

/// The same for a text with file names in it. Bytes that are not UTF-8 stay as they are.
QByteArray visible(const std::string &bytes);

/// The name of a file in messages.
std::string shownName(const std::string &file);

/// Writes \p bytes to standard output. \throws StandardOutputError
void print(const QByteArray &bytes);

/// Prints "songlrc: " and \p message as one line on standard error.
void report(const std::string &message);

/// The same for an error, which with \p json is also printed as an object on standard output, with \p file unless it is
/// empty. \throws StandardOutputError, and then nothing is printed
void reportError(const std::string &message, int code, bool json, const std::string &file = {});

/// Reports an exception; std::bad_alloc gets a message of its own.
void reportFailure(const std::exception &error, bool json, const std::string &file = {});

/// Reports the encoding of \p file if it was guessed.
void reportGuess(const std::string &file, const DecodedText &read);

/// A bar on standard error, if that is a terminal, when work on many files takes more than a second.
class Progress
{
public:
    explicit Progress(size_t total)
        : m_total(total)
    {
    }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress() { erase(); }

    /// Begins the work on the next file.
    void step();

    /// Erases the bar before something else is printed. The next step draws it again.
    static void erase();

private:
    using Clock = std::chrono::steady_clock;

    const size_t m_total;
    size_t m_done = 0;
    Clock::time_point m_nextDrawing = Clock::now() + std::chrono::seconds(1);
    inline static bool s_isShown = false;
};
