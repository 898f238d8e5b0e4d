// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSslSocket>
#include <QTimer>

#include <functional>

struct Refusal;

/// A client's connection to an HttpsListener. Looks at every request before QAbstractHttpServer does, whose
/// own reading has no limits: it lets well-framed requests of up to 64 KiB pass and answers any others
/// itself, then closes. It gives up on clients that take too long.
///
/// One request at a time: bytes behind a request that is not answered yet are refused, and a client that asks
/// again before it has read the answer is cut off.
class HttpsConnection : public QSslSocket
{
    Q_OBJECT

public:
    static constexpr qint64 MaxBody = 64 * 1024;
    static constexpr qint64 MaxHead = 16 * 1024;

    /// \p onGone is called when the connection is gone for good. Not a signal, for the server disconnects all
    /// signals of a connection that it gives up.
    HttpsConnection(std::function<void()> onGone, QObject *parent);
    ~HttpsConnection() override;

    /// Whether a request has arrived in full that neither side has answered.
    bool hasRequest() const { return m_phase == Phase::Complete; }

    /// To be called when the request was answered. Closes the connection when the client or finish() asked
    /// for it.
    void answered();

    /// Closes as soon as no request is under way. One that has begun to arrive is; for the first of a
    /// connection a moment is given.
    void finish();

Q_SIGNALS:
    /// A request was answered with \p refusal; \p requestLine is what had arrived of its first line.
    void refused(const Refusal &refusal, const QByteArray &requestLine);

private:
    enum class Phase { Handshake, Idle, Head, Body, Complete, Answering, Closing };

    void receive();
    bool isAnswerOut() const { return bytesToWrite() + encryptedBytesToWrite() == 0; }
    const Refusal *readHead();
    void refuse(const Refusal &refusal);
    void enter(Phase phase);
    void closeWithin(int time);

    const std::function<void()> m_onGone;
    Phase m_phase = Phase::Handshake;
    QByteArray m_head;
    qint64 m_bodyLeft = 0;
    bool m_closeAfterwards = false;
    bool m_isFirst = true;
    QTimer m_deadline{this};
};
