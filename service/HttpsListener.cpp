// SPDX-License-Identifier: MIT
#include "HttpsListener.h"

#include "HttpsConnection.h"

HttpsListener::HttpsListener(const QSslConfiguration &configuration)
    : m_configuration(configuration)
{
}

HttpsListener::~HttpsListener()
{
    const auto connections = findChildren<HttpsConnection *>();
    for (HttpsConnection *connection : connections)
        connection->disconnect(this);
}

void HttpsListener::incomingConnection(qintptr descriptor)
{
    auto *connection = new HttpsConnection(this);
    if (!connection->setSocketDescriptor(descriptor)) {
        delete connection;
        return;
    }
    if (++m_connections >= MaxConnections)
        pauseAccepting();
    connect(connection, &HttpsConnection::refused, this, &HttpsListener::refused);
    connect(connection, &HttpsConnection::gone, this, [this] {
        --m_connections;
        if (m_isFinishing && m_connections == 0)
            Q_EMIT finished();
        else if (!m_isFinishing)
            resumeAccepting();
    });
    connection->setSslConfiguration(m_configuration);
    connection->startServerEncryption();
    addPendingConnection(connection);
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
