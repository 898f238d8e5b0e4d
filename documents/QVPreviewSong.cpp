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

// A line of the preview, before the lines are in order.
struct Entry
{
    QStringView key; // null: a lyric line
    QStringView text;
    QVTextRange range;
};

// Texts up to this length are copied as blocks of this length. A copy that depends on the length would take longer,
// since the processor mispredicts it for most lines.
constexpr qsizetype BlockLength = 64;

struct Entries
{
    std::vector<Entry> all;
    std::vector<Moment> firsts;  // of properties and of the first tags of lines
    std::vector<Moment> repeats; // of the other tags
    qsizetype displayLength = 0; // of all lines with their line feeds

    void append(std::vector<Moment> &moments, const Entry &entry, qint64 milliseconds, qsizetype tagLength)
    {
        moments.push_back({milliseconds, qsizetype(all.size())});
        all.push_back(entry);
        displayLength += tagLength + entry.text.size() + 1;
    }
};

Entries readEntries(QStringView text)
{
    Entries entries;
    entries.all.reserve(std::size_t(expectedLines(text)));
    preferHugePages(entries.all.data(), expectedLines(text));
    entries.firsts.reserve(std::size_t(expectedLines(text)));
    preferHugePages(entries.firsts.data(), expectedLines(text));
    entries.repeats.reserve(std::size_t(expectedLines(text) / 4));
    quint64 offset = 0; // of the line's text in a text that has no tags and is not yet sorted
    qint64 propertyCount = 0;
    readLyric(
        text,
        [&](QStringView, const TagScanner::Property &property) {
            const auto [key, value] = property;
            entries.append(entries.firsts, {key, value, {offset, quint64(value.size())}},
                           propertyCount * 1000 + 200, key.size() + 3);
            ++propertyCount;
            if (!value.isEmpty())
                offset += quint64(value.size()) + 1;
        },
        [&](const LyricLine &line) {
            for (const LyricLine::TimeTag &tag : line.tags) {
                // Intended: until the preview is written, the length includes the tags after this one.
                const QVTextRange range{offset, quint64(line.raw.size() - tag.end)};
                entries.append(&tag == line.tags.begin() ? entries.firsts : entries.repeats,
                               {QStringView(), line.text(), range}, tag.milliseconds,
                               TimeText::tagLength(tag.milliseconds));
            }
            offset += (line.tags.isEmpty() ? 0 : quint64(line.text().size())) + 1;
        });
    return entries;
}

// In a large text, what plays next may be anywhere, so it is fetched from memory before its turn.
void prefetch(const std::vector<Entry> &entries, const std::vector<Moment> &moments, std::size_t index)
{
    constexpr std::size_t Large = 10'000;
    constexpr std::size_t Ahead = 8;
    if (moments.size() < Large || index + 2 * Ahead >= moments.size())
        return;
    __builtin_prefetch(&entries[std::size_t(moments[index + 2 * Ahead].index)]);
    const char16_t *const text = entries[std::size_t(moments[index + Ahead].index)].text.utf16();
    for (int i = 0; i < BlockLength; i += 31)
        __builtin_prefetch(text + i);
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
    Entries entries = readEntries(text);
    std::vector<Moment> moments = sortedMoments(std::move(entries.firsts), std::move(entries.repeats));

    // The lines slice a text in which they are in play order, which makes writing them fast. But a text with many
    // tags is repeated for each of them: if that takes too much memory, the lines slice the text they come from.
    const bool isGathered = entries.displayLength <= 2 * text.size();
    QString source =
        isGathered ? QString(entries.displayLength + BlockLength, Qt::Uninitialized) : ownedString(text);
    const char16_t *const begin = QStringView(isGathered ? source : text).utf16();
    char16_t *out = isGathered ? reinterpret_cast<char16_t *>(source.data()) : nullptr;
    preferHugePages(out, entries.displayLength);
    const char16_t *const textEnd = QStringView(text).utf16() + text.size();
    LineBlocks lines(qsizetype(moments.size()));
    std::size_t lyricCount = 0;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        prefetch(entries.all, moments, i);
        const auto [milliseconds, index] = moments[i];
        const auto &[key, lineText, range] = entries.all[std::size_t(index)];
        LineSlice slice{lineText.utf16() - begin, lineText, key.isNull() ? 0 : key.size() + 2, key,
                        isGathered};
        if (isGathered) {
            const char16_t *const display = out;
            if (key.isNull()) {
                out = TimeText::writeTag(out, milliseconds);
                slice.prefixLength = out - display;
                if (lineText.size() <= BlockLength && textEnd - lineText.utf16() >= BlockLength) {
                    std::memcpy(out, lineText.utf16(), BlockLength * sizeof(char16_t));
                    out += lineText.size();
                } else {
                    out = writeText(out, lineText);
                }
            } else {
                out = writePropertyTag(out, key, lineText);
            }
            *out++ = u'\n';
            slice.position = display - begin + slice.prefixLength;
        }
        LineBlocks::addTime(lines.append(slice, range), milliseconds);
        if (key.isNull())
            moments[lyricCount++] = {milliseconds, qsizetype(i)};
    }
    if (isGathered)
        source.truncate(entries.displayLength);
    moments.resize(lyricCount);
    d->lyricMoments = std::move(moments);
    d->lines = lines.finish(source);
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
