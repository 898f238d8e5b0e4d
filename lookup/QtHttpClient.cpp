// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "QtHttpClient.h"

#include "HttpTransfer.h"
#include "LookupScope.h"

#include <QVSongLrc/QVLyricService.h>

#include <QPointer>
#include <QSslConfiguration>
#include <QStringEncoder>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace QVSongLrcPrivate {
namespace {

/// Not based on the application's default configuration, which may trust more authorities than the system.
QSslConfiguration sslConfiguration()
{
    QSslConfiguration configuration;
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    // Parsed once for each change: the system's authorities take about 100 ms.
    static QByteArray parsed;
    static QList<QSslCertificate> authorities;
    if (parsed != QVLyricService::certificateAuthorities()) {
        parsed = QVLyricService::certificateAuthorities();
        authorities = QSslCertificate::fromData(parsed);
    }
    if (!authorities.isEmpty()) // else Qt loads the system's authorities on demand
        configuration.setCaCertificates(authorities);
    return configuration;
}

class TransferTask final : public QVLyricDataTask
{
public:
    explicit TransferTask(HttpTransfer *transfer)
        : m_transfer(transfer)
    {
    }

    void cancel() override
    {
        if (m_transfer)
            m_transfer->cancel();
    }

private:
    const QPointer<HttpTransfer> m_transfer; // deletes itself
};

/// \p fields as application/x-www-form-urlencoded in UTF-8. Everything but the unreserved characters is escaped. A
/// lone surrogate becomes U+FFFD.
QByteArray formBody(const QVLyricHttpClient::Fields &fields)
{
    const auto escape = [](const QString &text) {
        QStringEncoder encode(QStringEncoder::Utf8, QStringConverter::Flag::Stateless);
        return QByteArray(encode(text)).toPercentEncoding();
    };
    QByteArray body;
    for (const auto &[name, value] : fields)
        body += (body.isEmpty() ? "" : "&") + escape(name) + '=' + escape(value);
    return body;
}

} // namespace

QtHttpClient::QtHttpClient()
{
    m_request.setSslConfiguration(sslConfiguration());
    // Qt decompresses what arrives at once, to count the bytes. Above this size it refuses a reply that is more
    // than 40 times as long decompressed.
    m_request.setDecompressedSafetyCheckThreshold(4 * 1024 * 1024);
    m_request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false); // of no use for a single request
}

void QtHttpClient::setHeader(const QByteArray &name, const QByteArray &value)
{
    m_request.setRawHeader(name, value);
}

void QtHttpClient::setIdleLimit(std::chrono::milliseconds limit)
{
    constexpr std::chrono::milliseconds Longest(std::numeric_limits<int>::max()); // what QTimer can measure
    m_idleLimit = std::clamp(limit, std::chrono::milliseconds(0), Longest);
}

std::shared_ptr<QVLyricDataTask> QtHttpClient::get(const QUrl &url, Success success, Failure failure)
{
    return start(url, std::nullopt, std::move(success), std::move(failure));
}

std::shared_ptr<QVLyricDataTask> QtHttpClient::post(const QUrl &url, const Fields &fields, Success success,
                                                    Failure failure)
{
    return start(url, formBody(fields), std::move(success), std::move(failure));
}

std::shared_ptr<QVLyricDataTask> QtHttpClient::start(const QUrl &url, const std::optional<QByteArray> &form,
                                                     Success success, Failure failure)
{
    if (!url.isValid() || url.scheme() != QLatin1StringView("https") || url.host().isEmpty())
        throw std::invalid_argument("QVLyricHttpClient: not an HTTPS address");
    if (!success || !failure)
        throw std::invalid_argument("QVLyricHttpClient: a handler is absent");
    m_request.setUrl(url);
    return std::make_shared<TransferTask>(new HttpTransfer(m_request, form, m_idleLimit, std::move(success),
                                                           std::move(failure), &LookupScope::instance()));
}

} // namespace QVSongLrcPrivate
