// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrc.h>

#include <QTest>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

static_assert(!std::is_default_constructible_v<QVUtils>);
static_assert(sizeof(QVTextRange) == 16);

namespace {
constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();
} // namespace

class TestUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTags_data();
    void readsTags();
    void refusesLessThanTwoCharacters();
    void losesAMillisecondWhereTheProductFallsShort();
    void writesTimes_data();
    void writesTimes();
    void recognisesTags();
    void version();
};

void TestUtils::readsTags_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<qint64>("time");
    const auto row = [](const QString &tag, qint64 time, const char *name = nullptr) {
        QTest::newRow(name ? name : tag.toLatin1().constData()) << tag << time;
    };
    row(u"[01:02.50]"_s, 62'500);
    row(u"[00:02.03]"_s, 2'029);
    row(u"[00:01.5]"_s, 1'500);
    row(u"[00:01.05]"_s, 1'050);
    row(u"[00:01.123]"_s, 1'123);
    row(u"[]"_s, 0);
    row(u"[01:02:03]"_s, 63'000);
    row(u"[12.5]"_s, 732'500);
    row(u"[1]"_s, 61'000);
    row(u" [01:02.03]"_s, 2'029, "white space in front loses the minutes");
    row(u"x01:02.5y"_s, 62'500, "brackets unseen");
    row(u"[01,5:02,5]"_s, 62'000);
    row(u"[:]"_s, 0);
    row(u"[ab:cd]"_s, 0);
    row(u"[ \t\u30001: \u00852.5]"_s, 62'500, "white space before numbers");
    row(u"[-1:-2.5]"_s, -62'500);
    row(u"[+1:+2.5]"_s, 62'500);
    row(u"[+-1:- 2]"_s, 0);
    row(u"[1:.5]"_s, 60'500);
    row(u"[1:5.]"_s, 65'000);
    row(u"[1:.]"_s, 60'000);
    row(u"[1:2.3.4]"_s, 62'300);
    row(u"[1:1e3]"_s, 61'000, "no exponents");
    row(u"[1:0x10]"_s, 60'000);
    row(u"[1:inf]"_s, 60'000);
    row(u"[\u0661:\uff12.5]"_s, 0, "digits of other scripts count as 0");
    row(u"[1\u0661:2]"_s, 62'000, "and end a number");
    row(u"[0:0.00000000000000000000000000009]"_s, 0);
    row(u"[0:1.00000000000000000000000000009]"_s, 1'000);
    row(u"[0:00000000000000000000000000001.5]"_s, 1'500);
    row(u"[0:"_s + u"9"_s.repeated(18) + u"]"_s, Max, "seconds of 18 digits");
    row(u"[0:9007199254740993]"_s, 9'007'199'254'740'992'000, "seconds beyond exact doubles");
    row(u"["_s + u"9"_s.repeated(40) + u":0]"_s, Max, "minutes of 40 digits");
    row(u"[-"_s + u"9"_s.repeated(40) + u":0]"_s, Min, "minutes of 40 digits, negative");
    row(u"[0:"_s + u"9"_s.repeated(400) + u"]"_s, Max, "seconds of 400 digits");
    row(u"[0:-"_s + u"9"_s.repeated(400) + u"]"_s, Min, "seconds of 400 digits, negative");
    row(u"[0:0."_s + u"0"_s.repeated(400) + u"1]"_s, 0, "seconds below any double");
    row(u"[153722867280912:55.807]"_s, Max, "the last time");
    row(u"[153722867280912:56]"_s, Max, "just past the last time");
    row(u"["_s + u"9"_s.repeated(40) + u":-"_s + u"9"_s.repeated(400) + u"]"_s, -1,
        "limits against each other");
}

void TestUtils::readsTags()
{
    QFETCH(const QString, tag);
    QFETCH(const qint64, time);
    QCOMPARE(QVUtils::getTimeInterval(tag), time);
}

void TestUtils::refusesLessThanTwoCharacters()
{
    for (const QString &tag : {QString(), u""_s, u"["_s})
        QVERIFY_EXCEPTION_THROWN(QVUtils::getTimeInterval(tag), std::out_of_range);
}

// Meant: 37 of the 6000 seconds texts.
void TestUtils::losesAMillisecondWhereTheProductFallsShort()
{
    QStringList short_;
    for (int hundredths = 0; hundredths < 6000; ++hundredths) {
        const QString text = QString::asprintf("%02d.%02d", hundredths / 100, hundredths % 100);
        const qint64 time = QVUtils::getTimeInterval(u"[00:"_s + text + u']');
        if (time != hundredths * 10) {
            QCOMPARE(time, hundredths * 10 - 1);
            short_ += text;
        }
    }
    QCOMPARE(short_.size(), 37);
    for (const char *text : {"02.01", "02.03", "04.02", "04.06", "08.03", "16.06", "32.01", "32.05"})
        QVERIFY2(short_.contains(QLatin1StringView(text)), text);
}

void TestUtils::writesTimes_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 time, const QString &text) {
        QTest::newRow(QByteArray::number(time).constData()) << time << text;
    };
    row(0, u"00:00.00"_s);
    row(9, u"00:00.00"_s);
    row(2'029, u"00:02.02"_s);
    row(59'999, u"00:59.99"_s);
    row(60'000, u"01:00.00"_s);
    row(62'500, u"01:02.50"_s);
    row(5'999'999, u"99:59.99"_s);
    row(6'000'000, u"100:00.00"_s);
    row(-9, u"00:00.00"_s);
    row(-1'500, u"00:-1.-50"_s);
    row(-61'010, u"-1:-1.-1"_s);
    row(-600'000, u"-10:00.00"_s);
    row(Max, u"153722867280912:55.80"_s);
    row(Min, u"-153722867280912:-55.-80"_s);
}

void TestUtils::writesTimes()
{
    QFETCH(const qint64, time);
    QFETCH(const QString, text);
    QCOMPARE(QVUtils::getTimeIntervalMMSSMSStr(time), text);
    QCOMPARE(QVUtils::getTimeIntervalPeerStr(time), u'[' + text + u']');
}

void TestUtils::recognisesTags()
{
    for (const QString &text : {u"[01:02.03]"_s, u"xx [1:2.3] yy"_s, u"[01:02:03]"_s})
        QVERIFY2(QVUtils::isTimeString(text), qPrintable(text));
    for (const QString &text : {QString(), u"[01:02]"_s, u"[001:02.03]"_s, u"[01:02.034]"_s, u"01:02.03"_s})
        QVERIFY2(!QVUtils::isTimeString(text), qPrintable(text));
    for (const QString &text : {u"[ar:Artist]"_s, u"[ti:]"_s, u"  [al:x]"_s, u"[00:12.00]see [ab:c] here"_s})
        QVERIFY2(QVUtils::isPropertyString(text), qPrintable(text));
    for (const QString &text : {QString(), u"[AR:x]"_s, u"[offset:500]"_s, u"[a:b]"_s, u"[ar:x"_s})
        QVERIFY2(!QVUtils::isPropertyString(text), qPrintable(text));
}

void TestUtils::version()
{
    QCOMPARE(QVSongLrcVersionNumber, 1.0);
    QCOMPARE(QByteArray(QVSongLrcVersionString), QByteArray("@(#)PROGRAM:QVSongLrc  PROJECT:QVSongLrc-1\n"));
}

QTEST_APPLESS_MAIN(TestUtils)
#include "tst_utils.moc"
