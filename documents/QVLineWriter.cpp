// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QVLineWriter.h"

#include "model/QVSongLine_p.h"

#include <limits>

namespace QVSongLrcPrivate {
namespace {

// Calls visit() for every line that is not null. Lines are scattered over the heap, so a later line is
// prefetched while one is visited; on long lyrics this saves a third of the time.
template <typename Visit>
void forEachLine(const QVSongLineList &lines, Visit visit)
{
    constexpr qsizetype Ahead = 8;
    constexpr qsizetype CacheLine = 64;
    const auto at = lines.cbegin();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i + Ahead < lines.size()) {
            const char *const ahead = reinterpret_cast<const char *>(at[i + Ahead].get());
            __builtin_prefetch(ahead);
            __builtin_prefetch(ahead + CacheLine);
        }
        if (QVSongLine *const line = at[i].get())
            visit(*line);
    }
}

template <typename Length>
qsizetype totalLength(const QVSongLineList &lines, Length length)
{
    qsizetype total = 0;
    forEachLine(lines, [&](const QVSongLine &line) { total += length(line) + 1; });
    return total;
}

} // namespace

// writeLine(line, at, text, location) writes a line at `at`, which is index `location` of `text`, and returns
// the end of what it wrote. `total` is the length of all lines with their line feeds.
template <typename WriteLine>
QString QVLineWriter::write(const QVSongLineList &lines, qsizetype total, WriteLine writeLine)
{
    QString text(total, Qt::Uninitialized);
    char16_t *const begin = reinterpret_cast<char16_t *>(text.data());
    char16_t *at = begin;
    forEachLine(lines, [&](QVSongLine &line) {
        at = writeLine(line, at, text, at - begin);
        *at++ = u'\n';
    });
    return text;
}

qsizetype QVLineWriter::displayLength(const QVSongLineList &lines)
{
    return totalLength(lines, [](const QVSongLine &line) { return line.displayLength(); });
}

// Writes the display text at `at`, which points into `text`. A line whose text is a slice then slices `text`.
char16_t *QVLineWriter::writeAndSlice(QVSongLine &line, char16_t *at, const QString &text)
{
    char16_t *const end = line.writeDisplayText(at);
    if (line.m_textIsSlice) {
        const qsizetype length = line.m_textView.size();
        const qsizetype tagsLength = end - at - length;
        line.setTextSlice(text, {end - (line.m_isProperty ? 1 : 0) - length, length});
        // A shared list can change without notice, so only the tags of the line's own times are kept.
        if (!line.m_isProperty && !line.m_sharedTimes && tagsLength <= std::numeric_limits<quint32>::max())
            line.m_tagsLength = quint32(tagsLength);
    }
    return end;
}

QString QVLineWriter::writeSongText(const QVSongLineList &lines)
{
    return write(lines, displayLength(lines),
                 [](QVSongLine &line, char16_t *at, const QString &text, qsizetype location) {
                     char16_t *const end = writeAndSlice(line, at, text);
                     line.m_txtRg = {quint64(location), quint64(end - at)};
                     return end;
                 });
}

void QVLineWriter::gatherTexts(const QVSongLineList &lines, qsizetype maxLength)
{
    const qsizetype total = displayLength(lines);
    if (total > maxLength)
        return;
    write(lines, total, [](QVSongLine &line, char16_t *at, const QString &text, qsizetype) {
        return writeAndSlice(line, at, text);
    });
}

QString QVLineWriter::writeDisplayTexts(const QVSongLineList &lines)
{
    return write(lines, displayLength(lines),
                 [](QVSongLine &line, char16_t *at, const QString &, qsizetype location) {
                     char16_t *const end = line.writeDisplayText(at);
                     line.m_txtRg = {quint64(location), quint64(end - at)};
                     return end;
                 });
}

QString QVLineWriter::writeLineTexts(const QVSongLineList &lines)
{
    const qsizetype total =
        totalLength(lines, [](const QVSongLine &line) { return textOrPlaceholder(line.m_textView).size(); });
    return write(lines, total, [](QVSongLine &line, char16_t *at, const QString &, qsizetype location) {
        line.m_txtRg = {quint64(location), quint64(line.m_textView.size())};
        return writeText(at, textOrPlaceholder(line.m_textView));
    });
}

} // namespace QVSongLrcPrivate
