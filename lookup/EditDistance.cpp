// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "EditDistance.h"

#include <algorithm>
#include <array>
#include <vector>

namespace QVSongLrcPrivate {

// The table of distances is not computed cell by cell but 64 rows of a column at a time, as differences
// between neighbours that are -1, 0 or 1 and so fit two bit masks. Sources: G. Myers, "A fast bit-vector
// algorithm for approximate string matching based on dynamic programming", Journal of the ACM 46 (1999), and
// H. Hyyrö, "A bit-vector algorithm for computing Levenshtein and Damerau edit distances", Nordic Journal of
// Computing 10 (2003). The band of the table that a limit leaves is E. Ukkonen's, "Algorithms for approximate
// string matching", Information and Control 64 (1985).

namespace {

constexpr int WordBits = 64;
constexpr int ManyWords = 4; // crossed at once where there are as many

/// The rows of one word in one column: where the distance grows and shrinks from each row to the next.
struct Rows
{
    quint64 grows = ~quint64(0);
    quint64 shrinks = 0;
};

/// Where the distance grows and shrinks from one column to the next, a bit a row.
struct Step
{
    quint64 grows;
    quint64 shrinks;
};

/// Moves \p rows one column on. \p equal has a bit for each row whose code unit is the column's; \p above is
/// the step of the row above the first, in the lowest bits.
inline Step advance(Rows &rows, quint64 equal, Step above)
{
    equal |= above.shrinks;
    const quint64 diagonal = (((equal & rows.grows) + rows.grows) ^ rows.grows) | equal | rows.shrinks;
    const Step step{rows.shrinks | ~(diagonal | rows.grows), diagonal & rows.grows};
    const quint64 growsAbove = step.grows << 1 | above.grows;
    const quint64 shrinksAbove = step.shrinks << 1 | above.shrinks;
    rows.grows = shrinksAbove | ~(diagonal | growsAbove);
    rows.shrinks = growsAbove & diagonal;
    return step;
}

/// The rows at which each code unit stands in as many code units as \p WordCount words have bits.
template <int WordCount>
class Words
{
public:
    using Masks = std::array<quint64, WordCount>;

    explicit Words(QStringView units)
    {
        for (qsizetype row = 0; row < units.size(); ++row) {
            const size_t at = find(units[row]);
            m_keys[at] = keyOf(units[row]);
            m_masks[at][size_t(row / WordBits)] |= quint64(1) << row % WordBits;
        }
    }

    const Masks &rowsOf(QChar unit) const { return m_masks[find(unit)]; }

private:
    static constexpr size_t SlotCount = 2 * WordBits * WordCount; // so that it is never full

    static quint32 keyOf(QChar unit) { return unit.unicode() + 1u; } // 0 is a free slot

    size_t find(QChar unit) const
    {
        size_t at = (unit.unicode() ^ unit.unicode() >> 7) % SlotCount;
        while (m_keys[at] != 0 && m_keys[at] != keyOf(unit))
            at = (at + 1) % SlotCount;
        return at;
    }

