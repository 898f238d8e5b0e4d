// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVPreviewSong.h>

#include "LyricReader.h"
#include "QVLineWriter.h"
#include "model/OwnedString.h"
#include "model/QVSongLine_p.h"
#include "model/TimeText.h"

#include <algorithm>
#include <vector>

using namespace QVSongLrcPrivate;

namespace {

// Sorts by play time, a double, so times above 2^53 ms may count as equal. Lines with equal play times keep
// their order. It sorts small keys, since following pointers to the lines in every comparison is slow.
void sortByPlayTime(QVSongLineList &lines)
{
    std::vector<std::pair<double, qsizetype>> keys; // play time, index
    keys.reserve(std::size_t(lines.size()));
    for (qsizetype i = 0; i < lines.size(); ++i)
        keys.emplace_back(lines[i]->playTime(), i);
    // Comparing the indexes, too, would allow std::sort(), but is slower on the usual, almost sorted lyric.
    const auto isEarlier = [](const auto &a, const auto &b) { return a.first < b.first; };
    if (std::is_sorted(keys.cbegin(), keys.cend(), isEarlier))
        return;
    std::stable_sort(keys.begin(), keys.end(), isEarlier);
    QVSongLineList sorted;
    sorted.reserve(lines.size());
    for (const auto &[playTime, index] : keys)
        sorted.append(std::move(lines[index]));
    lines = std::move(sorted);
}

} // namespace

struct QVPreviewSong::Private
{
    std::shared_ptr<QVSongLineList> lines;
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
    const QString source = ownedString(text);
    const auto lines = std::make_shared<QVSongLineList>();
    const auto appendLine = [&](QStringView lineText, qint64 milliseconds) -> QVSongLine & {
        QVSongLine &line = *lines->emplaceBack(std::make_shared<QVSongLine>());
        line.setTextSlice(source, lineText);
        line.m_ownTimes.append(milliseconds);
        return line;
    };

    struct TimeTag
    {
        qint64 milliseconds;
        qsizetype end; // in the raw line
    };
    QVarLengthArray<TimeTag, 16> timeTags;
    quint64 offset = 0; // of the line's text in a text that has no tags and is not yet sorted
    qint64 propertyCount = 0;
    readLyric(
        source,
        [&](const TagScanner::Property &property) {
            QVSongLine &line = appendLine(property.value, propertyCount * 1000 + 200);
            line.m_isProperty = true;
            line.m_propertyStr = property.key.toString();
            line.m_txtRg = {offset, quint64(property.value.size())};
            ++propertyCount;
            if (!property.value.isEmpty())
                offset += quint64(property.value.size()) + 1;
        },
        [&](QStringView rawLine) {
            timeTags.clear();
            qsizetype end = 0;
            while (const auto tag = TagScanner::timeTag(rawLine, end)) {
                end = tag->end;
                timeTags.append({TimeText::fromTag(rawLine.sliced(tag->begin, end - tag->begin)), end});
            }
            const QStringView lineText = timeTags.isEmpty() ? QStringView() : rawLine.sliced(end);
            for (const TimeTag &tag : std::as_const(timeTags)) {
                // Intended: until the preview is written, the length includes the tags after this one.
                appendLine(lineText, tag.milliseconds).m_txtRg = {offset, quint64(rawLine.size() - tag.end)};
            }
            offset += quint64(lineText.size()) + 1;
        });

    sortByPlayTime(*lines);
    // Writing the preview is faster if the lines' tags and texts are stored in play order. But a text with
    // many tags is repeated for each of them: if that takes too much memory, the lines keep slicing the
    // source.
    QVLineWriter::gatherTexts(*lines, 2 * text.size());
    lines->squeeze();
    d->lines = lines;
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
