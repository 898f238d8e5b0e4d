// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QTcpServer>

struct ServiceError;

/// Accepts HttpsConnections for a QAbstractHttpServer, at most MaxConnections at a time. Further ones are
/// closed at once.
class HttpsListener : public QTcpServer
{
    Q_OBJECT

public:
    explicit HttpsListener(const QSslConfiguration &configuration);
    ~HttpsListener() override;

    /// Sets the TLS configuration of new connections.
    void setConfiguration(const QSslConfiguration &configuration) { m_configuration = configuration; }

    /// Stops accepting connections, completes the requests in progress, then emits finished().
    void finish();

Q_SIGNALS:
    /// See HttpsConnection::refused().
    void refused(const ServiceError &error, const QByteArray &requestLine);
    void finished();

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    static constexpr int MaxConnections = 128;

    void connectionDestroyed();

    QSslConfiguration m_configuration;
    int m_connections = 0;
    bool m_isFinishing = false;
};
