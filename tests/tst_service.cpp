// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/EncryptionTools.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSaveFile>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QStringEncoder>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QByteArray SearchPath = "/phpLyricFetcher/search/search.php";
const QByteArray DetailPath = "/phpLyricFetcher/detail/detail.php";
const QByteArray FormType = "Content-Type: application/x-www-form-urlencoded\r\n";

QByteArray encrypted(const QString &plain)
{
    return EncryptionTools::sharedEncryptionTools()
        ->encryptString(plain, u"9e41c07ab3d6f2e8"_s, "r3t9x27104cda58e")
        .toLatin1();
}

QByteArray key(qint64 secondsFromNow = 0)
{
    return encrypted(u"interval=%1"_s.arg(QDateTime::currentSecsSinceEpoch() + secondsFromNow));
}

// A POST request with the header lines \p type.
QByteArray post(const QByteArray &path, const QByteArray &body, const QByteArray &type = FormType)
{
    return "POST " + path + " HTTP/1.1\r\n" + type + "Content-Length: " + QByteArray::number(body.size())
        + "\r\n\r\n" + body;
}

QByteArray post(const QByteArray &path, const QList<std::pair<QByteArray, QByteArray>> &fields)
{
    QByteArrayList parts;
    for (const auto &[name, value] : fields)
        parts += name + '=' + value.toPercentEncoding();
    return post(path, parts.join('&'));
}

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path); // replaces the file, so that its folder changes
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(content);
    QVERIFY(file.commit());
}

struct Reply
{
    int status = 0; // 0 without a JSON reply
    QJsonObject json;
    int code() const { return json["code"_L1].toInt(-1); }
    // "title|artist" of each result, in order.
    QStringList names() const
    {
        QStringList names;
        for (const QJsonValue result : json["results"_L1].toArray())
            names += result["track"_L1].toString() + u'|' + result["artist"_L1].toString();
        return names;
    }
};

// A running songlrc-service. The destructor kills it.
class Service
{
public:
    explicit Service(const QTemporaryDir &folder)
        : library(folder.filePath("library"_L1))
        , data(folder.filePath("data"_L1))
    {
        QDir().mkpath(library);
    }
    ~Service()
    {
        process.kill();
        process.waitForFinished();
    }

