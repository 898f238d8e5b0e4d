// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslSocket>
#include <QTimer>

#include <functional>

struct ServiceError;

/// A client's connection to an HttpsListener. Checks every request before QAbstractHttpServer reads it, because that
/// class has no limits. Well-framed requests of up to MaxBody bytes pass. Any other gets an error reply, and the
/// connection closes. Slow clients are disconnected.
///
/// Takes one request at a time: more bytes before the reply are an error, and a client that sends the next request
/// before it has read the reply is disconnected.
class HttpsConnection : public QSslSocket
{
    Q_OBJECT

public:
    static constexpr qint64 MaxBody = 64 * 1024;
    static constexpr qint64 MaxHead = 16 * 1024;

    /// \p onDestroyed is called by the destructor. Not a signal: the server disconnects all signals of a connection
    /// when it drops it.
    HttpsConnection(std::function<void()> onDestroyed, QObject *parent);
    ~HttpsConnection() override;

    /// Whether a complete request is waiting for its reply.
    bool hasRequest() const { return m_phase == Phase::Complete; }

    /// Call after the reply was written. Closes the connection if the client or finish() asked for that.
    void replied();

    /// Closes after the reply to the request in progress, even if that is still arriving. A connection that has not
    /// sent any request yet has a short time to send one.
    void finish();

Q_SIGNALS:
    /// The request got \p error as its reply; \p requestLine is its first line, empty when that was incomplete.
    void refused(const ServiceError &error, const QByteArray &requestLine);

private:
    enum class Phase { Handshake, Idle, Head, Body, Complete, Replying, Closing };

    void receive();
    bool isReplySent() const { return bytesToWrite() + encryptedBytesToWrite() == 0; }
    const ServiceError *readHead();
    void refuse(const ServiceError &error);
    void enter(Phase phase);
    void closeWithin(int time);

    const std::function<void()> m_onDestroyed;
    Phase m_phase = Phase::Handshake;
    QByteArray m_head;
    qint64 m_bodyLeft = 0;
    bool m_closeAfterReply = false;
    bool m_isFirstRequest = true;
    QTimer m_deadline{this};
};
