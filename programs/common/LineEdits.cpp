// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineEdits.h"

#include "model/TimeForm.h"

#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVWordTimes.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace QVSongLrcPrivate;

namespace {

bool isBlank(const std::shared_ptr<QVSongLine> &line)
{
    return !line->isProperty() && line->aryTimes()->isEmpty() && line->lineText().trimmed().isEmpty();
}

void removeOuterBlanks(QVSongLineList &lines)
{
    while (!lines.isEmpty() && isBlank(lines.first()))
        lines.removeFirst();
    while (!lines.isEmpty() && isBlank(lines.last()))
        lines.removeLast();
}

// As much of a text as an error message shows.
std::string beginOf(const QString &text)
{
    constexpr qsizetype ShownLength = 60;
    return text.left(ShownLength).toStdString();
}

LineEdits::Error outOfRange(const QVSongLine &line, qint64 milliseconds)
{
    return LineEdits::Error("the line \"" + beginOf(line.displayText())
                            + (milliseconds < 0 ? "\" would begin before 0; --clamp moves it to 0"
                                                : "\" would be past 9999:59.99"));
}

} // namespace

void LineEdits::shift(QVSongLineList &lines, qint64 milliseconds, BelowZero belowZero, Words words)
{
    for (const auto &line : lines) {
        if (line->isProperty())
            continue;
        const auto times = line->aryTimes();
        if (std::any_of(times->cbegin(), times->cend(), [&](qint64 time) {
                return milliseconds > LatestTime - time
                    || (milliseconds < -time && belowZero == BelowZero::Fails);
            }))
            throw outOfRange(*line, milliseconds);
        if (words == Words::Move) {
            const auto text =
                QVWordTimes::shifted(line->lineText(), milliseconds,
                                     belowZero == BelowZero::Fails ? QVWordTimes::BelowZero::Fails
                                                                   : QVWordTimes::BelowZero::BecomesZero);
            if (!text)
                throw outOfRange(*line, milliseconds);
            line->setLineText(*text);
        }
        line->shiftAllTime(milliseconds);
    }
}

std::optional<qint64> LineEdits::takeOffset(QVSongLineList &lines, const QString &text)
{
    const QVLyricImport lyric(text);
    QStringList headers;
    for (const QVLyricRemark &remark : lyric.remarks()) {
        if (remark.kind == QVLyricRemark::Kind::Offset)
            headers += text.sliced(qsizetype(remark.range.location), qsizetype(remark.range.length));
    }
    if (headers.isEmpty())
        return std::nullopt;
    if (headers.size() > 1)
        throw Error("it has two offsets");
    const QString &header = headers.first();
    const QString value = header.sliced(header.indexOf(u':') + 1).chopped(1).trimmed();
    bool isNumber = false;
    const qint64 offset = value.toLongLong(&isNumber);
    if (!isNumber)
        throw Error("its offset is not a whole number: " + beginOf(header));
    const qsizetype removed = lines.removeIf([&](const std::shared_ptr<QVSongLine> &line) {
        return !line->isProperty() && line->aryTimes()->isEmpty() && line->lineText().trimmed() == header;
    });
    if (removed == 0) // the documents read it as a part of another line
        return std::nullopt;
    removeOuterBlanks(lines);
    return offset;
}

void LineEdits::mark(QVEditSong &song)
{
    const auto lines = song.aryLines();
    const auto dense = std::make_shared<QVSongLineList>(*lines);
    dense->removeIf(isBlank);
    const QVSongLineList before = *dense;
    song.setAryLines(dense);
    if (song.insertCopyrightMark()) {
        const qsizetype place =
            std::mismatch(before.cbegin(), before.cend(), dense->cbegin()).first - before.cbegin();
        // Right after the line that precedes it, ahead of blank ones.
        qsizetype at = place == 0 ? 0 : lines->indexOf(before[place - 1]) + 1;
        for (qsizetype i = place; i < place + dense->size() - before.size(); ++i)
            lines->insert(at++, dense->at(i));
    }
    song.setAryLines(lines);
}

qsizetype LineEdits::timesWithThousandths(const QVSongLineList &lines)
{
    qsizetype count = 0;
    for (const auto &line : lines) {
        const auto times = line->aryTimes();
        if (!line->isProperty())
            count +=
                std::count_if(times->cbegin(), times->cend(), [](qint64 time) { return time % 10 != 0; });
    }
    return count;
}
