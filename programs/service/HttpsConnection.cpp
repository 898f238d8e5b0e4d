// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "HttpsConnection.h"

#include "Refusal.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int HandshakeTime = 10'000; // ms
constexpr int IdleTime = 30'000;
constexpr int RequestTime = 20'000;
constexpr int AnswerTime = 20'000;
constexpr int RefusalTime = 2'000;
constexpr int LastChanceTime = 2'000;

} // namespace

HttpsConnection::HttpsConnection(std::function<void()> onGone, QObject *parent)
    : QSslSocket(parent)
    , m_onGone(std::move(onGone))
{
    setReadBufferSize(MaxHead + MaxBody);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        if (m_phase == Phase::Head || m_phase == Phase::Body)
            refuse(Refusals::TooSlow);
        else {
            abort();
            deleteLater();
        }
    });
    connect(this, &QSslSocket::encrypted, this, [this] { enter(Phase::Idle); });
    connect(this, &QSslSocket::disconnected, this, &QObject::deleteLater);
    connect(this, &QSslSocket::readyRead, this, &HttpsConnection::receive);
    connect(this, &QSslSocket::encryptedBytesWritten, this, [this] {
        if (m_phase == Phase::Answering && isAnswerOut())
            enter(Phase::Idle);
    });
    enter(Phase::Handshake);
}

HttpsConnection::~HttpsConnection()
{
    m_onGone();
}

void HttpsConnection::enter(Phase phase)
{
    m_phase = phase;
    if (phase == Phase::Handshake)
        m_deadline.start(HandshakeTime);
    else if (phase == Phase::Idle)
        m_deadline.start(IdleTime);
    else if (phase == Phase::Head)
        m_deadline.start(RequestTime); // body included
    else if (phase == Phase::Complete)
        m_deadline.stop();
    else if (phase == Phase::Answering)
        m_deadline.start(AnswerTime);
}

// Runs before the server's own slot, which takes all that has arrived.
void HttpsConnection::receive()
{
    const qint64 arrived = bytesAvailable();
    if (arrived == 0 || m_phase == Phase::Closing)
        return;
    if (m_phase == Phase::Answering) {
        if (!isAnswerOut()) {
            disconnect(this, &QSslSocket::readyRead, nullptr, nullptr);
            abort(); // or answers that nobody reads would pile up here
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
        if (const Refusal *refusal = readHead()) {
            refuse(*refusal);
            return;
        }
    } else {
        m_bodyLeft -= arrived;
    }
    if (m_phase == Phase::Head)
        return;
    if (m_bodyLeft < 0) {
        refuse(Refusals::BadRequest);
    } else if (m_bodyLeft == 0) {
        enter(Phase::Complete);
        // The server answers in its slot, or it has dropped a request that it does not understand.
        QTimer::singleShot(0, this, [this] {
            if (m_phase == Phase::Complete)
                refuse(Refusals::BadRequest);
        });
    }
}

// Enters the body when the head has arrived. Stricter than the server, so that both see the same request.
const Refusal *HttpsConnection::readHead()
{
    static const QRegularExpression requestLine(u"^[A-Z]{1,20} /(?!/)[!-~]* HTTP/1\\.[01]$"_s);
    static const QRegularExpression fieldName(u"^[A-Za-z0-9!#$%&'*+.^_`|~-]+$"_s);
    const qsizetype end = m_head.indexOf("\r\n\r\n");
    if (end > MaxHead || (end < 0 && m_head.size() > MaxHead))
        return &Refusals::LongHead;
    if (end < 0)
        return nullptr;
    const QList<QByteArray> lines = m_head.first(end).replace("\r\n", "\n").split('\n');
    if (!requestLine.match(QString::fromLatin1(lines.front())).hasMatch())
        return &Refusals::BadRequest;
    // HTTP 1.0 expects no more, and the server answers HEAD with a body.
    m_closeAfterwards |= lines.front().endsWith('0') || lines.front().startsWith("HEAD ");
    std::optional<qint64> length;
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || !fieldName.match(QString::fromLatin1(line.first(colon))).hasMatch())
            return &Refusals::BadRequest;
        const auto isControl = [](char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F'; };
        if (std::any_of(line.begin(), line.end(), isControl))
            return &Refusals::BadRequest;
        const QByteArray name = line.first(colon).toLower();
        const QByteArray value = line.sliced(colon + 1).trimmed();
        if (name == "transfer-encoding")
            return &Refusals::NoLength;
        if (name == "upgrade")
            return &Refusals::BadRequest;
        if (name == "connection")
            m_closeAfterwards |= value.toLower() == "close";
        if (name != "content-length")
            continue;
        const bool isNumber = !value.isEmpty()
            && std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (length || !isNumber)
            return &Refusals::BadRequest;
        length = value.size() > 9 ? MaxBody + 1 : value.toLongLong();
    }
    if (length.value_or(0) > MaxBody)
        return &Refusals::TooLarge;
    m_bodyLeft = length.value_or(0) - (m_head.size() - end - 4);
    enter(Phase::Body);
    return nullptr;
}

void HttpsConnection::refuse(const Refusal &refusal)
{
    // The server sees no more of it. What follows is dropped: the answer would be lost if the connection were
    // closed with bytes unread.
    disconnect(this, &QSslSocket::readyRead, nullptr, nullptr);
    if (isTransactionStarted())
        commitTransaction();
    readAll();
    connect(this, &QSslSocket::readyRead, this, [this] { readAll(); });
    const QByteArray body = refusal.json();
    write("HTTP/1.1 " + QByteArray::number(refusal.status)
          + " Refused\r\nContent-Type: application/json\r\n"
            "Connection: close\r\nContent-Length: "
          + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    Q_EMIT refused(refusal, m_head.first(std::max<qsizetype>(m_head.indexOf("\r\n"), 0)));
    closeWithin(RefusalTime);
}

void HttpsConnection::answered()
{
    m_isFirst = false;
    if (m_closeAfterwards)
        closeWithin(AnswerTime);
    else
        enter(isAnswerOut() ? Phase::Idle : Phase::Answering);
}

void HttpsConnection::finish()
{
    m_closeAfterwards = true;
    if (m_phase == Phase::Answering || (m_phase == Phase::Idle && !m_isFirst))
        closeWithin(AnswerTime);
    else if (m_phase == Phase::Idle || m_phase == Phase::Handshake)
        m_deadline.start(LastChanceTime);
}

void HttpsConnection::closeWithin(int time)
{
    enter(Phase::Closing);
    m_deadline.start(time);
    disconnectFromHost(); // once all is written
}
