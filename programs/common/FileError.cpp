// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "FileError.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <system_error>

namespace {

constexpr char16_t EscapedBytes = 0xDC00;

} // namespace

FileError::FileError(const std::string &file, const std::string &reason)
    : std::runtime_error(file + ": " + reason)
{
}

StandardOutputError::StandardOutputError(const std::string &reason)
    : FileError("standard output", reason)
{
}

std::string systemError(int code)
{
    return std::generic_category().message(code);
}

QString textOfName(std::string_view bytes)
{
    constexpr qsizetype LongestCharacter = 4;
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text;
    for (QByteArrayView rest(bytes.data(), qsizetype(bytes.size())); !rest.isEmpty();) {
        qsizetype length = 1;
        while (length < std::min(rest.size(), LongestCharacter) && !rest.first(length).isValidUtf8())
            ++length;
        if (rest.first(length).isValidUtf8()) {
            text += decode(rest.first(length));
        } else {
            length = 1;
            text += QChar(EscapedBytes + uchar(rest.front()));
        }
        rest = rest.sliced(length);
    }
    return text;
}

std::string nameOfText(const QString &text)
{
    std::string bytes;
    for (qsizetype i = 0; i < text.size();) {
        UChar32 character = 0;
        U16_NEXT(text.utf16(), i, text.size(), character);
        if (character >= EscapedBytes + 0x80 && character <= EscapedBytes + 0xFF) {
            bytes += char(character - EscapedBytes);
        } else {
            char encoded[U8_MAX_LENGTH];
            int32_t length = 0;
            U8_APPEND_UNSAFE(encoded, length, U_IS_SURROGATE(character) ? 0xFFFD : character);
            bytes.append(encoded, size_t(length));
        }
    }
    return bytes;
}
