// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <QVSongLrc/QVSongLrc.h>

#include <stdexcept>

static_assert(!std::is_convertible_v<const QVSongLine &, QVSongLine>, "lines are not silently copied");

static_assert(QVTextRange{2, 3}.end() == 5 && QVTextRange{2, ~0ull}.end() == ~0ull);
static_assert(QVTextRange{1, 1}.sliceOf(u"abc").back() == u'b' && QVTextRange{9, 1}.sliceOf(u"a").isEmpty());
static_assert(QVTextRange{1, ~0ull}.sliceOf(u"abc").size() == 2);

namespace {

using Line = std::shared_ptr<QVSongLine>;

Line makeLine(const QVTimeList &times, const QString &text, const QString &key = {}, bool isProperty = false)
{
    auto line = std::make_shared<QVSongLine>();
    line->setLineText(text);
    line->setAryTimes(std::make_shared<QVTimeList>(times));
    line->setPropertyStr(key);
    line->setIsProperty(isProperty);
    return line;
}

// All that a line writes.
QString shown(const QVSongLine &line)
{
    return line.displayText() + u" / "_s + QString::number(line.playTime()) + u" / "_s + line.description();
}

} // namespace

class TestModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTags_data() { addExamples(u"| time tag | time in ms |"_s); }
    void readsTags()
    {
        QFETCH(const QStringList, cells);
        QCOMPARE(QString::number(QVUtils::getTimeInterval(cells[0])), cells[1]);
    }

    void readsLongNumbers()
    {
        const QString zeros(400, u'0');
        QCOMPARE(QVUtils::getTimeInterval(u"[0:0."_s + zeros + u"9]"_s), 0);
        QCOMPARE(QVUtils::getTimeInterval(u"[0:1"_s + zeros + u']'), Max);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, QVUtils::getTimeInterval(u"["_s));
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
        QVERIFY(QVUtils::isTimeString(u"x [1:2.3]y"_s) && !QVUtils::isPropertyString(u"x [1:2.3]y"_s));
        QVERIFY(!QVUtils::isTimeString(u"x[ar:A\n]"_s) && QVUtils::isPropertyString(u"x[ar:A\n]"_s));
    }

    // Quadratic time would take hours: the test would end at its time limit.
    void takesLinearTime()
    {
        for (const QString &piece : {u" "_s, u"[aa:"_s, u"[00:00.0"_s, u"["_s, u"]["_s}) {
            const QString text = piece.repeated(2'000'000);
            QVERIFY(!QVUtils::isPropertyString(text) && !QVUtils::isTimeString(text));
        }
    }

    void version() { QCOMPARE(QVSongLrcVersionString, "@(#)PROGRAM:QVSongLrc  PROJECT:QVSongLrc-1\n"); }

    void writesItself()
    {
        QCOMPARE(shown(QVSongLine()), u"(null) / 0 / 0 | {0, 0} | (null)\n"_s);
        const std::pair<Line, QString> rows[] = {
            {QVSongLine::emptyLine(), u" / 0 / 0 | {5, 6} | \n"_s},
            {makeLine({}, {}, {}, true), u"[(null):(null)] / 0 / 0 | {5, 6} | (null)\n"_s},
            {makeLine({9}, u"A"_s, u"ar"_s, true), u"[ar:A] / 0.009 / 9 | {5, 6} | A\n"_s},
            {makeLine({12'340}, u"%1"_s), u"[00:12.34]%1 / 12.34 / 12340 | {5, 6} | %1\n"_s},
            {makeLine({72'500, -9}, u"x"_s), u"[01:12.50][00:00.00]x / 72.5 / 72500 |-9 | | {5, 6} | x\n"_s},
        };
        for (const auto &[line, expected] : rows) {
            line->setTxtRg({5, 6});
            QVSongLine copy(*line);
            QCOMPARE(shown(copy), expected);
            copy.appendTime(7);
            QCOMPARE(shown(*line), expected);
        }
    }

    void comparesByValue()
    {
        QVEditSong song;
        song.buildWithLrcText(
            u"[0:1.0][0:2.0]x\n[0:2.0][0:1.0]x\n[0:1.0]x\nx\n\u00e9\ne\u0301\n[ar:x]\n[ti:x]\n[ar:y]"_s);
        for (const Line &line : *song.aryLines())
            for (const Line &other : *song.aryLines())
                QCOMPARE(line->isEqual(std::make_shared<QVSongLine>(*other)), line == other);
        // A property's times do not count, nor does the key of any other line.
        QVERIFY(makeLine({5}, u"x"_s, u"ar"_s, true)->isEqual(makeLine({}, u"x"_s, u"ar"_s, true)));
        QVERIFY(makeLine({}, u"x"_s, u"ar"_s)->isEqual(makeLine({}, u"x"_s)));
        QVERIFY(!QVSongLine::emptyLine()->isEqual(nullptr));
        for (const Line &absent :
             {makeLine({}, {}), makeLine({}, u"x"_s, {}, true), makeLine({}, {}, u"ar"_s, true)})
            QVERIFY(!absent->isEqual(absent));
    }

    void shiftsTimes()
    {
        const std::tuple<Line, qint64, QVTimeList> rows[] = {
            {makeLine({3'000, 8'000, -7}, {}), -5'000, {0, 3'000, 0}},
            {makeLine({0, 5, Max, Min}, {}), Max, {Max, Max, Max, 0}},
            {makeLine({5, -1}, {}), Min, {0, 0}},
            {makeLine({5}, {}, {}, true), 1, {5}}, // a property
        };
        for (const auto &[line, by, shifted] : rows) {
            line->shiftAllTime(by);
            QCOMPARE(*line->aryTimes(), shifted);
        }
    }

    void takesTypedText_data() { addExamples(u"| typed | written back |"_s); }
    void takesTypedText()
    {
        QFETCH(const QStringList, cells);
        const Line line = makeLine({9}, u"old"_s, u"re"_s, true);
        line->updateWithText(cells[0]);
        QCOMPARE(line->displayText(), cells[1]);
        const Line lyric = makeLine({9}, u"old"_s);
        lyric->updateWithText(cells[0]);
        QCOMPARE(lyric->displayText(), u"[00:00.00]"_s + cells[0]);
    }

    void takesTypedTimes()
    {
        const Line line = makeLine({1'000, 5'000, 7'000}, {});
        for (const qint64 index : {qint64(3), qint64(-1), Max, Min})
            line->updateWithTimeStr(u"["_s, index);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, line->updateWithTimeStr(u"["_s, 0));
        line->updateWithTimeStr(u"[00:02.03]"_s, 1);
        line->updateWithTimeStr(u""_s, 2);
        line->updateWithTimeStr({}, 0);
        QCOMPARE(*line->aryTimes(), QVTimeList{2'029});
    }

    void sharesItsTimes()
    {
        const Line a = makeLine({}, {});
        const Line b = makeLine({4}, {});
        a->setAryTimes(makeLine({1}, {})->aryTimes()); // the list outlives its line
        b->setAryTimes(a->aryTimes());
        a->appendTime(2);
        b->shiftAllTime(10);
        b->setAryTimes(nullptr);
        b->appendTime(5);
        QCOMPARE(*a->aryTimes(), (QVTimeList{11, 12}));
        QCOMPARE(*b->aryTimes(), QVTimeList{5});
    }
};

QTEST_APPLESS_MAIN(TestModel)
#include "tst_model.moc"
