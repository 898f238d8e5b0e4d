// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricHttpClient.h>

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QObject>
#include <QTimer>

class QNetworkReply;

namespace QVSongLrcPrivate {

/// A request and its reply, redirects included. Deletes itself after it has called one of its handlers; when its
/// parent deletes it before that, it calls none.
class HttpTransfer final : public QObject
{
    Q_DECLARE_TR_FUNCTIONS(HttpTransfer)

public:
    /// Sends \p request: as a POST when there is a \p form, else as a GET.
    HttpTransfer(const QNetworkRequest &request, const std::optional<QByteArray> &form,
                 std::chrono::milliseconds idleLimit, QVLyricHttpClient::Success success,
                 QVLyricHttpClient::Failure failure, QObject *parent);
    ~HttpTransfer() override;

    /// Fails with QVLyricError::Cancelled, unless the request has already succeeded or failed.
    void cancel();

private:
    void get(const QUrl &url);
    void send(const QByteArray &method, const QByteArray &form);
    void watchReply();
    void read();
    void finish();
    void follow(const QUrl &target);
    int httpStatus() const;
    void fail(QVLyricError::TransportCode code, const QString &description);

    using CallHandler = std::function<void(const QVLyricHttpClient::Success &success,
                                           const QVLyricHttpClient::Failure &failure)>;
    void settle(CallHandler call);

    QNetworkRequest m_request;
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; // owned by the manager
    int m_redirects = 0;
    QTimer m_idle;
    QByteArray m_body;
    QVLyricHttpClient::Success m_success;
    QVLyricHttpClient::Failure m_failure;
    bool m_isSettled = false;
};

} // namespace QVSongLrcPrivate
