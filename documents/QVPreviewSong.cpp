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
    std::vector<Entry> entries;
    std::vector<Moment> moments;
    entries.reserve(std::size_t(expectedLines(text)));
    preferHugePages(entries.data(), expectedLines(text));
    moments.reserve(std::size_t(expectedLines(text)));
    preferHugePages(moments.data(), expectedLines(text));
    quint64 offset = 0; // of the line's text in a text that has no tags and is not yet sorted
    qint64 propertyCount = 0;
    qsizetype displayLength = 0;
    const auto append = [&](const Entry &entry, qint64 milliseconds, qsizetype tagLength) {
        moments.push_back({milliseconds, qsizetype(entries.size())});
        entries.push_back(entry);
        displayLength += tagLength + entry.text.size() + 1;
    };
    readLyric(
        text,
        [&](QStringView, const TagScanner::Property &property) {
            const auto [key, value] = property;
            append({key, value, {offset, quint64(value.size())}}, propertyCount * 1000 + 200, key.size() + 3);
            ++propertyCount;
            if (!value.isEmpty())
                offset += quint64(value.size()) + 1;
        },
        [&](const LyricLine &line) {
            for (const LyricLine::TimeTag &tag : line.tags) {
                // Intended: until the preview is written, the length includes the tags after this one.
                append({QStringView(), line.text(), {offset, quint64(line.raw.size() - tag.end)}},
                       tag.milliseconds, TimeText::tagLength(tag.milliseconds));
            }
            offset += (line.tags.isEmpty() ? 0 : quint64(line.text().size())) + 1;
        });
    sortMoments(moments);

    // The lines slice a text in which they are in play order, which makes writing them fast. But a text with many
    // tags is repeated for each of them: if that takes too much memory, the lines slice the text they come from.
    const bool isGathered = displayLength <= 2 * text.size();
    QString source = isGathered ? QString(displayLength + 64, Qt::Uninitialized) : ownedString(text);
    char16_t *const begin = isGathered ? reinterpret_cast<char16_t *>(source.data()) : nullptr;
    preferHugePages(begin, displayLength);
    char16_t *out = begin;
    const char16_t *const textEnd = QStringView(text).utf16() + text.size();
    LineBlocks lines(qsizetype(entries.size()));
    std::size_t lyricCount = 0;
    for (qsizetype i = 0; i < qsizetype(moments.size()); ++i) {
        constexpr qsizetype Ahead = 16;
        if (i + Ahead < qsizetype(moments.size())) {
            const Entry &ahead = entries[std::size_t(moments[std::size_t(i + Ahead)].index)];
            __builtin_prefetch(&ahead);
        }
        if (i + Ahead / 2 < qsizetype(moments.size())) {
            const Entry &ahead = entries[std::size_t(moments[std::size_t(i + Ahead / 2)].index)];
            __builtin_prefetch(ahead.text.utf16());
            __builtin_prefetch(ahead.text.utf16() + 32);
            __builtin_prefetch(ahead.text.utf16() + 63);
        }
        const auto [milliseconds, index] = moments[std::size_t(i)];
        const auto &[key, lineText, range] = entries[std::size_t(index)];
        LineSlice slice{lineText.utf16() - QStringView(text).utf16(), lineText, 0, key, isGathered};
        if (!key.isNull())
            slice.prefixLength = key.size() + 2;
        if (isGathered) {
            const char16_t *const display = out;
            if (key.isNull()) {
                out = TimeText::writeTag(out, milliseconds);
                slice.prefixLength = out - display;
                if (lineText.size() <= 64 && textEnd - lineText.utf16() >= 64)
                    std::memcpy(out, lineText.utf16(), 128), out += lineText.size();
                else
                    out = writeText(out, lineText);
            } else {
                out = writePropertyTag(out, key, lineText);
            }
            *out++ = u'\n';
            slice.position = display - begin + slice.prefixLength;
        }
        LineBlocks::addTime(lines.append(slice, range), milliseconds);
        if (key.isNull())
            moments[lyricCount++] = {milliseconds, i};
    }
    moments.resize(lyricCount);
    d->lyricMoments = std::move(moments);
    if (isGathered)
        source.truncate(displayLength);
    d->lines = lines.finish(source);
}

qsizetype QVPreviewSong::lineIndexAt(qint64 milliseconds) const
{
    const auto &moments = d->lyricMoments;
    const Moment asked{milliseconds, 0};
    const auto after = std::upper_bound(moments.cbegin(), moments.cend(), asked, Moment::isEarlier);
    if (after == moments.cbegin())
        return -1;
    return std::lower_bound(moments.cbegin(), after, *std::prev(after), Moment::isEarlier)->index;
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
