// SPDX-License-Identifier: MIT
#include "../lookup/LyricHttpClient.h"
#include "MisbehavingServer.h"
#include "TestAuthority.h"

#include <QVSongLrc/LyricService.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QTest>
#include <QTimer>

#include <limits>
#include <stdexcept>

using namespace QVSongLrcPrivate;

using namespace Qt::StringLiterals;

static_assert(!std::is_copy_constructible_v<ZTLyricRequestModel>);
static_assert(!std::is_default_constructible_v<ZTLyricRequestModel>);

namespace {

using Error = std::optional<QVLyricError>;
using Server = MisbehavingServer;

const QJsonObject Query{{Key_Lyric_Trackname, u"title"_s}, {Key_Lyric_Artist, u"artist"_s}};
const QByteArray Good = R"({"results":[{"track":"T","artist":"A"}]})";
const QString Dealloced = u"ZTLyricRequestModel dealloced ----"_s;
const QString Cancelled = u"Error Domain=QNetworkReply::NetworkError Code=5 \"The request was cancelled.\""_s;

QStringList logged;

void log(QtMsgType, const QMessageLogContext &, const QString &message)
{
    logged += message;
}

/// A model over a transport that answers what the test says, or fails if it says nothing.
class CannedModel : public ZTLyricRequestModel
{
public:
    explicit CannedModel(const std::optional<QByteArray> &body = {}, const QJsonObject &query = Query)
        : ZTLyricRequestModel(query)
        , m_body(body)
    {
    }

    std::shared_ptr<LyricHttpClient> afPostMgr() const override
    {
        struct Client : LyricHttpClient
        {
            void setHeader(const QByteArray &, const QByteArray &) override { }
            void setIdleLimit(std::chrono::milliseconds) override { }
            std::shared_ptr<LyricDataTask> post(const QString &, const Fields &fields, Success success,
                                                Failure failure) override
            {
                *sent += fields;
                QTimer::singleShot(0, qApp, [body = body, success, failure] {
                    body ? success(*body) : failure(std::nullopt);
                });
                return nullptr;
            }
            std::optional<QByteArray> body;
            QList<Fields> *sent;
        };
        auto client = std::make_shared<Client>();
        client->body = m_body;
        client->sent = &sent;
        return client;
    }

    mutable QList<LyricHttpClient::Fields> sent;

private:
    const std::optional<QByteArray> m_body;
};

/// A model whose searches answer what the test says.
class CannedSearchModel : public CannedModel
{
public:
    using CannedModel::CannedModel;

    void requestListWithCompletion(ListCompletion completion) override { completion(error, results, best); }

    Error error;
    QList<QJsonObject> results;
    qint64 best = 0;
};

QVLyricError service(qint64 code, const QString &description)
{
    return {QVLyricError::ServiceDomain, code, description};
}

} // namespace

class TestLyricRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // An application object a test, so that each also proves that the next one finds things in order.
    void init();
    void cleanup();
    void refusesEmptyQueries();
    void refusesAbsentCompletions();
    void readsReplies_data();
    void readsReplies();
    void readsLyrics_data();
    void readsLyrics();
    void failsWithoutAnError();
    void looksUp_data();
    void looksUp();
    void reportsDurations_data();
    void reportsDurations();
    void cancels_data();
    void cancels();
    void cancelsTheLatestOnly();
    void livesUntilItHasAnswered();
    void completionsMayDoAnything();
    void completionsMayDeleteTheirCarrier();
    void endsWithTheApplication_data();
    void endsWithTheApplication();
    void endsWhileItReadsAReply();
    void keepsTheServicesAddress();

private:
    int m_argc = 1;
    char m_name[16] = "lyricrequest";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QCoreApplication> m_application;
    std::optional<QSslConfiguration> m_honest; // not before there is an application
};

