// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMutex>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QThread>

#include <functional>

class QSslServer;

/// An HTTPS server on an ephemeral loopback port and its own thread. The test decides how it treats a request.
class MisbehavingServer
{
public:
    /// Called on the server's thread when a whole request has arrived.
    using Behaviour = std::function<void(QSslSocket *socket)>;

    MisbehavingServer(const QSslConfiguration &configuration, Behaviour behaviour);
    ~MisbehavingServer();

    quint16 port() const { return m_port; }

    /// The requests so far, each with head and body.
    QList<QByteArray> requests() const;

    /// Sends \p bytes and closes the connection.
    static Behaviour send(const QByteArray &bytes);

    /// Sends \p bytes and keeps the connection open.
    static Behaviour stallAfter(const QByteArray &bytes);

    /// Sends \p first, then \p again until the client closes the connection.
    static Behaviour sendForEver(const QByteArray &first, const QByteArray &again);

    /// Sends a reply with \p body.
    static Behaviour reply(const QByteArray &body, const QByteArray &status = "200 OK",
                           const QByteArray &headers = {});

private:
    void take(QSslSocket *socket);

    const Behaviour m_behaviour;
    QThread m_thread;
    QSslServer *m_server; // lives on m_thread
    quint16 m_port = 0;
    mutable QMutex m_mutex;
    QList<QByteArray> m_requests;
};
