// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "HttpsConnection.h"

#include "ErrorReplies.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// All in ms.
constexpr int HandshakeTimeout = 10'000;
constexpr int IdleTimeout = 30'000;
constexpr int RequestTimeout = 20'000; // head and body
constexpr int ReplyTimeout = 20'000;
constexpr int ErrorReplyTimeout = 2'000;
constexpr int FirstRequestTimeout = 2'000;

} // namespace

HttpsConnection::HttpsConnection(std::function<void()> onDestroyed, QObject *parent)
    : QSslSocket(parent)
    , m_onDestroyed(std::move(onDestroyed))
{
    setReadBufferSize(MaxHead + MaxBody);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        if (m_phase == Phase::Head || m_phase == Phase::Body)
            refuse(ErrorReplies::TooSlow);
        else {
            abort();
            deleteLater();
        }
    });
    connect(this, &QSslSocket::encrypted, this, [this] { enter(Phase::Idle); });
    connect(this, &QSslSocket::disconnected, this, &QObject::deleteLater);
    connect(this, &QSslSocket::readyRead, this, &HttpsConnection::receive);
    connect(this, &QSslSocket::encryptedBytesWritten, this, [this] {
        if (m_phase == Phase::Replying && isReplySent())
            enter(Phase::Idle);
    });
    enter(Phase::Handshake);
}

HttpsConnection::~HttpsConnection()
{
    m_onDestroyed();
}

void HttpsConnection::enter(Phase phase)
{
    m_phase = phase;
    if (phase == Phase::Handshake)
        m_deadline.start(HandshakeTimeout);
    else if (phase == Phase::Idle)
        m_deadline.start(IdleTimeout);
    else if (phase == Phase::Head)
        m_deadline.start(RequestTimeout);
    else if (phase == Phase::Complete)
        m_deadline.stop();
    else if (phase == Phase::Replying)
        m_deadline.start(ReplyTimeout);
}

// Connected before the server's own slot, which reads everything that has arrived.
void HttpsConnection::receive()
{
    const qint64 arrived = bytesAvailable();
    if (arrived == 0 || m_phase == Phase::Closing)
        return;
    if (m_phase == Phase::Replying) {
        if (!isReplySent()) {
            disconnect(this, &QSslSocket::readyRead, nullptr, nullptr);
            abort(); // else unread replies would pile up in memory
            return;
        }
        enter(Phase::Idle);
    }
    if (m_phase == Phase::Idle) {
        m_head.clear();
        enter(Phase::Head);
    }
    if (m_phase == Phase::Head) {
        m_head += peek(arrived);
        if (const ServiceError *error = readHead()) {
            refuse(*error);
            return;
        }
    } else {
        m_bodyLeft -= arrived;
    }
    if (m_phase == Phase::Head)
        return;
    if (m_bodyLeft < 0) {
        refuse(ErrorReplies::BadRequest);
    } else if (m_bodyLeft == 0) {
        enter(Phase::Complete);
        // The server replies in its slot, which runs before the timer, unless it dropped the request as malformed.
        QTimer::singleShot(0, this, [this] {
            if (m_phase == Phase::Complete)
                refuse(ErrorReplies::BadRequest);
        });
    }
}

// Enters Phase::Body once the head is complete. Stricter than the server, so that both read the same request.
const ServiceError *HttpsConnection::readHead()
{
    static const QRegularExpression requestLine(u"^[A-Z]{1,20} /(?!/)[!-~]* HTTP/1\\.[01]$"_s);
    static const QRegularExpression fieldName(u"^[A-Za-z0-9!#$%&'*+.^_`|~-]+$"_s);
    const qsizetype end = m_head.indexOf("\r\n\r\n");
    if (end > MaxHead || (end < 0 && m_head.size() > MaxHead))
        return &ErrorReplies::LongHead;
    if (end < 0)
        return nullptr;
    const QList<QByteArray> lines = m_head.first(end).replace("\r\n", "\n").split('\n');
    if (!requestLine.match(QString::fromLatin1(lines.front())).hasMatch())
        return &ErrorReplies::BadRequest;
    // HTTP 1.0 has one request per connection by default. Qt sends a body in reply to HEAD.
    m_closeAfterReply |= lines.front().endsWith('0') || lines.front().startsWith("HEAD ");
    std::optional<qint64> length;
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || !fieldName.match(QString::fromLatin1(line.first(colon))).hasMatch())
            return &ErrorReplies::BadRequest;
        const auto isControl = [](char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F'; };
        if (std::any_of(line.begin(), line.end(), isControl))
            return &ErrorReplies::BadRequest;
        const QByteArray name = line.first(colon).toLower();
        const QByteArray value = line.sliced(colon + 1).trimmed();
        if (name == "transfer-encoding")
            return &ErrorReplies::NoLength;
        if (name == "upgrade")
            return &ErrorReplies::BadRequest;
        if (name == "connection")
            m_closeAfterReply |= value.toLower() == "close";
        if (name != "content-length")
            continue;
        const bool isNumber = !value.isEmpty()
            && std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (length || !isNumber)
            return &ErrorReplies::BadRequest;
        length = value.size() > 9 ? MaxBody + 1 : value.toLongLong();
    }
    if (length.value_or(0) > MaxBody)
        return &ErrorReplies::TooLarge;
    m_bodyLeft = length.value_or(0) - (m_head.size() - end - 4);
    enter(Phase::Body);
    return nullptr;
}

void HttpsConnection::refuse(const ServiceError &error)
{
    // Hide the request from the server. Read and drop the rest: closing with unread bytes resets the connection, and
    // the client would lose the reply.
    disconnect(this, &QSslSocket::readyRead, nullptr, nullptr);
    if (isTransactionStarted())
        commitTransaction();
    readAll();
    connect(this, &QSslSocket::readyRead, this, [this] { readAll(); });
    const QByteArray body = error.json();
    write("HTTP/1.1 " + QByteArray::number(error.status)
          + " Refused\r\nContent-Type: " + QVSongLrcPrivate::LookupProtocol::JsonType.data()
          + "\r\n"
            "Connection: close\r\nContent-Length: "
          + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    Q_EMIT refused(error, m_head.first(std::max<qsizetype>(m_head.indexOf("\r\n"), 0)));
    closeWithin(ErrorReplyTimeout);
}

void HttpsConnection::replied()
{
    m_isFirstRequest = false;
    if (m_closeAfterReply)
        closeWithin(ReplyTimeout);
    else
        enter(isReplySent() ? Phase::Idle : Phase::Replying);
}

void HttpsConnection::finish()
{
    m_closeAfterReply = true;
    if (m_phase == Phase::Replying || (m_phase == Phase::Idle && !m_isFirstRequest))
        closeWithin(ReplyTimeout);
    else if (m_phase == Phase::Idle || m_phase == Phase::Handshake)
        m_deadline.start(FirstRequestTimeout);
}

void HttpsConnection::closeWithin(int time)
{
    enter(Phase::Closing);
    m_deadline.start(time);
    disconnectFromHost(); // after everything is written
}
