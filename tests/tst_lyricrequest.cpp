// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"
#include "LookupServer.h"

#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTimer>

#include <cmath>
#include <ctime>

namespace {

using Error = std::optional<QVLyricError>;
using Model = ZTLyricRequestModel;

const QByteArray Song = R"({"results":[{"track":"T","artist":"A"}],"result":{"lyric":"text"}})";
const QString Dealloced = u"ZTLyricRequestModel dealloced ----"_s;
const QString Cancelled = u"Error Domain=QVSongLrc.Transport Code=1 \"The request was cancelled.\""_s;

QStringList events;         // what was logged and answered, in order
std::shared_ptr<int> token; // held by every completion
QByteArray canned;          // the reply to a CannedModel

/// A completion that adds to the events: its error, its lyric, or its best index and number of results.
auto recorder()
{
    return [held = token](const Error &error, const auto &result, qint64 best = 0) {
        if (error)
            events += error->description() + (result.isEmpty() && best == 0 ? u""_s : u" and a result"_s);
        else if constexpr (std::is_same_v<decltype(result), const QString &>)
            events += result.isNull() ? u"no lyric"_s : u'"' + result + u'"';
        else
            events += u"%1 of %2"_s.arg(best).arg(result.size());
    };
}

/// Waits until all completions have been destroyed, so that none can be called again.
bool isOver()
{
    return QTest::qWaitFor([] { return token.use_count() == 1; }, 30'000);
}

QJsonObject query(const QString &track)
{
    return {{Key_Lyric_Trackname, track}, {Key_Lyric_Artist, u"artist"_s}};
}

/// Replies with what is canned, or fails without an error when that is null.
struct CannedClient : QVLyricHttpClient
{
    void setHeader(const QByteArray &, const QByteArray &) override { }
    void setIdleLimit(std::chrono::milliseconds) override { }
    std::shared_ptr<QVLyricDataTask> get(const QUrl &, Success, Failure) override { return nullptr; }
    std::shared_ptr<QVLyricDataTask> post(const QUrl &, const Fields &, Success done, Failure failed) override
    {
        QTimer::singleShot(0, qApp, [=] { canned.isNull() ? failed({}) : done(canned); });
        return nullptr;
    }
};

struct CannedModel : Model
{
    explicit CannedModel(const QJsonObject &params = query(u"title"_s))
        : Model(params)
    {
    }
    std::shared_ptr<QVLyricHttpClient> afPostMgr() const override { return std::make_shared<CannedClient>(); }
};

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
        canned = Song;
        qInstallMessageHandler([](QtMsgType, const auto &, const QString &message) { events += message; });
    }
    void cleanup()
    {
        m_application = nullptr;
        qInstallMessageHandler(nullptr);
    }

    void keepsValues()
    {
        const auto model = Model::initWithReqParams({});
        QCOMPARE(*model->retryIndexes(), (QList<qint64>{0, 1, 2}));
        QVERIFY(model->retryIndexes() != Model::initWithReqParams({})->retryIndexes());
        model->setRetryIndexes(nullptr);
        QCOMPARE(model->retryIndexes(), nullptr);
        QStringList texts;
        for (const double seconds : {1.2345, 0.0999, -0.25, 0.05, 2.0, 1e30, -1e300, std::nan("")})
            texts += Model::getReportDuration(seconds);
        QCOMPARE(texts.join(u' '), u"1200 0 -200 0 2000 2147483600 -2147483600 0"_s);
    }

