// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QVLineWriter.h"

#include "model/QVSongLine_p.h"

namespace QVSongLrcPrivate {
namespace {

// Calls visit() for every line that is not null.
template <typename Visit>
void forEachLine(const QVSongLineList &lines, Visit visit)
{
    for (const auto &line : lines) {
        if (line)
            visit(*line);
    }
}

} // namespace

// writeLine(line, at) writes a line at `at` and returns the end of what it wrote. `total` is the length of all
// lines with their line feeds.
template <typename WriteLine>
QString QVLineWriter::write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine)
{
    QString text(total, Qt::Uninitialized);
    char16_t *at = reinterpret_cast<char16_t *>(text.data());
    forEachLine(lines, [&](QVSongLine &line) {
        at = writeLine(line, at);
        *at++ = u'\n';
    });
    return text;
}

// Sets the lines' ranges and the length of all display texts with their line feeds. Returns that text if it is the
// source of all lines, as it is while nobody has changed a line since a document was built; else an absent text.
QString QVLineWriter::placeDisplayTexts(const QVSongLineList &lines, qsizetype &total)
{
    const QString *source = nullptr; // of the last line
    const char16_t *expected =
        nullptr; // where that line's display text must be for the source to be the result
    bool isSource = true;
    total = 0;
    forEachLine(lines, [&](QVSongLine &line) {
        qsizetype length = 0;
        if (line.m_displayIsSlice) {
            const QStringView display = line.displaySlice();
            length = display.size();
            if (!source)
                expected = reinterpret_cast<const char16_t *>(line.m_source->constData());
            source = line.m_source;
            isSource = isSource && display.utf16() == expected;
            expected = display.utf16() + length + 1;
        } else {
            length = line.displayLength();
            isSource = false;
        }
        line.m_txtRg = {quint64(total), quint64(length)};
        total += length + 1;
    });
    return source && isSource && total == source->size() ? *source : QString();
}

QString QVLineWriter::writeDisplayTexts(const QVSongLineList &lines)
{
    qsizetype total = 0;
    const QString source = placeDisplayTexts(lines, total);
    if (!source.isNull())
        return source;
    return write(lines, total,
                 [](const QVSongLine &line, char16_t *at) { return line.writeDisplayText(at); });
}

QString QVLineWriter::writeLineTexts(const QVSongLineList &lines)
{
    qsizetype total = 0;
    forEachLine(lines, [&](QVSongLine &line) {
        line.m_txtRg = {quint64(total), quint64(line.textView().size())};
        total += textOrPlaceholder(line.textView()).size() + 1;
    });
    return write(lines, total, [](const QVSongLine &line, char16_t *at) {
        return writeText(at, textOrPlaceholder(line.textView()));
    });
}

} // namespace QVSongLrcPrivate
