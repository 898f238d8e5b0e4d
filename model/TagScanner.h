// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

/// The grammar of the bracketed tags, in one place for QVUtils, the lines and both documents.
///
/// The matches are exactly those that a leftmost, greedy search with ICU's regular expressions finds for
///     \s*\[[a-z]{1}[a-z]{1}:.*\]               property tag
///     \s*\[\d{1,2}:\d{1,2}.\d{1,2}\]           time tag
/// where "." also takes line ends. The scanner reads forward only and takes time linear in the text, which a
/// backtracking engine does not.
namespace QVSongLrcPrivate::TagScanner {

/// Where a tag lies, leading white space included: half-open, in UTF-16 code units of the text searched.
struct Match
{
    qsizetype begin = 0;
    qsizetype end = 0;
};

/// The leftmost property tag. There is never a second one, since a tag reaches to the last "]" of the text.
std::optional<Match> propertyTag(QStringView text);

/// The leftmost time tag that begins at or after \p from, which is 0 or the end of the tag before.
std::optional<Match> timeTag(QStringView text, qsizetype from = 0);

/// Key and value of a property.
struct Property
{
    QStringView key;
    QStringView value;
};

/// Cuts a text with at least one ":" into key and value: what stands before the first ":" less its first
/// code unit, and what stands between the first and the second ":" (or the end) less its last.
///
/// The cut is blunt and meant to be: white space before the tag moves the bracket into the key, and a value
/// ends at a ":".
Property splitProperty(QStringView text);

/// Whether \p c has the Unicode property White_Space, the meaning of "\s".
bool isWhiteSpace(char16_t c);

} // namespace QVSongLrcPrivate::TagScanner
