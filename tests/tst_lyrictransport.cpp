// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Error = QVLyricError;
using Model = ZTLyricRequestModel;
using Service = QVLyricService;

namespace {

/// How a request ends: a transport code and an HTTP status, or Good and the length of the reply.
using End = std::pair<qint64, qint64>;
constexpr qint64 Good = 0;

QString description; // of the latest error

/// The end of a request for \p route, when there is just one.
End endOf(const char *route, std::chrono::milliseconds idleLimit = 20s)
{
    const auto ends = std::make_shared<QList<End>>();
    const auto client = Model::initWithReqParams({})->afPostMgr();
    client->setIdleLimit(idleLimit);
    client->post(
        Service::url(u"/"_s), {{Key_Lyric_Trackname, QString::fromLatin1(route)}},
        [ends](const QByteArray &reply) {
            ends->append({Good, reply.size()});
        },
        [ends](const std::optional<Error> &error) {
            ends->append({error->code, error->httpStatus});
            description = error->localizedDescription;
        });
    const bool isOver = QTest::qWaitFor([&] { return ends.use_count() == 1; }, 60'000);
    qInfo().noquote() << route << description;
    return isOver && ends->size() == 1 ? ends->first() : End(-1, ends->size());
}

} // namespace

class TestLyricTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Service::setEndpoint(u"127.0.0.1"_s, m_server.port()); }

    void keepsSettings()
    {
        const QByteArray one = Service::certificateAuthorities();
        for (const auto &pem : {one + "-----BEGIN X-----\nx\n", one + one.chopped(9),
                                one + QByteArray(one).remove(99, 1), one + "-----BEGIN CERTIFI"})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Service::addCertificateAuthorities(pem));
        QCOMPARE(Service::certificateAuthorities(), one);
        Service::addCertificateAuthorities("# one\n" + one + "# two\n" + one + "# end");
        QCOMPARE(Service::certificateAuthorities(), one + one + one);

        Service::setEndpoint(u"lyrics.example"_s);
        QCOMPARE(Service::url(u"/a/b"_s).toString(), u"https://lyrics.example/a/b"_s);
        Service::setEndpoint(u"::1"_s, 8443);
        for (const QString &host : {u""_s, u"a b"_s, u"a/b"_s, u"a@b"_s, u"a:1"_s})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Service::setEndpoint(host));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Service::setEndpoint(u"a"_s, 0));
        QCOMPARE(Service::url(u"/a"_s).toString(), u"https://[::1]:8443/a"_s);

        const QUrl proxy(u"socks5://[::1]:1080"_s);
        Service::setProxy(proxy);
        for (const QString &url : {u"https://a:1"_s, u"http://a"_s, u"http://a:0"_s, u"http://:1"_s, u"a:1"_s,
                                   u"http://a:1/b"_s, u"http://a:1?b"_s, u"http://a:1#b"_s})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, Service::setProxy(QUrl(url)));
        QCOMPARE(Service::proxy(), proxy);
        Service::setProxy(QUrl());
        QVERIFY(Service::proxy().isEmpty());
    }

    void handshakes()
    {
        for (const char *const port : {"wrong host name", "expired", "unknown authority", "TLS 1.1 only"}) {
            LookupServer server(port);
            QCOMPARE(endOf("good"), End(Error::Tls, 0));
            QVERIFY(server.requests().isEmpty());
        }
        const LookupServer server("TLS 1.2 only");
        QCOMPARE(endOf("good"), End(Good, 77));
        Service::setEndpoint(u"127.0.0.1"_s, 1); // nobody listens there
        QCOMPARE(endOf("good"), End(Error::Unreachable, 0));
    }

    // The address of a proxy, and a part of a request to it. The proxy, not the client, looks the host up.
    void usesProxies()
    {
        const std::tuple<const char *, QString, QByteArray> rows[] = {
            {"HTTP proxy", u"http://u:p@localhost:%1"_s, "Proxy-Authorization: Basic dTpw\r\n"},
            {"SOCKS proxy", u"socks5://localhost:%1"_s, "\5\1\0\3\16lyrics.example\1\xbb"_ba},
        };
        for (const auto &[port, url, request] : rows) {
            LookupServer server(port);
            Service::setEndpoint(u"lyrics.example"_s);
            Service::setProxy(QUrl(url.arg(server.port())));
            const End end = endOf("good");
            Service::setProxy(QUrl());
            QCOMPARE(end, End(Error::Unreachable, 0));
            QVERIFY(!server.requests(request).isEmpty() && !server.requests("lyrics.example").isEmpty());
        }
    }

    // Routes, how requests for them end, the number of requests, and a part of the error's description.
    void misbehaves()
    {
        const struct
        {
            QByteArrayList routes;
            End end;
            int requests = 1;
            QString text = {};
        } rows[] = {
            {{"closed without a word", "cut in the headers", "no HTTP"}, {Error::BadReply, 0}},
            {{"cut in the body", "packed 64 MiB", "broken packing"}, {Error::BadReply, 200}},
            {{"a length beyond counting", "body without end"}, {Error::TooLarge, 200}},
            {{"one byte more than 16 MiB"}, {Error::TooLarge, 200}, 1, u"too long"_s},
            {{"16 MiB, most of it white space"}, {Good, 16 * 1024 * 1024}},
            {{"a length that is too short"}, {Good, 10}},
            {{"packed", "201"}, {Good, 77}},
            {{"204"}, {Good, 0}},
            {{"trickles"}, {Good, 87}},
            {{"300"}, {Error::HttpStatus, 300}, 1, u"HTTP status 300"_s},
            {{"401"}, {Error::HttpStatus, 401}},
            {{"500"}, {Error::HttpStatus, 500}},
            {{"five redirects"}, {Good, 77}, 6},
            {{"six redirects"}, {Error::BadRedirect, 302}, 6, u"too often"_s},
            {{"see other"}, {Good, 77}, 2},
            {{"see a reply that is cut"}, {Error::BadReply, 0}, 2}, // the GET is not repeated either
            {{"redirect that wants the form again"}, {Error::BadRedirect, 307}},
            {{"redirect to http", "redirect to a file"}, {Error::BadRedirect, 301}, 1, u"without HTTPS"_s},
            {{"redirect to another name"}, {Error::Tls, 0}},
            // The limit may be over before the server has the request.
            {{"stalls at once", "headers without end"}, {Error::Timeout, 0}, 0, u"in time"_s},
            {{"stalls in the body"}, {Error::Timeout, 200}, 0},
        };
        for (const auto &[routes, end, requests, text] : rows) {
            for (const QByteArray &route : routes) {
                const qsizetype before = m_server.requests().size();
                description.clear();
                const auto idleLimit = requests == 0 ? 300ms : route == "trickles" ? 2s : 20s;
                QCOMPARE(endOf(route.constData(), idleLimit), end);
                QVERIFY(description.contains(text) && description.isEmpty() == (end.first == Good));
                if (requests == 0)
                    continue;
                const QByteArrayList sent = m_server.requests().mid(before);
                QCOMPARE(sent.size(), requests);
                const QByteArray &last = sent.last(); // a redirect is followed without the form
                QVERIFY(last.startsWith(requests == 1 ? "POST /" : "GET /"));
                QCOMPARE(last.contains("Content-Type"), requests == 1);
                QCOMPARE(last.endsWith("\r\n\r\n"), requests > 1);
            }
        }
    }

    void sendsForms()
    {
        struct FixedTools : EncryptionTools
        {
            QString encryptString(const QString &text, const QString &key,
                                  const QByteArray &iv) const override
            {
                const bool isRight = text.startsWith(u"interval="_s) && text.size() == 19
                    && key == u"9e41c07ab3d6f2e8"_s && iv == "r3t9x27104cda58e";
                return isRight ? reply : u"wrong"_s;
            }
            QString reply;
        };
        const QByteArray query =
            "artist=%EF%BF%BD&track=%2B%26%3D%25%3B%20a-b_c.d~%2A%0A%E6%AD%8C%F0%9F%8E%B5%EF%BF%BDx";
        const std::tuple<const char *, QString, QString, QByteArray> rows[] = {
            {"search/search.php", u"k+/="_s, {}, "&apiKey=k%2B%2F%3D"},
            {"detail/detail.php", {}, u"/1?2"_s, "&link=%2F1%3F2&apiKey="}, // without a key, too
            {"detail/detail.php", {}, {}, "&link=&apiKey="},
        };
        const auto tools = std::make_shared<FixedTools>();
        EncryptionTools::setSharedEncryptionTools(tools);
        const auto model =
            Model::initWithReqParams({{Key_Lyric_Trackname, u"+&=%; a-b_c.d~*\n\u6b4c\U0001f3b5\xd83cx"_s},
                                      {Key_Lyric_Artist, QString(QChar(0xdfb5))}});
        LookupServer server; // holds every request
        const auto ignore = [](const auto &...) {};
        for (qsizetype count = 0; const auto &[path, key, link, form] : rows) {
            tools->reply = key;
            count++ == 0 ? model->requestListWithCompletion(ignore) : model->requestDetail(link, ignore);
            QVERIFY(server.waitForRequests(count));
            const QByteArray request = server.requests().last();
            QVERIFY(request.startsWith("POST /phpLyricFetcher/"_ba + path + " HTTP/1.1\r\nHost: 127.0.0.1:"));
            QVERIFY(request.contains("\r\nContent-Type: application/x-www-form-urlencoded\r\n"));
            QVERIFY(request.contains("\r\nAccept: application/json\r\n"));
            QCOMPARE(request.sliced(request.indexOf("\r\n\r\n") + 4), query + form);
        }
        QVERIFY(!QVLrcUtils::generateLyricApiKey().isNull());
        model->afPostMgr()->get(Service::url(u"/x"_s), ignore, ignore);
        QVERIFY(server.waitForRequests(1, "GET /x HTTP/1.1\r\n"));
        for (const QUrl &url : {QUrl(u"http://127.0.0.1/"_s), QUrl(u"https:///x"_s), QUrl()})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, model->afPostMgr()->get(url, ignore, ignore));
    }

    // The output of "openssl enc -aes-128-cbc -base64 -A".
    void encrypts()
    {
        EncryptionTools::setSharedEncryptionTools(nullptr); // the default again
        const auto tools = EncryptionTools::sharedEncryptionTools();
        const QString key = u"9e41c07ab3d6f2e8"_s;
        const QByteArray iv = "r3t9x27104cda58e";
        QCOMPARE(tools->encryptString(u"歌詞 \U0001f3b5"_s, key, iv), u"XNoJQyC8u+mXC60ej4xNyg=="_s);
        QCOMPARE(tools->encryptString(u"sixteen bytes..."_s, key, iv),
                 u"7U471gNyZk/TBlLb0Z/h0Ymt+FpSs3ZWI5JZF5nUAzc="_s);
        QVERIFY(tools->encryptString(u"x"_s, key.chopped(1), iv).isNull());
        QVERIFY(tools->encryptString(u"x"_s, key, iv.chopped(1)).isNull());
    }

private:
    LookupServer m_server;
};

QTEST_GUILESS_MAIN(TestLyricTransport)
#include "tst_lyrictransport.moc"
