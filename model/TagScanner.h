// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

/// Finds the tags of LRC text, for QVUtils, QVSongLine and the documents.
///
/// The matches are exactly those of ICU's regular expressions
///     \s*\[[a-z]{1}[a-z]{1}:.*\]               property tag
///     \s*\[\d{1,2}:\d{1,2}.\d{1,2}\]           time tag
/// where "." also matches line ends. This scanner takes time linear in the text; ICU's backtracking engine
/// does not.
namespace QVSongLrcPrivate::TagScanner {

/// The range of a tag in the text, leading white space included: half-open, in UTF-16 code units.
struct Match
{
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// The leftmost property tag. There is never a second one, since a tag ends at the last "]" of the text.
std::optional<Match> propertyTag(QStringView text);

/// The leftmost time tag that begins at or after \p from: 0, or the end of the previous tag.
std::optional<Match> timeTag(QStringView text, qsizetype from = 0);

struct Property
{
    QStringView key;
    QStringView value;
};

/// Splits a property tag, or any text that contains a ":". The key is the part before the first ":" without
/// its first code unit; the value is the part between the first and the second ":" (or the end) without its
/// last one.
///
/// It is intended that the bracket gets into the key if there is white space before the tag, and that a value
/// ends at a ":".
Property splitProperty(QStringView text);

/// Whether \p c has the Unicode property White_Space, as "\s" matches.
bool isWhiteSpace(char16_t c);

} // namespace QVSongLrcPrivate::TagScanner
