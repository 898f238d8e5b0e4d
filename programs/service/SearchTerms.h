// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Converts titles and artists to the tokens of the full-text index, and queries to its match expressions.
///
/// Texts and queries are normalised (NFKC with case folding, default-ignorable characters removed) and split into
/// tokens. Each character of a script written without spaces (Han, Kana, Hangul, Thai and a few more) is a token, and
/// so is each symbol beyond ASCII, such as a heart. Other letters, digits and marks form words. Punctuation separates
/// tokens. A run of Chinese characters is then found as a phrase, without a dictionary or an SQLite tokenizer of our
/// own.
///
/// The last token of each text is "=" and all its tokens joined, which finds exact names. The index uses SQLite's
/// tokenizer "ascii" with the token character "=".
namespace SearchTerms {

/// The tokens of \p text, separated by spaces.
QString tokenList(const QString &text);

/// The expression that finds \p query in \p column; empty when \p query has no tokens. Each text between white space
/// must occur as a phrase; a last word of three or more letters matches as a prefix. No character of \p query acts as
/// an operator.
QString matchExpression(QLatin1StringView column, const QString &query);

/// The expression that finds rows whose \p column is exactly \p query; empty when \p query has no tokens.
QString exactMatchExpression(QLatin1StringView column, const QString &query);

} // namespace SearchTerms
