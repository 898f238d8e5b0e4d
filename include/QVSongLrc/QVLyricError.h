// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QLatin1StringView>
#include <QString>

/// Why a lookup failed. A value; copied freely.
struct QVSONGLRC_LOOKUP_EXPORT QVLyricError
{
    /// Errors of the service and of its answers. The code is the service's own, or one of
    /// ZTLyricRequestModel's.
    static constexpr QLatin1StringView ServiceDomain{"com.zt.lyric"};

    /// A search that names neither title nor artist; its code is -1002. Meant to differ from the above.
    static constexpr QLatin1StringView EmptyQueryDomain{"com.wq.lyric"};

    /// What went wrong between program and service, every HTTP status outside 200 to 299 included. The code
    /// is a QNetworkReply::NetworkError: 5 is a cancelled request, 4 one that stood still for too long.
    static constexpr QLatin1StringView TransportDomain{"QNetworkReply::NetworkError"};

    QString domain;               ///< Whose code it is: one of the three above.
    qint64 code = 0;              ///< What went wrong, as the domain counts.
    QString localizedDescription; ///< For people to read; absent where there is none.

    /// All three in one line of text, for logs.
    QString description() const;

    friend bool operator==(const QVLyricError &, const QVLyricError &) = default;
};
