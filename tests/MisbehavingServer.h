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

/// An HTTPS server on an ephemeral loopback port and a thread of its own, which does with a request whatever
/// the test says.
class MisbehavingServer
{
public:
    /// Runs on the server's thread once a request, body included, has arrived.
    using Behaviour = std::function<void(QSslSocket *socket)>;

    MisbehavingServer(const QSslConfiguration &configuration, Behaviour behaviour);
    ~MisbehavingServer();

    quint16 port() const { return m_port; }

    /// The requests so far, head and body.
    QList<QByteArray> requests() const;

    /// Sends \p bytes and closes.
    static Behaviour send(const QByteArray &bytes);

    /// Sends \p bytes and nothing more, and keeps the connection.
    static Behaviour stallAfter(const QByteArray &bytes);

    /// Sends \p first, then \p again as long as anybody takes it.
    static Behaviour sendForEver(const QByteArray &first, const QByteArray &again);

    /// Sends a reply with \p body.
    static Behaviour reply(const QByteArray &body, const QByteArray &status = "200 OK",
                           const QByteArray &headers = {});

private:
    void take(QSslSocket *socket);

    const Behaviour m_behaviour;
    QThread m_thread;
    QSslServer *m_server; // on the thread
    quint16 m_port = 0;
    mutable QMutex m_mutex;
    QList<QByteArray> m_requests;
};