void TestLyricRequest::init()
{
    m_application = std::make_unique<QCoreApplication>(m_argc, m_argv);
    if (!m_honest) {
        const TestAuthority authority;
        m_honest = authority.issue("IP:127.0.0.1");
        LyricService::addCertificateAuthority(authority.certificate());
    }
    logged.clear();
    qInstallMessageHandler(log);
}

void TestLyricRequest::cleanup()
{
    m_application = nullptr;
    qInstallMessageHandler(nullptr);
}

void TestLyricRequest::refusesEmptyQueries()
{
    for (const QJsonObject &query :
         {QJsonObject(), QJsonObject{{Key_Lyric_Trackname, u""_s}, {Key_Lyric_Artist, u""_s}},
          QJsonObject{{Key_Lyric_Trackname, 5}, {Key_Lyric_Artist, QJsonValue()}}}) {
        const auto model = std::make_shared<CannedModel>(Good, query);
        QList<QVLyricError> errors;
        model->requestListWithCompletion([&](const Error &error, const auto &results, qint64 best) {
            QVERIFY(results.isEmpty() && best == 0);
            errors += *error;
        });
        model->requestWithCompletion([&](const Error &error, const QString &lyric) {
            QVERIFY(lyric.isNull());
            errors += *error;
        });
        const QVLyricError refusal{QVLyricError::EmptyQueryDomain, -1002, QString()};
        QCOMPARE(errors, (QList{refusal, refusal}));
        QVERIFY(errors[0].localizedDescription.isNull());
        QVERIFY(model->sent.isEmpty() && !model->dataTask());
        model->cancel();
    }
    for (const auto &key : {Key_Lyric_Trackname, Key_Lyric_Artist}) {
        const auto model = std::make_shared<CannedModel>(Good, QJsonObject{{key, u"x"_s}});
        model->requestListWithCompletion([](const auto &...) {});
        QCOMPARE(model->sent.size(), 1);
    }
}

void TestLyricRequest::refusesAbsentCompletions()
{
    const auto model = std::make_shared<CannedModel>();
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestListWithCompletion(nullptr));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestDetail(u"x"_s, nullptr));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr));
    QVERIFY(model->sent.isEmpty());
}

// What a search and a detail request make of the same body.
void TestLyricRequest::readsReplies_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<Error>("ofSearch");
    QTest::addColumn<Error>("ofDetail");
    const auto both = [](const QByteArray &body, const Error &search, const Error &detail,
                         const char *name = nullptr) {
        QTest::newRow(name ? name : body.constData()) << body << search << detail;
    };
    const auto noObject = [&](const QByteArray &body, const char *name) {
        both(body, service(-1002, u"empty response"_s), service(-1010, u"empty response"_s), name);
    };
    noObject({}, "empty");
    noObject(" \t\r\n\xc2\x85\xe2\x80\xa8\xe3\x80\x80", "white space only");
    noObject("\xef\xbb\xbf", "a byte order mark alone");
    for (const char *text : {"[]", "null", "\"x\"", "5", "true", "{", "{}x", "{'code':0}", "<html>", "{}{}"})
        noObject(text, text);
    noObject("{\"a\":\"\xff\"}", "invalid UTF-8");
    noObject("{\"a\":\"\xed\xa0\x80\"}", "a surrogate in UTF-8");
    noObject("{\"a\":\"\xc0\xaf\"}", "an overlong form");
    noObject("{\"a\":\"\xe6\xad", "cut in a character");
    noObject("{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}', "nested 100,000 deep");

    const auto reported = [&](const QByteArray &body, qint64 code, const QString &message) {
        both(body, service(code, message), service(code, message));
    };
    reported(R"({"code":5,"message":"x"})", 5, u"x"_s);
    reported(R"({"code":5})", 5, u""_s);
    reported(R"({"code":5,"message":7,"results":[{"track":"T","artist":"A"}]})", 5, u""_s);
    reported("\xe3\x80\x80 {\"code\":-5,\"message\":\"\xe6\xad\x8c\"} ", -5, u"歌"_s);
    reported(R"({"code":9007199254740993})", 9007199254740993, u""_s);
    reported(R"({"code":9223372036854775807})", std::numeric_limits<qint64>::max(), u""_s);
    reported(R"({"code":1e30})", std::numeric_limits<qint64>::max(), u""_s);
    reported(R"({"code":-99999999999999999999})", std::numeric_limits<qint64>::min(), u""_s);
    reported(R"({"code":2.9})", 2, u""_s);
    reported(R"({"code":-2.9})", -2, u""_s);

    const Error nothing = service(-1004, u"没有结果"_s);
    for (const char *text :
         {"{}", R"({"code":0})", R"({"code":"7"})", R"({"code":0.9})", R"({"code":null,"results":[]})",
          R"({"code":true,"results":{}})", R"({"results":[5,"x",null,[],{}]})",
          R"({"code":"7","message":5,"results":[{"track":1,"artist":2,"link":3}],"result":{"lyric":4}})",
          R"({"results":[{"track":"T"},{"artist":"A"},{"track":"","artist":"A"},{"track":"T","artist":5}]})"})
        both(text, nothing, {});
    both(Good, {}, {});
    both("\xef\xbb\xbf" + Good, {}, {}, "a byte order mark in front");
    both("\n " + Good + "\r\n", {}, {}, "white space around");
}

