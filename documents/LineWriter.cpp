// SPDX-License-Identifier: MIT
#include "LineWriter.h"

#include "../model/QVSongLine_p.h"

// length(line) answers the code units that write(line, at, text, location) then writes at `at`, which is
// `location` of `text`; write answers the place after them and sets the line's range.
template <typename Length, typename Write>
QString LineWriter::write(const QVSongLineList &lines, Length length, Write write)
{
    qsizetype total = 0;
    for (const auto &line : lines) {
        if (line)
            total += length(*line) + 1;
    }
    QString text(total, Qt::Uninitialized);
    char16_t *const begin = reinterpret_cast<char16_t *>(text.data());
    char16_t *at = begin;
    for (const auto &line : lines) {
        if (line) {
            at = write(*line, at, text, at - begin);
            *at++ = u'\n';
        }
    }
    return text;
}

QString LineWriter::writeSongText(const QVSongLineList &lines)
{
    return write(
        lines, [](const QVSongLine &line) { return line.displayLength(); },
        [](QVSongLine &line, char16_t *at, const QString &text, qsizetype location) {
            char16_t *const end = line.writeDisplayText(at);
            line.m_txtRg = {quint64(location), quint64(end - at)};
            const qsizetype textEnd = location + (end - at) - (line.m_isProperty ? 1 : 0);
            line.moveTextSlice(text, textEnd - line.m_sliceLength);
            return end;
        });
}

QString LineWriter::writeDisplayTexts(const QVSongLineList &lines)
{
    return write(
        lines, [](const QVSongLine &line) { return line.displayLength(); },
        [](QVSongLine &line, char16_t *at, const QString &, qsizetype location) {
            char16_t *const end = line.writeDisplayText(at);
            line.m_txtRg = {quint64(location), quint64(end - at)};
            return end;
        });
}

QString LineWriter::writeLineTexts(const QVSongLineList &lines)
{
    return write(
        lines, [](const QVSongLine &line) { return shownText(line.text()).size(); },
        [](QVSongLine &line, char16_t *at, const QString &, qsizetype location) {
            line.m_txtRg = {quint64(location), quint64(line.text().size())};
            return writeText(at, shownText(line.text()));
        });
}
