// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVPreviewSong.h>

#include "LyricReader.h"
#include "Moments.h"
#include "QVLineWriter.h"
#include "model/HugePages.h"
#include "model/LineBlocks.h"
#include "model/OwnedString.h"
#include "model/QVSongLine_p.h"
#include "model/TimeText.h"

#include <algorithm>
#include <vector>

using namespace QVSongLrcPrivate;

namespace {

// The lines of a preview in the order of the text, as slices of that text.
struct Lines
{
    explicit Lines(QStringView text)
        : blocks(expectedLines(text))
    {
        firsts.reserve(std::size_t(expectedLines(text)));
        preferHugePages(firsts.data(), expectedLines(text));
        repeats.reserve(std::size_t(expectedLines(text) / 4));
    }

    void append(std::vector<Moment> &moments, const LineSlice &slice, QVTextRange range, qint64 milliseconds)
    {
        QVSongLine &line = blocks.append(slice, range);
        LineBlocks::addTime(line, milliseconds);
        moments.push_back({milliseconds, count++});
    }

    LineBlocks blocks;
    qsizetype count = 0;
    std::vector<qsizetype> properties; // their indexes
    std::vector<Moment> firsts;        // of properties and of the first tags of lines
    std::vector<Moment> repeats;       // of the other tags
    qsizetype displayLength = 0;       // of all lines with their line feeds
};

Lines readLines(QStringView text)
{
    Lines lines(text);
    quint64 offset = 0; // of the line's text in a text that has no tags and is not yet sorted
    qint64 propertyCount = 0;
    readLyric(
        text,
        [&](QStringView, const TagScanner::Property &property) {
            const auto [key, value] = property;
            lines.properties.push_back(lines.count);
            lines.append(lines.firsts, {value.utf16() - text.utf16(), value, key.size() + 2, key},
                         {offset, quint64(value.size())}, propertyCount * 1000 + 200);
            lines.displayLength += key.size() + value.size() + 4;
            ++propertyCount;
            if (!value.isEmpty())
                offset += quint64(value.size()) + 1;
        },
        [&](const LyricLine &line) {
            const QStringView lineText = line.text();
            for (const LyricLine::TimeTag &tag : line.tags) {
                // Intended: until the preview is written, the length includes the tags after this one.
                lines.append(&tag == line.tags.begin() ? lines.firsts : lines.repeats,
                             {lineText.utf16() - text.utf16(), lineText, 0, QStringView()},
                             {offset, quint64(line.raw.size() - tag.end)}, tag.milliseconds);
                lines.displayLength += TimeText::tagLength(tag.milliseconds) + lineText.size() + 1;
            }
            offset += (line.tags.isEmpty() ? 0 : quint64(lineText.size())) + 1;
        });
    return lines;
}

} // namespace

struct QVPreviewSong::Private
{
    std::shared_ptr<QVSongLineList> lines;
    std::vector<Moment> lyricMoments; // of the lyric lines of the last build, in order
    QString songText;
    QString tagSongText;
};

QVPreviewSong::QVPreviewSong()
    : d(std::make_unique<Private>())
{
}

QVPreviewSong::~QVPreviewSong() = default;

void QVPreviewSong::buildWithLrcText(const QString &text)
{
    Lines read = readLines(text);
    std::vector<Moment> moments = sortedMoments(std::move(read.firsts), std::move(read.repeats));
    read.blocks.setText(QString::fromRawData(text.constData(), text.size()));
    const auto lines = std::make_shared<QVSongLineList>();
    lines->reserve(qsizetype(moments.size()));
    for (const Moment &moment : moments)
        lines->append(read.blocks.line(moment.index));

    // Writing the preview is fast if the lines slice a text in which they are in play order. But a text with many
    // tags is repeated for each of them: if that takes too much memory, the lines slice the text they come from.
    if (read.displayLength <= 2 * text.size())
        read.blocks.setText(QVLineWriter::gatherDisplayTexts(*lines, read.displayLength));
    else
        read.blocks.setText(ownedString(text));

    // The times of properties ascend, so sorting has not changed their order.
    auto property = read.properties.cbegin();
    std::size_t lyricCount = 0;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        if (property != read.properties.cend() && moments[i].index == *property)
            ++property;
        else
            moments[lyricCount++] = {moments[i].milliseconds, qsizetype(i)};
    }
    moments.resize(lyricCount);
    d->lyricMoments = std::move(moments);
    d->lines = lines;
}

qsizetype QVPreviewSong::lineIndexAt(qint64 milliseconds) const
{
    const auto isEarlier = [](const Moment &a, const Moment &b) { return a.milliseconds < b.milliseconds; };
    const std::vector<Moment> &moments = d->lyricMoments;
    const auto after = std::upper_bound(moments.cbegin(), moments.cend(), Moment{milliseconds, 0}, isEarlier);
    if (after == moments.cbegin())
        return -1;
    return std::lower_bound(moments.cbegin(), after, *std::prev(after), isEarlier)->index;
}

QString QVPreviewSong::previewSongTextWithHasTag(bool hasTag)
{
    if (!d->lines)
        return QStringLiteral("");
    return hasTag ? QVLineWriter::writeDisplayTexts(*d->lines) : QVLineWriter::writeLineTexts(*d->lines);
}

std::shared_ptr<QVSongLineList> QVPreviewSong::aryLines()
{
    return d->lines;
}

std::shared_ptr<const QVSongLineList> QVPreviewSong::aryLines() const
{
    return d->lines;
}

void QVPreviewSong::setAryLines(std::shared_ptr<QVSongLineList> lines)
{
    d->lines = std::move(lines);
}

QString QVPreviewSong::songText() const
{
    return d->songText;
}

void QVPreviewSong::setSongText(const QString &text)
{
    d->songText = ownedString(text);
}

QString QVPreviewSong::tagSongText() const
{
    return d->tagSongText;
}

void QVPreviewSong::setTagSongText(const QString &text)
{
    d->tagSongText = ownedString(text);
}