void TestLyricRequest::readsReplies()
{
    QFETCH(const QByteArray, body);
    QFETCH(const Error, ofSearch);
    QFETCH(const Error, ofDetail);
    const auto model = std::make_shared<CannedModel>(body);
    int answers = 0;
    model->requestListWithCompletion([&](const Error &error, const auto &results, qint64 best) {
        ++answers;
        QCOMPARE(error, ofSearch);
        QCOMPARE(results.isEmpty(), error.has_value());
        QCOMPARE(best, 0);
    });
    model->requestDetail(u"link"_s, [&](const Error &error, const QString &lyric) {
        ++answers;
        QCOMPARE(error, ofDetail);
        QVERIFY(lyric.isNull());
        QVERIFY(!error || !error->localizedDescription.isNull());
    });
    QCOMPARE(answers, 0);
    QTRY_COMPARE(answers, 2);
    QCOMPARE(logged, QStringList());
}

void TestLyricRequest::readsLyrics_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("lyric");
    QTest::newRow("text") << QByteArray(R"({"code":0,"result":{"lyric":"[00:01.00]x\n歌"}})")
                          << u"[00:01.00]x\n歌"_s;
    QTest::newRow("empty") << QByteArray(R"({"result":{"lyric":""}})") << u""_s;
    QTest::newRow("no lyric") << QByteArray(R"({"code":0,"result":{}})") << QString();
    QTest::newRow("a number") << QByteArray(R"({"result":{"lyric":5}})") << QString();
    QTest::newRow("no result") << QByteArray("{}") << QString();
    QTest::newRow("a list") << QByteArray(R"({"result":[{"lyric":"x"}]})") << QString();
}

void TestLyricRequest::readsLyrics()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, lyric);
    std::optional<QString> answer;
    std::make_shared<CannedModel>(body)->requestDetail(QString(),
                                                       [&](const Error &error, const QString &got) {
                                                           QVERIFY(!error);
                                                           answer = got;
                                                       });
    QTRY_VERIFY(answer);
    QCOMPARE(*answer, lyric);
    QCOMPARE(answer->isNull(), lyric.isNull());
}

