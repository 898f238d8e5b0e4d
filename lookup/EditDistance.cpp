// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "EditDistance.h"

#include <algorithm>
#include <array>
#include <vector>

namespace QVSongLrcPrivate {

// Computes 64 rows of a column of the distance table at a time. Neighbouring cells differ by -1, 0 or 1, so two
// bit masks hold the differences of 64 rows: G. Myers, "A fast bit-vector algorithm for approximate string
// matching based on dynamic programming", Journal of the ACM 46 (1999), and H. Hyyrö, "A bit-vector algorithm for
// computing Levenshtein and Damerau edit distances", Nordic Journal of Computing 10 (2003). With a limit only a
// band along the diagonal is needed: E. Ukkonen, "Algorithms for approximate string matching", Information and
// Control 64 (1985).

namespace {

constexpr int WordBits = 64;
constexpr int WordsAtOnce = 4; // computed together, except in the last rows

/// 64 rows of one column: the bits of the rows where the distance is 1 more, or 1 less, than in the row above.
struct Rows
{
    quint64 grows = ~quint64(0);
    quint64 shrinks = 0;
};

/// The bits of the rows where the distance grows, or shrinks, by 1 from one column to the next.
struct Step
{
    quint64 grows;
    quint64 shrinks;
};

/// Moves \p rows to the next column. \p equal has the bits of the rows whose code unit equals the column's. The
/// lowest bits of \p above are the step of the row above the first one.
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

/// A hash table that maps each code unit of a text to the rows that have it. The text has at most as many code
/// units as \p WordCount words have bits.
template <int WordCount>
class RowTable
{
public:
    using Masks = std::array<quint64, WordCount>;

    explicit RowTable(QStringView units)
    {
        for (qsizetype row = 0; row < units.size(); ++row) {
            const size_t at = find(units[row]);
            m_keys[at] = keyOf(units[row]);
            m_masks[at][size_t(row / WordBits)] |= quint64(1) << row % WordBits;
        }
    }

    const Masks &rowsOf(QChar unit) const { return m_masks[find(unit)]; }

private:
    static constexpr size_t SlotCount = 2 * WordBits * WordCount; // never more than half full

    static quint32 keyOf(QChar unit) { return unit.unicode() + 1u; } // 0 marks a free slot

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

/// The distance of \p text to \p pattern, which fits one word. Stops early when it must exceed \p limit.
qint64 distanceToWord(QStringView pattern, QStringView text, qint64 limit)
{
    const RowTable<1> table(pattern);
    const int lastRow = int(pattern.size()) - 1;
    Rows rows;
    qint64 distance = pattern.size();
    qint64 least = distance - text.size(); // the distance if all remaining columns reduced it
    for (const QChar unit : text) {
        const Step step = advance(rows, table.rowsOf(unit)[0], {1, 0});
        const qint64 change = qint64(step.grows >> lastRow & 1) - qint64(step.shrinks >> lastRow & 1);
        distance += change;
        least += change + 1;
        if (least > limit)
            return least;
    }
    return distance;
}

/// A step of one row.
struct Carry
{
    quint8 grows = 1;
    quint8 shrinks = 0;
};

/// Computes all of \p columns in the rows of \p units, and returns the change of the distance in the last row.
/// \p carries holds the steps of the row above, one per column, and receives those of the last row. Each word
/// waits for its own previous column; with several words the processor has other work to do meanwhile.
template <int WordCount>
qint64 computeRows(QStringView units, QStringView columns, Carry *carries)
{
    const RowTable<WordCount> table(units);
    const int lastRow = int((units.size() - 1) % WordBits);
    std::array<Rows, WordCount> rows;
    qint64 change = 0;
    for (const QChar unit : columns) {
        const auto &equal = table.rowsOf(unit);
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

/// The distance of two texts of any length when it is at most \p limit, which must not be less than the
/// difference in length. The columns are those of \p shorter.
qint64 distanceInBand(QStringView longer, QStringView shorter, qint64 limit, const std::stop_token &stop)
{
    const qint64 height = longer.size();
    const qint64 width = shorter.size();
    // How far a path of at most limit steps can leave the diagonals through the two corners of the table.
    const qint64 toTheRight = (limit - (height - width)) / 2;
    const qint64 toTheLeft = toTheRight + (height - width);

    // Outside the band the distance is assumed to grow by 1 with each column or row. That is never too small, and
    // no path within the limit goes there.
    std::vector<Carry> carries(std::vector<Carry>::size_type(width), Carry{});
    qint64 corner = 0; // the distance just above a word's first row, left of its first column
    qint64 first = 0;
    qint64 distance = 0;
    qint64 rowCount = 0;
    for (qint64 top = 0; top < height; top += rowCount) {
        if (stop.stop_requested())
            return limit + 1;
        const bool isFull = height - top >= WordsAtOnce * WordBits;
        rowCount = isFull ? WordsAtOnce * WordBits : std::min<qint64>(WordBits, height - top);
        for (; first < top - toTheLeft; ++first)
            corner += carries[size_t(first)].grows - carries[size_t(first)].shrinks;
        const qint64 end = std::min(width, top + rowCount + toTheRight);
        corner += rowCount;
        const auto compute = isFull ? computeRows<WordsAtOnce> : computeRows<1>;
        distance = corner
            + compute(longer.sliced(top, rowCount), shorter.sliced(first, end - first),
                      carries.data() + first);
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

    // Narrow bands first: similar texts need only a small part of the table.
    limit = std::min<qint64>(limit, longer.size());
    for (qint64 narrow = difference + 512; narrow < limit; narrow = difference + (narrow - difference) * 4) {
        const qint64 distance = distanceInBand(longer, shorter, narrow, stop);
        if (distance <= narrow)
            return distance;
    }
    return distanceInBand(longer, shorter, limit, stop);
}

} // namespace QVSongLrcPrivate