    void refusesRequests()
    {
        const auto model = std::make_shared<CannedModel>();
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestListWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestDetail(u"x"_s, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(this, nullptr));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->requestWithCompletion(nullptr, recorder()));
        for (const QJsonValue &value : {QJsonValue(), QJsonValue(u""_s), QJsonValue(5)}) {
            model->setReqParams({{Key_Lyric_Trackname, value}, {Key_Lyric_Artist, value}});
            model->requestListWithCompletion(recorder());
            model->requestWithCompletion(recorder());
            model->cancel(); // without a task
        }
        QCOMPARE(events, QStringList(6, u"Error Domain=com.wq.lyric Code=-1002"_s));
        QVERIFY(token.use_count() == 1);
        for (const auto key : {Key_Lyric_Trackname, Key_Lyric_Artist}) {
            model->setReqParams({{key, u"x"_s}});
            model->requestListWithCompletion(recorder());
        }
        QVERIFY(isOver());
        QCOMPARE(events.mid(6), QStringList(2, u"0 of 1"_s));
    }

    void readsReplies_data() { addExamples(u"| reply | search | detail request |"_s); }
    void readsReplies()
    {
        QFETCH(const QStringList, cells);
        canned = cells[0].toUtf8();
        const auto model = std::make_shared<CannedModel>();
        model->requestListWithCompletion(recorder());
        QVERIFY(events.isEmpty() && isOver());
        model->requestDetail(u"link"_s, recorder());
        QVERIFY(isOver());
        QCOMPARE(events.replaceInStrings(u"Error Domain=com.zt.lyric Code="_s, u""_s), cells.mid(1));
    }

    void readsNothing()
    {
        const QByteArray deep = "{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + '}';
        for (const char *const body : {"", "null", "{'code':0}", "{\"a\":\"\xff\"}", deep.constData()})
            QCOMPARE(Model::jsonObjectfromResponse(body), std::nullopt);
        canned = QByteArray();
        const auto model = std::make_shared<CannedModel>();
        model->requestListWithCompletion(recorder());
        model->requestDetail(u"link"_s, recorder());
        QVERIFY(isOver());
        const QString error = u"Error Domain=com.zt.lyric Code=%1 \"networkError\""_s;
        QCOMPARE(events, QStringList(2, error.arg(-1002)) + QStringList(2, error.arg(-1011))); // logged, too
    }

    void looksUpTheBest()
    {
        struct FoundModel : CannedModel
        {
            void requestListWithCompletion(ListCompletion completion) override { completion({}, list, best); }
            void requestDetail(const QString &link, LyricCompletion) override { events += link; }
            QList<QJsonObject> list;
            qint64 best = 0;
        };
        const auto model = std::make_shared<FoundModel>();
        model->requestWithCompletion(recorder());
        model->list = {{{u"link"_s, u"first"_s}}, {{u"link"_s, 5}}, {{u"link"_s, u"last"_s}}};
        for (const qint64 best : {2, 1, -1, 3}) {
            model->best = best;
            model->requestWithCompletion(recorder());
        }
        const QString error = u"Error Domain=com.zt.lyric Code=-1004 \"Found no lyric\""_s;
        QCOMPARE(events, (QStringList{error, u"last"_s, u""_s, u"first"_s, u"first"_s}));

        events.clear();
        Model::initWithReqParams(query(u"two songs"_s))
            ->requestWithCompletion(recorder()); // kept alive by itself
        QVERIFY(isOver());
        QCOMPARE(events, (QStringList{u"no lyric"_s, Dealloced}));
        QVERIFY(m_server.requests("track=two%20songs").value(1).contains("&link=2&"));
    }

    void skipsCompletionsWithoutContext()
    {
        const auto model = std::make_shared<CannedModel>();
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

    // The steps: (w)ait until the server has the request, (c)ancel, (d)estroy the application object.
    void answersOnceAtMost()
    {
        const QStringList cancelled(2, Cancelled); // logged, too
        const std::pair<QByteArray, QStringList> rows[] = {
            {"201", {u"0 of 1"_s}}, {"cc", cancelled}, // held
            {"wcc", cancelled},     {"d", {}},         {"wd", {}}, {"wcd", {}}};
        for (const auto &[steps, expected] : rows) {
            cleanup();
            init();
            auto model = Model::initWithReqParams(query(QString::fromLatin1(steps)));
            model->requestListWithCompletion([&model, record = recorder()](const auto &...answer) {
                record(answer...);
                model->cancel(); // too late
            });
            for (const char step : steps) {
                if (step == 'w')
                    QVERIFY(m_server.waitForRequests(1, "track=" + steps + '&'));
                else if (step == 'c')
                    model->cancel();
                else if (step == 'd')
                    m_application = nullptr;
            }
            QVERIFY(events.isEmpty());
            QVERIFY(isOver());
            model->cancel();
            model = nullptr;
            QCOMPARE(events, expected + QStringList(Dealloced));
        }
    }

    void completionsMayDoAnything()
    {
        const QDir descriptors(u"/proc/self/fd"_s); // open while a transfer exists
        const auto open = descriptors.entryList(QDir::System).size();
        for (const QString &route : {u"good"_s, u"404"_s}) {
            events.clear();
            auto model = Model::initWithReqParams(query(route));
            model->requestListWithCompletion([&, held = token](const auto &...) {
                QEventLoop loop;
                model->requestListWithCompletion([&](const auto &...) {
                    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // as loops do
                    model = nullptr;
                    loop.quit();
                });
                model->requestDetail(u"x"_s, recorder());
                model->cancel(); // the detail request alone
                loop.exec();
            });
            QVERIFY(isOver());
            QCOMPARE(events.count(Cancelled), 2);
            QCOMPARE(events.last(), Dealloced);
            QTRY_VERIFY_WITH_TIMEOUT(descriptors.entryList(QDir::System).size() <= open, 30'000);
        }
    }

    // The comparison of this reply would take a minute.
    void endsWhileItReadsAReply()
    {
        const auto model = std::make_shared<CannedModel>(query(QString(1'000'000, u'b')));
        canned.replace("\"T\"", '"' + QByteArray(1'000'000, 'a') + '"');
        model->requestListWithCompletion(recorder());
        const std::clock_t start = std::clock(); // the processor time of all threads
        QVERIFY(
            QTest::qWaitFor([&] { return std::clock() - start > CLOCKS_PER_SEC / 5; }, 30'000)); // compares
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
