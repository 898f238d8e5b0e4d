// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Both documents read any code units, and find what the tag scanner finds. Their ranges match their texts, previews
// are sorted, and a line whose text is a slice of a document's text shows every change, as a line with a text of its
// own does.

#include "FuzzText.h"
#include "model/TagScanner.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>
#include <QVSongLrc/QVUtils.h>

#include <vector>

using namespace QVSongLrcPrivate;

namespace {

// Requires that `text` is partOf(line) and a line feed for each line, and that the lines' ranges say where.
template <typename PartOf>
void requireRanges(const QVSongLineList &lines, const QString &text, PartOf partOf)
{
    quint64 at = 0;
    for (const auto &line : lines) {
        const QVTextRange range = line->txtRg();
        require(range.location == at && range.sliceOf(text) == partOf(*line));
        at = range.end() + 1;
        require(QVTextRange{range.end(), 1}.sliceOf(text) == u"\n");
    }
    require(at == quint64(text.size()));
}

// Requires that the lines are what the tag scanner finds in each raw line.
void requireTags(const QVSongLineList &lines, const QString &text)
{
    auto line = lines.cbegin();
    for (const QString &raw : text.split(u'\n', Qt::SkipEmptyParts)) {
        const auto tag = TagScanner::propertyTag(raw);
        if (tag) {
            const auto [key, value] =
                TagScanner::splitProperty(QStringView(raw).sliced(tag->begin, tag->end - tag->begin));
            require((*line)->isProperty() && (*line)->propertyStr() == key && (*line)->lineText() == value);
            ++line;
            if (!value.isEmpty())
                continue;
        }
        QVTimeList times;
        qsizetype end = 0;
        while (const auto time = TagScanner::timeTag(raw, end)) {
            times.append(QVUtils::getTimeInterval(raw.sliced(time->begin, time->end - time->begin)));
            end = time->end;
        }
        require(!(*line)->isProperty() && *(*line)->aryTimes() == times
                && (*line)->lineText() == raw.sliced(end));
        ++line;
    }
    require(line == lines.cend());
}

void change(QVSongLine &line, std::size_t way)
{
    switch (way % 10) {
    case 0:
        return line.appendTime(-1'500);
    case 1:
        return line.shiftAllTime(6'000'000);
    case 2:
        return line.updateWithTimeStr(QStringLiteral("[0:7.0]"), 0);
    case 3:
        return line.updateWithTimeStr({}, 0);
    case 4:
        return line.aryTimes()->clear();
    case 5:
        return line.setAryTimes(nullptr);
    case 6:
        return line.setLineText(line.lineText() + u'y');
    case 7:
        return line.updateWithText(QStringLiteral("[ti:a]"));
    case 8:
        return line.setIsProperty(!line.isProperty());
    default:
        line.lineText();
    }
}

void requireChangesToShow(QVEditSong &song, std::size_t way)
{
    const QVSongLineList &lines = *song.aryLines();
    std::vector<std::shared_ptr<QVTimeList>> times; // of every second line
    for (qsizetype i = 0; i < lines.size(); i += 2)
        times.push_back(lines[i]->aryTimes());
    song.updateSongText();
    QString expected;
    for (qsizetype i = 0; i < lines.size(); ++i, ++way) {
        QVSongLine own(*lines[i]);
        own.setLineText(own.lineText());
        if (i % 2 == 0) {
            times[std::size_t(i / 2)]->append(0);
            own.appendTime(0);
        }
        require(lines[i]->displayText() == own.displayText());
        change(*lines[i], way);
        change(own, way);
        require(lines[i]->displayText() == own.displayText());
        expected += own.displayText() + u'\n';
    }
    for (int i = 0; i < 2; ++i) {
        song.updateSongText();
        require(song.songText() == expected);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fuzzText(data, size);
    const auto displayText = [](const QVSongLine &line) { return line.displayText(); };
    const auto lineText = [](const QVSongLine &line) { return line.lineText(); };

    QVEditSong song;
    song.buildWithLrcText(text);
    requireRanges(*song.aryLines(), song.songText(), displayText);
    QVEditSong again;
    again.buildWithLrcText(text);
    require(song.isEqual(&again));
    requireTags(*again.aryLines(), text);
    song.insertCopyrightMark();
    for (const auto &line : *song.aryLines())
        line->shiftAllTime(qint64(size) * 1'000 - 100'000);
    song.updateSongText();
    requireRanges(*song.aryLines(), song.songText(), displayText);
    requireChangesToShow(song, size / sizeof(char16_t));
    requireRanges(*song.aryLines(), song.songText(), displayText);

    QVPreviewSong preview;
    preview.buildWithLrcText(text);
    requireRanges(*preview.aryLines(), preview.previewSongTextWithHasTag(true), displayText);
    requireRanges(*preview.aryLines(), preview.previewSongTextWithHasTag(false), lineText);
    for (qsizetype i = 1; i < preview.aryLines()->size(); ++i)
        require(preview.aryLines()->at(i - 1)->playTime() <= preview.aryLines()->at(i)->playTime());
    return 0;
}
