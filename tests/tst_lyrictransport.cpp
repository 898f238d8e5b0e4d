// SPDX-License-Identifier: MIT
#include "../lookup/LyricHttpClient.h"
#include "MisbehavingServer.h"
#include "TestAuthority.h"
#include "TurnWatch.h"

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/LyricService.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QNetworkReply>
#include <QTcpServer>
#include <QTest>

#include <zlib.h>

#include <optional>

using namespace QVSongLrcPrivate;

using namespace Qt::StringLiterals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double LongestTurnMs = 1000;
#else
constexpr double LongestTurnMs = 50;
#endif

using Server = MisbehavingServer;
const QByteArray Head = "HTTP/1.1 200 OK\r\n";
const QByteArray Good = R"({"results":[{"track":"T","artist":"A"}]})";

/// A model that waits no longer for progress than it is told.
class HastyModel : public ZTLyricRequestModel
{
public:
    explicit HastyModel(std::chrono::milliseconds idleLimit)
        : ZTLyricRequestModel({{Key_Lyric_Trackname, u"title"_s}, {Key_Lyric_Artist, u"artist"_s}})
        , m_idleLimit(idleLimit)
    {
    }

    std::shared_ptr<LyricHttpClient> afPostMgr() const override
    {
        auto client = ZTLyricRequestModel::afPostMgr();
        client->setIdleLimit(m_idleLimit);
        return client;
    }

private:
    const std::chrono::milliseconds m_idleLimit;
};

struct Outcome
{
    int answers = 0;
    std::optional<QVLyricError> error;
    QList<QJsonObject> results;
    qint64 bestIndex = -1;
    double longestTurnMs = 0;
    int runs = 1;
};

/// A search from its start until the model has gone.
Outcome searchOnce(std::chrono::milliseconds idleLimit)
{
    auto outcome = std::make_shared<Outcome>();
    auto model = std::make_shared<HastyModel>(idleLimit);
    const std::weak_ptr<HastyModel> life = model;
    TurnWatch watch;
    model->requestListWithCompletion([outcome](const auto &error, const auto &results, qint64 bestIndex) {
        ++outcome->answers;
        outcome->error = error;
        outcome->results = results;
        outcome->bestIndex = bestIndex;
    });
    model = nullptr;
    watch.run([life] { return life.expired(); });
    QElapsedTimer later; // for a second answer, and what the request leaves to be cleared away
    later.start();
    watch.run([later] { return later.hasExpired(20); });
    outcome->longestTurnMs = watch.longestMs();
    return *outcome;
}

/// A search, repeated while its turns are long: if it is its fault, they are so every time.
Outcome search(int attempts = 3, std::chrono::milliseconds idleLimit = std::chrono::seconds(20))
{
    Outcome outcome = searchOnce(idleLimit);
    for (int run = 2; outcome.longestTurnMs >= LongestTurnMs && run <= attempts; ++run) {
        outcome = searchOnce(idleLimit);
        outcome.runs = run;
    }
    return outcome;
}

/// \p start, then \p zeroMiB MiB of zeros, packed.
QByteArray gzip(QByteArray start, int zeroMiB = 0)
{
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
    const auto pack = [&](QByteArray &in, int flush) {
        QByteArray out(65536, Qt::Uninitialized);
        stream.next_in = reinterpret_cast<Bytef *>(in.data());
        stream.avail_in = uInt(in.size());
        stream.next_out = reinterpret_cast<Bytef *>(out.data());
        stream.avail_out = uInt(out.size());
        deflate(&stream, flush);
        return out.first(out.size() - qsizetype(stream.avail_out));
    };
    QByteArray packed = pack(start, zeroMiB > 0 ? Z_FULL_FLUSH : Z_FINISH);
    if (zeroMiB > 0) { // a flushed block unpacks anywhere, so one made is as good as all
        QByteArray zeros(1024 * 1024, '\0');
        packed += pack(zeros, Z_FULL_FLUSH).repeated(zeroMiB);
    }
    deflateEnd(&stream);
    return packed;
}

} // namespace

class TestLyricTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { LyricService::addCertificateAuthority(m_authority.certificate()); }
    void handshakes_data();
    void handshakes();
    void refusedConnection();
    void replies_data();
    void replies();
    void readsPackedReplies();
    void redirects_data();
    void redirects();
    void reads50000Candidates();
    void sendsThis();

private:
    void check(const Outcome &outcome, const QString &domain, qint64 code, const QString &description = {});

    const TestAuthority m_authority;
    const QSslConfiguration m_honest = m_authority.issue("IP:127.0.0.1");
};

