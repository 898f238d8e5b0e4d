// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"
#include "TurnWatch.h"
#include <QVSongLrc/QVLyricHttpClient.h>

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QTcpServer>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double LongestTurnMs = 1000;
#else
constexpr double LongestTurnMs = 50;
#endif

using Server = LookupServer;
const QByteArray Head = "HTTP/1.1 200 OK\r\n";
const QByteArray Good = R"({"results":[{"track":"T","artist":"A"}]})";

/// A model with its own idle limit.
struct HastyModel : ZTLyricRequestModel
{
    explicit HastyModel(std::chrono::milliseconds limit)
        : ZTLyricRequestModel({{Key_Lyric_Trackname, u"title"_s}, {Key_Lyric_Artist, u"artist"_s}})
        , idleLimit(limit)
    {
    }
    std::shared_ptr<QVLyricHttpClient> afPostMgr() const override
    {
        auto client = ZTLyricRequestModel::afPostMgr();
        client->setIdleLimit(idleLimit);
        return client;
    }
    const std::chrono::milliseconds idleLimit;
};

struct Outcome
{
    int answers = 0;
    std::optional<QVLyricError> error;
    QList<QJsonObject> results;
    qint64 bestIndex = -1;
    double longestTurnMs = 0;
    int runs = 0;
};

/// Runs a search until its model has been destroyed. Repeats it while turns of the event loop are long: if the
/// lookup is the reason, they are long every time.
Outcome search(std::chrono::milliseconds idleLimit = 20s, int attempts = 3)
{
    const auto outcome = std::make_shared<Outcome>();
    for (int run = 1; run == 1 || (run <= attempts && outcome->longestTurnMs >= LongestTurnMs); ++run) {
        auto model = std::make_shared<HastyModel>(idleLimit);
        const std::weak_ptr<HastyModel> life = model;
        *outcome = Outcome();
        outcome->runs = run;
        TurnWatch watch;
        model->requestListWithCompletion([outcome](const auto &error, const auto &results, qint64 bestIndex) {
            ++outcome->answers;
            outcome->error = error;
            outcome->results = results;
            outcome->bestIndex = bestIndex;
        });
        model = nullptr;
        watch.run([life] { return life.expired(); });
        QElapsedTimer later; // for a second answer and deferred deletions
        later.start();
        watch.run([later] { return later.hasExpired(20); });
        outcome->longestTurnMs = watch.longestMs();
    }
    return *outcome;
}

/// Checks that a search has answered once: with the error \p code, or with results when that is 0.
void check(const Outcome &outcome, int code, const QString &description = {})
{
    QCOMPARE(outcome.answers, 1);
    QCOMPARE(outcome.error.has_value(), code != 0);
    QCOMPARE(outcome.results.isEmpty(), code != 0);
    if (outcome.error) {
        QCOMPARE(outcome.error->domain,
                 code > 0 ? QVLyricError::TransportDomain : QVLyricError::ServiceDomain);
        QCOMPARE(outcome.error->code, code);
        QVERIFY(!outcome.error->localizedDescription.isEmpty());
        if (!description.isEmpty())
            QCOMPARE(outcome.error->localizedDescription, description);
        QCOMPARE(outcome.bestIndex, 0);
    }
    QVERIFY2(outcome.longestTurnMs < LongestTurnMs, qPrintable(QString::number(outcome.longestTurnMs)));
}

} // namespace

class TestLyricTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *const variable : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
            qputenv(variable, "http://127.0.0.1:1"); // must not be used
    }

    void handshakes_data()
    {
        QTest::addColumn<QSslConfiguration>("configuration");
        QTest::addColumn<bool>("isAccepted");
        const TestAuthority &authority = Server::authority();
        QTest::newRow("wrong host name") << authority.issue("DNS:localhost") << false;
        QTest::newRow("expired") << authority.issue("IP:127.0.0.1", -60) << false;
        QTest::newRow("unknown authority") << TestAuthority().issue("IP:127.0.0.1") << false;
        QSslConfiguration tls12 = Server::trusted();
        tls12.setProtocol(QSsl::TlsV1_2);
        QTest::newRow("TLS 1.2 only") << tls12 << true;
        QSslConfiguration tls11 = Server::trusted();
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        tls11.setProtocol(QSsl::TlsV1_1);
        QT_WARNING_POP
        tls11.setBackendConfigurationOption("CipherString", "ALL:@SECLEVEL=0"_ba);
        QTest::newRow("TLS 1.1 only") << tls11 << false;
    }
    void handshakes()
    {
        QFETCH(const QSslConfiguration, configuration);
        QFETCH(const bool, isAccepted);
        const Server server(Server::reply(Good), configuration);
        const Outcome outcome = search();
        check(outcome, isAccepted ? 0 : int(QVLyricError::Tls));
        QCOMPARE(server.requests().size(), isAccepted ? outcome.runs : 0);
    }

    void failsWithoutTls()
    {
        QTcpServer silent; // the kernel accepts the connection
        silent.listen(QHostAddress::LocalHost);
        QVLyricService::setEndpoint(u"127.0.0.1"_s, silent.serverPort());
        check(search(300ms), QVLyricError::Timeout);
        silent.close();
        check(search(), QVLyricError::Unreachable);
    }

    void usesProxies_data()
    {
        QTest::addColumn<QByteArray>("greeting");
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("refusal");
        QTest::newRow("http") << ""_ba
                              << "CONNECT lyrics.example:443 HTTP/1.1\r\n"_ba
                              << "HTTP/1.1 502 No\r\nContent-Length: 0\r\n\r\n"_ba;
        QTest::newRow("socks5") << "\5\0"_ba
                                << "\5\1\0\3\16lyrics.example\1\xbb"_ba
                                << "\5\1\0\1\0\0\0\0\0\0"_ba;
    }
    void usesProxies()
    {
        QFETCH(const QByteArray, greeting);
        QFETCH(const QByteArray, request);
        QFETCH(const QByteArray, refusal);
        QTcpServer proxy;
        proxy.listen(QHostAddress::LocalHost);
        QByteArray got;
        connect(&proxy, &QTcpServer::newConnection, this, [&] {
            QTcpSocket *const socket = proxy.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [&, socket] {
                got += socket->readAll();
                socket->write(got.contains(request) ? refusal : greeting);
            });
        });
        QVLyricService::setEndpoint(u"lyrics.example"_s);
        QVLyricService::setProxy(QUrl(
            u"%1://127.0.0.1:%2"_s.arg(QLatin1StringView(QTest::currentDataTag())).arg(proxy.serverPort())));
        check(search(20s, 1), QVLyricError::Unreachable);
        QVLyricService::setProxy(QUrl());
        QVERIFY2(got.contains(request), got.toHex(' ').constData());
    }

    void replies_data()
    {
        using Error = QVLyricError;
        QTest::addColumn<Server::Behaviour>("behaviour");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("description");
        const auto row = [](const char *name, const Server::Behaviour &behaviour, int code,
                            const char *description = "") {
            QTest::newRow(name) << behaviour << code << QString::fromLatin1(description);
        };
        const auto cut = [&](const char *name, const QByteArray &bytes) {
            row(name, Server::send(bytes), Error::BadReply);
        };
        cut("closed without a reply", {});
        cut("cut in the headers", "HTTP/1.1 200 OK\r\nContent-Le");
        cut("cut in the body", Head + "Content-Length: 1000\r\n\r\n" + Good);
        cut("cut in a chunk", Head + "Transfer-Encoding: chunked\r\n\r\n40\r\n{");
        cut("no HTTP", "SSH-2.0-x\r\n\r\n");

        const char *const slow = "The lyric service has not answered in time.";
        row("stalls at once", Server::stallAfter({}), Error::Timeout, slow);
        row("stalls in the body", Server::stallAfter(Head + "Content-Length: 1000\r\n\r\n{"), Error::Timeout,
            slow);
        row("headers without end", Server::sendForEver(Head, "A: " + QByteArray(4096, 'a') + "\r\n"),
            Error::Timeout, slow);

        const char *const tooLong = "The lyric service's answer is too long.";
        const QByteArray space(65536, ' ');
        row("body without end", Server::sendForEver(Head + "Connection: close\r\n\r\n", space),
            Error::TooLarge, tooLong);
        row("chunks without end",
            Server::sendForEver(Head + "Transfer-Encoding: chunked\r\n\r\n", "10000\r\n" + space + "\r\n"),
            Error::TooLarge, tooLong);
        row("the greatest possible length",
            Server::sendForEver(Head + "Content-Length: 9223372036854775807\r\n\r\n", space), Error::TooLarge,
            tooLong);
        row("a length that is too short", Server::send(Head + "Content-Length: 10\r\n\r\n" + Good),
            Error::SearchFailed);
        row("a length that is not a number",
            Server::send(Head + "Content-Length: x\r\nConnection: close\r\n\r\n" + Good), 0);
        const QByteArray mostSpace(16 * 1024 * 1024 - Good.size(), ' ');
        row("16 MiB, most of it white space", Server::reply(Good + mostSpace), 0);
        row("one byte more", Server::reply(Good + mostSpace + ' '), Error::TooLarge, tooLong);
        row("16 MiB of brackets", Server::reply(QByteArray(16 * 1024 * 1024, '[')), Error::SearchFailed);

        const auto packed = [](const QByteArray &body) {
            return Server::reply(body, "200 OK", "Content-Encoding: deflate\r\n");
        };
        const auto deflated = [](const QByteArray &body) {
            return qCompress(body, 9).sliced(4);
        }; // less the length
        row("packed", packed(deflated(Good)), 0);
        row("packed 64 MiB", packed(deflated(QByteArray(64 * 1024 * 1024, ' '))), Error::BadReply);
        row("broken packing", packed("nothing packed"), Error::BadReply);

        row("201", Server::reply(Good, "201 Created", "Location: /x\r\n"), 0);
        row("204", Server::send("HTTP/1.1 204 No Content\r\n\r\n"), Error::SearchFailed);
        row("300 without an address", Server::reply(Good, "300 Multiple Choices"), Error::HttpStatus,
            "The lyric service answered with the HTTP status 300.");
        row("401", Server::reply(Good, "401 No", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
            Error::HttpStatus);
        row("404", Server::reply(Good, "404 Not Found"), Error::HttpStatus);
        row("500", Server::reply(Good, "500 Oh"), Error::HttpStatus);
    }
    void replies()
    {
        QFETCH(const Server::Behaviour, behaviour);
        QFETCH(const int, code);
        QFETCH(const QString, description);
        const Server server(behaviour);
        const Outcome outcome = search(code == QVLyricError::Timeout ? 300ms : 20s);
        check(outcome, code, description);
        if (code == QVLyricError::HttpStatus)
            QCOMPARE(outcome.error->httpStatus, QByteArray(QTest::currentDataTag()).first(3).toInt());
        QCOMPARE(server.requests().size(), outcome.runs); // nothing is sent again
    }

    void waitsWhileThereIsProgress()
    {
        const Server server([](QSslSocket *socket) {
            socket->write(Head + "Connection: close\r\n\r\n" + Good);
            auto *const timer = new QTimer(socket);
            timer->callOnTimeout(socket, [socket, times = 0]() mutable {
                ++times < 8 ? void(socket->write(" ")) : socket->disconnectFromHost();
            });
            timer->start(100);
        });
        check(search(500ms), 0);
    }

    void redirects_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<QByteArray>("location"); // PORT is the server's, N the number of the redirect
        QTest::addColumn<int>("times");
        QTest::addColumn<int>("code");
        const auto row = [](const char *name, const QByteArray &location, int times, int code,
                            const QByteArray &status = "301 Moved") {
            QTest::newRow(name) << status << location << times << code;
        };
        row("five", "https://127.0.0.1:PORT/N", 5, 0);
        row("six", "/N", 6, QVLyricError::BadRedirect);
        row("asking for the form again", "/N", 1, QVLyricError::BadRedirect, "307 Temporary Redirect");
        row("to http", "http://127.0.0.1:PORT/N", 1, QVLyricError::BadRedirect);
        row("to a file", "file:///etc/hostname", 1, QVLyricError::BadRedirect);
        row("to a host of another name", "https://localhost:PORT/N", 1, QVLyricError::Tls);
    }
    void redirects()
    {
        QFETCH(const QByteArray, status);
        QFETCH(const QByteArray, location);
        QFETCH(const int, times);
        QFETCH(const int, code);
        int hop = 0;
        const Server server([&](QSslSocket *socket) {
            if (hop++ == times)
                return Server::reply(Good)(socket);
            QByteArray next = location;
            next.replace("PORT", QByteArray::number(socket->localPort()))
                .replace("N", QByteArray::number(hop));
            Server::reply("moved", status, "Location: " + next + "\r\n")(socket);
        });
        check(search(20s, 1), code);
        QCOMPARE(server.requests().size(), std::min(times + (code ? 0 : 1), 6));
        const QByteArray last = server.requests().last();
        for (const bool isForm :
             {last.startsWith("POST "), last.contains("Content-Type"), last.endsWith("%3D")})
            QCOMPARE(isForm, times == 1);
    }

    void reads50000Candidates()
    {
        constexpr int Count = 50'000;
        QByteArray candidates;
        for (int index = 0; index < Count; ++index) {
            QByteArray candidate = R"({"artist":"The Artist No","track":"As long as most titles"},)";
            candidates += candidate.replace("No", QByteArray::number(index));
        }
        const Server server(
            Server::reply("{\"results\":[" + candidates + R"({"track":"title","artist":"artist"})" + "]}"));
        const Outcome outcome = search();
        check(outcome, 0);
        QCOMPARE(outcome.results.size(), Count + 1);
        QCOMPARE(outcome.bestIndex, Count);
    }

    void sendsThis()
    {
        struct FixedTools : EncryptionTools
        {
            QString encryptString(const QString &, const QString &, const QByteArray &) const override
            {
                return key;
            }
            QString key = u"k+/="_s;
        };
        const auto tools = std::make_shared<FixedTools>();
        EncryptionTools::setSharedEncryptionTools(tools);
        const Server server(Server::reply(R"({"result":{"lyric":"[00:01.00]x"}})"));
        const auto model = ZTLyricRequestModel::initWithReqParams(
            {{Key_Lyric_Trackname, u"+&=%; a-b_c.d~*\n\u6b4c\U0001f3b5"_s + QChar(0xd83c) + u'x'},
             {Key_Lyric_Artist, QString(QChar(0xdfb5))}});
        int answers = 0;
        const auto count = [&answers](const auto &...) { ++answers; };
        model->requestListWithCompletion(count);
        QTRY_COMPARE(answers, 1);
        model->requestDetail(u"/1?2"_s, count);
        QTRY_COMPARE(answers, 2);
        tools->key = QString(); // the request is sent without a key
        QVERIFY(!QVLrcUtils::generateLyricApiKey().isNull());
        model->requestDetail(QString(), count);
        QTRY_COMPARE(answers, 3);
        EncryptionTools::setSharedEncryptionTools(nullptr);
        QVERIFY(!QVLrcUtils::generateLyricApiKey().isEmpty());
        model->afPostMgr()->get(QVLyricService::url(u"/x"_s), count, count);
        QTRY_COMPARE(answers, 4);
        QVERIFY(server.requests().last().startsWith("GET /x HTTP/1.1\r\n"));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                 model->afPostMgr()->get(QUrl(u"http://127.0.0.1/"_s), count, count));

        const QByteArray query =
            "artist=%EF%BF%BD&track=%2B%26%3D%25%3B%20a-b_c.d~%2A%0A%E6%AD%8C%F0%9F%8E%B5%EF%BF%BDx";
        const std::pair<QByteArray, QByteArray> expected[] = {
            {"search/search.php", query + "&apiKey=k%2B%2F%3D"},
            {"detail/detail.php", query + "&link=%2F1%3F2&apiKey=k%2B%2F%3D"},
            {"detail/detail.php", query + "&link=&apiKey="}};
        QCOMPARE(server.requests().size(), std::size(expected) + 1);
        for (qsizetype index = 0; const auto &[path, body] : expected) {
            const QByteArray request = server.requests()[index++];
            const qsizetype bodyAt = request.indexOf("\r\n\r\n") + 4;
            QCOMPARE(request.sliced(bodyAt), body);
            QVERIFY(request.startsWith("POST /phpLyricFetcher/" + path + " HTTP/1.1\r\nHost: 127.0.0.1:"));
            for (const char *header :
                 {"Content-Type: application/x-www-form-urlencoded", "Accept: application/json"})
                QCOMPARE(request.first(bodyAt).count("\r\n"_ba + header + "\r\n"), 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestLyricTransport)
#include "tst_lyrictransport.moc"
