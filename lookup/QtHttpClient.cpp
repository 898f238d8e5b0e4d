// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QtHttpClient.h"

#include "LookupScope.h"
#include "LyricTransfer.h"

#include <QVSongLrc/LyricService.h>

#include <QPointer>
#include <QSslConfiguration>
#include <QStringEncoder>

namespace QVSongLrcPrivate {
namespace {

/// Does not start from the application's default configuration, which may trust more than the system does.
QSslConfiguration sslConfiguration()
{
    QSslConfiguration configuration;
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    const QList<QSslCertificate> authorities = LyricService::certificateAuthorities();
    if (!authorities.isEmpty()) // else TLS looks the system's up as it needs them
        configuration.setCaCertificates(authorities);
    return configuration;
}

class TransferTask final : public LyricDataTask
{
public:
    explicit TransferTask(LyricTransfer *transfer)
        : m_transfer(transfer)
    {
    }

    void cancel() override
    {
        if (m_transfer)
            m_transfer->cancel();
    }

private:
    const QPointer<LyricTransfer> m_transfer; // which belongs to itself
};

} // namespace

QtHttpClient::QtHttpClient()
{
    m_request.setSslConfiguration(sslConfiguration());
    // Qt unpacks what it is handed at once, to count it. Past this it refuses what grows more than fortyfold.
    m_request.setDecompressedSafetyCheckThreshold(4 * 1024 * 1024);
    m_request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false); // one request is all there is
}

void QtHttpClient::setHeader(const QByteArray &name, const QByteArray &value)
{
    m_request.setRawHeader(name, value);
}

void QtHttpClient::setIdleLimit(std::chrono::milliseconds limit)
{
    m_idleLimit = limit;
}

std::shared_ptr<LyricDataTask> QtHttpClient::post(const QString &path, const Fields &fields, Success success,
                                                  Failure failure)
{
    m_request.setUrl(LyricService::url(path));
    return std::make_shared<TransferTask>(new LyricTransfer(m_request, formBody(fields), m_idleLimit,
                                                            std::move(success), std::move(failure),
                                                            &LookupScope::instance()));
}

QByteArray QtHttpClient::formBody(const Fields &fields)
{
    QByteArray body;
    for (const auto &[name, value] : fields) {
        QStringEncoder encode(QStringEncoder::Utf8, QStringConverter::Flag::Stateless);
        const QByteArray utf8 = encode(value);
        body += (body.isEmpty() ? "" : "&") + name + '=' + utf8.toPercentEncoding();
    }
    return body;
}

} // namespace QVSongLrcPrivate