void TestLyricTransport::check(const Outcome &outcome, const QString &domain, qint64 code,
                               const QString &description)
{
    QCOMPARE(outcome.answers, 1);
    qInfo("%s; longest turn %.1f ms", outcome.error ? qPrintable(outcome.error->description()) : "no error",
          outcome.longestTurnMs);
    QCOMPARE(outcome.error.has_value(), !domain.isEmpty());
    if (outcome.error) {
        QCOMPARE(outcome.error->domain, domain);
        QCOMPARE(outcome.error->code, code);
        if (!description.isNull())
            QCOMPARE(outcome.error->localizedDescription, description);
        QVERIFY(!outcome.error->localizedDescription.isEmpty());
        QVERIFY(outcome.results.isEmpty());
        QCOMPARE(outcome.bestIndex, 0);
    }
    QVERIFY2(outcome.longestTurnMs < LongestTurnMs, qPrintable(QString::number(outcome.longestTurnMs)));
}

void TestLyricTransport::handshakes_data()
{
    QTest::addColumn<QSslConfiguration>("configuration");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("honest") << m_honest << true;
    QTest::newRow("wrong host name") << m_authority.issue("DNS:localhost") << false;
    QTest::newRow("expired") << m_authority.issue("IP:127.0.0.1", -60) << false;
    QTest::newRow("unknown authority") << TestAuthority().issue("IP:127.0.0.1") << false;
    QSslConfiguration tls12 = m_honest;
    tls12.setProtocol(QSsl::TlsV1_2);
    QTest::newRow("TLS 1.2 only") << tls12 << true;
    QSslConfiguration tls11 = m_honest;
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    tls11.setProtocol(QSsl::TlsV1_1);
    QT_WARNING_POP
    tls11.setBackendConfigurationOption("CipherString", QByteArray("ALL:@SECLEVEL=0"));
    QTest::newRow("TLS 1.1 only") << tls11 << false;
}

void TestLyricTransport::handshakes()
{
    QFETCH(const QSslConfiguration, configuration);
    QFETCH(const bool, isAccepted);
    const Server server(configuration, Server::reply(Good));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const Outcome outcome = search(1);
    if (isAccepted)
        check(outcome, {}, 0);
    else
        check(outcome, QVLyricError::TransportDomain, QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(server.requests().size(), isAccepted ? 1 : 0);
}

void TestLyricTransport::refusedConnection()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    LyricService::setEndpoint(u"127.0.0.1"_s, server.serverPort());
    server.close();
    check(search(), QVLyricError::TransportDomain, QNetworkReply::ConnectionRefusedError);
}

