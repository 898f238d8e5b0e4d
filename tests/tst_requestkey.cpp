// SPDX-License-Identifier: MIT
#include <QVSongLrc/EncryptionTools.h>
#include <QVSongLrc/QVLrcUtils.h>

#include <QDateTime>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The key and the vector in hexadecimal, written down a second time on purpose.
QString openssl(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(u"openssl"_s,
                  QStringList{u"enc"_s, u"-aes-128-cbc"_s, u"-base64"_s, u"-A"_s, u"-K"_s,
                              u"39653431633037616233643666326538"_s, u"-iv"_s,
                              u"72337439783237313034636461353865"_s}
                      + arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

struct RecordingTools : EncryptionTools
{
    QString encryptString(const QString &text, const QString &keyString, const QByteArray &iv) const override
    {
        asked = {text, keyString, QString::fromLatin1(iv)};
        return answer;
    }

    QString answer;
    mutable QStringList asked;
};

} // namespace

class TestRequestKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { EncryptionTools::setSharedEncryptionTools(nullptr); }
    void enciphersAsOpensslDoes_data();
    void enciphersAsOpensslDoes();
    void isTheTimeEnciphered();
    void asksTheInstalledTools();
    void refusesOtherKeys();
};

void TestRequestKey::enciphersAsOpensslDoes_data()
{
    QTest::addColumn<QString>("text");
    for (const QString &text : {u""_s, u"interval=0"_s, u"interval=1735689600"_s, u"fifteen bytes.."_s,
                                u"sixteen bytes..."_s, u"x"_s.repeated(1000), u"歌詞 \U0001f3b5"_s})
        QTest::addRow("%lld: %.16s", qint64(text.size()), text.toUtf8().constData()) << text;
}

void TestRequestKey::enciphersAsOpensslDoes()
{
    QFETCH(const QString, text);
    const QString cipher = EncryptionTools::sharedEncryptionTools()->encryptString(
        text, u"9e41c07ab3d6f2e8"_s, "r3t9x27104cda58e");
    QCOMPARE(cipher, openssl({}, text.toUtf8()));
    QVERIFY(cipher.size() >= 24);
}

void TestRequestKey::isTheTimeEnciphered()
{
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const QString plain = openssl({u"-d"_s}, QVLrcUtils::generateLyricApiKey().toLatin1());
    QVERIFY2(plain.startsWith(u"interval="_s), qPrintable(plain));
    bool isNumber = false;
    const qint64 seconds = plain.mid(9).toLongLong(&isNumber);
    QVERIFY(isNumber && seconds >= before && seconds <= QDateTime::currentSecsSinceEpoch());
}

void TestRequestKey::asksTheInstalledTools()
{
    const auto tools = std::make_shared<RecordingTools>();
    EncryptionTools::setSharedEncryptionTools(tools);
    tools->answer = u"cipher"_s;
    QCOMPARE(QVLrcUtils::generateLyricApiKey(), u"cipher"_s);
    QCOMPARE(tools->asked.mid(1), (QStringList{u"9e41c07ab3d6f2e8"_s, u"r3t9x27104cda58e"_s}));
    tools->answer = QString();
    QCOMPARE(QVLrcUtils::generateLyricApiKey(), u""_s);
    QVERIFY(!QVLrcUtils::generateLyricApiKey().isNull());
}

void TestRequestKey::refusesOtherKeys()
{
    const auto tools = EncryptionTools::sharedEncryptionTools();
    QVERIFY(tools->encryptString(u"x"_s, u"9e41c07ab3d6f2e"_s, "r3t9x27104cda58e").isNull());
    QVERIFY(tools->encryptString(u"x"_s, u"9e41c07ab3d6f2\u00e9"_s, "r3t9x27104cda58").isNull());
    QVERIFY(tools->encryptString(u"x"_s, QString(), QByteArray()).isNull());
}

QTEST_APPLESS_MAIN(TestRequestKey)
#include "tst_requestkey.moc"
