// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Output.h"

#include "Json.h"
#include "programs/common/TextFile.h"

#include <cstdio>
#include <new>
#include <unistd.h>

namespace {

bool isBidiControl(char16_t c)
{
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E)
        || (c >= 0x2066 && c <= 0x2069);
}

QString withVisibleControls(QString text)
{
    for (QChar &c : text) {
        if (c < u' ')
            c = QChar(0x2400 + c.unicode());
        else if (c == QChar(0x7F))
            c = QChar(0x2421);
        else if (c.category() == QChar::Other_Control || isBidiControl(c.unicode()))
            c = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

QByteArray visible(const QString &text)
{
    return wellFormed(withVisibleControls(text)).toUtf8();
}

QByteArray visible(const std::string &bytes)
{
    return QByteArray::fromStdString(nameOfText(withVisibleControls(textOfName(bytes))));
}

void print(const QByteArray &bytes)
{
    if (!bytes.isEmpty() && isatty(STDOUT_FILENO))
        Progress::erase();
    writeStandardOutput(bytes);
}

std::string shownName(const std::string &file)
{
    return file == StandardStream ? "standard input" : file;
}

void report(const std::string &message)
{
    Progress::erase();
    std::fprintf(stderr, "songlrc: %s\n", visible(message).constData());
}

void reportError(const std::string &message, int code, bool json, const std::string &file)
{
    if (json) {
        const QByteArray error = Json::object({{"domain", "\"songlrc\""},
                                               {"code", QByteArray::number(code)},
                                               {"localizedDescription", Json::value(textOfName(message))}});
        print((file.empty() ? Json::object({{"error", error}})
                            : Json::object({{"file", Json::value(textOfName(file))}, {"error", error}}))
              + '\n');
    }
    report(message);
}

void reportFailure(const std::exception &error, bool json, const std::string &file)
{
    std::string message = error.what();
    if (dynamic_cast<const std::bad_alloc *>(&error))
        message = (file.empty() ? "" : shownName(file) + ": ") + "out of memory";
    reportError(message, Failed, json, file);
}

void reportGuess(const std::string &file, const DecodedText &read)
{
    if (read.guess) {
        report(shownName(file) + ": the encoding is a guess: " + read.encoding.name.toStdString() + ", "
               + std::to_string(*read.guess) + " of 100");
    }
}

void Progress::step()
{
    const auto now = Clock::now();
    if (now >= m_nextDrawing && isatty(STDERR_FILENO)) {
        constexpr size_t Width = 40;
        const std::string filled(Width * m_done / m_total, '#');
        std::fprintf(stderr, "\r[%-*s] %zu of %zu files", int(Width), filled.c_str(), m_done, m_total);
        m_nextDrawing = now + std::chrono::milliseconds(100);
        s_isShown = true;
    }
    ++m_done;
}

void Progress::erase()
{
    if (s_isShown)
        std::fputs("\r\x1B[K", stderr);
    s_isShown = false;
}
