// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricService.h>

#include <QRegularExpression>

#include <openssl/err.h>
#include <openssl/pem.h>

#include <memory>
#include <stdexcept>

namespace {

constexpr quint16 HttpsPort = 443;

struct Settings
{
    QString host = QStringLiteral(QVSONGLRC_SERVICE_HOST);
    quint16 port = HttpsPort;
    QByteArray authorities;
    QUrl proxy;
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

/// The certificates in \p pem, without the text between them; empty when there are none or one is unreadable.
QByteArray certificatesIn(const QByteArray &pem)
{
    using Bio = std::unique_ptr<BIO, decltype(&BIO_free)>;
    const Bio input(BIO_new_mem_buf(pem.constData(), int(pem.size())), BIO_free);
    const Bio output(BIO_new(BIO_s_mem()), BIO_free);
    // Without a callback OpenSSL asks for the passphrase of an encrypted certificate on the terminal.
    const auto refuseEncrypted = [](char *, int, int, void *) { return -1; };
    static const QRegularExpression Begin(QStringLiteral("BEGIN (\\w+ )?CERTIFI"),
                                          QRegularExpression::CaseInsensitiveOption);
    const qsizetype expected = QString::fromLatin1(pem).count(Begin);
    qsizetype count = 0;
    ERR_clear_error();
    while (const auto certificate = std::unique_ptr<X509, decltype(&X509_free)>(
               PEM_read_bio_X509(input.get(), nullptr, refuseEncrypted, nullptr), X509_free)) {
        PEM_write_bio_X509(output.get(), certificate.get());
        ++count;
    }
    const bool isAllRead = count == expected && ERR_GET_REASON(ERR_peek_last_error()) == PEM_R_NO_START_LINE;
    ERR_clear_error();
    char *data = nullptr;
    const long size = BIO_get_mem_data(output.get(), &data);
    return isAllRead ? QByteArray(data, size) : QByteArray();
}

} // namespace

QString QVLyricService::host()
{
    return settings().host;
}

quint16 QVLyricService::port()
{
    return settings().port;
}

void QVLyricService::setEndpoint(const QString &host, quint16 port)
{
    if (!isHost(host))
        throw std::invalid_argument("QVLyricService::setEndpoint: not a host");
    if (port == 0)
        throw std::invalid_argument("QVLyricService::setEndpoint: not a port");
    settings().host = host;
    settings().port = port;
}

QUrl QVLyricService::url(const QString &path)
{
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(host());
    if (port() != HttpsPort)
        url.setPort(port());
    url.setPath(path);
    return url;
}

QByteArray QVLyricService::certificateAuthorities()
{
    return settings().authorities;
}

void QVLyricService::addCertificateAuthorities(const QByteArray &pem)
{
    const QByteArray certificates = certificatesIn(pem);
    if (certificates.isEmpty())
        throw std::invalid_argument("QVLyricService::addCertificateAuthorities: not certificates in PEM");
    settings().authorities += certificates;
}

QUrl QVLyricService::proxy()
{
    return settings().proxy;
}

void QVLyricService::setProxy(const QUrl &url)
{
    const bool isProxy =
        (url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("socks5"))
        && !url.host().isEmpty() && url.port() > 0 && url.path().size() <= 1 && !url.hasQuery()
        && !url.hasFragment();
    if (!isProxy && !url.isEmpty())
        throw std::invalid_argument(
            "QVLyricService::setProxy: not an http or socks5 proxy with host and port");
    settings().proxy = url;
}