    std::array<quint32, SlotCount> m_keys{};
    std::array<Masks, SlotCount> m_masks{};
};

/// The distance of \p text to \p pattern, which makes one word.
qint64 distanceToWord(QStringView pattern, QStringView text, qint64 limit)
{
    const Words<1> word(pattern);
    const int lastRow = int(pattern.size()) - 1;
    Rows rows;
    qint64 distance = pattern.size();
    qint64 hope = distance - text.size(); // the distance if every column to come brought it down
    for (const QChar unit : text) {
        const Step step = advance(rows, word.rowsOf(unit)[0], {1, 0});
        const qint64 change = qint64(step.grows >> lastRow & 1) - qint64(step.shrinks >> lastRow & 1);
        distance += change;
        hope += change + 1;
        if (hope > limit)
            return hope;
    }
    return distance;
}

/// The step of one row in one column.
struct Carry
{
    quint8 grows = 1;
    quint8 shrinks = 0;
};

/// Takes \p columns through the rows of \p units, which reach into the last of the words, and gives by how
/// much the distance changes on the way in the last row. \p carries are the steps of the row above, and then
/// of the last row. Several words at once keep the processor busy while each waits for its own last column.
template <int WordCount>
qint64 crossWords(QStringView units, QStringView columns, Carry *carries)
{
    const Words<WordCount> words(units);
    const int lastRow = int((units.size() - 1) % WordBits);
    std::array<Rows, WordCount> rows;
    qint64 change = 0;
    for (const QChar unit : columns) {
        const auto &equal = words.rowsOf(unit);
        Carry &carry = *carries++;
        Step above{carry.grows, carry.shrinks};
        for (size_t word = 0; word < WordCount; ++word) {
            const Step step = advance(rows[word], equal[word], above);
            const int last = word + 1 < WordCount ? WordBits - 1 : lastRow;
            above = {step.grows >> last & 1, step.shrinks >> last & 1};
        }
        carry = {quint8(above.grows), quint8(above.shrinks)};
        change += qint64(above.grows) - qint64(above.shrinks);
    }
    return change;
}

/// The distance of two texts of any length, \p shorter along the columns, when it is at most \p limit, which
/// is no less than the difference in length.
qint64 distanceInBand(QStringView longer, QStringView shorter, qint64 limit, const std::stop_token &stop)
{
    const qint64 height = longer.size();
    const qint64 width = shorter.size();
    // A path of limit steps strays from the diagonals of both corners by half of what they leave it.
    const qint64 toTheRight = (limit - (height - width)) / 2;
    const qint64 toTheLeft = toTheRight + (height - width);

    // To the right of the band the distance is taken to grow from column to column, to its left from row to
    // row: never too little, and right wherever a path within the limit goes.
    std::vector<Carry> carries(std::vector<Carry>::size_type(width), Carry{});
    qint64 corner = 0; // the distance above a word's first row, in front of its first column
    qint64 first = 0;
    qint64 distance = 0;
    qint64 rowCount = 0;
    for (qint64 top = 0; top < height; top += rowCount) {
        if (stop.stop_requested())
            return limit + 1;
        const bool isFull = height - top >= ManyWords * WordBits;
        rowCount = isFull ? ManyWords * WordBits : std::min<qint64>(WordBits, height - top);
        for (; first < top - toTheLeft; ++first)
            corner += carries[size_t(first)].grows - carries[size_t(first)].shrinks;
        const qint64 end = std::min(width, top + rowCount + toTheRight);
        corner += rowCount;
        const auto cross = isFull ? crossWords<ManyWords> : crossWords<1>;
        distance = corner
            + cross(longer.sliced(top, rowCount), shorter.sliced(first, end - first), carries.data() + first);
    }
    return distance;
}

} // namespace

qint64 editDistance(QStringView a, QStringView b, qint64 limit, const std::stop_token &stop)
{
    const auto [differA, differB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    a = a.sliced(differA - a.begin());
    b = b.sliced(differB - b.begin());
    const auto [endA, endB] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
    a.chop(endA - a.rbegin());
    b.chop(endB - b.rbegin());

    const QStringView shorter = a.size() < b.size() ? a : b;
    const QStringView longer = a.size() < b.size() ? b : a;
    const qint64 difference = longer.size() - shorter.size();
    if (shorter.isEmpty() || difference > limit)
        return difference;
    if (shorter.size() <= WordBits)
        return distanceToWord(shorter, longer, limit);

    // Narrow bands first: texts that are close to each other are done long before the whole table.
    limit = std::min<qint64>(limit, longer.size());
    for (qint64 narrow = difference + 512; narrow < limit; narrow = difference + (narrow - difference) * 4) {
        const qint64 distance = distanceInBand(longer, shorter, narrow, stop);
        if (distance <= narrow)
            return distance;
    }
    return distanceInBand(longer, shorter, limit, stop);
}

} // namespace QVSongLrcPrivate
