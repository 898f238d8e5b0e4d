// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Baseline.h"

#include "model/TagScanner.h"
#include "model/TimeText.h"

#include <algorithm>

using namespace QVSongLrcPrivate;

namespace Baseline {

Document build(const QString &text)
{
    const QStringView source(text);
    Document document;
    qsizetype total = 0;
    for (qsizetype begin = 0, end = 0; begin < source.size(); begin = end + 1) {
        end = source.indexOf(u'\n', begin);
        if (end < 0)
            end = source.size();
        if (end == begin)
            continue;
        const QStringView raw = source.sliced(begin, end - begin);
        if (TagScanner::propertyTag(raw))
            continue;
        Line &line = *document.lines.emplaceBack(std::make_shared<Line>());
        qsizetype tagEnd = 0;
        while (const auto tag = TagScanner::timeTag(raw, tagEnd)) {
            line.times.append(TimeText::fromTag(raw.sliced(tag->begin, tag->end - tag->begin)));
            tagEnd = tag->end;
        }
        line.begin = begin + tagEnd;
        line.length = raw.size() - tagEnd;
        total += line.times.size() * TimeText::TwoDigitTagLength + line.length + 1;
    }
    document.songText = QString(total, Qt::Uninitialized);
    auto *const start = reinterpret_cast<char16_t *>(document.songText.data());
    char16_t *at = start;
    for (const auto &line : std::as_const(document.lines)) {
        char16_t *const first = at;
        for (const qint64 time : std::as_const(line->times))
            at = TimeText::writeTag(at, time);
        at = std::copy_n(source.utf16() + line->begin, line->length, at);
        line->range = {quint64(first - start), quint64(at - first)};
        line->source = document.songText;
        line->begin = at - start - line->length;
        *at++ = u'\n';
    }
    return document;
}

QString copyWithRanges(const QVSongLineList &lines, const QString &text)
{
    QString copy(text.size(), Qt::Uninitialized);
    auto *const start = reinterpret_cast<char16_t *>(copy.data());
    const auto *const source = QStringView(text).utf16();
    char16_t *at = start;
    for (const auto &line : lines) {
        const auto [location, length] = line->txtRg();
        line->setTxtRg({quint64(at - start), length});
        at = std::copy_n(source + location, length + 1, at);
    }
    return copy;
}

QVSongLineList without(const QVSongLineList &lines, const std::vector<qsizetype> &indexes)
{
    QVSongLineList kept;
    kept.reserve(lines.size() - qsizetype(indexes.size()));
    auto next = indexes.begin();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (next != indexes.end() && *next == i)
            ++next;
        else
            kept.append(lines[i]);
    }
    return kept;
}

} // namespace Baseline
