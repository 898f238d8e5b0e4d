// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "HttpTransfer.h"

#include "LookupLimits.h"
#include "OneTimeBody.h"

#include <QVSongLrc/QVLyricService.h>

#include <QNetworkProxy>
#include <QNetworkReply>

#include <array>

namespace QVSongLrcPrivate {
namespace {

QNetworkProxy networkProxy()
{
    const QUrl url = QVLyricService::proxy();
    if (url.isEmpty())
        return QNetworkProxy::NoProxy;
    const auto type =
        url.scheme() == QLatin1StringView("http") ? QNetworkProxy::HttpProxy : QNetworkProxy::Socks5Proxy;
    return QNetworkProxy(type, url.host(), quint16(url.port()), url.userName(), url.password());
}

/// \p status is the reply's HTTP status, or 0.
QVLyricError::TransportCode transportCode(QNetworkReply::NetworkError error, int status)
{
    if (error == QNetworkReply::TimeoutError || error == QNetworkReply::ProxyTimeoutError)
        return QVLyricError::Timeout;
    if (error == QNetworkReply::SslHandshakeFailedError)
        return QVLyricError::Tls;
    if (status >= 300)
        return status < 400 ? QVLyricError::BadRedirect : QVLyricError::HttpStatus;
    // Errors below the content errors are those of the network and of the proxy.
    return error == QNetworkReply::RemoteHostClosedError || error >= QNetworkReply::ContentAccessDenied
        ? QVLyricError::BadReply
        : QVLyricError::Unreachable;
}

} // namespace

HttpTransfer::HttpTransfer(const QNetworkRequest &request, const std::optional<QByteArray> &form,
                           std::chrono::milliseconds idleLimit, QVLyricHttpClient::Success success,
                           QVLyricHttpClient::Failure failure, QObject *parent)
    : QObject(parent)
    , m_request(request)
    , m_success(std::move(success))
    , m_failure(std::move(failure))
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleLimit);
    connect(&m_idle, &QTimer::timeout, this,
            [this] { fail(QVLyricError::Timeout, tr("The lyric service has not answered in time.")); });
    m_manager.setProxy(networkProxy()); // otherwise Qt may use a proxy from the environment
    // When Qt follows redirects itself, it sometimes sends a request twice.
    m_request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (form)
        send("POST", *form);
    else
        get(m_request.url());
}

HttpTransfer::~HttpTransfer()
{
    m_reply->disconnect(this);
}

void HttpTransfer::get(const QUrl &url)
{
    m_request.setUrl(url);
    m_request.setRawHeader("Content-Type", QByteArray());
    send("GET", {}); // not QNetworkAccessManager::get(), which repeats a request up to three times
}

void HttpTransfer::send(const QByteArray &method, const QByteArray &form)
{
    auto *const body = new OneTimeBody(form);
    m_reply = m_manager.sendCustomRequest(m_request, method, body);
    body->setParent(m_reply);
    watchReply();
}

void HttpTransfer::watchReply()
{
    // Limits what Qt keeps in memory before read() takes it.
    constexpr qint64 ReadAhead = 256 * 1024;
    m_reply->setReadBufferSize(ReadAhead);

    const auto restartIdle = [this] { m_idle.start(); };
    restartIdle();
    connect(m_reply, &QNetworkReply::encrypted, this, restartIdle);
    connect(m_reply, &QNetworkReply::uploadProgress, this, restartIdle);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, restartIdle);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpTransfer::read);
    connect(m_reply, &QNetworkReply::finished, this, &HttpTransfer::read);
}

void HttpTransfer::cancel()
{
    fail(QVLyricError::Cancelled, tr("The request was cancelled."));
}

void HttpTransfer::read()
{
    if (m_isSettled)
        return;
    m_idle.start();
    // A compressed reply can be so long that reading it in one go would block the event loop.
    qint64 allowance = 1024 * 1024;
    std::array<char, 64 * 1024> chunk;
    qint64 length = 0;
    while ((length = m_reply->read(chunk.data(), chunk.size())) > 0) {
        if (m_body.size() + length > LookupLimits::ReplySize) {
            fail(QVLyricError::TooLarge, tr("The lyric service's answer is too long."));
            return;
        }
        m_body.append(chunk.data(), length);
        allowance -= length;
        if (allowance <= 0) {
            QMetaObject::invokeMethod(this, &HttpTransfer::read, Qt::QueuedConnection);
            return;
        }
    }
    if (m_reply->isFinished())
        finish();
}

void HttpTransfer::finish()
{
    const int status = httpStatus();
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    const QNetworkReply::NetworkError error = m_reply->error();
    // OneTimeBody cannot be sent again: after an early close, or for a redirect that wants the form (307, 308).
    if (error == QNetworkReply::ContentReSendError)
        fail(transportCode(error, status), tr("The lyric service did not accept the request."));
    else if (error != QNetworkReply::NoError)
        fail(transportCode(error, status), m_reply->errorString());
    else if (!target.isEmpty())
        follow(m_reply->url().resolved(target));
    else if (status < 200 || status > 299)
        fail(QVLyricError::HttpStatus, tr("The lyric service answered with the HTTP status %1.").arg(status));
    else
        settle([body = m_body](const auto &success, const auto &) { success(body); });
}

/// Sends a GET without the form, as browsers do.
void HttpTransfer::follow(const QUrl &target)
{
    if (target.scheme() != QLatin1StringView("https")) {
        fail(QVLyricError::BadRedirect, tr("The lyric service redirects to an address without HTTPS."));
        return;
    }
    if (++m_redirects > LookupLimits::Redirects) {
        fail(QVLyricError::BadRedirect, tr("The lyric service redirects too often."));
        return;
    }
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_body.clear();
    get(target);
}

int HttpTransfer::httpStatus() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

void HttpTransfer::fail(QVLyricError::TransportCode code, const QString &description)
{
    settle([error = QVLyricError{QVLyricError::TransportDomain, code, description, httpStatus()}](
               const auto &, const auto &failure) { failure(error); });
}

void HttpTransfer::settle(CallHandler call)
{
    if (m_isSettled)
        return;
    m_isSettled = true;
    m_idle.stop();
    m_reply->disconnect(this);
    m_reply->abort();
    // Queued, since cancel() must return before a handler runs. The handler may delete this object.
    QMetaObject::invokeMethod(
        this,
        [this, call = std::move(call), success = std::move(m_success), failure = std::move(m_failure)] {
            deleteLater();
            call(success, failure);
        },
        Qt::QueuedConnection);
}

} // namespace QVSongLrcPrivate
