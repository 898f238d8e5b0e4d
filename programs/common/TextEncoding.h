// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// How a text is written as bytes: a character encoding by its ICU name, and whether a byte order mark leads.
struct TextEncoding
{
    QByteArray name = "UTF-8";
    bool hasMark = false;
};

struct DecodedText
{
    QString text; // without the mark
    TextEncoding encoding;
};

/// \p text with U+FFFD in the place of every lone surrogate, which no encoding has. A lyric's value that was
/// cut in the middle of a pair ends in one.
QString wellFormed(QString text);

/// Whether there is an encoding of that name.
bool isTextEncoding(const QByteArray &name);

/// The encoding that a person means by \p name. "UTF-16" and "UTF-32" are written in little endian with a
/// mark.
TextEncoding textEncodingToWrite(const QByteArray &name);

/// Reads \p bytes in the encoding \p name, or, with none given, as UTF-16 when they begin with its mark, as
/// UTF-8, and else in the encoding that they look like most and that gives the same bytes back. Nothing when
/// they hold a sequence that the encoding does not have.
std::optional<DecodedText> decodeText(const QByteArray &bytes, const QByteArray &name = {});

/// The bytes of wellFormed() \p text. Nothing when it holds a character that the encoding does not have.
std::optional<QByteArray> encodeText(const QString &text, const TextEncoding &encoding);