void TestLyricRequest::failsWithoutAnError()
{
    const auto model = std::make_shared<CannedModel>();
    QList<QVLyricError> errors;
    model->requestListWithCompletion([&](const Error &error, const auto &...) { errors += *error; });
    model->requestDetail(u"x"_s, [&](const Error &error, const auto &...) { errors += *error; });
    QTRY_COMPARE(errors, (QList{service(-1002, u"networkError"_s), service(-1011, u"networkError"_s)}));
    QCOMPARE(logged,
             (QStringList{u"Error Domain=com.zt.lyric Code=-1002 \"networkError\""_s,
                          u"Error Domain=com.zt.lyric Code=-1011 \"networkError\""_s}));
}

void TestLyricRequest::looksUp_data()
{
    QTest::addColumn<QByteArray>("results");
    QTest::addColumn<qint64>("best");
    QTest::addColumn<Error>("failure");
    QTest::addColumn<QString>("link");
    const QByteArray three = R"([{"link":"0"},{"link":"1"},{"link":"2"}])";
    QTest::newRow("best") << three << qint64(2) << Error() << u"2"_s;
    QTest::newRow("negative") << three << qint64(-1) << Error() << u"0"_s;
    QTest::newRow("past the end") << three << qint64(3) << Error() << u"0"_s;
    QTest::newRow("not found") << three << std::numeric_limits<qint64>::max() << Error() << u"0"_s;
    QTest::newRow("no link") << QByteArray("[{}]") << qint64(0) << Error() << u""_s;
    QTest::newRow("a number") << QByteArray(R"([{"link":5}])") << qint64(0) << Error() << u""_s;
    QTest::newRow("nothing") << QByteArray("[]") << qint64(0) << Error(service(-1004, u"Found no lyric"_s))
                             << QString();
    QTest::newRow("failed") << QByteArray("[]") << qint64(0) << Error(service(7, u"x"_s)) << QString();
}

void TestLyricRequest::looksUp()
{
    QFETCH(const QByteArray, results);
    QFETCH(const qint64, best);
    QFETCH(const Error, failure);
    QFETCH(const QString, link);
    const auto model = std::make_shared<CannedSearchModel>(R"({"result":{"lyric":"text"}})");
    for (const QJsonValue &value : QJsonDocument::fromJson(results).array())
        model->results += value.toObject();
    model->best = best;
    if (failure && failure->code == 7)
        model->error = failure;
    int answers = 0;
    model->requestWithCompletion([&](const Error &error, const QString &lyric) {
        ++answers;
        QCOMPARE(error, failure);
        QCOMPARE(lyric, failure ? QString() : u"text"_s);
    });
    QTRY_COMPARE(answers, 1);
    QCOMPARE(model->sent.size(), failure ? 0 : 1);
    if (!failure)
        QVERIFY(model->sent[0].contains(std::pair(QByteArray("link"), link)));
}

void TestLyricRequest::reportsDurations_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    const auto row = [](double seconds, const QString &text) {
        QTest::newRow(QByteArray::number(seconds).constData()) << seconds << text;
    };
    row(1.2345, u"1200"_s);
    row(0.0999, u"0"_s);
    row(-0.25, u"-200"_s);
    row(-0.05, u"0"_s);
    row(2.0, u"2000"_s);
    row(0.05, u"0"_s);
    row(1e30, u"2147483600"_s);
    row(-std::numeric_limits<double>::infinity(), u"-2147483600"_s);
    row(std::numeric_limits<double>::quiet_NaN(), u"0"_s);
}

void TestLyricRequest::reportsDurations()
{
    QFETCH(const double, seconds);
    QFETCH(const QString, text);
    QCOMPARE(ZTLyricRequestModel::getReportDuration(seconds), text);
}

void TestLyricRequest::cancels_data()
{
    QTest::addColumn<int>("before");    // times, in the same turn as the start
    QTest::addColumn<bool>("underWay"); // once the server has the request
    QTest::addColumn<bool>("inside");   // in the completion
    QTest::addColumn<bool>("afterwards");
    QTest::newRow("at once") << 1 << false << false << false;
    QTest::newRow("at once, often") << 3 << true << true << true;
    QTest::newRow("under way") << 0 << true << false << false;
    QTest::newRow("under way and inside") << 0 << true << true << true;
    QTest::newRow("too late") << 0 << false << true << true;
}

