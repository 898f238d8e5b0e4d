// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Both documents read any sequence of code units. Their ranges match their texts, and previews are sorted.

#include "FuzzText.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>

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
    song.insertCopyrightMark();
    for (const auto &line : *song.aryLines())
        line->shiftAllTime(qint64(size) * 1'000 - 100'000);
    song.updateSongText();
    requireRanges(*song.aryLines(), song.songText(), displayText);

    QVPreviewSong preview;
    preview.buildWithLrcText(text);
    requireRanges(*preview.aryLines(), preview.previewSongTextWithHasTag(true), displayText);
    requireRanges(*preview.aryLines(), preview.previewSongTextWithHasTag(false), lineText);
    for (qsizetype i = 1; i < preview.aryLines()->size(); ++i)
        require(preview.aryLines()->at(i - 1)->playTime() <= preview.aryLines()->at(i)->playTime());
    return 0;
}
