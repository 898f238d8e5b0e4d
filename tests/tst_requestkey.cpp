// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Key = u"9e41c07ab3d6f2e8"_s; // written down a second time on purpose
const QByteArray Vector = "r3t9x27104cda58e";

QString enciphered(const QString &text, const QString &key = Key, const QByteArray &vector = Vector)
{
    return EncryptionTools::sharedEncryptionTools()->encryptString(text, key, vector);
}

} // namespace

class TestRequestKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enciphers()
    {
        const std::pair<QString, QString> cases[] = {
            // What "openssl enc -aes-128-cbc -base64 -A" makes of texts around the 16 bytes of a block.
            {u"interval=1735689600"_s, u"vc3bqHDyV01a1pLk5hMMk/pajBTgPwCGOw9oGw8Wgr0="_s},
            {u""_s, u"0O/qiZbkvAZ92PBPf701Ew=="_s},
            {u"fifteen bytes.."_s, u"PMRY/rWrmPKPfDaMpYCf0g=="_s},
            {u"sixteen bytes..."_s, u"7U471gNyZk/TBlLb0Z/h0Ymt+FpSs3ZWI5JZF5nUAzc="_s},
            {u"歌詞 \U0001f3b5"_s, u"XNoJQyC8u+mXC60ej4xNyg=="_s}};
        for (const auto &[text, cipher] : cases)
            QCOMPARE(enciphered(text), cipher);
    }

    void refusesOtherKeys()
    {
        QVERIFY(enciphered(u"x"_s, Key.chopped(1)).isNull());
        QVERIFY(enciphered(u"x"_s, Key, Vector.chopped(1)).isNull());
        QVERIFY(enciphered(u"x"_s, QString(), QByteArray()).isNull());
    }

    void isTheTimeEnciphered()
    {
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const QString key = QVLrcUtils::generateLyricApiKey();
        QStringList possible;
        for (qint64 time = before; time <= QDateTime::currentSecsSinceEpoch(); ++time)
            possible += enciphered(u"interval=%1"_s.arg(time));
        QVERIFY2(possible.contains(key), qPrintable(key));
    }
};

QTEST_APPLESS_MAIN(TestRequestKey)
#include "tst_requestkey.moc"
