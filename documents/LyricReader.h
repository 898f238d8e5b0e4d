// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/TagScanner.h"

#include <QStringView>

namespace QVSongLrcPrivate {

/// Reads LRC text line by line, the same way for every document: \p onProperty is called with the
/// TagScanner::Property of each line that holds a property tag, \p onLyric with each raw line that holds
/// none, in the order of the text. Only a line feed ends a line, and empty lines are left out.
///
/// A property with an empty value does not use its line up: \p onLyric is called for the line as well.
template <typename OnProperty, typename OnLyric>
void readLyric(QStringView text, OnProperty onProperty, OnLyric onLyric)
{
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end + 1) {
        end = text.indexOf(u'\n', begin);
        if (end < 0)
            end = text.size();
        if (end == begin)
            continue;
        const QStringView rawLine = text.sliced(begin, end - begin);
        if (const auto tag = TagScanner::propertyTag(rawLine)) {
            const TagScanner::Property property =
                TagScanner::splitProperty(rawLine.sliced(tag->begin, tag->end - tag->begin));
            onProperty(property);
            if (!property.value.isEmpty())
                continue;
        }
        onLyric(rawLine);
    }
}

} // namespace QVSongLrcPrivate
