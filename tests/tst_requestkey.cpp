// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString Key = u"9e41c07ab3d6f2e8"_s; // repeated on purpose
const QByteArray Vector = "r3t9x27104cda58e";

QString encrypted(const QString &text, const QString &key = Key, const QByteArray &vector = Vector)
{
    return EncryptionTools::sharedEncryptionTools()->encryptString(text, key, vector);
}

} // namespace

class TestRequestKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encrypts()
    {
        const std::pair<QString, QString> cases[] = {
            // Output of "openssl enc -aes-128-cbc -base64 -A" for texts around the block size of 16 bytes.
            {u"interval=1735689600"_s, u"vc3bqHDyV01a1pLk5hMMk/pajBTgPwCGOw9oGw8Wgr0="_s},
            {u""_s, u"0O/qiZbkvAZ92PBPf701Ew=="_s},
            {u"fifteen bytes.."_s, u"PMRY/rWrmPKPfDaMpYCf0g=="_s},
            {u"sixteen bytes..."_s, u"7U471gNyZk/TBlLb0Z/h0Ymt+FpSs3ZWI5JZF5nUAzc="_s},
            {u"歌詞 \U0001f3b5"_s, u"XNoJQyC8u+mXC60ej4xNyg=="_s}};
        for (const auto &[text, cipher] : cases)
            QCOMPARE(encrypted(text), cipher);
    }

    void refusesOtherKeys()
    {
        QVERIFY(encrypted(u"x"_s, Key.chopped(1)).isNull());
        QVERIFY(encrypted(u"x"_s, Key, Vector.chopped(1)).isNull());
        QVERIFY(encrypted(u"x"_s, QString(), QByteArray()).isNull());
    }

    void isTheEncryptedTime()
    {
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const QString key = QVLrcUtils::generateLyricApiKey();
        QStringList possible;
        for (qint64 time = before; time <= QDateTime::currentSecsSinceEpoch(); ++time)
            possible += encrypted(u"interval=%1"_s.arg(time));
        QVERIFY2(possible.contains(key), qPrintable(key));
    }
};

QTEST_APPLESS_MAIN(TestRequestKey)
#include "tst_requestkey.moc"
