// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LyricHttpClient.h"

#include <QNetworkRequest>

namespace QVSongLrcPrivate {

/// The HTTP client over Qt Network. HTTPS, TLS 1.2 or better, certificate and host name verified: there is no
/// way to have less.
class QtHttpClient final : public LyricHttpClient
{
public:
    QtHttpClient();

    void setHeader(const QByteArray &name, const QByteArray &value) override;
    void setIdleLimit(std::chrono::milliseconds limit) override;
    std::shared_ptr<LyricDataTask> post(const QString &path, const Fields &fields, Success success,
                                        Failure failure) override;

    /// \p fields as application/x-www-form-urlencoded: UTF-8, all but the unreserved characters escaped, a
    /// lone surrogate as U+FFFD.
    static QByteArray formBody(const Fields &fields);

private:
    QNetworkRequest m_request;
    std::chrono::milliseconds m_idleLimit = std::chrono::seconds(60);
};

} // namespace QVSongLrcPrivate
