// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "HttpsListener.h"

#include "HttpsConnection.h"

#include <unistd.h>

HttpsListener::HttpsListener(const QSslConfiguration &configuration)
    : m_configuration(configuration)
{
}

HttpsListener::~HttpsListener()
{
    m_isFinishing = true;
    qDeleteAll(findChildren<HttpsConnection *>()); // they call connectionDestroyed()
}

void HttpsListener::incomingConnection(qintptr descriptor)
{
    if (m_connections >= MaxConnections) { // QTcpServer can't pause after one connection
        ::close(int(descriptor));
        return;
    }
    ++m_connections;
    auto *connection = new HttpsConnection([this] { connectionDestroyed(); }, this);
    if (!connection->setSocketDescriptor(descriptor)) {
        delete connection;
        return;
    }
    connect(connection, &HttpsConnection::refused, this, &HttpsListener::refused);
    connection->setSslConfiguration(m_configuration);
    connection->startServerEncryption();
    addPendingConnection(connection);
}

void HttpsListener::connectionDestroyed()
{
    --m_connections;
    if (m_isFinishing && m_connections == 0)
        Q_EMIT finished();
}

void HttpsListener::finish()
{
    close();
    m_isFinishing = true;
    const auto connections = findChildren<HttpsConnection *>();
    for (HttpsConnection *connection : connections)
        connection->finish();
    if (m_connections == 0)
        Q_EMIT finished();
}
