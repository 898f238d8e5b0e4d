// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QTcpServer>

struct Refusal;

/// Accepts HttpsConnections for a QAbstractHttpServer, a limited number at a time; further ones are
/// closed at once.
class HttpsListener : public QTcpServer
{
    Q_OBJECT

public:
    explicit HttpsListener(const QSslConfiguration &configuration);
    ~HttpsListener() override;

    /// What connections made from now on use.
    void setConfiguration(const QSslConfiguration &configuration) { m_configuration = configuration; }

    /// Accepts no more connections, lets the requests under way be answered, then emits finished().
    void finish();

Q_SIGNALS:
    /// See HttpsConnection::refused().
    void refused(const Refusal &refusal, const QByteArray &requestLine);
    void finished();

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    static constexpr int MaxConnections = 128;

    void connectionGone();

    QSslConfiguration m_configuration;
    int m_connections = 0;
    bool m_isFinishing = false;
};
