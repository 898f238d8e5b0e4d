// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QVLineWriter.h"

#include "model/HugePages.h"
#include "model/QVSongLine_p.h"

namespace QVSongLrcPrivate {
namespace {

// Calls visit() for every line that is not null. The lines of a preview may be anywhere in memory, so a later line is
// fetched while one is visited.
template <typename Visit>
void forEachLine(const QVSongLineList &lines, Visit visit)
{
    constexpr qsizetype Ahead = 32;
    const auto at = lines.cbegin();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i + Ahead < lines.size())
            __builtin_prefetch(at[i + Ahead].get());
        if (QVSongLine *const line = at[i].get())
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
    // Where the next display text must be for the source to be the result.
    const char16_t *expected = nullptr;
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
    return source && isSource && total == source->size() && source->endsWith(u'\n') ? *source : QString();
}

QString QVLineWriter::writeDisplayTexts(const QVSongLineList &lines)
{
    qsizetype total = 0;
    QString source = placeDisplayTexts(lines, total);
    if (!source.isNull())
        return source;
    return write(lines, total,
                 [](const QVSongLine &line, char16_t *at) { return line.writeDisplayText(at); });
}

QString QVLineWriter::gatherDisplayTexts(const QVSongLineList &lines, qsizetype total)
{
    // Texts up to this length are copied as blocks of this length. A copy that depends on the length would take
    // longer, since the processor mispredicts it for most lines.
    constexpr qsizetype BlockLength = 64;
    constexpr qsizetype Large = 10'000;
    constexpr qsizetype Ahead = 32;
    QString gathered(total + BlockLength, Qt::Uninitialized);
    char16_t *const begin = reinterpret_cast<char16_t *>(gathered.data());
    preferHugePages(begin, total);
    char16_t *out = begin;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        // In a large document, the next line and its text may be anywhere, so they are fetched from memory early.
        if (lines.size() >= Large && i + 2 * Ahead < lines.size()) {
            __builtin_prefetch(lines[i + 2 * Ahead].get());
            const char16_t *const text = lines[i + Ahead]->textView().utf16();
            for (qsizetype unit = 0; unit < BlockLength; unit += 31)
                __builtin_prefetch(text + unit);
        }
        QVSongLine &line = *lines[i];
        char16_t *const display = out;
        const QStringView text = line.textView();
        if (line.m_isProperty) {
            out = writePropertyTag(out, line.keyView(), text);
        } else {
            out = TimeText::writeTag(out, line.firstTime());
            line.m_prefixLength = quint8(out - display);
            if (line.m_textIsSlice && text.size() <= BlockLength
                && line.m_source->size() - line.m_position >= BlockLength) {
                std::memcpy(out, text.utf16(), BlockLength * sizeof(char16_t));
                out += text.size();
            } else {
                out = writeText(out, text);
            }
        }
        if (line.m_textIsSlice) {
            line.m_position = display + line.m_prefixLength - begin;
            line.m_displayIsSlice = true;
        }
        *out++ = u'\n';
    }
    gathered.truncate(total);
    return gathered;
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
