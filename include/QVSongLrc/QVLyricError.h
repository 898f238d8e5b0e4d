// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QLatin1StringView>
#include <QString>

/// Why a lookup failed.
struct QVSONGLRC_LOOKUP_EXPORT QVLyricError
{
    /// The service refused the request, or its reply is of no use. The code is a LookupCode, or the service's
    /// own when the reply held one.
    static constexpr QLatin1StringView ServiceDomain{"com.zt.lyric"};

    /// The search has neither a title nor an artist. The code is EmptyQuery. This domain is different from
    /// ServiceDomain on purpose.
    static constexpr QLatin1StringView EmptyQueryDomain{"com.wq.lyric"};

    /// The request failed between the program and the service. The code is a TransportCode.
    static constexpr QLatin1StringView TransportDomain{"QVSongLrc.Transport"};

    /// The library's codes in ServiceDomain and EmptyQueryDomain.
    enum LookupCode : qint64 {
        EmptyQuery = -1002,   ///< In EmptyQueryDomain: nothing to search for.
        SearchFailed = -1002, ///< A search's reply is not a JSON object, or it failed for an unknown reason.
        NothingFound = -1004, ///< No candidate has both a title and an artist.
        DetailUnreadable = -1010, ///< A detail request's reply is not a JSON object.
        DetailFailed = -1011,     ///< A detail request failed for an unknown reason.
    };

    /// The codes in TransportDomain. Later versions may add more.
    enum TransportCode : qint64 {
        Cancelled = 1,   ///< The request was cancelled.
        Timeout = 2,     ///< The request made no progress for too long.
        Unreachable = 3, ///< No connection to the service or to the proxy.
        Tls = 4,         ///< The TLS handshake failed, for instance because of the service's certificate.
        BadReply = 5,    ///< The reply is not valid HTTP, or ended too early.
        BadRedirect = 6, ///< A redirect not to HTTPS, one that wants the form again, or one too many.
        HttpStatus = 7,  ///< The HTTP status is outside 200 to 299; see httpStatus.
        TooLarge = 8,    ///< The reply is larger than 16 MiB, uncompressed.
    };

    QString domain;               ///< One of the three domains above, or a host's own transport's.
    qint64 code = 0;              ///< The code in that domain.
    QString localizedDescription; ///< A description for users; absent for EmptyQuery.
    int httpStatus = 0;           ///< The HTTP status of a failed transfer; 0 when there was none.

    /// Domain, code and description in one line, for logs.
    QString description() const;

    friend bool operator==(const QVLyricError &, const QVLyricError &) = default;
};
