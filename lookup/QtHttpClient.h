// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LookupLimits.h"

#include <QVSongLrc/QVLyricHttpClient.h>

#include <QNetworkRequest>

namespace QVSongLrcPrivate {

/// The HTTP client on Qt Network: HTTPS only, TLS 1.2 or later, certificate and host name always verified.
class QtHttpClient final : public QVLyricHttpClient
{
public:
    QtHttpClient();

    void setHeader(const QByteArray &name, const QByteArray &value) override;
    void setIdleLimit(std::chrono::milliseconds limit) override;
    std::shared_ptr<QVLyricDataTask> post(const QUrl &url, const Fields &fields, Success success,
                                          Failure failure) override;
    std::shared_ptr<QVLyricDataTask> get(const QUrl &url, Success success, Failure failure) override;

private:
    std::shared_ptr<QVLyricDataTask> start(const QUrl &url, const std::optional<QByteArray> &form,
                                           Success success, Failure failure);

    QNetworkRequest m_request;
    std::chrono::milliseconds m_idleLimit = LookupLimits::IdleTime;
};

} // namespace QVSongLrcPrivate
