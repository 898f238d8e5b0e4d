// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVLyricHttpClient.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Error = QVLyricError;
using Model = ZTLyricRequestModel;

namespace {

Error failure(qint64 code, int status = 0, const char *description = "")
{
    return {Error::TransportDomain, code, QString::fromLatin1(description), status};
}

/// A reply with a body of \p size bytes.
Error body(qint64 size)
{
    return {{}, size, {}};
}

/// Whether a request for \p route ends as \p expected, once. The description may be any text where none is expected.
bool endsAs(const Error &expected, const char *route, std::chrono::milliseconds idleLimit = 20s)
{
    const auto answers = std::make_shared<QList<Error>>();
    const auto client = Model::initWithReqParams({})->afPostMgr();
    client->setIdleLimit(idleLimit);
    client->post(
        QVLyricService::url(u"/"_s), {{Key_Lyric_Trackname, QString::fromLatin1(route)}},
        [answers](const QByteArray &bytes) { *answers += body(bytes.size()); },
        [answers](const std::optional<Error> &error) { *answers += error.value(); });
    if (!QTest::qWaitFor([&] { return answers.use_count() == 1; }, 60'000) || answers->size() != 1)
        return false;
    Error &error = answers->first();
    qInfo().noquote() << route << error.description() << error.httpStatus;
    if (expected.localizedDescription.isEmpty()
        && error.localizedDescription.isEmpty() == error.domain.isEmpty())
        error.localizedDescription = expected.localizedDescription;
    return error == expected;
}

} // namespace

class TestLyricTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVLyricService::setEndpoint(u"127.0.0.1"_s, m_server.port()); }

    void handshakes()
    {
        for (const char *const port : {"wrong host name", "expired", "unknown authority", "TLS 1.1 only"}) {
            LookupServer server(port);
            QVERIFY2(endsAs(failure(Error::Tls), "good"), port);
            QVERIFY(server.requests().isEmpty());
        }
        const LookupServer server("TLS 1.2 only");
        QVERIFY(endsAs(body(77), "good"));
        QVLyricService::setEndpoint(u"127.0.0.1"_s, 1); // nobody listens there
        QVERIFY(endsAs(failure(Error::Unreachable), "good"));
    }

    void usesProxies()
    {
        const std::tuple<QString, QByteArray, QByteArrayList> rows[] = {
            {u"http://u:p@localhost"_s,
             "Proxy-Authorization: Basic dTpw\r\n",
             {"HTTP/1.1 407 No\r\nProxy-Authenticate: Basic realm=x\r\nContent-Length: 0\r\n\r\n",
              "HTTP/1.1 502 No\r\nContent-Length: 0\r\n\r\n"}},
            {u"socks5://localhost"_s,
             "\5\1\0\3\16lyrics.example\1\xbb"_ba,
             {"\5\0"_ba, "\5\1\0\1\0\0\0\0\0\0"_ba}},
        };
        QVLyricService::setEndpoint(u"lyrics.example"_s);
        for (const auto &[url, request, replies] : rows) {
            QTcpServer proxy;
            proxy.listen(QHostAddress::LocalHost);
            QByteArray got;
            connect(&proxy, &QTcpServer::newConnection, this, [&, replies = replies] {
                QTcpSocket *const socket = proxy.nextPendingConnection();
                connect(socket, &QTcpSocket::readyRead, this, [=, &got, next = 0]() mutable {
                    got += socket->readAll();
                    socket->write(replies.value(next++));
                });
            });
            QVLyricService::setProxy(QUrl(url + u':' + QString::number(proxy.serverPort())));
            const bool isUnreachable = endsAs(failure(Error::Unreachable), "good");
            QVLyricService::setProxy(QUrl());
            QVERIFY(isUnreachable && got.contains(request) && got.contains("lyrics.example"));
        }
    }