void TestLyricRequest::cancels()
{
    QFETCH(const int, before);
    QFETCH(const bool, underWay);
    QFETCH(const bool, inside);
    QFETCH(const bool, afterwards);
    const Server server(*m_honest, underWay || before ? Server::stallAfter({}) : Server::reply(Good));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    auto model = ZTLyricRequestModel::initWithReqParams(Query);
    int answers = 0;
    Error answer;
    model->requestListWithCompletion([&](const Error &error, const auto &...) {
        ++answers;
        answer = error;
        if (inside)
            model->cancel();
    });
    for (int times = 0; times < before; ++times)
        model->cancel();
    QCOMPARE(answers, 0);
    if (underWay && before == 0)
        QTRY_COMPARE(server.requests().size(), 1);
    if (underWay)
        model->cancel();
    QCOMPARE(answers, 0);
    QTRY_COMPARE(answers, 1);
    if (afterwards)
        model->cancel();
    model = nullptr;
    QTest::qWait(20);
    QCOMPARE(answers, 1);
    const bool isCancelled = before || underWay;
    QCOMPARE(answer.has_value(), isCancelled);
    if (isCancelled)
        QCOMPARE(answer->code, QNetworkReply::OperationCanceledError);
    QCOMPARE(logged, isCancelled ? QStringList({Cancelled, Dealloced}) : QStringList(Dealloced));
}

void TestLyricRequest::cancelsTheLatestOnly()
{
    const Server server(*m_honest, Server::reply(Good));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    const auto model = ZTLyricRequestModel::initWithReqParams(Query);
    Error ofSearch;
    Error ofDetail;
    int answers = 0;
    model->requestListWithCompletion(
        [&](const Error &error, const auto &...) { ++answers, ofSearch = error; });
    const auto task = model->dataTask();
    model->requestDetail(u"x"_s, [&](const Error &error, const auto &...) { ++answers, ofDetail = error; });
    QVERIFY(model->dataTask() && model->dataTask() != task);
    model->cancel();
    QTRY_COMPARE(answers, 2);
    QVERIFY(!ofSearch);
    QCOMPARE(ofDetail->domain, QVLyricError::TransportDomain);
}

void TestLyricRequest::livesUntilItHasAnswered()
{
    const Server server(
        *m_honest,
        Server::reply(R"({"results":[{"track":"T","artist":"A","link":"1"}],"result":{"lyric":"x"}})"));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    QString answer;
    ZTLyricRequestModel::initWithReqParams(Query)->requestWithCompletion(
        [&](const Error &, const QString &lyric) {
            answer = lyric;
            QCOMPARE(logged, QStringList());
        });
    QTRY_COMPARE(answer, u"x"_s);
    QTRY_COMPARE(logged, QStringList(Dealloced));
    QVERIFY(server.requests().value(1).contains("&link=1&"));
}

