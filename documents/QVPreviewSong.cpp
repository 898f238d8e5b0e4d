// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVPreviewSong.h>

#include "model/OwnedString.h"
#include "model/QVSongLine_p.h"
#include "model/TimeText.h"
#include "LyricReader.h"
#include "QVLineWriter.h"

#include <algorithm>
#include <vector>

using namespace QVSongLrcPrivate;

namespace {

// By play time, which beyond 2^53 ms is coarser than the time, and stable. What is sorted are small keys: the
// lines themselves lie all over the heap.
void sortByPlayTime(QVSongLineList &lines)
{
    struct Key
    {
        double playTime;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(std::size_t(lines.size()));
    for (qsizetype i = 0; i < lines.size(); ++i)
        keys.push_back({lines[i]->playTime(), i});
    const auto earlier = [](const Key &a, const Key &b) { return a.playTime < b.playTime; };
    if (std::is_sorted(keys.cbegin(), keys.cend(), earlier))
        return;
    std::stable_sort(keys.begin(), keys.end(), earlier);
    QVSongLineList sorted;
    sorted.reserve(lines.size());
    for (const Key &key : keys)
        sorted.append(std::move(lines[key.index]));
    lines = std::move(sorted);
}

} // namespace

QVPreviewSong::QVPreviewSong() = default;

QVPreviewSong::~QVPreviewSong() = default;

void QVPreviewSong::setSongText(const QString &text)
{
    m_songText = ownedString(text);
}

void QVPreviewSong::setTagSongText(const QString &text)
{
    m_tagSongText = ownedString(text);
}

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

    struct Stamp
    {
        qint64 milliseconds;
        qsizetype end; // of the tag, in the raw line
    };
    QVarLengthArray<Stamp, 16> stamps;
    quint64 offset = 0; // where the line's text would lie if texts alone were written
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
            stamps.clear();
            qsizetype end = 0;
            while (const auto tag = TagScanner::timeTag(rawLine, end)) {
                end = tag->end;
                stamps.append({TimeText::fromTag(rawLine.sliced(tag->begin, end - tag->begin)), end});
            }
            const QStringView lineText = stamps.isEmpty() ? QStringView() : rawLine.sliced(end);
            for (const Stamp &stamp : std::as_const(stamps)) {
                // Provisional, and as long as what follows the stamp's own tag.
                appendLine(lineText, stamp.milliseconds).m_txtRg = {offset,
                                                                    quint64(rawLine.size() - stamp.end)};
            }
            offset += quint64(lineText.size()) + 1;
        });

    sortByPlayTime(*lines);
    // Texts that lie together in play order, tags in front, are written the faster. But a line of many tags
    // repeats its text for each, which can be far more than was read: then the lines go on slicing that.
    QVLineWriter::gatherTexts(*lines, 2 * text.size());
    lines->squeeze();
    m_aryLines = lines;
}

QString QVPreviewSong::previewSongTextWithHasTag(bool hasTag)
{
    if (!m_aryLines)
        return QStringLiteral("");
    return hasTag ? QVLineWriter::writeDisplayTexts(*m_aryLines) : QVLineWriter::writeLineTexts(*m_aryLines);
}
