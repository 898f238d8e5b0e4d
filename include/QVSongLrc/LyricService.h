// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QList>
#include <QSslCertificate>
#include <QString>
#include <QUrl>

/// Where the lyric service is and whom a program trusts to vouch for it. Set up before the first request, on
/// the main thread; requests already started keep what they started with.
///
/// The service is always spoken to by HTTPS, TLS 1.2 or better, and its certificate and host name are always
/// verified, against the system's authorities or, once a program has added some, against these alone: there
/// is one service, and whoever names its authority needs no other.
class QVSONGLRC_LOOKUP_EXPORT LyricService
{
public:
    LyricService() = delete;

    /// The service's host: the one that the library was built with, unless setEndpoint() named another.
    static QString host();

    /// The service's port: 443, unless setEndpoint() named another.
    static quint16 port();

    /// Makes \p host, a host name or an IP address, and \p port the service's.
    ///
    /// \throws std::invalid_argument when \p host is none or \p port is 0; nothing changes.
    static void setEndpoint(const QString &host, quint16 port = 443);

    /// The authorities added.
    static QList<QSslCertificate> certificateAuthorities();

    /// Trusts \p certificate, besides those added before, in the place of the system's authorities. To trust
    /// both, add QSslConfiguration::systemCaCertificates() too; each request then takes a few ms longer.
    ///
    /// \throws std::invalid_argument when \p certificate is null; nothing changes.
    static void addCertificateAuthority(const QSslCertificate &certificate);

    /// The address of \p path, which begins with "/", on the service.
    static QUrl url(const QString &path);
};