void TestLyricRequest::completionsMayDoAnything()
{
    const Server server(*m_honest, Server::reply(Good));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    struct Owner
    {
        std::shared_ptr<ZTLyricRequestModel> model = ZTLyricRequestModel::initWithReqParams(Query);
    };
    auto owner = std::make_unique<Owner>();
    QStringList steps;
    owner->model->requestListWithCompletion([&](const auto &...) {
        steps += u"first"_s;
        QEventLoop loop;
        owner->model->requestListWithCompletion([&](const Error &error, const auto &...) {
            steps += error ? u"failed"_s : u"second"_s;
            owner->model->requestDetail(u"x"_s, [&](const Error &innerError, const auto &...) {
                steps += innerError ? u"cancelled"_s : u"not cancelled"_s;
                owner = nullptr;
                loop.quit();
            });
            owner->model->cancel();
        });
        loop.exec();
        steps += u"end"_s;
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    QCOMPARE(steps, (QStringList{u"first"_s, u"second"_s, u"cancelled"_s, u"end"_s}));
    QCOMPARE(logged, (QStringList{Cancelled, Dealloced}));
}

// Objects to be deleted later are deleted in an event loop of the completion's own.
void TestLyricRequest::completionsMayDeleteTheirCarrier()
{
    const Server good(*m_honest, Server::reply(Good));
    const Server bad(*m_honest, Server::reply({}, "404 Not Found"));
    for (const Server *server : {&good, &bad}) {
        LyricService::setEndpoint(u"127.0.0.1"_s, server->port());
        const auto large = std::make_shared<QByteArray>(1'000, 'x'); // what the completion holds
        qsizetype size = 0;
        ZTLyricRequestModel::initWithReqParams(Query)->requestListWithCompletion(
            [&size, large](const auto &...) {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                size = large->size();
                QCoreApplication::quit();
            });
        QCoreApplication::exec();
        QCOMPARE(size, 1'000);
    }
}

void TestLyricRequest::endsWithTheApplication_data()
{
    QTest::addColumn<bool>("isUnderWay");
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("just started") << false << false;
    QTest::newRow("waiting") << true << false;
    QTest::newRow("cancelled") << true << true;
}

void TestLyricRequest::endsWithTheApplication()
{
    QFETCH(const bool, isUnderWay);
    QFETCH(const bool, isCancelled);
    const Server server(*m_honest, Server::stallAfter({}));
    LyricService::setEndpoint(u"127.0.0.1"_s, server.port());
    auto model = ZTLyricRequestModel::initWithReqParams(Query);
    const auto token = std::make_shared<int>(); // held by the completion
    model->requestListWithCompletion([token](const auto &...) { QFAIL("nobody waits for this any more"); });
    if (isUnderWay)
        QTRY_COMPARE(server.requests().size(), 1);
    if (isCancelled)
        model->cancel();
    const auto task = model->dataTask();
    model = nullptr;
    QCOMPARE(token.use_count(), 3); // one a handler and this
    m_application = nullptr;
    QCOMPARE(token.use_count(), 1);
    QCOMPARE(logged, QStringList(Dealloced));
    task->cancel();
    m_application =
        std::make_unique<QCoreApplication>(m_argc, m_argv); // the server's thread needs one to end
}

void TestLyricRequest::endsWhileItReadsAReply()
{
    const QByteArray longReply = R"({"results":[)" + QByteArray("{},").repeated(4'000'000) + "{}]}";
    const auto token = std::make_shared<int>();
    std::make_shared<CannedModel>(longReply)->requestListWithCompletion(
        [token](const auto &...) { QFAIL("nobody waits for this any more"); });
    QCoreApplication::processEvents(); // in which the reply arrives
    QVERIFY(token.use_count() > 1);
    m_application = nullptr;
    QCOMPARE(token.use_count(), 1);
    QCOMPARE(logged, QStringList(Dealloced));
}

void TestLyricRequest::keepsTheServicesAddress()
{
    LyricService::setEndpoint(u"lyrics.example"_s);
    QCOMPARE(LyricService::url(u"/a/b"_s).toString(), u"https://lyrics.example/a/b"_s);
    LyricService::setEndpoint(u"::1"_s, 8443);
    QCOMPARE(LyricService::url(u"/a"_s).toString(), u"https://[::1]:8443/a"_s);
    for (const QString &host : {QString(), u""_s, u"a b"_s, u"a/b"_s, u"a@b"_s, u"a:1"_s})
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, LyricService::setEndpoint(host));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, LyricService::setEndpoint(u"a"_s, 0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, LyricService::addCertificateAuthority(QSslCertificate()));
    QCOMPARE(LyricService::port(), 8443);
}

QTEST_APPLESS_MAIN(TestLyricRequest)
#include "tst_lyricrequest.moc"
