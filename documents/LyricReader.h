// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/TagScanner.h"
#include "model/TextScan.h"
#include "model/TimeText.h"

#include <QStringView>
#include <QVarLengthArray>

namespace QVSongLrcPrivate {

/// A raw line that is read as a lyric line.
struct LyricLine
{
    struct TimeTag
    {
        qint64 milliseconds;
        qsizetype end; // in the raw line
    };

    QStringView raw;
    QVarLengthArray<TimeTag, 8> tags;
    bool isDisplay = true; // whether QVSongLine::displayText() would give the raw line back

    qsizetype textBegin() const { return tags.isEmpty() ? 0 : tags.back().end; }
    QStringView text() const { return raw.sliced(textBegin()); }
};

/// About the number of lines of a lyric.
inline qsizetype expectedLines(QStringView text)
{
    constexpr qsizetype UsualLineLength = 24;
    return text.size() / UsualLineLength;
}

/// Finds the tags of a raw line of any form.
template <typename OnProperty, typename OnLyric>
void readAnyLine(LyricLine &line, OnProperty onProperty, OnLyric onLyric)
{
    if (const auto tag = TagScanner::propertyTag(line.raw)) {
        const TagScanner::Property property =
            TagScanner::splitProperty(line.raw.sliced(tag->begin, tag->end - tag->begin));
        onProperty(line.raw, property);
        if (!property.value.isEmpty())
            return;
    }
    line.tags.clear();
    while (const auto tag = TagScanner::timeTag(line.raw, line.textBegin()))
        line.tags.append({TimeText::fromTag(line.raw.sliced(tag->begin, tag->end - tag->begin)), tag->end});
    line.isDisplay = line.tags.isEmpty();
    onLyric(std::as_const(line));
}

/// Reads LRC text line by line, for both documents. Calls \p onProperty with the raw line and its
/// TagScanner::Property for each line that contains a property tag, and \p onLyric with the LyricLine of every
/// other one, in the order of the text. Only a line feed ends a line, and empty lines are left out.
///
/// If the value of a property is empty, \p onLyric is called for its line, too.
template <typename OnProperty, typename OnLyric>
void readLyric(QStringView text, OnProperty onProperty, OnLyric onLyric)
{
    using TextScan::UsualTag;
    LyricLine line;
    TextScan::StopFinder stops(text);
    const char16_t *const end = text.utf16() + text.size();
    for (const char16_t *at = text.utf16(); at != end;) {
        const char16_t *const begin = at;
        line.tags.clear();
        line.isDisplay = true;
        UsualTag tag;
        while (end - at >= UsualTag::Length && *at == u'[' && TextScan::readUsualTag(at, tag)) {
            at += UsualTag::Length;
            line.tags.append({tag.milliseconds(), at - begin});
            line.isDisplay = line.isDisplay && tag.isAsWritten();
        }
        at = stops.find(at);
        const bool hasOtherBrackets = at != end && *at == u'[';
        while (at != end && *at == u'[')
            at = stops.find(at + 1);
        line.raw = {begin, at};
        if (hasOtherBrackets)
            readAnyLine(line, onProperty, onLyric);
        else if (at != begin)
            onLyric(std::as_const(line));
        if (at != end)
            ++at;
    }
}

} // namespace QVSongLrcPrivate
