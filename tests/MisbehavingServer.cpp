// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "MisbehavingServer.h"

#include <QRegularExpression>
#include <QSslServer>

#include <memory>

MisbehavingServer::MisbehavingServer(const QSslConfiguration &configuration, Behaviour behaviour)
    : m_behaviour(std::move(behaviour))
    , m_server(new QSslServer)
{
    m_server->setSslConfiguration(configuration);
    QObject::connect(m_server, &QSslServer::pendingConnectionAvailable, m_server, [this] {
        while (QTcpSocket *const socket = m_server->nextPendingConnection())
            take(static_cast<QSslSocket *>(socket));
    });
    m_server->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_server,
        [this] {
            m_server->listen(QHostAddress::LocalHost);
            m_port = m_server->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

MisbehavingServer::~MisbehavingServer()
{
    QMetaObject::invokeMethod(
        m_server, [this] { delete m_server; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

QList<QByteArray> MisbehavingServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

void MisbehavingServer::take(QSslSocket *socket)
{
    QObject::connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
    const auto request = std::make_shared<QByteArray>();
    const auto read = [this, socket, request] {
        static const QRegularExpression ContentLength(QStringLiteral("\r\nContent-Length: (\\d+)\r\n"));
        *request += socket->readAll();
        const qsizetype head = request->indexOf("\r\n\r\n");
        const auto match = ContentLength.match(QString::fromLatin1(request->left(head + 2)));
        if (head < 0 || request->size() < head + 4 + match.captured(1).toInt())
            return;
        {
            const QMutexLocker lock(&m_mutex);
            m_requests += *request;
        }
        request->clear();
        m_behaviour(socket);
    };
    QObject::connect(socket, &QSslSocket::readyRead, socket, read);
    read();
}

MisbehavingServer::Behaviour MisbehavingServer::send(const QByteArray &bytes)
{
    return [bytes](QSslSocket *socket) {
        socket->write(bytes);
        socket->disconnectFromHost();
    };
}

MisbehavingServer::Behaviour MisbehavingServer::stallAfter(const QByteArray &bytes)
{
    return [bytes](QSslSocket *socket) { socket->write(bytes); };
}

MisbehavingServer::Behaviour MisbehavingServer::sendForEver(const QByteArray &first, const QByteArray &again)
{
    return [first, again](QSslSocket *socket) {
        socket->write(first);
        const auto more = [socket, again] {
            if (socket->encryptedBytesToWrite() + socket->bytesToWrite() < 256 * 1024)
                socket->write(again);
        };
        QObject::connect(socket, &QSslSocket::encryptedBytesWritten, socket, more);
        more();
    };
}

MisbehavingServer::Behaviour MisbehavingServer::reply(const QByteArray &body, const QByteArray &status,
                                                      const QByteArray &headers)
{
    return stallAfter("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n"
                      + headers + "\r\n" + body);
}
