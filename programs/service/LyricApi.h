// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Refusal.h"

#include <QAbstractHttpServer>
#include <QDir>
#include <QHash>
#include <QHttpServerRequest>
#include <QJsonObject>

class SongIndex;

/// The lyric service's protocol over the songs of an index: searches and lyrics for those who send a good
/// request key. Bind it to an HttpsListener.
class LyricApi : public QAbstractHttpServer
{
    Q_OBJECT

public:
    /// Serves what \p index finds in the folder \p library. With \p log, every request makes one line of JSON
    /// on standard output: when, method, path, status, code, time taken in ms, number of results.
    LyricApi(SongIndex &index, const QString &library, bool log);

    /// Logs a request that was refused before it came here.
    void logRefused(const Refusal &refusal, const QByteArray &requestLine) const;

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &, QTcpSocket *) override { }

private:
    using Form = QHash<QString, QString>;
    struct Answer
    {
        int status = 200;
        QJsonObject body;

        Answer(const Refusal &refusal);
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
