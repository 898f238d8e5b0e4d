// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVEditSong.h>

#include "LyricReader.h"
#include "QVLineWriter.h"
#include "SongTextWriter.h"
#include "model/LineBlocks.h"
#include "model/OwnedString.h"
#include "model/QVSongLine_p.h"
#include "model/TimeText.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

using namespace QVSongLrcPrivate;

struct QVEditSong::Private
{
    QString songText;
    QString tagSongText;
    std::shared_ptr<QVSongLineList> lines = std::make_shared<QVSongLineList>();
};

QVEditSong::QVEditSong()
    : d(std::make_unique<Private>())
{
}

QVEditSong::~QVEditSong() = default;

void QVEditSong::buildWithLrcText(const QString &text)
{
    SongTextWriter writer(text);
    LineBlocks lines(expectedLines(text));
    readLyric(
        text,
        [&](QStringView raw, const TagScanner::Property &property) {
            const auto [key, value] = property;
            const qsizetype length = key.size() + value.size() + 3;
            const bool isKept = raw.size() == length && raw.front() == u'[' && !value.isEmpty();
            const qsizetype position = isKept ? writer.keep(raw) : writer.position();
            if (!isKept)
                writePropertyTag(writer.addLine(length), key, value);
            const qsizetype prefixLength = key.size() + 2;
            lines.append({position + prefixLength, value, prefixLength, key, true},
                         {quint64(position), quint64(length)});
        },
        [&](const LyricLine &line) {
            qsizetype position = 0;
            qsizetype prefixLength = line.textBegin();
            if (line.isDisplay) {
                position = writer.keep(line.raw);
            } else {
                prefixLength = 0;
                for (const LyricLine::TimeTag &tag : line.tags)
                    prefixLength += TimeText::tagLength(tag.milliseconds);
                position = writer.position();
                char16_t *out = writer.addLine(prefixLength + line.text().size());
                for (const LyricLine::TimeTag &tag : line.tags)
                    out = TimeText::writeTag(out, tag.milliseconds);
                writeText(out, line.text());
            }
            QVSongLine &songLine =
                lines.append({position + prefixLength, line.text(), prefixLength, QStringView(), true},
                             {quint64(position), quint64(prefixLength + line.text().size())});
            for (const LyricLine::TimeTag &tag : line.tags)
                LineBlocks::addTime(songLine, tag.milliseconds);
        });
    const QString songText = writer.finish();
    lines.setText(songText);
    d->lines = lines.lines();
    d->songText = songText;
}

QString QVEditSong::songText() const
{
    return d->songText;
}

void QVEditSong::setSongText(const QString &text)
{
    d->songText = ownedString(text);
}

void QVEditSong::updateSongText()
{
    d->songText = QVLineWriter::writeDisplayTexts(*d->lines);
}

std::shared_ptr<QVSongLineList> QVEditSong::aryLines()
{
    return d->lines;
}

std::shared_ptr<const QVSongLineList> QVEditSong::aryLines() const
{
    return d->lines;
}

void QVEditSong::setAryLines(std::shared_ptr<QVSongLineList> lines)
{
    d->lines = lines ? std::move(lines) : std::make_shared<QVSongLineList>();
}

void QVEditSong::insertLine(std::shared_ptr<QVSongLine> line, qint64 atIndex)
{
    if (!line)
        throw std::invalid_argument("QVEditSong::insertLine: the line is null");
    const qint64 count = d->lines->size();
    if (atIndex < 0 || atIndex > count)
        atIndex = std::max<qint64>(count - 1, 0); // intended: before the last line, not after it
    d->lines->insert(atIndex, std::move(line));
}

void QVEditSong::deleteLineAtIndex(qint64 index)
{
    if (index >= 0 && index < d->lines->size())
        d->lines->removeAt(index);
}

void QVEditSong::deleteLineAtIndexs(const std::set<quint64> &indexes)
{
    if (indexes.empty())
        return;
    QVSongLineList &lines = *d->lines;
    if (*indexes.rbegin() >= quint64(lines.size()))
        throw std::out_of_range("QVEditSong::deleteLineAtIndexs: an index is not below the number of lines");

    auto kept = lines.begin() + qsizetype(*indexes.begin());
    for (auto index = indexes.cbegin(); index != indexes.cend();) {
        const auto from = lines.begin() + qsizetype(*index) + 1;
        const auto to = ++index == indexes.cend() ? lines.end() : lines.begin() + qsizetype(*index);
        kept = std::move(from, to, kept);
    }
    lines.resize(kept - lines.begin());
}

bool QVEditSong::isEqual(const QVEditSong *other) const
{
    return other
        && std::equal(d->lines->cbegin(), d->lines->cend(), other->d->lines->cbegin(),
                      other->d->lines->cend(),
                      [](const auto &line, const auto &peer) { return line && line->isEqual(peer.get()); });
}

QString QVEditSong::tagSongText() const
{
    return d->tagSongText;
}

void QVEditSong::setTagSongText(const QString &text)
{
    d->tagSongText = ownedString(text);
}
