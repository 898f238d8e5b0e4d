// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QStringEncoder>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <openssl/evp.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView SearchPath("/phpLyricFetcher/search/search.php");
constexpr QLatin1StringView DetailPath("/phpLyricFetcher/detail/detail.php");

// Base64 of the text enciphered with AES-128-CBC under the key and vector that services know.
QByteArray sealed(const QByteArray &plain)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    const auto bytes = [](const char *text) { return reinterpret_cast<const unsigned char *>(text); };
    QByteArray cipher(plain.size() + 32, '\0');
    auto *out = reinterpret_cast<unsigned char *>(cipher.data());
    int size = 0;
    int rest = 0;
    EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytes("9e41c07ab3d6f2e8"),
                       bytes("r3t9x27104cda58e"));
    EVP_EncryptUpdate(context.get(), out, &size, bytes(plain.constData()), int(plain.size()));
    EVP_EncryptFinal_ex(context.get(), out + size, &rest);
    return cipher.first(size + rest).toBase64();
}

QByteArray key(qint64 secondsFromNow = 0)
{
    return sealed("interval=" + QByteArray::number(QDateTime::currentSecsSinceEpoch() + secondsFromNow));
}

using Fields = QList<std::pair<QByteArray, QByteArray>>;

QByteArray form(const Fields &fields)
{
    QByteArrayList parts;
    for (const auto &[name, value] : fields)
        parts += name + '=' + value.toPercentEncoding();
    return parts.join('&');
}

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path + ".part"_L1);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(content);
    file.close();
    QFile::remove(path);
    QVERIFY(file.rename(path));
}

struct Reply
{
    int status = 0; // 0 when there was no verified answer
    QJsonObject json;
    int code() const { return json["code"_L1].toInt(-1); }
};

