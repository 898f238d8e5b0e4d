// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <QVSongLrc/QVSongLrc.h>

#include <limits>
#include <stdexcept>

class TestUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTags()
    {
        constexpr qint64 Max = std::numeric_limits<qint64>::max();
        constexpr qint64 Min = std::numeric_limits<qint64>::min();
        const std::pair<qint64, QStringList> rows[] = {
            {0, {u"[]"_s, u"[:]"_s, u"[ab:inf]"_s, u"[+-1:- 2]"_s, u"[-+1:+ 2]"_s, u"[-:+]"_s}},
            {0, {u"[\u0661:\uff12.5]"_s, u"[\u200b1:\u20602]"_s, u"[0:0.0…9]"_s}},
            {1'050, {u"[00:01.05]"_s, u"[0:1.05.9]"_s}},
            {1'123, {u"[00:01.123]"_s}},
            {1'500, {u"[00:01.5]"_s, u"[0:0…1.5]"_s, u"[0:1.50…9]"_s}},
            // intended: seconds are multiplied as doubles and cut toward zero, so some lose 1 ms
            {2'029, {u"[00:02.03]"_s, u" [01:02.03]"_s}},
            {32'049, {u"[00:32.05]"_s}},
            {-2'029, {u"[0:-2.03]"_s}},
            {5'000, {u"[:5]"_s, u"[.5:5]"_s}},
            {58'000, {u"[1:-2]"_s}},
            {60'000, {u"[1:2:]"_s, u"[1:0x10]"_s, u"[1:.]"_s}},
            {60'500, {u"[1:.5]"_s, u"[1:0.5]"_s}},
            {61'000, {u"[1]"_s, u"[1:1e3]"_s, u"[1:1.]"_s}},
            {62'000, {u"[1::2]"_s, u"[1,5:2,5]"_s, u"[1.9:2 3]"_s, u"[1/:2/]"_s, u"[1\u0661:2\uff12]"_s}},
            {62'500, {u"[01:02.50]"_s, u"x01:02.5y"_s, u"[+1:+2.5]"_s, u"[ \t\u3000\u00851: \u00852.5]"_s}},
            {-62'500, {u"[-1:-2.5]"_s}},
            {63'000, {u"[01:02:03]"_s}},
            {732'500, {u"[12.5]"_s}},
            {968'129'887, {u"[0:968129.8879999999]"_s}}, // more digits than a double holds
            {123'456'789'012, {u"[0:123456789.012345]"_s}},
            {9'007'199'254'740'992'000, {u"[0:9007199254740993]"_s}},
            {Max, {u"[9…:0]"_s, u"[0:9…]"_s, u"[0:9999999999999999]"_s, u"[153722867280912:55.807]"_s}},
            {Min, {u"[-9…:0]"_s, u"[0:-9…]"_s, u"[0:-9999999999999999]"_s, u"[-153722867280913:0]"_s}},
            {-Max, {u"[-153722867280912:-55.807]"_s}},
            {-1, {u"[9…:-9…]"_s}},
        };
        for (const auto &[milliseconds, tags] : rows) {
            for (QString tag : tags) {
                tag.replace(u"0…"_s, QString(400, u'0')).replace(u"9…"_s, QString(400, u'9'));
                QCOMPARE(std::pair(tag, QVUtils::getTimeInterval(tag)), std::pair(tag, milliseconds));
            }
        }
        for (const QString &tag : {QString(), u"["_s})
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, QVUtils::getTimeInterval(tag));
    }

    void writesTimes_data() { addExamples(u"| time in ms | time tag |"_s); }
    void writesTimes()
    {
        QFETCH(const QStringList, cells);
        QCOMPARE(QVUtils::getTimeIntervalPeerStr(cells[0].toLongLong()), cells[1]);
        QCOMPARE(u'[' + QVUtils::getTimeIntervalMMSSMSStr(cells[0].toLongLong()) + u']', cells[1]);
    }

    void recognisesTags()
    {
        const std::tuple<bool, bool, QStringList> rows[] = {
            {false, true, {u"[01:02.03]"_s, u"xx [1:2.3] yy"_s, u"[01:02:03]"_s}},
            {true, false, {u"[ar:Artist]"_s, u"[ti:]"_s, u"  [al:x]"_s, u"x[ar:A\n]"_s}},
            {true, true, {u"[00:12.00]see [ab:c] here"_s}},
            {false,
             false,
             {{}, u"[01:02]"_s, u"[001:02.03]"_s, u"01:02.03"_s, u"[AR:x]"_s, u"[a:b]"_s, u"[ar:x"_s}},
        };
        for (const auto &[isProperty, isTime, texts] : rows) {
            for (const QString &text : texts) {
                QVERIFY2(QVUtils::isPropertyString(text) == isProperty, qPrintable(text));
                QVERIFY2(QVUtils::isTimeString(text) == isTime, qPrintable(text));
            }
        }
    }

    // Quadratic time would take hours: the test would end at its time limit.
    void takesLinearTime()
    {
        for (const QString &piece : {u" "_s, u"[aa:"_s, u"[00:00.0"_s, u"["_s, u"]["_s}) {
            const QString text = piece.repeated(2'000'000);
            QVERIFY(!QVUtils::isPropertyString(text) && !QVUtils::isTimeString(text));
        }
    }

    void version()
    {
        QCOMPARE(QVSongLrcVersionNumber, 1.0);
        QCOMPARE(QVSongLrcVersionString, "@(#)PROGRAM:QVSongLrc  PROJECT:QVSongLrc-1\n");
    }
};

QTEST_APPLESS_MAIN(TestUtils)
#include "tst_utils.moc"
