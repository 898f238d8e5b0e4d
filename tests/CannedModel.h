// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricHttpClient.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QTimer>

/// Replies with a body, or fails without an error when that is null.
struct CannedClient : QVLyricHttpClient
{
    void setHeader(const QByteArray &, const QByteArray &) override { }
    void setIdleLimit(std::chrono::milliseconds) override { }
    std::shared_ptr<QVLyricDataTask> get(const QUrl &, Success, Failure) override { return nullptr; }
    std::shared_ptr<QVLyricDataTask> post(const QUrl &, const Fields &fields, Success success,
                                          Failure failure) override
    {
        sent += fields;
        QTimer::singleShot(0, qApp, [reply = body, success, failure] {
            reply.isNull() ? failure(std::nullopt) : success(reply);
        });
        return nullptr;
    }
    QByteArray body = R"({"results":[{"track":"T","artist":"A"}],"result":{"lyric":"text"}})";
    QList<Fields> sent;
};

/// A model of a query for "title" that takes its replies from a CannedClient.
struct CannedModel : ZTLyricRequestModel
{
    CannedModel()
        : ZTLyricRequestModel(
            {{Key_Lyric_Trackname, QStringLiteral("title")}, {Key_Lyric_Artist, QStringLiteral("artist")}})
    {
    }
    std::shared_ptr<QVLyricHttpClient> afPostMgr() const override { return client; }
    const std::shared_ptr<CannedClient> client = std::make_shared<CannedClient>();
};