// The program on a library and a data folder, killed with this object if it still runs.
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
        const bool isReady = QTest::qWaitFor(
            [this] {
                out += process.readAllStandardOutput();
                return out.contains("\nurl: ") && out.endsWith('\n');
            },
            20'000);
        url = QUrl(QString::fromUtf8(line("url: ")));
        return isReady;
    }
    int stop()
    {
        process.terminate();
        return process.waitForFinished(15'000) && process.exitStatus() == QProcess::NormalExit
            ? process.exitCode()
            : -1;
    }
    QByteArray line(const QByteArray &prefix) const
    {
        for (const QByteArray &text : out.split('\n')) {
            if (text.startsWith(prefix))
                return text.sliced(prefix.size());
        }
        return {};
    }
    QSslConfiguration trust() const
    {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setCaCertificates(QSslCertificate::fromPath(QString::fromUtf8(line("authority: "))));
        return configuration;
    }

    Reply post(QLatin1StringView path, const QByteArray &body,
               const QByteArray &type = "application/x-www-form-urlencoded",
               const QString &host = u"127.0.0.1"_s)
    {
        QUrl target = url;
        target.setHost(host);
        target.setPath(path);
        QNetworkRequest request(target);
        request.setSslConfiguration(trust());
        request.setHeader(QNetworkRequest::ContentTypeHeader, type);
        QNetworkAccessManager manager;
        const std::unique_ptr<QNetworkReply> reply(manager.post(request, body));
        if (!QTest::qWaitFor([&] { return reply->isFinished(); }, 20'000))
            return {};
        return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                QJsonDocument::fromJson(reply->readAll()).object()};
    }
    Reply search(const QString &track, const QString &artist)
    {
        return post(SearchPath,
                    form({{"track", track.toUtf8()}, {"artist", artist.toUtf8()}, {"apiKey", key()}}));
    }
    // "title|artist" of each result, best first.
    QStringList found(const QString &track, const QString &artist = {})
    {
        QStringList names;
        for (const QJsonValue result : search(track, artist).json["results"_L1].toArray())
            names += result["track"_L1].toString() + u'|' + result["artist"_L1].toString();
        return names;
    }
    QString link(const QString &track)
    {
        return search(track, {}).json["results"_L1][0]["link"_L1].toString();
    }
    Reply detail(const QString &link)
    {
        return post(DetailPath,
                    form({{"artist", ""}, {"track", ""}, {"link", link.toUtf8()}, {"apiKey", key()}}));
    }
    QString lyric(const QString &track)
    {
        return detail(link(track)).json["result"_L1]["lyric"_L1].toString();
    }

    std::unique_ptr<QSslSocket> connected() const
    {
        auto socket = std::make_unique<QSslSocket>();
        socket->setSslConfiguration(trust());
        socket->connectToHostEncrypted(url.host(), quint16(url.port()));
        return socket->waitForEncrypted(10'000) ? std::move(socket) : nullptr;
    }
    // What the service answers to these bytes before it closes or has no more to say.
    QByteArray raw(const QByteArray &bytes) const
    {
        const auto socket = connected();
        if (!socket)
            return {};
        socket->write(bytes);
        QByteArray answer;
        const bool isWhole =
            QTest::qWaitFor([&] { return (answer += socket->readAll()).contains('}'); }, 10'000);
        return isWhole ? answer : QByteArray();
    }

    const QString library;
    const QString data;
    QProcess process;
    QByteArray out;
    QUrl url;
};

const QByteArray Gb18030 =
    QByteArray::fromHex("5b74693ac7e0bba8b4c95d0a5b61723ad6dcbddcc2d75d0a5b30303a30312e30305dcbd8c5dfb9b4c0d5"
                        "b3f6c7e0bba8b1cab7e6c5a8"
                        "d7aab5ad0a5b30303a30352e30305dc6bfc9edc3e8bbe6b5c4c4b5b5a4d2bbc8e7c4e3b3f5d7b10a");

QByteArray utf16(QStringConverter::Encoding encoding, const QString &text)
{
    QStringEncoder encode(encoding, QStringConverter::Flag::WriteBom);
    return encode(text);
}

} // namespace

class TestService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        const QString library = m_service.library + u'/';
        write(library + u"a/1.lrc"_s, "[ti:Hello World]\n[ar:Adele]\n[00:01.00]Hello\n");
        write(library + u"a/2.LRC"_s, "\xEF\xBB\xBF[ti:Straße]\n[ar:Adele B]\n");
        write(library + u"a/b/3.lrc"_s,
              utf16(QStringConverter::Utf16LE, u"[ti:Hello]\n[ar:Adele]\nL\u00e9\n"_s));
        write(library + u"a/b/4.lrc"_s, utf16(QStringConverter::Utf16BE, u"[ti:ＦＵＬＬ ｶﾗｵｹ]\n[ar:é]\n"_s));
        write(library + u"gb.lrc"_s, Gb18030);
        write(library + u"latin.lrc"_s,
              "[ti:Latin]\n[ar:Une Fille]\nTous les jours dans la rue je vais au caf\xE9");
        write(library + u"Queen - Bohemian - Rhapsody.lrc"_s, "[00:01.00]x\n");
        write(library + u"No one.lrc"_s, "");
        write(library + u"odd.lrc"_s, "[ti:C'est \"la\" (NEAR) * -vie♥]\n[ar:AC/DC]\n");
        write(library + u"broken.lrc"_s, QByteArray("\xFF\xFE[\0t\0i", 7));
        write(library + u"binary.lrc"_s, QByteArray("[ti:Binary]\0\1\2", 14));
        write(m_folder.filePath("outside/secret.lrc"_L1), "[ti:Secret]\n[ar:Spy]\n");
        QVERIFY(QFile::link(m_folder.filePath("outside"_L1), library + u"folder"_s));
        QVERIFY(QFile::link(m_folder.filePath("outside/secret.lrc"_L1), library + u"link.lrc"_s));
        QVERIFY(m_service.start({"--json-log"_L1}));
    }

    void tellsWhatItSkips()
    {
        const QByteArray errors = m_service.process.readAllStandardError();
        QVERIFY2(errors.contains("broken.lrc") && errors.contains("binary.lrc"), errors.constData());
        QCOMPARE(errors.count('\n'), 2);
    }

    void finds_data()
    {
        QTest::addColumn<QString>("track");
        QTest::addColumn<QString>("artist");
        QTest::addColumn<QStringList>("expected");
        const QStringList jay{u"青花瓷|周杰伦"_s};
        const QStringList odd{u"C'est \"la\" (NEAR) * -vie♥|AC/DC"_s};
        QTest::newRow("best first") << u"hello"_s << u""_s
                                    << QStringList{u"Hello|Adele"_s, u"Hello World|Adele"_s};
        QTest::newRow("words in any order")
            << u"WORLD hello"_s << u""_s << QStringList{u"Hello World|Adele"_s};
        QTest::newRow("beginning of the last word")
            << u"hello wor"_s << u""_s << QStringList{u"Hello World|Adele"_s};
        QTest::newRow("not of another") << u"hel world"_s << u""_s << QStringList{};
        QTest::newRow("both count") << u"hello"_s << u"queen"_s << QStringList{};
        QTest::newRow("artist alone, exact first")
            << u""_s << u"adele"_s
            << QStringList{u"Hello|Adele"_s, u"Hello World|Adele"_s, u"Straße|Adele B"_s};
        QTest::newRow("full case folding") << u"STRASSE"_s << u""_s << QStringList{u"Straße|Adele B"_s};
        QTest::newRow("width") << u"full カラオケ"_s << u""_s << QStringList{u"ＦＵＬＬ ｶﾗｵｹ|é"_s};
        QTest::newRow("width of the query")
            << u"Ｈｅｌｌｏ　Ｗｏｒｌｄ"_s << u""_s << QStringList{u"Hello World|Adele"_s};
        QTest::newRow("decomposed") << u""_s << u"e\u0301"_s << QStringList{u"ＦＵＬＬ ｶﾗｵｹ|é"_s};
        QTest::newRow("three characters") << u"青花瓷"_s << u"周杰伦"_s << jay;
        QTest::newRow("two, at the end") << u"花瓷"_s << u"杰伦"_s << jay;
        QTest::newRow("one") << u"花"_s << u""_s << jay;
        QTest::newRow("one of kana") << u"ラ"_s << u""_s << QStringList{u"ＦＵＬＬ ｶﾗｵｹ|é"_s};
        QTest::newRow("not a run") << u"青瓷"_s << u""_s << QStringList{};
        QTest::newRow("name of the file")
            << u"bohemian rhapsody"_s << u"queen"_s << QStringList{u"Bohemian - Rhapsody|Queen"_s};
        QTest::newRow("no artist") << u"no one"_s << u""_s << QStringList{u"No one|Unknown"_s};
        QTest::newRow("through links") << u"secret"_s << u""_s << QStringList{};
        QTest::newRow("undecodable") << u"binary"_s << u""_s << QStringList{};
        QTest::newRow("symbol") << u"♥"_s << u"ac/dc"_s << odd;
        for (const auto &hostile :
             {u"\"la\""_s, u"(NEAR)"_s, u"la*"_s, u"-vie"_s, u"c'est \"la"_s, u"la\0"_s, u"^c'est"_s})
            QTest::addRow("operators %s", qPrintable(hostile)) << hostile << u""_s << odd;
        for (const auto &hostile :
             {u"title:hello"_s, u"NEAR(hello world, 2)"_s, u"hello OR queen"_s, u"\"*()^-+:{}"_s,
              u"' OR 1=1 --"_s, u"hello AND NOT world"_s, QString(20'000, u'"')})
            QTest::addRow("harmless %s", qPrintable(hostile.left(20))) << hostile << u""_s << QStringList{};
        QTest::newRow("long") << QString(6'000, u'花') << u"花 "_s.repeated(200) << QStringList{};
    }
    void finds()
    {
        QFETCH(QString, track);
        QFETCH(QString, artist);
        QCOMPARE(m_service.search(track, artist).code(), 0);
        QTEST(m_service.found(track, artist), "expected");
    }

    void servesLyrics()
    {
        QCOMPARE(m_service.lyric(u"hello world"_s), u"[ti:Hello World]\n[ar:Adele]\n[00:01.00]Hello\n"_s);
        QCOMPARE(m_service.lyric(u"straße"_s), u"[ti:Straße]\n[ar:Adele B]\n"_s);
        QCOMPARE(m_service.lyric(u"hello"_s), u"[ti:Hello]\n[ar:Adele]\nL\u00e9\n"_s);
        QVERIFY(m_service.lyric(u"latin"_s).endsWith(u"au café"_s));
        QVERIFY(m_service.lyric(u"青花瓷"_s).endsWith(u"瓶身描绘的牡丹一如你初妆\n"_s));
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
        QTest::newRow("of 1700000000, by the openssl command")
            << "6Kl3jl+BH1fsgmzfwQsq86uJnyHwVwhN3/vSmesCSfc="_ba << 3;
        QTest::newRow("missing") << ""_ba << 1;
        QTest::newRow("not Base64") << "!?"_ba << 2;
        QTest::newRow("not enciphered") << "interval=1700000000"_ba.toBase64() << 2;
        QTest::newRow("cut") << key().first(20) << 2;
        QTest::newRow("other text") << sealed("time=1700000000") << 2;
        QTest::newRow("no number") << sealed("interval=") << 2;
        QTest::newRow("negative") << sealed("interval=-5") << 2;
        QTest::newRow("beyond 64 bits") << sealed("interval=99999999999999999999") << 2;
        QTest::newRow("huge") << QByteArray(50'000, 'A') << 2;
    }
    void checksKeys()
    {
        QFETCH(QByteArray, apiKey);
        for (const auto path : {SearchPath, DetailPath}) {
            const QByteArray link = m_service.link(u"hello"_s).toLatin1();
            const Reply reply =
                m_service.post(path, form({{"track", "hello"}, {"link", link}, {"apiKey", apiKey}}));
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
        const QByteArray post = "POST " + QByteArray(SearchPath.data()) + " HTTP/1.1\r\nHost: x\r\n";
        const QByteArray type = "Content-Type: application/x-www-form-urlencoded\r\n";
        const auto body = [](const QByteArray &text) {
            return "Content-Length: " + QByteArray::number(text.size()) + "\r\n\r\n" + text;
        };
        QTest::newRow("method") << "GET " + QByteArray(SearchPath.data()) + " HTTP/1.1\r\n\r\n" << 405;
        QTest::newRow("unknown method") << "BREW /pot HTTP/1.1\r\n\r\n"_ba << 404;
        QTest::newRow("path") << "POST /etc/passwd HTTP/1.1\r\n" + type + body("track=a") << 404;
        QTest::newRow("climbing path")
            << "POST /../../etc/passwd HTTP/1.1\r\n" + type + body("track=a") << 404;
        QTest::newRow("type") << post + "Content-Type: application/json\r\n" + body("{}") << 415;
        QTest::newRow("no type") << post + body("track=a") << 415;
        QTest::newRow("percent") << post + type + body("track=%4") << 400;
        QTest::newRow("invalid UTF-8") << post + type + body("track=%ED%A0%80") << 400;
        QTest::newRow("twice") << post + type + body("track=a&track=b") << 400;
        QTest::newRow("just small enough") << post + type + body(QByteArray(65536, 'a')) << 200;
        QTest::newRow("large") << post + type + body(QByteArray(65537, 'a')) << 413;
        QTest::newRow("said to be huge") << post + "Content-Length: 99999999999999999999\r\n\r\n" << 413;
        QTest::newRow("without a length") << post + "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n" << 411;
        QTest::newRow("negative length") << post + "Content-Length: -1\r\n\r\n" << 400;
        QTest::newRow("two lengths") << post + "Content-Length: 1\r\nContent-Length: 2\r\n\r\nab" << 400;
        QTest::newRow("more than the length") << post + type + body("track=a") + "POST / HTTP/1.1\r\n\r\n"
                                              << 400;
        QTest::newRow("endless head") << post + "X: " + QByteArray(200'000, 'x') << 431;
        QTest::newRow("folded header") << post + "X: a\r\n b\r\n\r\n" << 400;
        QTest::newRow("upgrade") << post + "Connection: Upgrade\r\nUpgrade: websocket\r\n\r\n" << 400;
        QTest::newRow("not HTTP") << QByteArray("\0\1\2\xFF\r\n\r\n", 8) << 400;
        QTest::newRow("HTTP/2") << "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n"_ba << 400;
    }
    void refuses()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, status);
        const QByteArray answer = m_service.raw(request);
        QVERIFY2(answer.startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '), answer.constData());
        const QByteArray body = answer.sliced(answer.indexOf("\r\n\r\n") + 4);
        const QJsonObject json = QJsonDocument::fromJson(body).object();
        QVERIFY2(json["code"_L1].toInt() != 0 && !json["message"_L1].toString().isEmpty(), body.constData());
        QVERIFY(answer.contains("Content-Type: application/json"));
        QVERIFY(!m_service.found(u"hello"_s).isEmpty());
    }

    void refusesAnEmptyQuery() { QCOMPARE(m_service.search({}, {}).code(), 4); }

    void keepsToTheIndex_data()
    {
        QTest::addColumn<QString>("link");
        const QString good = m_service.link(u"hello"_s);
        QTest::newRow("empty") << QString();
        QTest::newRow("path") << u"a/1.lrc"_s;
        QTest::newRow("climbing path") << u"../outside/secret.lrc"_s;
        QTest::newRow("absolute path") << m_folder.filePath("outside/secret.lrc"_L1);
        QTest::newRow("link to elsewhere") << u"link.lrc"_s;
        QTest::newRow("changed") << good.chopped(1) + (good.back() == u'0' ? u'1' : u'0');
        QTest::newRow("longer") << good + u'0';
        QTest::newRow("with NUL") << good + QChar::Null;
        QTest::newRow("pattern") << u"%"_s;
        QTest::newRow("SQL") << u"' OR ''='"_s;
    }
    void keepsToTheIndex()
    {
        QFETCH(QString, link);
        const Reply reply = m_service.detail(link);
        QCOMPARE(reply.code(), 5);
        QVERIFY(!reply.json.contains("result"_L1));
    }

    void isKnownAsLocalhostToo()
    {
        const QByteArray body = form({{"track", "hello"}, {"apiKey", key()}});
        const QByteArray type = "application/x-www-form-urlencoded; charset=utf-8";
        QCOMPARE(m_service.post(SearchPath, body, type, u"localhost"_s).code(), 0);
        QCOMPARE(m_service.post(SearchPath, body, type, u"127.0.0.2"_s).status, 0);
    }

    void noticesChanges()
    {
        const QString file = m_service.library + u"/new/1.lrc"_s;
        write(file, "[ti:Fresh]\n[ar:Nobody]\n");
        QTRY_COMPARE_WITH_TIMEOUT(m_service.found(u"fresh"_s), QStringList{u"Fresh|Nobody"_s}, 20'000);
        const QString link = m_service.link(u"fresh"_s);
        write(file, "[ti:Stale]\n[ar:Nobody]\nsecond\n");
        QTRY_COMPARE_WITH_TIMEOUT(m_service.link(u"stale"_s), link, 20'000);
        QVERIFY(m_service.found(u"fresh"_s).isEmpty());
        QVERIFY(m_service.lyric(u"stale"_s).endsWith(u"second\n"_s));
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::link(m_folder.filePath("outside/secret.lrc"_L1), file));
        QVERIFY(!m_service.detail(link).json.contains("result"_L1)); // before or after it is noticed
        QTRY_VERIFY_WITH_TIMEOUT(m_service.found(u"stale"_s).isEmpty(), 20'000);
        QCOMPARE(m_service.detail(link).code(), 5);
    }

    void logsRequests()
    {
        const auto read = [this] {
            const QByteArray text = m_service.out += m_service.process.readAllStandardOutput();
            return QJsonDocument::fromJson(text.split('\n').value(text.count('\n') - 1)).object();
        };
        m_service.found(u"hello"_s);
        QTRY_COMPARE(read()["results"_L1].toInt(), 2);
        QCOMPARE(
            read().keys(),
            (QStringList{u"code"_s, u"method"_s, u"ms"_s, u"path"_s, u"results"_s, u"status"_s, u"time"_s}));
        QCOMPARE(read()["path"_L1].toString(), SearchPath);
        m_service.raw("PUT /x?apiKey=secret HTTP/1.1\r\nContent-Length: 70000\r\n\r\n");
        QTRY_COMPARE(read()["status"_L1].toInt(), 413);
        QCOMPARE(read()["path"_L1].toString(), u"/x"_s);
        QVERIFY(!m_service.out.contains("secret"));
    }

    void keysAreTheOwners()
    {
        for (const QString &name : {u"authority-key.pem"_s, u"server-key.pem"_s, u"index.sqlite"_s}) {
            constexpr auto Others =
                QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
            QCOMPARE(QFile::permissions(m_service.data + u'/' + name) & Others, QFile::Permissions());
        }
    }

    void startsAgain()
    {
        const QTemporaryDir folder;
        QString link;
        QByteArray authority;
        const auto authorityOf = [](const Service &service) {
            return QSslCertificate::fromPath(service.data + u"/authority.pem"_s).value(0).toPem();
        };
        const QString file = folder.filePath("library/1.lrc"_L1);
        QDateTime modified;
        {
            Service service(folder);
            write(file, "[ti:One]\n[ar:A]\n");
            modified = QFileInfo(file).lastModified();
            QVERIFY(service.start());
            link = service.link(u"one"_s);
            authority = authorityOf(service);
            QCOMPARE(service.stop(), 0);
        }
        QFile content(file); // what size and time do not show is not read
        QVERIFY(content.open(QFile::ReadWrite));
        content.write("[ti:Two]");
        content.flush();
        QVERIFY(content.setFileTime(modified, QFile::FileModificationTime));
        content.close();
        write(folder.filePath("library/3.lrc"_L1), "[ti:Three]\n[ar:A]\n");
        write(folder.filePath("data/server.pem"_L1), "damaged");
        {
            Service service(folder);
            QVERIFY(service.start());
            QCOMPARE(service.link(u"one"_s), link);
            QVERIFY(service.found(u"two"_s).isEmpty());
            QCOMPARE(service.found(u"three"_s).size(), 1);
            QCOMPARE(authorityOf(service), authority);
            QCOMPARE(service.stop(), 0);
        }
        write(folder.filePath("data/index.sqlite"_L1), QByteArray(5'000, 'x'));
        Service service(folder);
        QVERIFY(service.start());
        QCOMPARE(service.found(u"two"_s).size(), 1);
        // What a killed service leaves holds nobody off, also when its number is a running service's by now.
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
        const QByteArray body = form({{"track", "one"}, {"apiKey", key()}});
        const auto idle = service.connected();
        const auto socket = service.connected();
        QVERIFY(idle && socket);
        const QByteArray head = "POST " + QByteArray(SearchPath.data())
            + " HTTP/1.1\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: "
            + QByteArray::number(body.size()) + "\r\n\r\n";
        QByteArray answer;
        idle->write(head + body);
        QTRY_VERIFY((answer += idle->readAll()).contains("\"One\""));
        socket->write(head + body.first(5));
        QVERIFY(socket->waitForBytesWritten());
        service.process.terminate();
        QTRY_COMPARE(idle->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!service.connected());
        socket->write(body.sliced(5));
        answer.clear();
        QTRY_VERIFY((answer += socket->readAll()).contains("\"One\""));
        QTRY_COMPARE(service.process.state(), QProcess::NotRunning);
        QCOMPARE(service.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(service.process.exitCode(), 0);
    }

    void refusesToStart_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        m_other.listen(QHostAddress::LocalHost);
        const QString library = m_service.library;
        const QString data = m_folder.filePath("other"_L1);
        QTest::newRow("no library") << QStringList{} << 2;
        QTest::newRow("unknown option") << QStringList{u"--library"_s, library, u"--fast"_s} << 2;
        QTest::newRow("port too large") << QStringList{u"--library"_s, library, u"--port"_s, u"65536"_s} << 2;
        QTest::newRow("port no number") << QStringList{u"--library"_s, library, u"--port"_s, u"http"_s} << 2;
        QTest::newRow("address") << QStringList{u"--library"_s, library, u"--address"_s, u"here"_s} << 2;
        QTest::newRow("missing library")
            << QStringList{u"--library"_s, library + u"/none"_s, u"--data"_s, data} << 3;
        QTest::newRow("library a file")
            << QStringList{u"--library"_s, library + u"/gb.lrc"_s, u"--data"_s, data} << 3;
        QTest::newRow("port taken") << QStringList{u"--library"_s, library,
                                                   u"--data"_s,    data,
                                                   u"--port"_s,    QString::number(m_other.serverPort())}
                                    << 3;
        QTest::newRow("data folder a file")
            << QStringList{u"--library"_s, library, u"--data"_s, library + u"/gb.lrc"_s} << 3;
        QTest::newRow("data folder in use")
            << QStringList{u"--library"_s, library, u"--data"_s, m_service.data} << 3;
    }
    void refusesToStart()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QProcess process;
        process.start(QStringLiteral(SONGLRC_SERVICE), arguments);
        QVERIFY(process.waitForFinished(15'000));
        const QByteArray errors = process.readAllStandardError();
        QCOMPARE(process.exitCode(), status);
        QVERIFY(!errors.isEmpty());
        if (status == 3)
            QVERIFY2(errors.count('\n') == 1, errors.constData());
        QVERIFY(process.readAllStandardOutput().isEmpty());
    }

    void cleanupTestCase() { QCOMPARE(m_service.stop(), 0); }

private:
    QTemporaryDir m_folder;
    Service m_service{m_folder};
    QTcpServer m_other;
};

QTEST_GUILESS_MAIN(TestService)

#include "tst_service.moc"
