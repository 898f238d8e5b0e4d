// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Both documents read any code units, and what they say of themselves holds.

#include "FuzzText.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>

namespace {

template <typename Shown>
void requireRanges(const QVSongLineList &lines, const QString &text, Shown shown)
{
    quint64 at = 0;
    for (const auto &line : lines) {
        const QString part = shown(*line);
        require(line->txtRg() == QVTextRange{at, quint64(part.size())});
        require(QStringView(text).sliced(qsizetype(at)).startsWith(part + u'\n'));
        at += quint64(part.size()) + 1;
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
