// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LyricHttpClient.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QObject>
#include <QTimer>

class QNetworkReply;

namespace QVSongLrcPrivate {

/// One POST under way. Belongs to its parent and deletes itself once it has answered; destroyed before, it
/// does not answer.
class LyricTransfer final : public QObject
{
    Q_DECLARE_TR_FUNCTIONS(LyricTransfer)

public:
    /// What a body may come to, unpacked.
    static constexpr qsizetype BodyLimit = 16 * 1024 * 1024;

    static constexpr int MaximumRedirects = 5;

    LyricTransfer(const QNetworkRequest &request, const QByteArray &form, std::chrono::milliseconds idleLimit,
                  LyricHttpClient::Success success, LyricHttpClient::Failure failure, QObject *parent);
    ~LyricTransfer() override;

    /// Fails with the transport's cancellation error, unless the outcome is settled already.
    void cancel();

private:
    void watchReply();
    void read();
    void finish();
    void follow(const QUrl &target);
    void fail(int networkError, const QString &description);

    using Answer =
        std::function<void(const LyricHttpClient::Success &success, const LyricHttpClient::Failure &failure)>;
    void settle(Answer answer);

    QNetworkRequest m_request;
    QNetworkAccessManager m_manager;
    QNetworkReply *m_reply = nullptr; // the manager's child
    int m_redirects = 0;
    QTimer m_idle;
    QByteArray m_body;
    LyricHttpClient::Success m_success;
    LyricHttpClient::Failure m_failure;
    bool m_isSettled = false;
};

} // namespace QVSongLrcPrivate
