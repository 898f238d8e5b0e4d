// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"
#include <QVSongLrc/QVLyricHttpClient.h>

#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QTest>
#include <QTimer>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

using Error = std::optional<QVLyricError>;
using Server = LookupServer;

const QJsonObject Query{{Key_Lyric_Trackname, u"title"_s}, {Key_Lyric_Artist, u"artist"_s}};
const QByteArray Good = R"({"results":[{"track":"T","artist":"A","link":"1"}],"result":{"lyric":"text"}})";
const QString Dealloced = u"ZTLyricRequestModel dealloced ----"_s;
const QString Cancelled = u"Error Domain=QVSongLrc.Transport Code=1 \"The request was cancelled.\""_s;

QStringList logged;

QVLyricError service(qint64 code, const QString &description)
{
    return {QVLyricError::ServiceDomain, code, description};
}

/// A model whose transport replies with \p body, or fails without an error when there is none.
class CannedModel : public ZTLyricRequestModel
{
public:
    explicit CannedModel(const std::optional<QByteArray> &body = {}, const QJsonObject &query = Query)
        : ZTLyricRequestModel(query)
        , m_body(body)
    {
    }

    std::shared_ptr<QVLyricHttpClient> afPostMgr() const override
    {
        struct Client : QVLyricHttpClient
        {
            void setHeader(const QByteArray &, const QByteArray &) override { }
            void setIdleLimit(std::chrono::milliseconds) override { }
            std::shared_ptr<QVLyricDataTask> get(const QUrl &, Success, Failure) override { return nullptr; }
            std::shared_ptr<QVLyricDataTask> post(const QUrl &, const Fields &fields, Success success,
                                                  Failure failure) override
            {
                model->sent += fields;
                QTimer::singleShot(0, qApp, [body = model->m_body, success, failure] {
                    body ? success(*body) : failure(std::nullopt);
                });
                return nullptr;
            }
            const CannedModel *model;
        };
        const auto client = std::make_shared<Client>();
        client->model = this;
        return client;
    }

    mutable QList<QVLyricHttpClient::Fields> sent;

private:
    const std::optional<QByteArray> m_body;
};

} // namespace

class TestLyricRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every test has its own application object, so that nothing may outlive it.
    void init()
    {
        makeApplication();
        logged.clear();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            logged +=
                QByteArrayView(context.category) == "qvsonglrc.lookup" ? message : u"not ours: "_s + message;
        });
    }
    void cleanup()
    {
        m_application = nullptr;
        qInstallMessageHandler(nullptr);
    }

    void refusesEmptyQueries()
    {
        const QVLyricError refusal{QVLyricError::EmptyQueryDomain, QVLyricError::EmptyQuery, QString()};
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

    void needsCompletionsAndContexts()
    {
        const auto model = std::make_shared<CannedModel>(Good);
        const auto ignore = [](const auto &...) {};
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestListWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestDetail(u"x"_s, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(this, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr, ignore));
        QVERIFY(model->sent.isEmpty());

        auto context = std::make_unique<QObject>();
        int late = 0; // calls after the context's end
        int answers = 0;
        for (QObject *const object : {context.get(), static_cast<QObject *>(this)}) {
            const auto completion = [&count = object == this ? answers : late](const auto &...) { ++count; };
            model->requestListWithCompletion(object, completion);
            model->requestDetail(u"x"_s, object, completion);
            model->requestWithCompletion(object, completion);
        }
        context = nullptr;
        QTRY_COMPARE(model.use_count(), 1); // all requests have answered
        QCOMPARE(answers, 3);
        QCOMPARE(late, 0);
    }

    // The results of a search and of a detail request with the same reply.
    void readsReplies_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<Error>("ofSearch");
        QTest::addColumn<Error>("ofDetail");
        QTest::addColumn<QString>("lyric");
        const auto row = [](const QByteArray &body, const Error &search, const Error &detail,
                            const QString &lyric = {}) {
            QTest::addRow("%.50s", body.toPercentEncoding(" {}[]\":,").constData())
                << body << search << detail << lyric;
        };

        constexpr int Deep = 100'000;
        for (const QByteArray &body :
             {""_ba, " \t\r\n\xc2\x85\xe2\x80\xa8\xe3\x80\x80"_ba, "\xef\xbb\xbf"_ba, "[]"_ba, "null"_ba,
              "\"x\""_ba, "{"_ba, "{}x"_ba, "{'code':0}"_ba, "{\"a\":\"\xff\"}"_ba,
              "{\"a\":\"\xed\xa0\x80\"}"_ba, "{\"a\":\"\xe6\xad"_ba,
              "{\"a\":" + QByteArray(Deep, '[') + QByteArray(Deep, ']') + '}'})
            row(body, service(QVLyricError::SearchFailed, u"empty response"_s),
                service(QVLyricError::DetailUnreadable, u"empty response"_s));

        const auto reported = [&](const QByteArray &body, qint64 code, const QString &message = u""_s) {
            row(body, service(code, message), service(code, message));
        };
        constexpr qint64 Max = std::numeric_limits<qint64>::max();
        reported(R"({"code":5,"message":"x"})", 5, u"x"_s);
        reported(R"({"code":5,"message":7,"results":[{"track":"T","artist":"A"}]})", 5);
        reported("\xe3\x80\x80 {\"code\":-5,\"message\":\"\xe6\xad\x8c\"} ", -5, u"歌"_s);
        reported(R"({"code":9007199254740993})", 9007199254740993);
        reported(R"({"code":9223372036854775807})", Max);
        reported(R"({"code":1e30})", Max);
        reported(R"({"code":-2.9})", -2);

        const Error nothing = service(QVLyricError::NothingFound, u"没有结果"_s);
        for (const QByteArray &body :
             {"{}"_ba, R"({"code":"7"})"_ba, R"({"code":0.9})"_ba, R"({"code":null,"results":[]})"_ba,
              R"({"code":true,"results":{}})"_ba, R"({"results":[5,"x",null,[],{},{"track":"T"}]})"_ba,
              R"({"message":5,"results":[{"track":1,"artist":2}],"result":{"lyric":4}})"_ba,
              R"({"code":0,"result":{}})"_ba, R"({"result":[{"lyric":"x"}]})"_ba})
            row(body, nothing, {});
        row(R"({"result":{"lyric":""}})", nothing, {}, u""_s);
        row(R"({"result":{"lyric":"[00:01.00]x\n歌"}})", nothing, {}, u"[00:01.00]x\n歌"_s);
        row("\xef\xbb\xbf\n " + Good + "\r\n", {}, {}, u"text"_s);
    }
    void readsReplies()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const Error, ofSearch);
        QFETCH(const Error, ofDetail);
        QFETCH(const QString, lyric);
        const auto model = std::make_shared<CannedModel>(body);
        int answers = 0;
        model->requestListWithCompletion([&](const Error &error, const auto &results, qint64 best) {
            ++answers;
            QCOMPARE(error, ofSearch);
            QCOMPARE(results.isEmpty(), error.has_value());
            QCOMPARE(best, 0);
        });
        model->requestDetail(u"link"_s, [&](const Error &error, const QString &got) {
            ++answers;
            QCOMPARE(error, ofDetail);
            QVERIFY(!error || !error->localizedDescription.isNull());
            QCOMPARE(got, lyric);
            QCOMPARE(got.isNull(), lyric.isNull());
        });
        QCOMPARE(answers, 0);
        QTRY_COMPARE(answers, 2);
        QCOMPARE(logged, QStringList());
    }

    void failsWithoutAnError()
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

    void looksUpTheBest()
    {
        struct Model : CannedModel
        {
            using CannedModel::CannedModel;
            void requestListWithCompletion(ListCompletion completion) override { completion({}, list, best); }
            QList<QJsonObject> list;
            qint64 best = 0;
        };
        const auto link = [](const QJsonValue &value) { return QJsonObject{{u"link"_s, value}}; };
        const auto model = std::make_shared<Model>(Good);
        int answers = 0;
        model->requestWithCompletion([&](const Error &error, const QString &lyric) {
            ++answers;
            QCOMPARE(error, service(QVLyricError::NothingFound, u"Found no lyric"_s));
            QVERIFY(lyric.isNull());
        });
        QCOMPARE(answers, 1);
        model->list = {link(u"first"_s), link(5), link(u"last"_s)};
        const std::pair<qint64, QString> cases[] = {
            {2, u"last"_s}, {1, u""_s}, {-1, u"first"_s}, {3, u"first"_s}};
        for (const auto &[best, expected] : cases) {
            model->best = best;
            answers = 0;
            model->requestWithCompletion([&](const Error &error, const QString &lyric) {
                ++answers;
                QVERIFY(!error);
                QCOMPARE(lyric, u"text"_s);
            });
            QTRY_COMPARE(answers, 1);
            QCOMPARE(model->sent.takeFirst().value(2), std::pair(u"link"_s, expected));
        }
        QVERIFY(model->sent.isEmpty());
    }

    void reportsDurations()
    {
        using Limits = std::numeric_limits<double>;
        QStringList texts;
        for (const double seconds :
             {1.2345, 0.0999, -0.25, -0.05, 2.0, 1e30, -Limits::infinity(), Limits::quiet_NaN()})
            texts += ZTLyricRequestModel::getReportDuration(seconds);
        QCOMPARE(texts.join(u' '), u"1200 0 -200 0 2000 2147483600 -2147483600 0"_s);
    }

    void cancels_data()
    {
        QTest::addColumn<bool>("isCancelled");
        QTest::newRow("at once") << true;
        QTest::newRow("under way") << true;
        QTest::newRow("too late") << false;
    }
    void cancels()
    {
        QFETCH(const bool, isCancelled);
        const Server server(isCancelled ? Server::stallAfter({}) : Server::reply(Good));
        auto model = ZTLyricRequestModel::initWithReqParams(Query);
        QList<Error> answers;
        model->requestListWithCompletion([&](const Error &error, const auto &...) {
            answers += error;
            model->cancel();
        });
        if (QTest::currentDataTag() == "under way"_ba)
            QTRY_COMPARE(server.requests().size(), 1);
        for (int times = isCancelled ? 3 : 0; times > 0; --times)
            model->cancel();
        QVERIFY(answers.isEmpty());
        QTRY_COMPARE(answers.size(), 1);
        model->cancel();
        model = nullptr;
        QTest::qWait(20);
        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers[0].has_value(), isCancelled);
        QCOMPARE(logged, isCancelled ? QStringList({Cancelled, Dealloced}) : QStringList(Dealloced));
    }

    void cancelsTheLatestOnly()
    {
        const Server server(Server::reply(Good));
        const auto model = ZTLyricRequestModel::initWithReqParams(Query);
        QStringList answers;
        model->requestListWithCompletion(
            [&](const Error &error, const auto &...) { answers += error ? u"failed"_s : u"found"_s; });
        const auto task = model->dataTask();
        model->requestDetail(u"x"_s,
                             [&](const Error &error, const auto &...) { answers += error.value().domain; });
        QVERIFY(model->dataTask() && model->dataTask() != task);
        model->cancel();
        QTRY_COMPARE(answers, (QStringList{QVLyricError::TransportDomain, u"found"_s}));
    }

    void livesUntilItHasAnswered()
    {
        const Server server(Server::reply(Good));
        QString answer;
        ZTLyricRequestModel::initWithReqParams(Query)->requestWithCompletion(
            [&](const Error &, const QString &lyric) {
                answer = lyric;
                QCOMPARE(logged, QStringList());
            });
        QTRY_COMPARE(answer, u"text"_s);
        QTRY_COMPARE(logged, QStringList(Dealloced));
        QVERIFY(server.requests().value(1).contains("&link=1&"));
    }

    void completionsMayDoAnything()
    {
        const Server server(Server::reply(Good));
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

    // As when a completion runs an event loop, which deletes the transfer.
    void completionsMayDeleteTheirTransfer()
    {
        for (const QByteArray status : {"200 OK", "404 Not Found"}) {
            const Server server(Server::reply(Good, status));
            const auto large = std::make_shared<QByteArray>(1'000, 'x'); // held by the completion
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

    void endsWithTheApplication()
    {
        for (const QString &state : {u"just started"_s, u"under way"_s, u"cancelled"_s}) {
            logged.clear();
            const Server server(Server::stallAfter({}));
            auto model = ZTLyricRequestModel::initWithReqParams(Query);
            const auto token = std::make_shared<int>(); // held by the completion
            model->requestListWithCompletion(
                [token](const auto &...) { QFAIL("called after the application object"); });
            if (state != u"just started"_s)
                QTRY_COMPARE(server.requests().size(), 1);
            if (state == u"cancelled"_s)
                model->cancel();
            const auto task = model->dataTask();
            model = nullptr;
            QCOMPARE(token.use_count(), 3); // two handlers and this test
            m_application = nullptr;
            QCOMPARE(token.use_count(), 1);
            QCOMPARE(logged, QStringList(Dealloced));
            task->cancel();
            makeApplication(); // the server's thread needs one to end
        }
    }

    // The comparison of this reply would take minutes.
    void endsWhileItReadsAReply()
    {
        constexpr int Long = 1'000'000;
        QByteArray reply = Good;
        reply.replace("\"T\"", '"' + QByteArray(Long, 'a') + '"');
        const auto token = std::make_shared<int>();
        std::make_shared<CannedModel>(reply, QJsonObject{{Key_Lyric_Trackname, QString(Long, u'b')}})
            ->requestListWithCompletion(
                [token](const auto &...) { QFAIL("called after the application object"); });
        QCoreApplication::processEvents(); // the reply arrives
        QVERIFY(token.use_count() > 1);
        QElapsedTimer clock;
        clock.start();
        m_application = nullptr;
        QVERIFY2(clock.elapsed() < 5'000, "the application waits for the comparison");
        QCOMPARE(token.use_count(), 1);
        QCOMPARE(logged, QStringList(Dealloced));
    }

    void keepsSettings()
    {
        QVLyricService::setEndpoint(u"lyrics.example"_s);
        QCOMPARE(QVLyricService::url(u"/a/b"_s).toString(), u"https://lyrics.example/a/b"_s);
        QVLyricService::setEndpoint(u"::1"_s, 8443);
        QCOMPARE(QVLyricService::url(u"/a"_s).toString(), u"https://[::1]:8443/a"_s);
        for (const QString &host : {QString(), u""_s, u"a b"_s, u"a/b"_s, u"a@b"_s, u"a:1"_s})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::setEndpoint(host));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::setEndpoint(u"a"_s, 0));
        QCOMPARE(QVLyricService::port(), 8443);

        const QByteArray before = QVLyricService::certificateAuthorities();
        const QByteArray one = TestAuthority().pem();
        const QByteArray encrypted = QByteArray(one).insert(28,
                                                            "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-128-CBC,"
                                                            "00000000000000000000000000000000\n\n");
        for (const QByteArray &pem :
             {""_ba, "text"_ba, one + one.chopped(9), one + QByteArray(one).remove(100, 1), one + encrypted})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::addCertificateAuthorities(pem));
        QCOMPARE(QVLyricService::certificateAuthorities(), before);
        QVLyricService::addCertificateAuthorities("# one\n" + one + "# two\n" + one + "# end");
        QCOMPARE(QVLyricService::certificateAuthorities(), before + one + one);

        const QUrl proxy(u"socks5://[::1]:1080"_s);
        QVLyricService::setProxy(proxy);
        for (const QString &url :
             {u"https://a:1"_s, u"http://a"_s, u"http://:1"_s, u"a:1"_s, u"http://a b:1"_s})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::setProxy(QUrl(url)));
        QCOMPARE(QVLyricService::proxy(), proxy);
        QVLyricService::setProxy(QUrl());
        QVERIFY(QVLyricService::proxy().isEmpty());

        const CannedModel model;
        QCOMPARE(*model.retryIndexes(), (QList<qint64>{0, 1, 2}));
        QVERIFY(model.retryIndexes() == model.retryIndexes());
        QVERIFY(model.retryIndexes() != CannedModel().retryIndexes());
    }

private:
    void makeApplication() { m_application = std::make_unique<QCoreApplication>(m_argc, m_argv); }

    int m_argc = 1;
    char m_name[16] = "lyricrequest";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QCoreApplication> m_application;
};

QTEST_APPLESS_MAIN(TestLyricRequest)
#include "tst_lyricrequest.moc"
