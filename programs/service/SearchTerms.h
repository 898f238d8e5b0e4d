// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// How titles and artists are cut into what the full-text index holds, and queries into what it is asked.
///
/// Both sides are normalised alike (NFKC with case folding, invisible characters dropped) and cut into
/// tokens: a character of a script that is written without spaces between words (Han, Kana, Hangul, Thai and
/// a few more) is a token of its own, so is a symbol such as a heart; other letters, digits and marks make
/// words. Punctuation separates. Any run of Chinese characters, a single one included, is then a phrase of
/// neighbouring tokens, which needs no dictionary and no tokenizer of our own.
///
/// A last token of each text is the whole of it, "=" and all tokens in one, for finding exact names. The
/// index splits at spaces and keeps "=" and everything beyond ASCII ("ascii" with the token character "=").
namespace SearchTerms {

/// The tokens that the index holds for \p text, with spaces between them.
QString indexed(const QString &text);

/// The expression that finds \p query in \p column, or an empty one when \p query holds nothing to look for.
/// Texts between white space must all occur, each in one piece; the last word of three letters and more may
/// go on. Nothing in \p query is an operator of the index.
QString match(QLatin1StringView column, const QString &query);

/// The expression that finds rows whose \p column is \p query and nothing else, or an empty one.
QString matchWhole(QLatin1StringView column, const QString &query);

} // namespace SearchTerms
