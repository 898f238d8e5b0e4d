// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LineEdits.h"

#include "model/TimeForm.h"

#include <QVSongLrc/QVWordTimes.h>

#include <algorithm>
#include <limits>

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

LineEdits::Error outOfRange(const QVSongLine &line, qint64 milliseconds)
{
    constexpr qsizetype ShownLength = 60;
    return LineEdits::Error("the line \"" + line.displayText().left(ShownLength).toStdString()
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
                return milliseconds > TimeForm::Limit - time
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

std::optional<qint64> LineEdits::takeOffset(QVSongLineList &lines)
{
    std::optional<qint64> offset;
    for (qsizetype i = lines.size() - 1; i >= 0; --i) {
        constexpr auto Start = "[offset:"_L1;
        const QString text = lines[i]->isProperty() || !lines[i]->aryTimes()->isEmpty()
            ? QString()
            : lines[i]->lineText().trimmed();
        if (!text.startsWith(Start, Qt::CaseInsensitive) || !text.endsWith(u']'))
            continue;
        if (offset)
            throw Error("it has two offsets");
        bool isNumber = false;
        offset = text.sliced(Start.size()).chopped(1).trimmed().toLongLong(&isNumber);
        if (!isNumber)
            throw Error("its offset is not a whole number: " + text.toStdString());
        lines.removeAt(i);
    }
    if (offset)
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
