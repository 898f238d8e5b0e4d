// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/LookupProtocol.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

/// Why a request is not answered: docs/lookup-protocol.md tells them to authors of clients.
///
/// What a client of the library should hear about comes with the status 200 and a code of the service's own;
/// what no such client sends has an HTTP status, which is the code as well.
struct Refusal
{
    int status;
    int code;
    const char *message;

    QByteArray json() const
    {
        const QJsonObject object{{QVSongLrcPrivate::LookupProtocol::Code, code},
                                 {QVSongLrcPrivate::LookupProtocol::Message, QString::fromLatin1(message)}};
        return QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
};

namespace Refusals {

inline constexpr Refusal MissingKey{200, 1, "the request has no key"};
inline constexpr Refusal UndecipherableKey{200, 2, "the request's key can't be deciphered"};
inline constexpr Refusal KeyOutOfTime{200, 3, "the request's key is too old or too new; compare the clocks"};
inline constexpr Refusal EmptyQuery{200, 4, "neither a title nor an artist to search for"};
inline constexpr Refusal UnknownLink{200, 5, "no lyric has this link"};
inline constexpr Refusal UnreadableLyric{200, 6, "the lyric can't be read any more"};

inline constexpr Refusal BadRequest{400, 400, "not a request that this service understands"};
inline constexpr Refusal BadForm{400, 400, "malformed form"};
inline constexpr Refusal UnknownPath{404, 404, "no such path"};
inline constexpr Refusal WrongMethod{405, 405, "only POST is served"};
inline constexpr Refusal TooSlow{408, 408, "the request took too long to arrive"};
inline constexpr Refusal NoLength{411, 411, "the request must tell its length"};
inline constexpr Refusal TooLarge{413, 413, "a request may have 64 KiB at most"};
inline constexpr Refusal NoForm{415, 415, "the request must be an URL-encoded form"};
inline constexpr Refusal LongHead{431, 431, "the request's headers are too long"};
inline constexpr Refusal NoIndex{500, 500, "the index of songs can't be read"};

} // namespace Refusals
