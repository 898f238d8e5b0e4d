// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "model/TagScanner.h"

#include <QStringView>

namespace QVSongLrcPrivate {

/// Reads LRC text line by line, for both documents. Calls \p onProperty with the TagScanner::Property of each
/// line that contains a property tag, and \p onLyric with every other raw line, in the order of the text.
/// Only a line feed ends a line, and empty lines are left out.
///
/// If the value of a property is empty, \p onLyric is called for its line, too.
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
