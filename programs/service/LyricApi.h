// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ErrorReplies.h"

#include <QAbstractHttpServer>
#include <QDir>
#include <QHash>
#include <QHttpServerRequest>
#include <QJsonObject>

class SongIndex;

/// Replies to searches and detail requests from an index of songs. Refuses requests without a valid key. Bind it to
/// an HttpsListener.
class LyricApi : public QAbstractHttpServer
{
    Q_OBJECT

public:
    /// Serves the songs of \p index from the folder \p library. With \p log, writes one line of JSON to standard
    /// output for each request: time, method, path, status, code, duration in ms, number of results.
    LyricApi(SongIndex &index, const QString &library, bool log);

    /// Logs a request that HttpsConnection refused.
    void logRefused(const ServiceError &error, const QByteArray &requestLine) const;

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &, QTcpSocket *) override { }

private:
    using Form = QHash<QString, QString>;
    struct Answer
    {
        int status = 200;
        QJsonObject body;

        Answer(const ServiceError &error);
        explicit Answer(const QString &key, const QJsonValue &value);
    };

    Answer answer(const QHttpServerRequest &request, const QString &path);
    Answer search(const Form &form);
    Answer detail(const Form &form);
    void log(const QString &method, const QString &path, const Answer &answer, qint64 microseconds) const;

    SongIndex &m_index;
    const QDir m_library;
    const bool m_log;
};
