// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "CannedModel.h"
#include "LookupServer.h"

#include <QVSongLrc/QVLyricHttpClient.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTimer>

#include <ctime>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

using Error = std::optional<QVLyricError>;
using Model = ZTLyricRequestModel;

const QByteArray Good = R"({"results":[{"track":"T","artist":"A"}],"result":{"lyric":"text"}})";
const QString Dealloced = u"ZTLyricRequestModel dealloced ----"_s;
const QString Cancelled = u"Error Domain=QVSongLrc.Transport Code=1 \"The request was cancelled.\""_s;

QStringList events;         // what was logged and answered, in order
std::shared_ptr<int> token; // held by every completion

/// A completion that adds its error, its lyric in quotes, or its best index and number of results to the events.
auto recorder()
{
    return [held = token](const Error &error, const auto &result, qint64 best = 0) {
        QString text = error ? error->description() : u""_s;
        if constexpr (std::is_same_v<decltype(result), const QString &>)
            text += result.isNull() ? u""_s : u'"' + result + u'"';
        else if (best != 0 || !result.isEmpty())
            text += u"%1 of %2"_s.arg(best).arg(result.size());
        events += text;
    };
}

/// Waits until all completions have been destroyed, so that none can be called again.
bool isOver()
{
    return QTest::qWaitFor([] { return token.use_count() == 1; }, 20'000);
}

QJsonObject query(const QString &track)
{
    return {{Key_Lyric_Trackname, track}, {Key_Lyric_Artist, u"artist"_s}};
}

} // namespace

class TestLyricRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every test has its own application object, so that nothing may outlive it.
    void init()
    {
        static char *arguments[] = {const_cast<char *>("lyricrequest"), nullptr};
        static int count = 1;
        m_application = std::make_unique<QCoreApplication>(count, arguments);
        events.clear();
        token = std::make_shared<int>();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            const bool isOurs = QByteArrayView(context.category) == "qvsonglrc.lookup";
            events += isOurs ? message : u"not ours: "_s + message;
        });
    }
    void cleanup()
    {
        m_application = nullptr;
        qInstallMessageHandler(nullptr);
    }

    void refusesEmptyQueries()
    {
        const std::pair<QJsonObject, bool> rows[] = {{{}, false},
                                                     {{{u"track"_s, u""_s}, {u"artist"_s, u""_s}}, false},
                                                     {{{u"track"_s, 5}, {u"artist"_s, {}}}, false},
                                                     {{{u"track"_s, u"x"_s}}, true},
                                                     {{{u"artist"_s, u"x"_s}}, true}};
        for (const auto &[params, isSent] : rows) {
            const auto model = std::make_shared<CannedModel>();
            model->setReqParams(params);
            events.clear();
            model->requestListWithCompletion(recorder());
            model->requestWithCompletion(recorder());
            QCOMPARE(events, QStringList(isSent ? 0 : 2, u"Error Domain=com.wq.lyric Code=-1002"_s));
            QCOMPARE(model->client->sent.size(), isSent ? 2 : 0);
            model->cancel(); // without a task
        }
    }

    void needsCompletionsAndContexts()
    {
        const auto model = std::make_shared<CannedModel>();
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestListWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestDetail(u"x"_s, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(this, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr, recorder()));
        QVERIFY(model->client->sent.isEmpty());
        auto gone = std::make_unique<QObject>();
        for (QObject *const context : {gone.get(), static_cast<QObject *>(this)}) {
            model->requestListWithCompletion(context, recorder());
            model->requestDetail(u"x"_s, context, recorder());
            model->requestWithCompletion(context, recorder());
        }
        gone = nullptr;
        QVERIFY(isOver());
        events.sort();
        QCOMPARE(events, (QStringList{u"\"text\""_s, u"\"text\""_s, u"0 of 1"_s}));
    }

    // Replies, the answer of a search and that of a detail request.
    void readsReplies()
    {
        const QString unread = u"-1002 \"empty response\""_s, unreadDetail = u"-1010 \"empty response\""_s;
        const QString nothing = u"-1004 \"没有结果\""_s;
        const QByteArray deep = QByteArray(100'000, '[') + QByteArray(100'000, ']');
        const std::tuple<QByteArrayList, QString, QString> rows[] = {
            {{QByteArray()}, u"-1002 \"networkError\""_s, u"-1011 \"networkError\""_s},
            {{"", "[]", "null", "\"x\"", "{", "{}x", "{'code':0}"}, unread, unreadDetail},
            {{"\t\r\n\xc2\x85\xe2\x80\xa8", "\xef\xbb\xbf", "{\"a\":\"\xff\"}"}, unread, unreadDetail},
            {{"{\"a\":\"\xed\xa0\x80\"}", "{\"a\":" + deep + '}'}, unread, unreadDetail},
            {{R"({"code":5,"message":"x"})"}, u"5 \"x\""_s, u"5 \"x\""_s},
            {{R"({"code":5,"message":7,"results":[{"track":"T","artist":"A"}]})"}, u"5 \"\""_s, u"5 \"\""_s},
            {{"\xe3\x80\x80 {\"code\":-5,\"message\":\"歌\"} "}, u"-5 \"歌\""_s, u"-5 \"歌\""_s},
            {{R"({"code":9007199254740993})"}, u"9007199254740993 \"\""_s, u"9007199254740993 \"\""_s},
            {{R"({"code":1e30})"}, u"9223372036854775807 \"\""_s, u"9223372036854775807 \"\""_s},
            {{R"({"code":-2.9})"}, u"-2 \"\""_s, u"-2 \"\""_s},
            {{"{}", R"({"code":"7"})", R"({"code":0.9})", R"({"code":null,"results":[]})"}, nothing, u""_s},
            {{R"({"code":true,"results":{}})", R"({"result":[{"lyric":"x"}]})"}, nothing, u""_s},
            {{R"({"results":[5,"x",null,[],{},{"track":"T"},{"track":"T","artist":2}]})"}, nothing, u""_s},
            {{R"({"message":5,"result":{"lyric":4}})", R"({"code":0,"result":{}})"}, nothing, u""_s},
            {{R"({"result":{"lyric":""}})"}, nothing, u"\"\""_s},
            {{R"({"result":{"lyric":"[00:01.00]x\n歌"}})"}, nothing, u"\"[00:01.00]x\n歌\""_s},
            {{"\xef\xbb\xbf\n " + Good + "\r\n"}, u"0 of 1"_s, u"\"text\""_s},
            {{R"({"results":[{"track":"x"},{"track":"x","artist":"x"},{"track":"title","artist":" "}]})"},
             u"1 of 2"_s,
             u""_s},
        };
        for (const auto &[bodies, search, detail] : rows) {
            for (const QByteArray &body : bodies) {
                const auto model = std::make_shared<CannedModel>();
                model->client->body = body;
                events = {QString::fromUtf8(body)};
                model->requestListWithCompletion(recorder());
                QVERIFY(events.size() == 1 && isOver());
                model->requestDetail(u"link"_s, recorder());
                QVERIFY(isOver());
                QStringList expected{QString::fromUtf8(body), search, detail};
                if (body.isNull()) // logged, too
                    expected = {QString(), search, search, detail, detail};
                QCOMPARE(events.replaceInStrings(u"Error Domain=com.zt.lyric Code="_s, u""_s), expected);
            }
        }
    }

    void looksUpTheBest()
    {
        struct FoundModel : CannedModel
        {
            void requestListWithCompletion(ListCompletion completion) override { completion({}, list, best); }
            QList<QJsonObject> list;
            qint64 best = 0;
        };
        const auto model = std::make_shared<FoundModel>();
        model->requestWithCompletion(recorder());
        QCOMPARE(events, QStringList(u"Error Domain=com.zt.lyric Code=-1004 \"Found no lyric\""_s));
        for (const QJsonValue &link : {QJsonValue(u"first"_s), QJsonValue(5), QJsonValue(u"last"_s)})
            model->list += QJsonObject{{u"link"_s, link}};
        const std::pair<qint64, QString> rows[] = {
            {2, u"last"_s}, {1, u""_s}, {-1, u"first"_s}, {3, u"first"_s}};
        for (const auto &[best, link] : rows) {
            model->best = best;
            model->requestWithCompletion(recorder());
            QCOMPARE(model->client->sent.takeFirst().value(2), std::pair(u"link"_s, link));
        }
        QVERIFY(isOver());
        QCOMPARE(events.mid(1), QStringList(4, u"\"text\""_s));
    }

    // The steps: (w)ait until the server has the request, (c)ancel, (d)estroy the application object.
    void answersOnceAtMost_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("good") << u""_s << QStringList{u"0 of 1"_s, Dealloced};
        QTest::newRow("cancelled at once") << u"ccc"_s << QStringList{Cancelled, Cancelled, Dealloced};
        QTest::newRow("cancelled under way") << u"wccc"_s << QStringList{Cancelled, Cancelled, Dealloced};
        QTest::newRow("destroyed at once") << u"d"_s << QStringList{Dealloced};
        QTest::newRow("destroyed under way") << u"wd"_s << QStringList{Dealloced};
        QTest::newRow("destroyed when cancelled") << u"wcd"_s << QStringList{Dealloced};
    }
    void answersOnceAtMost()
    {
        QFETCH(const QString, steps);
        QFETCH(const QStringList, expected);
        const QByteArray title = QTest::currentDataTag(); // the server holds most of them
        auto model = Model::initWithReqParams(query(QString::fromUtf8(title)));
        model->requestListWithCompletion([&model, record = recorder()](const auto &...answer) {
            record(answer...);
            model->cancel(); // too late
        });
        for (const QChar step : steps) {
            if (step == u'w')
                QVERIFY(m_server.waitForRequests(1, title.toPercentEncoding()));
            else if (step == u'c')
                model->cancel();
            else
                m_application = nullptr;
        }
        QVERIFY(events.isEmpty());
        QVERIFY(isOver());
        model->cancel();
        model = nullptr;
        QCOMPARE(events, expected);
    }

    void completionsMayDoAnything()
    {
        auto model = Model::initWithReqParams(query(u"good"_s));
        model->requestListWithCompletion([&](const auto &...) {
            events += u"first"_s;
            QEventLoop loop;
            model->requestListWithCompletion([&](const Error &error, const auto &...) {
                events += error ? u"failed"_s : u"second"_s;
                model = nullptr;
                loop.quit();
            });
            const auto task = model->dataTask();
            model->requestDetail(u"x"_s, recorder());
            QVERIFY(model->dataTask() && model->dataTask() != task);
            model->cancel(); // the detail request alone
            loop.exec();
            events += u"end"_s;
            QCoreApplication::quit();
        });
        QCoreApplication::exec();
        QCOMPARE(events, (QStringList{u"first"_s, Cancelled, Cancelled, u"second"_s, u"end"_s, Dealloced}));
    }

    // As when a completion runs an event loop.
    void completionsMayDeleteTheirTransfer()
    {
        const QDir descriptors(u"/proc/self/fd"_s); // open while a transfer exists
        qsizetype open = 0;
        for (const auto &[route, count] : {std::pair(u"two songs"_s, 2), std::pair(u"404"_s, 3)}) {
            events.clear();
            Model::initWithReqParams(query(route))
                ->requestWithCompletion([record = recorder()](const auto &...answer) {
                    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                    record(answer...);
                });
            QVERIFY(isOver());
            QCOMPARE(events.size(), count); // the failure is logged, too
            QCOMPARE(events.last(), Dealloced);
            open = open ? open : descriptors.entryList(QDir::System).size();
            QTRY_VERIFY_WITH_TIMEOUT(descriptors.entryList(QDir::System).size() <= open, 20'000);
        }
        QVERIFY(m_server.requests("track=two%20songs").value(1).contains("&link=2&"));
    }

    // The comparison of this reply would take a minute.
    void endsWhileItReadsAReply()
    {
        const auto model = std::make_shared<CannedModel>();
        model->setReqParams(query(QString(1'000'000, u'b')));
        model->client->body.replace("\"T\"", '"' + QByteArray(1'000'000, 'a') + '"');
        model->requestListWithCompletion(recorder());
        QCoreApplication::processEvents(); // the reply arrives
        QVERIFY(token.use_count() > 1);
        const std::clock_t start = std::clock(); // the processor time of all threads
        m_application = nullptr;
        QVERIFY2(std::clock() - start < 5 * CLOCKS_PER_SEC, "the application waits for the comparison");
        QVERIFY(isOver());
        QCOMPARE(events, QStringList());
    }

private:
    LookupServer m_server;
    std::unique_ptr<QCoreApplication> m_application;
};

QTEST_APPLESS_MAIN(TestLyricRequest)
#include "tst_lyricrequest.moc"
