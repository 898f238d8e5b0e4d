// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricDataTask.h>
#include <QVSongLrc/QVLyricError.h>
#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The HTTP client of one request. A program that wants a transport of its own derives from this class and
/// returns its client from ZTLyricRequestModel::afPostMgr().
///
/// Use from the main thread. get() and post() return at once. Later they call exactly one of their two
/// handlers, exactly once, from the main thread's event loop, and then destroy both. The client may be
/// destroyed before that. An absent handler makes both throw std::invalid_argument, and nothing is sent.
///
/// The library's own client takes HTTPS addresses only; any other makes get() and post() throw
/// std::invalid_argument. It does not call its handlers after the application object has been destroyed.
class QVSONGLRC_LOOKUP_EXPORT QVLyricHttpClient
{
public:
    /// The names and values of a form, in the order in which they are sent.
    using Fields = QList<std::pair<QString, QString>>;

    /// Takes the body of a reply with a status from 200 to 299.
    using Success = std::function<void(const QByteArray &body)>;

    /// Takes the error; an absent one means that the client does not know why the request failed.
    using Failure = std::function<void(const std::optional<QVLyricError> &error)>;

    QVLyricHttpClient() = default;
    QVLyricHttpClient(const QVLyricHttpClient &) = delete;
    QVLyricHttpClient &operator=(const QVLyricHttpClient &) = delete;
    virtual ~QVLyricHttpClient();

    /// Sets a header of the requests that are started afterwards.
    virtual void setHeader(const QByteArray &name, const QByteArray &value) = 0;

    /// Sets how long a request may make no progress before it fails with QVLyricError::Timeout; 60 s at first. Negative
    /// values count as 0, and values above 24 days as 24 days.
    virtual void setIdleLimit(std::chrono::milliseconds limit) = 0;

    /// Sends a GET request to \p url.
    virtual std::shared_ptr<QVLyricDataTask> get(const QUrl &url, Success success, Failure failure) = 0;

    /// Sends \p fields to \p url in a POST request, as a URL-encoded form in UTF-8.
    virtual std::shared_ptr<QVLyricDataTask> post(const QUrl &url, const Fields &fields, Success success,
                                                  Failure failure) = 0;
};
