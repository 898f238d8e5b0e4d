// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "lookup/LookupProtocol.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

/// A reply that refuses a request. docs/lookup-protocol.md lists them for authors of clients.
///
/// The library ignores the body of any status but 200 to 299. Errors that it should report to its program therefore
/// have the status 200 and a code of the service's own. For all others the code is the HTTP status.
struct ServiceError
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

namespace ErrorReplies {

inline constexpr ServiceError MissingKey{200, 1, "the request has no key"};
inline constexpr ServiceError InvalidKey{200, 2, "the request's key can't be decrypted"};
inline constexpr ServiceError KeyOutOfTime{200, 3,
                                           "the request's key is too old or too new; compare the clocks"};
inline constexpr ServiceError EmptyQuery{200, 4, "the search names neither a title nor an artist"};
inline constexpr ServiceError UnknownLink{200, 5, "no lyric has this link"};
inline constexpr ServiceError UnreadableLyric{200, 6, "the lyric can't be read any more"};

inline constexpr ServiceError BadRequest{400, 400, "malformed request"};
inline constexpr ServiceError BadForm{400, 400, "malformed form"};
inline constexpr ServiceError UnknownPath{404, 404, "no such path"};
inline constexpr ServiceError WrongMethod{405, 405, "only POST is supported"};
inline constexpr ServiceError TooSlow{408, 408, "the request took too long to arrive"};
inline constexpr ServiceError NoLength{411, 411, "the request has no Content-Length"};
inline constexpr ServiceError TooLarge{413, 413, "the request is too large"};
inline constexpr ServiceError NoForm{415, 415, "the request is not a URL-encoded form"};
inline constexpr ServiceError LongHead{431, 431, "the request's headers are too long"};
inline constexpr ServiceError NoIndex{500, 500, "the song index can't be read"};

} // namespace ErrorReplies
