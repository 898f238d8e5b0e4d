// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVLyricService.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

/// The lyric service of a test: lyric_server.py in a child process, which ends with this object. Lookups go to it and
/// trust its authority. Not a QProcess, so that it works without an application object.
class LookupServer
{
public:
    /// \p port is the name of one of the server's ports.
    explicit LookupServer(const char *port = "trusted")
    {
        int ends[2];
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends);
        m_process = fork();
        if (m_process == 0) {
            dup2(ends[1], STDIN_FILENO);
            dup2(ends[1], STDOUT_FILENO);
            execlp("python3", "python3", TESTS "/lyric_server.py", port, nullptr);
            _exit(1);
        }
        close(ends[1]);
        m_socket = ends[0];
        while (!m_output.endsWith('\n') && read(0)) {
        }
        const QJsonDocument start = QJsonDocument::fromJson(std::exchange(m_output, {}));
        QVLyricService::addCertificateAuthorities(start[QLatin1StringView("pem")].toString().toLatin1());
        m_port = quint16(start[QLatin1StringView("ports")][QLatin1StringView(port)].toInt());
        QVLyricService::setEndpoint(QStringLiteral("127.0.0.1"), m_port);
    }
    ~LookupServer()
    {
        shutdown(m_socket, SHUT_WR);
        waitpid(m_process, nullptr, 0);
        close(m_socket);
    }
    Q_DISABLE_COPY_MOVE(LookupServer)

    quint16 port() const { return m_port; }

    /// The requests so far that contain \p part, each with head and body.
    QByteArrayList requests(const QByteArray &part = {})
    {
        while (read(MSG_DONTWAIT)) {
        }
        QByteArrayList lines = m_output.split('\n');
        m_output = lines.takeLast(); // not complete yet
        for (const QByteArray &line : lines)
            m_requests += QJsonDocument::fromJson(line)[QLatin1StringView("request")].toString().toLatin1();
        lines = m_requests;
        lines.removeIf([&part](const QByteArray &request) { return !request.contains(part); });
        return lines;
    }

    /// Runs the event loop until the server has received \p count requests that contain \p part; false when that takes
    /// more than 30 s.
    bool waitForRequests(qsizetype count, const QByteArray &part = {})
    {
        return QTest::qWaitFor([&] { return requests(part).size() >= count; }, 30'000);
    }

    /// Answers the held request \p number; the first is 1.
    void reply(int number, const QByteArray &body, const char *status = "200 OK")
    {
        const QJsonObject order{{QStringLiteral("reply"), number},
                                {QStringLiteral("body"), QString::fromUtf8(body)},
                                {QStringLiteral("status"), QLatin1StringView(status)}};
        const QByteArray line = QJsonDocument(order).toJson(QJsonDocument::Compact) + '\n';
        send(m_socket, line.constData(), size_t(line.size()), MSG_NOSIGNAL);
    }

private:
    bool read(int flags)
    {
        char bytes[65536];
        const ssize_t size = recv(m_socket, bytes, sizeof bytes, flags);
        m_output.append(bytes, std::max<ssize_t>(size, 0));
        return size > 0;
    }

    pid_t m_process;
    int m_socket;
    quint16 m_port = 0;
    QByteArray m_output;
    QByteArrayList m_requests;
};