    bool start(const QStringList &more = {})
    {
        process.start(QStringLiteral(SONGLRC_SERVICE),
                      QStringList{"--library"_L1, library, "--data"_L1, data} + more);
        const auto isReady = [this] { return (out += process.readAllStandardOutput()).count('\n') == 2; };
        if (!QTest::qWaitFor(isReady, 20'000))
            return false;
        const QByteArrayList lines = out.split('\n');
        authority = QSslCertificate::fromPath(QString::fromUtf8(lines[0].mid(sizeof "authority: " - 1)));
        port = quint16(QUrl(QString::fromUtf8(lines[1].mid(sizeof "url: " - 1))).port());
        return true;
    }
    int stop()
    {
        process.terminate();
        return process.waitForFinished(15'000) && process.exitStatus() == QProcess::NormalExit
            ? process.exitCode()
            : -1;
    }
    // A connection to the service; null if it can't be reached or verified as \p host.
    std::unique_ptr<QSslSocket> connected(const QString &host = u"127.0.0.1"_s) const
    {
        auto socket = std::make_unique<QSslSocket>();
        QSslConfiguration configuration;
        configuration.setCaCertificates(authority);
        socket->setSslConfiguration(configuration);
        socket->connectToHostEncrypted(host, port);
        return socket->waitForEncrypted(10'000) ? std::move(socket) : nullptr;
    }
    static Reply reply(QSslSocket *socket)
    {
        Reply result;
        QByteArray bytes;
        const auto isComplete = [&] {
            bytes += socket->readAll();
            const qsizetype body = bytes.indexOf("\r\n\r\n") + 4;
            if (bytes.left(body).contains("\r\nContent-Type: application/json\r\n"))
                result = {bytes.mid(9, 3).toInt(), QJsonDocument::fromJson(bytes.mid(body)).object()};
            return !result.json.isEmpty();
        };
        return QTest::qWaitFor(isComplete, 10'000) ? result : Reply();
    }
    Reply ask(const QByteArray &request) const
    {
        const auto socket = connected();
        if (!socket)
            return {};
        socket->write(request);
        return reply(socket.get());
    }

    Reply search(const QString &track, const QString &artist = {}) const
    {
        return ask(
            post(SearchPath, {{"track", track.toUtf8()}, {"artist", artist.toUtf8()}, {"apiKey", key()}}));
    }
    QString link(const QString &track) const
    {
        return search(track).json["results"_L1][0]["link"_L1].toString();
    }
    Reply detail(const QString &link) const
    {
        return ask(post(DetailPath, {{"link", link.toUtf8()}, {"apiKey", key()}}));
    }
    QString lyric(const QString &track) const
    {
        return detail(link(track)).json["result"_L1]["lyric"_L1].toString();
    }

    const QString library;
    const QString data;
    QProcess process;
    QByteArray out;
    QList<QSslCertificate> authority;
    quint16 port = 0;
};

} // namespace

class TestService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        const QString library = m_service.library + u'/';
        write(library + u"a/1.lrc"_s, "[ti:Hello World]\n[ar:Maren]\n[00:01.00]Hello\n");
        write(library + u"a/2.LRC"_s, "\xEF\xBB\xBF[ti:Straße]\n[ar:Maren B]\n");
        write(library + u"a/b/3.lrc"_s,
              QStringEncoder(QStringEncoder::Utf16LE,
                             QStringEncoder::Flag::WriteBom)(u"[ti:Hello]\n[ar:Maren]\nL\u00e9\n"));
        write(library + u"a/b/4.lrc"_s, "[ti:ＦＵＬＬ ｶﾗｵｹ]\n[ar:é]\n");
        write(library + u"gb.lrc"_s,
              QStringEncoder("GB18030")(u"[ti:茉莉花]\n[ar:江苏民歌]\n[00:08.00]好一朵茉莉花\n"
                                        "[00:15.20]满园花草香也香不过它\n"_s));
        write(library + u"Tolm - Harbour - Evening.lrc"_s, "[00:01.00]x\n");
        write(library + u"No one.lrc"_s, "");
        write(library + u"odd.lrc"_s, "[ti:C'est \"la\" (NEAR) * -vie♥]\n[ar:Ro/Lo]\n");
        write(library + u"broken.lrc"_s, QByteArray("\xFF\xFE[\0t\0i", 7));
        write(library + u"binary.lrc"_s, QByteArray("[ti:Binary]\0\1\2", 14));
        write(library + u"large.lrc"_s, "[ti:Large]" + QByteArray(1 << 20, '\n'));
        write(m_folder.filePath("outside/secret.lrc"_L1), "[ti:Secret]\n[ar:Spy]\n");
        QVERIFY(QFile::link(m_folder.filePath("outside"_L1), library + u"folder"_s));
        QVERIFY(QFile::link(m_folder.filePath("outside/secret.lrc"_L1), library + u"link.lrc"_s));
        QVERIFY(m_service.start({"--json-log"_L1}));
    }

    void finds_data()
    {
        QTest::addColumn<QString>("track");
        QTest::addColumn<QString>("artist");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QString &track, const QString &artist,
                            const QStringList &expected = {}) {
            QTest::newRow(name) << track << artist << expected;
        };
        const QString hello = u"Hello World|Maren"_s;
        const QString full = u"ＦＵＬＬ ｶﾗｵｹ|é"_s;
        const QString jasmine = u"茉莉花|江苏民歌"_s;
        const QString odd = u"C'est \"la\" (NEAR) * -vie♥|Ro/Lo"_s;
        row("shortest first", u"hello"_s, {}, {u"Hello|Maren"_s, hello});
        row("exact artist first", {}, u"maren"_s, {u"Hello|Maren"_s, hello, u"Straße|Maren B"_s});
        row("words in any order", u"WORLD hello"_s, {}, {hello});
        row("beginning of the last word", u"hello wor"_s, {}, {hello});
        row("of another word", u"hel world"_s, {});
        row("both count", u"hello"_s, u"tolm"_s);
        row("punctuation", {}, u"?"_s);
        row("full case folding", u"STRASSE"_s, {}, {u"Straße|Maren B"_s});
        row("width", u"full カラオケ"_s, {}, {full});
        row("width of the query", u"Ｈｅｌｌｏ　Ｗｏｒｌｄ"_s, {}, {hello});
        row("decomposed", {}, u"e\u0301"_s, {full});
        row("whole title in Chinese", u"茉莉花"_s, u"江苏民歌"_s, {jasmine});
        row("its end", u"莉花"_s, u"民歌"_s, {jasmine});
        row("one character", u"花"_s, {}, {jasmine});
        row("one of kana", u"ラ"_s, {}, {full});
        row("not a run", u"茉花"_s, {});
        row("name of the file", u"harbour evening"_s, u"tolm"_s, {u"Harbour - Evening|Tolm"_s});
        row("no artist", u"no one"_s, {}, {u"No one|Unknown"_s});
        row("through links", u"secret"_s, {});
        row("unusable files", u"binary"_s, {});
        row("symbol", u"♥"_s, {}, {odd});
        row("long", QString(6'000, u'花'), u"花 "_s.repeated(200));
        for (const QString &hostile :
             {u"\"la\""_s, u"(NEAR)"_s, u"la*"_s, u"-vie"_s, u"c'est \"la"_s, u"la\0"_s, u"^c'est"_s})
            row(qPrintable(u"operators "_s + hostile), hostile, {}, {odd});
        for (const QString &hostile :
             {u"title:hello"_s, u"NEAR(hello world, 2)"_s, u"hello OR tolm"_s, u"\"*()^-+:{}"_s,
              u"' OR 1=1 --"_s, u"hello AND NOT world"_s, QString(20'000, u'"')})
            row(qPrintable(u"harmless "_s + hostile.left(20)), hostile, {});
    }
    void finds()
    {
        QFETCH(const QString, track);
        QFETCH(const QString, artist);
        const Reply reply = m_service.search(track, artist);
        QCOMPARE(reply.code(), 0);
        QTEST(reply.names(), "expected");
    }

    void servesLyrics()
    {
        QCOMPARE(m_service.lyric(u"hello world"_s), u"[ti:Hello World]\n[ar:Maren]\n[00:01.00]Hello\n"_s);
        QCOMPARE(m_service.lyric(u"straße"_s), u"[ti:Straße]\n[ar:Maren B]\n"_s);
        QCOMPARE(m_service.lyric(u"hello"_s), u"[ti:Hello]\n[ar:Maren]\nL\u00e9\n"_s);
        QVERIFY(m_service.lyric(u"茉莉花"_s).endsWith(u"满园花草香也香不过它\n"_s));
    }

    void checksKeys_data()
    {
        QTest::addColumn<QByteArray>("apiKey");
        QTest::addColumn<int>("code");
        QTest::newRow("now") << key() << 0;
        QTest::newRow("290 s old") << key(-290) << 0;
        QTest::newRow("290 s ahead") << key(290) << 0;
        QTest::newRow("310 s old") << key(-310) << 3;
        QTest::newRow("310 s ahead") << key(310) << 3;
        QTest::newRow("missing") << ""_ba << 1;
        QTest::newRow("not Base64") << "!?"_ba << 2;
        QTest::newRow("Base64 and more") << key() + '!' << 2;
        QTest::newRow("not encrypted") << "interval=1700000000"_ba.toBase64() << 2;
        QTest::newRow("cut") << key().first(20) << 2;
        QTest::newRow("other text") << encrypted(u"time=1700000000"_s) << 2;
        QTest::newRow("no number") << encrypted(u"interval="_s) << 2;
        QTest::newRow("negative") << encrypted(u"interval=-5"_s) << 2;
        QTest::newRow("beyond 64 bits") << encrypted(u"interval=99999999999999999999"_s) << 2;
    }
    void checksKeys()
    {
        QFETCH(const QByteArray, apiKey);
        const QByteArray link = m_service.link(u"hello"_s).toLatin1();
        for (const QByteArray &path : {SearchPath, DetailPath}) {
            const Reply reply =
                m_service.ask(post(path, {{"track", "hello"}, {"link", link}, {"apiKey", apiKey}}));
            QCOMPARE(reply.status, 200);
            QTEST(reply.code(), "code");
            QCOMPARE(reply.json["message"_L1].toString().isEmpty(), reply.code() == 0);
            QCOMPARE(reply.json.size(), 2);
        }
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QByteArray &request, int status) {
            QTest::newRow(name) << request << status;
        };
        row("method", "GET " + SearchPath + " HTTP/1.1\r\n\r\n", 405);
        row("unknown method", "BREW /pot HTTP/1.1\r\n\r\n", 404);
        row("path", post("/etc/passwd", "track=a"), 404);
        row("climbing path", post("/../../etc/passwd", "track=a"), 404);
        row("type", post(SearchPath, "{}", "Content-Type: application/json\r\n"), 415);
        row("no type", post(SearchPath, "track=a", {}), 415);
        row("percent", post(SearchPath, "track=%4"_ba), 400);
        row("invalid UTF-8", post(SearchPath, "track=%ED%A0%80"_ba), 400);
        row("twice", post(SearchPath, "track=a&track=b"_ba), 400);
        row("just small enough", post(SearchPath, QByteArray(65536, 'a')), 200);
        row("large", post(SearchPath, QByteArray(65537, 'a')), 413);
        row("more than the length", post(SearchPath, "track=a"_ba) + "POST / HTTP/1.1\r\n\r\n", 400);

        const auto header = [&](const char *name, const QByteArray &rest, int status) {
            row(name, "POST " + SearchPath + " HTTP/1.1\r\n" + FormType + rest, status);
        };
        header("huge length", "Content-Length: 99999999999999999999\r\n\r\n", 413);
        header("without a length", "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n", 411);
        header("negative length", "Content-Length: -1\r\n\r\n", 400);
        header("two lengths", "Content-Length: 1\r\nContent-Length: 2\r\n\r\nab", 400);
        header("endless head", "X: " + QByteArray(200'000, 'x'), 431);
        header("folded header", "X: a\r\n b\r\n\r\n", 400);
        header("control character", "X: a\nContent-Length: 0\rb\r\n\r\n", 400);
        header("name of a header", "X y: a\r\n\r\n", 400);
        header("upgrade", "Connection: Upgrade\r\nUpgrade: websocket\r\n\r\n", 400);

        row("not HTTP", QByteArray("\0\1\2\xFF\r\n\r\n", 8), 400);
        row("HTTP/2", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 400);
    }
    void refuses()
    {
        QFETCH(const QByteArray, request);
        const Reply reply = m_service.ask(request);
        QTEST(reply.status, "status");
        QVERIFY(reply.code() > 0 && !reply.json["message"_L1].toString().isEmpty());
        QVERIFY(!m_service.search(u"hello"_s).names().isEmpty());
    }

    void keepsToTheIndex()
    {
        const QString good = m_service.link(u"hello"_s);
        QVERIFY(!good.isEmpty());
        const QString other = good.chopped(1) + (good.back() == u'0' ? u'1' : u'0');
        for (const QString &link : {u""_s, u"a/1.lrc"_s, m_folder.filePath("outside/secret.lrc"_L1), other,
                                    good + QChar::Null, u"%"_s, u"' OR ''='"_s}) {
            const Reply reply = m_service.detail(link);
            QVERIFY2(reply.code() == 5 && !reply.json.contains("result"_L1), qPrintable(link));
        }
    }

    void refusesAnEmptyQuery() { QCOMPARE(m_service.search({}).code(), 4); }

    void understandsOtherClients()
    {
        const QByteArray type = "content-type: Application/x-www-form-urlencoded; charset=utf-8\r\n";
        const QByteArray body = "track=world+hello&artist&apiKey=" + key().toPercentEncoding();
        QCOMPARE(m_service.ask(post(SearchPath, body, type)).names(), QStringList(u"Hello World|Maren"_s));
        QVERIFY(m_service.connected(u"localhost"_s));
    }

    void noticesChanges()
    {
        const QString file = m_service.library + u"/new/1.lrc"_s;
        const auto found = [this](const QString &track) { return m_service.search(track).names(); };
        write(file, "[ti:Fresh]\n[ar:Nobody]\n");
        QTRY_COMPARE_WITH_TIMEOUT(found(u"fresh"_s), QStringList(u"Fresh|Nobody"_s), 10'000);
        const QString link = m_service.link(u"fresh"_s);
        write(file, "[ti:Stale]\n[ar:Nobody]\nsecond\n");
        QTRY_COMPARE_WITH_TIMEOUT(m_service.link(u"stale"_s), link, 10'000);
        QVERIFY(found(u"fresh"_s).isEmpty());
        QVERIFY(m_service.lyric(u"stale"_s).endsWith(u"second\n"_s));
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::link(m_folder.filePath("outside/secret.lrc"_L1), file));
        QVERIFY(!m_service.detail(link).json.contains("result"_L1)); // whether or not the scanner has noticed
        QTRY_VERIFY_WITH_TIMEOUT(found(u"stale"_s).isEmpty(), 10'000);
        QCOMPARE(m_service.detail(link).code(), 5);
    }

    void reportsSkippedFiles()
    {
        const QByteArray errors = m_service.process.readAllStandardError();
        for (const char *const name : {"broken.lrc", "binary.lrc", "large.lrc"})
            QVERIFY2(errors.contains(name), errors.constData());
        QCOMPARE(errors.count("skipped"), 3); // once each, although several scans have met them
    }

    void logsRequests()
    {
        const auto read = [this] {
            const QByteArray text = m_service.out += m_service.process.readAllStandardOutput();
            return QJsonDocument::fromJson(text.split('\n').value(text.count('\n') - 1)).object();
        };
        m_service.search(u"hello"_s);
        QTRY_COMPARE(read()["results"_L1].toInt(), 2);
        QCOMPARE(
            read().keys(),
            (QStringList{u"code"_s, u"method"_s, u"ms"_s, u"path"_s, u"results"_s, u"status"_s, u"time"_s}));
        QCOMPARE(read()["path"_L1].toString().toLatin1(), SearchPath);
        m_service.ask("PUT /x?apiKey=secret HTTP/1.1\r\nContent-Length: 70000\r\n\r\n");
        QTRY_COMPARE(read()["status"_L1].toInt(), 413);
        QCOMPARE(read()["path"_L1].toString(), u"/x"_s);
        QVERIFY(!m_service.out.contains("secret"));
    }

    void onlyOwnerCanReadKeys()
    {
        for (const char *const name : {"authority-key.pem", "server-key.pem", "index.sqlite"}) {
            constexpr auto Others =
                QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
            QCOMPARE(QFile::permissions(m_service.data + u'/' + QLatin1StringView(name)) & Others,
                     QFile::Permissions());
        }
    }

    void startsAgain()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("library/1.lrc"_L1);
        write(file, "[ti:One]\n[ar:A]\n");
        const QDateTime modified = QFileInfo(file).lastModified();
        QString link;
        QList<QSslCertificate> authority;
        {
            Service service(folder);
            QVERIFY(service.start());
            link = service.link(u"one"_s);
            authority = service.authority;
            QCOMPARE(service.stop(), 0);
        }
        QFile content(file); // a change that keeps size and time goes unnoticed
        QVERIFY(content.open(QFile::ReadWrite));
        content.write("[ti:Two]");
        content.flush();
        QVERIFY(content.setFileTime(modified, QFile::FileModificationTime));
        content.close();
        write(folder.filePath("library/3.lrc"_L1), "[ti:Six]\n[ar:A]\n");
        write(folder.filePath("data/server.pem"_L1), "damaged");
        {
            Service service(folder);
            QVERIFY(service.start());
            QCOMPARE(service.link(u"one"_s), link);
            QVERIFY(service.link(u"two"_s).isEmpty());
            QVERIFY(!service.link(u"six"_s).isEmpty());
            QCOMPARE(service.authority, authority);
            QCOMPARE(service.stop(), 0);
        }
        write(folder.filePath("data/index.sqlite"_L1), QByteArray(5'000, 'x'));
        Service service(folder);
        QVERIFY(service.start());
        QVERIFY(!service.link(u"two"_s).isEmpty());
        // After a crash the lock file does not block the next start, even if it names a running process.
        service.process.kill();
        QVERIFY(service.process.waitForFinished());
        const QString lock = service.data + u"/lock"_s;
        QVERIFY(QFile::remove(lock) && QFile::copy(m_service.data + u"/lock"_s, lock));
        Service next(folder);
        QVERIFY(next.start());
    }

    void finishesRequests()
    {
        const QTemporaryDir folder;
        Service service(folder);
        write(folder.filePath("library/1.lrc"_L1), "[ti:One]\n[ar:A]\n");
        QVERIFY(service.start());
        const QByteArray request = post(SearchPath, {{"track", "one"}, {"apiKey", key()}});
        const auto idle = service.connected();
        const auto socket = service.connected();
        QVERIFY(idle && socket);
        idle->write(request);
        QCOMPARE(service.reply(idle.get()).code(), 0);
        socket->write(request.chopped(5));
        QVERIFY(socket->waitForBytesWritten());
        service.process.terminate();
        QTRY_COMPARE(idle->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!service.connected());
        socket->write(request.last(5));
        QCOMPARE(service.reply(socket.get()).names(), QStringList(u"One|A"_s));
        QTRY_COMPARE(service.process.state(), QProcess::NotRunning);
        QCOMPARE(service.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(service.process.exitCode(), 0);
    }

    void refusesToStart()
    {
        QTcpServer other;
        other.listen(QHostAddress::LocalHost);
        const QStringList library{u"--library"_s, m_service.library};
        const QString data = m_folder.filePath("other"_L1);
        const QString file = m_service.library + u"/gb.lrc"_s;
        const std::pair<QStringList, int> cases[] = {
            {{}, 2},
            {library + QStringList{u"--port"_s, u"65536"_s}, 2},
            {library + QStringList{u"--address"_s, u"here"_s}, 2},
            {{u"--library"_s, file, u"--data"_s, data}, 3},
            {library + QStringList{u"--data"_s, data, u"--port"_s, QString::number(other.serverPort())}, 3},
            {library + QStringList{u"--data"_s, file}, 3},
            {library + QStringList{u"--data"_s, m_service.data}, 3}, // in use
        };
        for (const auto &[arguments, status] : cases) {
            QProcess process;
            process.start(QStringLiteral(SONGLRC_SERVICE), arguments);
            QVERIFY(process.waitForFinished(15'000));
            const QByteArray errors = process.readAllStandardError();
            QVERIFY2(process.exitCode() == status, qPrintable(arguments.join(u' ')));
            QVERIFY2(status == 3 ? errors.count('\n') == 1 : !errors.isEmpty(), errors.constData());
            QVERIFY(process.readAllStandardOutput().isEmpty());
        }
    }

    void cleanupTestCase() { QCOMPARE(m_service.stop(), 0); }

private:
    QTemporaryDir m_folder;
    Service m_service{m_folder};
};

QTEST_GUILESS_MAIN(TestService)

#include "tst_service.moc"
