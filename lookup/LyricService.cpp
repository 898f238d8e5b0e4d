// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/LyricService.h>

#include <stdexcept>

namespace {

struct Settings
{
    QString host = QStringLiteral(QVSONGLRC_SERVICE_HOST);
    quint16 port = 443;
    QList<QSslCertificate> authorities;
};

Settings &settings()
{
    static Settings theSettings;
    return theSettings;
}

bool isHost(const QString &host)
{
    QUrl url;
    url.setHost(host);
    return url.isValid() && !url.host().isEmpty();
}

} // namespace

QString LyricService::host()
{
    return settings().host;
}

quint16 LyricService::port()
{
    return settings().port;
}

void LyricService::setEndpoint(const QString &host, quint16 port)
{
    if (!isHost(host))
        throw std::invalid_argument("LyricService::setEndpoint: not a host name");
    if (port == 0)
        throw std::invalid_argument("LyricService::setEndpoint: not a port");
    settings().host = host;
    settings().port = port;
}

QList<QSslCertificate> LyricService::certificateAuthorities()
{
    return settings().authorities;
}

void LyricService::addCertificateAuthority(const QSslCertificate &certificate)
{
    if (certificate.isNull())
        throw std::invalid_argument("LyricService::addCertificateAuthority: no certificate");
    settings().authorities.append(certificate);
}

QUrl LyricService::url(const QString &path)
{
    constexpr quint16 HttpsPort = 443;
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(host());
    if (port() != HttpsPort)
        url.setPort(port());
    url.setPath(path);
    return url;
}