void TestLyricTransport::replies_data()
{
    QTest::addColumn<Server::Behaviour>("behaviour");
    QTest::addColumn<QString>("domain");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("description");
    const auto transport = [](const char *name, const Server::Behaviour &behaviour, int code,
                              const QString &description = {}) {
        QTest::newRow(name) << behaviour << QString(QVLyricError::TransportDomain) << code << description;
    };
    const auto noObject = [](const char *name, const Server::Behaviour &behaviour) {
        QTest::newRow(name) << behaviour << QString(QVLyricError::ServiceDomain) << -1002
                            << u"empty response"_s;
    };
    const auto good = [](const char *name, const Server::Behaviour &behaviour) {
        QTest::newRow(name) << behaviour << QString() << 0 << QString();
    };
    const QString tooLong = u"The lyric service's answer is too long."_s;
    const QString tooSlow = u"The lyric service has not answered in time."_s;

    transport("closed without a word", Server::send({}), QNetworkReply::RemoteHostClosedError);
    transport("cut in the headers", Server::send("HTTP/1.1 200 OK\r\nContent-Le"),
              QNetworkReply::RemoteHostClosedError);
    transport("cut in the body", Server::send(Head + "Content-Length: 1000\r\n\r\n" + Good),
              QNetworkReply::RemoteHostClosedError);
    transport("cut in a chunk", Server::send(Head + "Transfer-Encoding: chunked\r\n\r\n40\r\n{"),
              QNetworkReply::RemoteHostClosedError);
    transport("stalls at once", Server::stallAfter({}), QNetworkReply::TimeoutError, tooSlow);
    transport("stalls in the headers", Server::stallAfter(Head), QNetworkReply::TimeoutError, tooSlow);
    transport("stalls in the body", Server::stallAfter(Head + "Content-Length: 1000\r\n\r\n{"),
              QNetworkReply::TimeoutError, tooSlow);
    transport("headers without end", Server::sendForEver(Head, "A: " + QByteArray(4096, 'a') + "\r\n"),
              QNetworkReply::TimeoutError);
    transport("body without end",
              Server::sendForEver(Head + "Connection: close\r\n\r\n", QByteArray(65536, ' ')),
              QNetworkReply::UnknownContentError, tooLong);
    transport("chunks without end",
              Server::sendForEver(Head + "Transfer-Encoding: chunked\r\n\r\n",
                                  "10000\r\n" + QByteArray(65536, ' ') + "\r\n"),
              QNetworkReply::UnknownContentError, tooLong);
    transport(
        "a length beyond counting",
        Server::sendForEver(Head + "Content-Length: 9223372036854775807\r\n\r\n", QByteArray(65536, ' ')),
        QNetworkReply::UnknownContentError, tooLong);
    noObject("a length that is too short", Server::send(Head + "Content-Length: 10\r\n\r\n" + Good));
    good("a length that is none",
         Server::send(Head + "Content-Length: x\r\nConnection: close\r\n\r\n" + Good));
    const QByteArray bomb = gzip("{", 4096);
    transport("gzip that unpacks to 4 GiB", Server::reply(bomb, "200 OK", "Content-Encoding: gzip\r\n"),
              QNetworkReply::UnknownContentError);
    transport("broken gzip", Server::reply("nothing packed", "200 OK", "Content-Encoding: gzip\r\n"),
              QNetworkReply::UnknownContentError);

    noObject("204", Server::send("HTTP/1.1 204 No Content\r\n\r\n"));
    transport("300 without an address", Server::reply(Good, "300 Multiple Choices"),
              QNetworkReply::UnknownContentError, u"The lyric service answered with the HTTP status 300."_s);
    transport("304", Server::send("HTTP/1.1 304 Not Modified\r\n\r\n"), QNetworkReply::UnknownContentError,
              u"The lyric service answered with the HTTP status 304."_s);
    transport("401", Server::reply(Good, "401 No", "WWW-Authenticate: Basic realm=\"x\"\r\n"),
              QNetworkReply::AuthenticationRequiredError);
    transport("404", Server::reply(Good, "404 Not Found"), QNetworkReply::ContentNotFoundError);
    transport("500 with JSON", Server::reply(Good, "500 Oh"), QNetworkReply::InternalServerError);
    transport("999", Server::reply(Good, "999 Oh"), QNetworkReply::UnknownServerError);
    transport("no HTTP", Server::send("SSH-2.0-x\r\n\r\n"), QNetworkReply::RemoteHostClosedError);

    good("201", Server::reply(Good, "201 Created", "Location: /x\r\n"));
    good("16 MiB of white space around it",
         Server::reply(Good + QByteArray(16 * 1024 * 1024 - Good.size(), ' ')));
    transport("one byte more", Server::reply(Good + QByteArray(16 * 1024 * 1024 - Good.size() + 1, ' ')),
              QNetworkReply::UnknownContentError, tooLong);
    noObject("16 MiB of brackets", Server::reply(QByteArray(16 * 1024 * 1024, '[')));
    noObject("JSON nested 100,000 deep",
             Server::reply("{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}'));
}

void TestLyricTransport::replies()
{
    QFETCH(const Server::Behaviour, behaviour);
    QFETCH(const QString, domain);
    QFETCH(const int, code);
    QFETCH(const QString, description);
    const Server server(m_honest, behaviour);
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const bool isStall = code == QNetworkReply::TimeoutError;
    const Outcome outcome = search(3, std::chrono::milliseconds(isStall ? 300 : 20'000));
    check(outcome, domain, code, description);
    QCOMPARE(server.requests().size(), outcome.runs); // nothing is sent again
}

void TestLyricTransport::readsPackedReplies()
{
    const Server server(m_honest, Server::reply(gzip(Good), "200 OK", "Content-Encoding: gzip\r\n"));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const Outcome outcome = search();
    check(outcome, {}, 0);
    QCOMPARE(outcome.results.size(), 1);
}

void TestLyricTransport::redirects_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("location"); // PORT stands for the server's, N for the number of the hop
    QTest::addColumn<int>("times");
    QTest::addColumn<int>("code");
    const auto row = [](const char *name, const char *location, int times, int code,
                        const char *status = "301 Moved") {
        QTest::newRow(name) << QByteArray(status) << QByteArray(location) << times << code;
    };
    row("five", "https://127.0.0.1:PORT/N", 5, 0);
    row("six", "/N", 6, QNetworkReply::TooManyRedirectsError);
    row("loop", "/0", 1000, QNetworkReply::TooManyRedirectsError);
    row("that want the form again", "/N", 1, QNetworkReply::RemoteHostClosedError, "307 Temporary Redirect");
    row("to http", "http://127.0.0.1:PORT/N", 1, QNetworkReply::InsecureRedirectError);
    row("to a file", "file:///etc/hostname", 1, QNetworkReply::InsecureRedirectError);
    row("to a host of another name", "https://localhost:PORT/N", 1, QNetworkReply::SslHandshakeFailedError);
}

void TestLyricTransport::redirects()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, location);
    QFETCH(const int, times);
    QFETCH(const int, code);
    int hop = 0;
    const Server server(m_honest, [&](QSslSocket *socket) {
        if (hop++ == times)
            return Server::reply(Good)(socket);
        QByteArray next = location;
        next.replace("PORT", QByteArray::number(socket->localPort())).replace("N", QByteArray::number(hop));
        Server::reply({}, status, "Location: " + next + "\r\n")(socket);
    });
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    check(search(1), code ? QString(QVLyricError::TransportDomain) : QString(), code);
    QCOMPARE(server.requests().size(), std::min(times + (code ? 0 : 1), 6));
    const QByteArray last = server.requests().last();
    QCOMPARE(last.startsWith("POST "), times == 1);
    QCOMPARE(last.endsWith("%3D"), last.startsWith("POST ")); // the form
}

void TestLyricTransport::reads50000Candidates()
{
    QByteArray body = "{\"results\":[";
    for (int index = 0; index < 50'000; ++index) {
        body += R"({"artist":"The Artist of Number )" + QByteArray::number(index)
            + R"(","track":"A Title about as long as most","link":"0123456789abcdef"},)";
    }
    body += R"({"track":"title","artist":"artist"}]})";
    const Server server(m_honest, Server::reply(body));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const Outcome outcome = search();
    check(outcome, {}, 0);
    QCOMPARE(outcome.results.size(), 50'001);
    QCOMPARE(outcome.bestIndex, 50'000);
}

void TestLyricTransport::sendsThis()
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
    const Server server(m_honest, Server::reply(R"({"result":{"lyric":"[00:01.00]x"}})"));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const auto model = ZTLyricRequestModel::initWithReqParams(
        {{Key_Lyric_Trackname, u"+&=%; a-b_c.d~*\n\u6b4c\U0001f3b5"_s + QChar(0xd83c) + u'x'},
         {Key_Lyric_Artist, QString(QChar(0xdfb5))}});
    int answers = 0;
    const auto count = [&answers](const auto &...) { ++answers; };
    model->requestListWithCompletion(count);
    QTRY_COMPARE(answers, 1);
    model->requestDetail(u"/1?2"_s, count);
    QTRY_COMPARE(answers, 2);
    tools->key = QString(); // no key is no reason not to ask
    model->requestDetail(QString(), count);
    QTRY_COMPARE(answers, 3);
    EncryptionTools::setSharedEncryptionTools(nullptr);

    const QByteArray query =
        "artist=%EF%BF%BD&track=%2B%26%3D%25%3B%20a-b_c.d~%2A%0A%E6%AD%8C%F0%9F%8E%B5%EF%BF%BDx";
    const QByteArrayList bodies{query + "&apiKey=k%2B%2F%3D", query + "&link=%2F1%3F2&apiKey=k%2B%2F%3D",
                                query + "&link=&apiKey="};
    QCOMPARE(server.requests().size(), bodies.size());
    for (qsizetype index = 0; index < bodies.size(); ++index) {
        const QByteArray request = server.requests()[index];
        const qsizetype bodyAt = request.indexOf("\r\n\r\n") + 4;
        QCOMPARE(request.sliced(bodyAt), bodies[index]);
        const QByteArray path = index == 0 ? "/search/search.php" : "/detail/detail.php";
        QVERIFY(request.startsWith("POST /phpLyricFetcher" + path + " HTTP/1.1\r\nHost: 127.0.0.1:"));
        for (const QByteArray header :
             {"Content-Type: application/x-www-form-urlencoded", "Accept: application/json"})
            QCOMPARE(request.first(bodyAt).count("\r\n" + header + "\r\n"), 1);
    }
}

QTEST_GUILESS_MAIN(TestLyricTransport)
#include "tst_lyrictransport.moc"
