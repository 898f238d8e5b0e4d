// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A character encoding by its ICU name, and whether the text starts with a byte order mark.
struct TextEncoding
{
    QByteArray name = "UTF-8";
    bool hasMark = false;
};

struct DecodedText
{
    QString text; ///< without a byte order mark
    TextEncoding encoding;
    std::optional<int> guess; ///< of a guessed encoding how likely it is, from 0 to 100
};

/// Programs must not write a file back whose encoding is a guess below this.
inline constexpr int LeastGuess = 30;

/// \p text with every lone surrogate replaced by U+FFFD, since no encoding can represent one. A property's value, for
/// instance, can end in one: reading drops the last code unit, even of a surrogate pair.
QString wellFormed(QString text);

/// Whether ICU knows an encoding of this name.
bool isTextEncoding(const QByteArray &name);

/// The encoding to write for \p name, under its canonical name. "UTF-16" and "UTF-32" are little-endian with a byte
/// order mark.
TextEncoding outputEncoding(const QByteArray &name);

/// Decodes \p bytes from the encoding \p name. Without a name the encoding is the one of the byte order mark; else a
/// guess of UTF-16 or UTF-32 if most of the even bytes, or most of the odd ones, are NUL; else UTF-8 if they are valid
/// UTF-8; else the most likely legacy encoding that converts back to the same bytes. Nothing when \p bytes are invalid
/// in the encoding, or, without a name, when they are not text.
std::optional<DecodedText> decodeText(const QByteArray &bytes, const QByteArray &name = {});

/// Encodes wellFormed() \p text. Nothing when it contains a character that the encoding does not have.
std::optional<QByteArray> encodeText(const QString &text, const TextEncoding &encoding);
