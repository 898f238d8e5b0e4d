// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// An import keeps the words of every line, and reads what was written as the same lines. Without remarks, its lines are
// those of the documents.

#include "FuzzText.h"

#include <QVSongLrc/QVSongLrc.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString writeTo(QVEditSong &song, const QVLyricImport &lyric)
{
    song.setAryLines(lyric.lines());
    song.updateSongText();
    return song.songText();
}

// The words of each line that is not blank: all but white space, digits, surrogates and what tags consist of.
QStringList words(const QString &text)
{
    QStringList result;
    for (QString line : text.split(u'\n')) {
        if (line.remove(u'\ufeff').trimmed().isEmpty())
            continue;
        line.removeIf([](QChar c) {
            return c.isSpace() || c.isDigit() || c.isSurrogate() || u"[]<>:.,"_s.contains(c);
        });
        result += line;
    }
    return result;
}

void removeBlank(QVSongLineList &lines)
{
    lines.removeIf([](const auto &line) { return line->displayText().trimmed().isEmpty(); });
}

void requireSameLine(const QVSongLine &imported, const QVSongLine &read)
{
    require(imported.isProperty() == read.isProperty() && imported.propertyStr() == read.propertyStr());
    require(imported.lineText() == read.lineText());
    const auto isSame = [](qint64 time, qint64 other) { return time == other || time == other + 1; };
    require(std::ranges::equal(*imported.aryTimes(), *read.aryTimes(), isSame));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fuzzText(data, size);
    const QString plain = QString(text).replace(u"\r\n"_s, u"\n"_s);
    const QVLyricImport lyric(text);
    QVEditSong song;
    const QString written = writeTo(song, lyric);
    QString joined;
    for (const auto &line : *song.aryLines())
        joined += line->displayText() + u'\n';
    require(written == joined);
    const QStringList before = words(QString(plain).replace(u'\r', u'\n'));
    const QStringList after = words(written);
    require(before.size() == after.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        qsizetype at = 0;
        for (const QChar c : before[i])
            at += at < after[i].size() && after[i][at].toLower() == c.toLower();
        require(at == after[i].size());
        require(before[i].size() - at <= text.count(u':')); // any character may be a time's separator
    }

    QVEditSong again;
    require(writeTo(again, QVLyricImport(written)) == written);
    for (const auto &line : *song.aryLines())
        for (qint64 &time : *line->aryTimes())
            time -= time % 10;
    require(song.isEqual(&again));

    require(std::ranges::is_sorted(lyric.remarks(), {}, [](auto &remark) { return remark.range.location; }));
    for (const QVLyricRemark &remark : lyric.remarks())
        require(!remark.range.isEmpty() && remark.range.end() <= quint64(text.size()));
    if (!lyric.remarks().isEmpty())
        return 0;
    QVEditSong read;
    read.buildWithLrcText(plain);
    removeBlank(*read.aryLines());
    const QVLyricImport imported(text);
    removeBlank(*imported.lines());
    require(imported.lines()->size() == read.aryLines()->size());
    for (qsizetype i = 0; i < read.aryLines()->size(); ++i)
        requireSameLine(*imported.lines()->at(i), *read.aryLines()->at(i));
    return 0;
}