    void misbehaves()
    {
        const char *const slow = "The lyric service has not answered in time.";
        const Error tooLong = failure(Error::TooLarge, 200, "The lyric service's answer is too long.");
        const char *const status300 = "The lyric service answered with the HTTP status 300.";
        const char *const tooOften = "The lyric service redirects too often.";
        const char *const unsafe = "The lyric service redirects to an address without HTTPS.";
        const struct
        {
            Error expected;
            QByteArrayList routes;
            int requests = 1;
        } rows[] = {
            {failure(Error::BadReply), {"closed without a word", "cut in the headers", "no HTTP"}},
            {failure(Error::BadReply, 200),
             {"cut in the body", "cut in a chunk", "packed 64 MiB", "broken packing"}},
            {tooLong, {"a length beyond counting", "body without end", "chunks without end"}},
            {tooLong, {"one byte more than 16 MiB"}},
            {body(16 * 1024 * 1024), {"16 MiB, most of it white space"}},
            {body(10), {"a length that is too short"}},
            {body(77), {"a length that is no number", "packed", "201"}},
            {body(0), {"204"}},
            {body(87), {"trickles"}},
            {failure(Error::HttpStatus, 300, status300), {"300"}},
            {failure(Error::HttpStatus, 400), {"400"}},
            {failure(Error::HttpStatus, 401), {"401"}},
            {failure(Error::HttpStatus, 404), {"404"}},
            {failure(Error::HttpStatus, 500), {"500"}},
            {body(77), {"five redirects"}, 6},
            {failure(Error::BadRedirect, 302, tooOften), {"six redirects"}, 6},
            {body(77), {"see other"}, 2},
            {failure(Error::BadReply), {"see a reply that is cut"}, 2}, // the GET is not repeated either
            {failure(Error::BadRedirect, 307), {"redirect that wants the form again"}},
            {failure(Error::BadRedirect, 301, unsafe), {"redirect to http", "redirect to a file"}},
            {failure(Error::Tls), {"redirect to another name"}},
            // The limit may be over before the server has the request.
            {failure(Error::Timeout, 0, slow), {"stalls at once", "headers without end"}, 0},
            {failure(Error::Timeout, 200, slow), {"stalls in the body"}, 0},
        };
        for (const auto &[expected, routes, requests] : rows) {
            for (const QByteArray &route : routes) {
                const qsizetype before = m_server.requests().size();
                const auto idleLimit = requests == 0 ? 300ms : route == "trickles" ? 2s : 20s;
                QVERIFY2(endsAs(expected, route.constData(), idleLimit), route.constData());
                if (requests == 0)
                    continue;
                const QByteArrayList sent = m_server.requests().mid(before);
                const bool isForm = requests == 1; // a redirect is followed without the form
                QVERIFY2(sent.size() == requests, route.constData());
                QCOMPARE(sent.last().startsWith("POST /"), isForm);
                QCOMPARE(sent.last().contains("Content-Type"), isForm);
                QCOMPARE(sent.last().endsWith("\r\n\r\n"), !isForm);
            }
        }
    }

    void sendsForms()
    {
        struct FixedTools : EncryptionTools
        {
            QString encryptString(const QString &, const QString &, const QByteArray &) const override
            {
                return key;
            }
            QString key;
        };
        const QByteArray query =
            "artist=%EF%BF%BD&track=%2B%26%3D%25%3B%20a-b_c.d~%2A%0A%E6%AD%8C%F0%9F%8E%B5%EF%BF%BDx";
        const std::tuple<const char *, QString, QString, QByteArray> rows[] = {
            {"search/search.php", u"k+/="_s, {}, query + "&apiKey=k%2B%2F%3D"},
            {"detail/detail.php", u"k+/="_s, u"/1?2"_s, query + "&link=%2F1%3F2&apiKey=k%2B%2F%3D"},
            {"detail/detail.php", {}, {}, query + "&link=&apiKey="}, // without a key, too
        };
        const auto tools = std::make_shared<FixedTools>();
        EncryptionTools::setSharedEncryptionTools(tools);
        const auto model = Model::initWithReqParams(
            {{Key_Lyric_Trackname, u"+&=%; a-b_c.d~*\n\u6b4c\U0001f3b5"_s + QChar(0xd83c) + u'x'},
             {Key_Lyric_Artist, QString(QChar(0xdfb5))}});
        LookupServer server; // holds every request
        const auto ignore = [](const auto &...) {};
        for (qsizetype count = 0; const auto &[path, key, link, form] : rows) {
            tools->key = key;
            count++ == 0 ? model->requestListWithCompletion(ignore) : model->requestDetail(link, ignore);
            QVERIFY(server.waitForRequests(count));
            const QByteArray request = server.requests().last();
            const qsizetype bodyAt = request.indexOf("\r\n\r\n") + 4;
            QCOMPARE(request.sliced(bodyAt), form);
            QVERIFY(request.startsWith("POST /phpLyricFetcher/"_ba + path + " HTTP/1.1\r\nHost: 127.0.0.1:"));
            for (const char *header :
                 {"Content-Type: application/x-www-form-urlencoded", "Accept: application/json"})
                QCOMPARE(request.first(bodyAt).count("\r\n"_ba + header + "\r\n"), 1);
        }
        QVERIFY(!QVLrcUtils::generateLyricApiKey().isNull());
        EncryptionTools::setSharedEncryptionTools(nullptr); // the default again
        QVERIFY(!QVLrcUtils::generateLyricApiKey().isEmpty());
        model->afPostMgr()->get(QVLyricService::url(u"/x"_s), ignore, ignore);
        QVERIFY(server.waitForRequests(1, "GET /x HTTP/1.1\r\n"));
        for (const QUrl &url : {QUrl(u"http://127.0.0.1/"_s), QUrl(u"https:///x"_s), QUrl()})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->afPostMgr()->get(url, ignore, ignore));
    }

private:
    LookupServer m_server;
};

QTEST_GUILESS_MAIN(TestLyricTransport)
#include "tst_lyrictransport.moc"
