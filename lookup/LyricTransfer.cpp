// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LyricTransfer.h"

#include "OneTimeBody.h"

#include <QNetworkReply>

#include <array>

namespace QVSongLrcPrivate {

LyricTransfer::LyricTransfer(const QNetworkRequest &request, const QByteArray &form,
                             std::chrono::milliseconds idleLimit, LyricHttpClient::Success success,
                             LyricHttpClient::Failure failure, QObject *parent)
    : QObject(parent)
    , m_request(request)
    , m_success(std::move(success))
    , m_failure(std::move(failure))
{
    m_idle.setSingleShot(true);
    m_idle.setInterval(idleLimit);
    connect(&m_idle, &QTimer::timeout, this,
            [this] { fail(QNetworkReply::TimeoutError, tr("The lyric service has not answered in time.")); });
    // Redirects that Qt follows by itself it now and then asks for twice.
    m_request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    auto *const body = new OneTimeBody(form);
    m_reply = m_manager.post(m_request, body);
    body->setParent(m_reply);
    watchReply();
}

LyricTransfer::~LyricTransfer()
{
    m_reply->disconnect(this);
}

void LyricTransfer::watchReply()
{
    // What the server has sent and the event loop not yet taken waits in its socket.
    constexpr qint64 ReadAhead = 256 * 1024;
    m_reply->setReadBufferSize(ReadAhead);

    const auto restartIdle = [this] { m_idle.start(); };
    restartIdle();
    connect(m_reply, &QNetworkReply::encrypted, this, restartIdle);
    connect(m_reply, &QNetworkReply::uploadProgress, this, restartIdle);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, restartIdle);
    connect(m_reply, &QNetworkReply::readyRead, this, &LyricTransfer::read);
    connect(m_reply, &QNetworkReply::finished, this, &LyricTransfer::read);
}

void LyricTransfer::cancel()
{
    fail(QNetworkReply::OperationCanceledError, tr("The request was cancelled."));
}

void LyricTransfer::read()
{
    if (m_isSettled)
        return;
    m_idle.start();
    // A packed reply may hold more than one turn of the event loop should unpack.
    qint64 allowance = 1024 * 1024;
    std::array<char, 64 * 1024> chunk;
    qint64 length = 0;
    while ((length = m_reply->read(chunk.data(), chunk.size())) > 0) {
        if (m_body.size() + length > BodyLimit) {
            fail(QNetworkReply::UnknownContentError, tr("The lyric service's answer is too long."));
            return;
        }
        m_body.append(chunk.data(), length);
        allowance -= length;
        if (allowance <= 0) {
            QMetaObject::invokeMethod(this, &LyricTransfer::read, Qt::QueuedConnection);
            return;
        }
    }
    if (m_reply->isFinished())
        finish();
}

void LyricTransfer::finish()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    // What OneTimeBody has refused: the connection closed too early, or a redirect (307, 308) wants the form.
    if (m_reply->error() == QNetworkReply::ContentReSendError)
        fail(QNetworkReply::RemoteHostClosedError, tr("The lyric service has not taken the request."));
    else if (m_reply->error() != QNetworkReply::NoError)
        fail(m_reply->error(), m_reply->errorString());
    else if (!target.isEmpty())
        follow(m_reply->url().resolved(target));
    else if (status < 200 || status > 299)
        fail(QNetworkReply::UnknownContentError,
             tr("The lyric service answered with the HTTP status %1.").arg(status));
    else
        settle([body = m_body](const auto &success, const auto &) { success(body); });
}

/// Goes on to \p target, without the form, as clients do.
void LyricTransfer::follow(const QUrl &target)
{
    if (target.scheme() != QLatin1StringView("https")) {
        fail(QNetworkReply::InsecureRedirectError,
             tr("The lyric service redirects to an address that is not safe."));
        return;
    }
    if (++m_redirects > MaximumRedirects) {
        fail(QNetworkReply::TooManyRedirectsError, tr("The lyric service redirects too often."));
        return;
    }
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_body.clear();
    m_request.setUrl(target);
    m_request.setRawHeader("Content-Type", QByteArray());
    m_reply = m_manager.get(m_request);
    watchReply();
}

void LyricTransfer::fail(int networkError, const QString &description)
{
    settle([error = QVLyricError{QVLyricError::TransportDomain, networkError, description}](
               const auto &, const auto &failure) { failure(error); });
}

void LyricTransfer::settle(Answer answer)
{
    if (m_isSettled)
        return;
    m_isSettled = true;
    m_idle.stop();
    m_reply->disconnect(this);
    m_reply->abort();
    // Later, since this may run inside a call of the host's. What the answer does may delete this, too.
    QMetaObject::invokeMethod(
        this,
        [this, answer = std::move(answer), success = std::move(m_success), failure = std::move(m_failure)] {
            deleteLater();
            answer(success, failure);
        },
        Qt::QueuedConnection);
}

} // namespace QVSongLrcPrivate
