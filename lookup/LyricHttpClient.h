// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/LyricDataTask.h>
#include <QVSongLrc/QVLyricError.h>

#include <QByteArray>
#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace QVSongLrcPrivate {

/// What a request model wants of HTTP: one POST of a form, answered with the body's bytes. An interface, so
/// that tests can put another client under a model.
class LyricHttpClient
{
public:
    using Fields = QList<std::pair<QByteArray, QString>>;
    using Success = std::function<void(const QByteArray &body)>;
    using Failure = std::function<void(const std::optional<QVLyricError> &error)>;

    LyricHttpClient() = default;
    LyricHttpClient(const LyricHttpClient &) = delete;
    LyricHttpClient &operator=(const LyricHttpClient &) = delete;
    virtual ~LyricHttpClient() = default;

    virtual void setHeader(const QByteArray &name, const QByteArray &value) = 0;

    /// For how long a request may make no progress; 60 s at first.
    virtual void setIdleLimit(std::chrono::milliseconds limit) = 0;

    /// Sends \p fields in their order to \p path of the lyric service. Calls one of the two, once, from the
    /// event loop, and drops both when it has returned. The client may go before that.
    virtual std::shared_ptr<LyricDataTask> post(const QString &path, const Fields &fields, Success success,
                                                Failure failure) = 0;
};

} // namespace QVSongLrcPrivate
