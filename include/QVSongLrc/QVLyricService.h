// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QString>
#include <QUrl>

/// The address of the lyric service, the certificate authorities to trust, and the proxy. Use from the main
/// thread. A change takes effect with the next request.
///
/// Requests always use HTTPS with TLS 1.2 or later. The service's certificate and host name are always
/// verified: against the system's authorities or, once the program has added authorities, against those alone.
/// No setting is read from the environment or from a file.
class QVSONGLRC_LOOKUP_EXPORT QVLyricService
{
public:
    QVLyricService() = delete;

    /// The service's host; at first the one that the library was built with.
    static QString host();

    /// The service's port; 443 at first.
    static quint16 port();

    /// Sets the service's host, a name or an IP address, and its port.
    ///
    /// \throws std::invalid_argument when \p host is not a host or \p port is 0; nothing changes.
    static void setEndpoint(const QString &host, quint16 port = 443);

    /// The HTTPS address of \p path, which begins with "/", on the service.
    static QUrl url(const QString &path);

    /// The authorities that were added, in PEM; empty when there are none.
    static QByteArray certificateAuthorities();

    /// Trusts the certificates in \p pem, besides those added before, instead of the system's authorities.
    /// Text between the certificates is ignored. To trust both, add the system's authorities as well.
    ///
    /// \throws std::invalid_argument when \p pem holds no certificate, or one that cannot be read; nothing
    /// changes.
    static void addCertificateAuthorities(const QByteArray &pem);

    /// The proxy; empty when there is none, which is the default.
    static QUrl proxy();

    /// Sends requests through \p url, such as "http://proxy.example:3128" or "socks5://127.0.0.1:1080", which
    /// may hold a user name and a password. Either kind of proxy looks up the service's host name itself. An
    /// empty address removes the proxy.
    ///
    /// \throws std::invalid_argument when the scheme is neither http nor socks5, the host or the port is
    /// missing, or there is a path or a query; nothing changes.
    static void setProxy(const QUrl &url);
};
