// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"

#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QDateTime>

#include <cmath>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QString encrypted(const QString &text, const QString &key = u"9e41c07ab3d6f2e8"_s,
                  const QByteArray &vector = "r3t9x27104cda58e")
{
    return EncryptionTools::sharedEncryptionTools()->encryptString(text, key, vector);
}

} // namespace

class TestLyricSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsSettings()
    {
        const QByteArray one = QVLyricService::certificateAuthorities();
        QByteArray encryptedOne = one;
        encryptedOne.insert(28,
                            "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-128-CBC," + QByteArray(32, '0') + "\n\n");
        for (const QByteArray &pem :
             {""_ba, "text"_ba, one + one.chopped(9), one + QByteArray(one).remove(100, 1),
              one + encryptedOne, one + QByteArray(one).replace("BEGIN ", "BEGIN TRUSTED "),
              one + "-----BEGIN CERTIFI"})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::addCertificateAuthorities(pem));
        QCOMPARE(QVLyricService::certificateAuthorities(), one);
        QVLyricService::addCertificateAuthorities("# one\n" + one + "# two\n" + one + "# end");
        QCOMPARE(QVLyricService::certificateAuthorities(), one + one + one);

        QVLyricService::setEndpoint(u"lyrics.example"_s);
        QCOMPARE(QVLyricService::url(u"/a/b"_s).toString(), u"https://lyrics.example/a/b"_s);
        QVLyricService::setEndpoint(u"::1"_s, 8443);
        for (const QString &host : {QString(), u""_s, u"a b"_s, u"a/b"_s, u"a@b"_s, u"a:1"_s})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::setEndpoint(host));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVLyricService::setEndpoint(u"a"_s, 0));
        QCOMPARE(QVLyricService::url(u"/a"_s).toString(), u"https://[::1]:8443/a"_s);

        const QUrl proxy(u"socks5://[::1]:1080"_s);
        QVLyricService::setProxy(proxy);
        for (const char *url : {"https://a:1", "http://a", "http://a:0", "http://:1", "a:1", "http://a b:1",
                                "http://a:1/b", "http://a:1?b"})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                     QVLyricService::setProxy(QUrl(QString::fromLatin1(url))));
        QCOMPARE(QVLyricService::proxy(), proxy);
        QVLyricService::setProxy(QUrl());
        QVERIFY(QVLyricService::proxy().isEmpty());

        const auto model = ZTLyricRequestModel::initWithReqParams({});
        QCOMPARE(*model->retryIndexes(), (QList<qint64>{0, 1, 2}));
        QVERIFY(model->retryIndexes() != ZTLyricRequestModel::initWithReqParams({})->retryIndexes());
        const auto indexes = std::make_shared<QList<qint64>>();
        model->setRetryIndexes(indexes);
        QCOMPARE(model->retryIndexes(), indexes);
        const QJsonObject query{{Key_Lyric_Trackname, u"x"_s}};
        model->setReqParams(query);
        QCOMPARE(model->reqParams(), query);
    }

    void reportsDurations()
    {
        QStringList texts;
        for (const double seconds : {1.2345, 0.0999, -0.25, 0.05, 2.0, 1e30, -1e300, std::nan("")})
            texts += ZTLyricRequestModel::getReportDuration(seconds);
        QCOMPARE(texts.join(u' '), u"1200 0 -200 0 2000 2147483600 -2147483600 0"_s);
    }

    // The output of "openssl enc -aes-128-cbc -base64 -A" for texts around the block size of 16 bytes.
    void makesRequestKeys()
    {
        QCOMPARE(encrypted(u"interval=1735689600"_s), u"vc3bqHDyV01a1pLk5hMMk/pajBTgPwCGOw9oGw8Wgr0="_s);
        QCOMPARE(encrypted(u""_s), u"0O/qiZbkvAZ92PBPf701Ew=="_s);
        QCOMPARE(encrypted(u"fifteen bytes.."_s), u"PMRY/rWrmPKPfDaMpYCf0g=="_s);
        QCOMPARE(encrypted(u"sixteen bytes..."_s), u"7U471gNyZk/TBlLb0Z/h0Ymt+FpSs3ZWI5JZF5nUAzc="_s);
        QCOMPARE(encrypted(u"歌詞 \U0001f3b5"_s), u"XNoJQyC8u+mXC60ej4xNyg=="_s);
        QVERIFY(encrypted(u"x"_s, u"9e41c07ab3d6f2e"_s).isNull());
        QVERIFY(encrypted(u"x"_s, u"9e41c07ab3d6f2e8"_s, "r3t9x27104cda58").isNull());
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const QString key = QVLrcUtils::generateLyricApiKey();
        QStringList possible;
        for (qint64 time = before; time <= QDateTime::currentSecsSinceEpoch(); ++time)
            possible += encrypted(u"interval=%1"_s.arg(time));
        QVERIFY2(possible.contains(key), qPrintable(key));
    }

private:
    LookupServer m_server; // adds its certificate authority
};

QTEST_GUILESS_MAIN(TestLyricSettings)
#include "tst_lyricsettings.moc"
