// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLine.h>

#include <QTest>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

static_assert(!std::is_convertible_v<const QVSongLine &, QVSongLine>, "lines are not silently copied");
static_assert(!std::is_copy_assignable_v<QVSongLine>);

static_assert(QVTextRange{2, 3}.end() == 5 && QVTextRange{2, ~0ull}.end() == ~0ull);
static_assert(QVTextRange{5, 0}.isEmpty() && !QVTextRange{0, 1}.isEmpty());
static_assert(QVTextRange{1, 1}.sliceOf(u"abc").front() == u'b'
              && QVTextRange{1, 1}.sliceOf(u"abc").size() == 1);
static_assert(QVTextRange{2, ~0ull}.sliceOf(u"abc").size() == 1);
static_assert(QVTextRange{~0ull, ~0ull}.sliceOf(u"abc").isEmpty());

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

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

class TestSongLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        const Line lines[] = {makeLine({1'000, 2'000}, u"x"_s),
                              makeLine({2'000, 1'000}, u"x"_s),
                              makeLine({1'000}, u"x"_s),
                              makeLine({1'000, 2'000}, u"X"_s),
                              makeLine({}, u"\u00e9"_s),
                              makeLine({}, u"e\u0301"_s),
                              makeLine({}, u"x"_s, u"ar"_s),
                              makeLine({}, u"x"_s, u"ar"_s, true),
                              makeLine({}, u"x"_s, u"ti"_s, true),
                              makeLine({}, u"y"_s, u"ar"_s, true),
                              QVSongLine::emptyLine()};
        for (const Line &line : lines) {
            for (const Line &other : lines)
                QCOMPARE(line->isEqual(std::make_shared<QVSongLine>(*other)), line == other);
            QVERIFY(!line->isEqual(nullptr));
        }
        QVERIFY(makeLine({5}, u"x"_s, u"ar"_s, true)->isEqual(makeLine({}, u"x"_s, u"ar"_s, true)));
        lines[0]->setTxtRg({1, 2});
        QVERIFY(lines[0]->isEqual(makeLine({1'000, 2'000}, u"x"_s, u"ti"_s)));
        for (const Line &absent :
             {makeLine({}, {}), makeLine({}, u"x"_s, {}, true), makeLine({}, {}, u"ar"_s, true)})
            QVERIFY(!absent->isEqual(absent));
    }

    void shiftsTimes()
    {
        const std::tuple<QVTimeList, qint64, QVTimeList> rows[] = {
            {{3'000, 8'000, -7}, -5'000, {0, 3'000, 0}},
            {{3'000, -1'500, -5}, 6, {3'006, 0, 1}},
            {{0, 5, Max, Min}, Max, {Max, Max, Max, 0}},
            {{0, 5, Max, Min}, Min, {0, 0, 0, 0}},
        };
        for (const auto &[times, by, shifted] : rows) {
            const Line line = makeLine(times, {});
            line->shiftAllTime(by);
            QCOMPARE(*line->aryTimes(), shifted);
            line->setIsProperty(true);
            line->shiftAllTime(1);
            QCOMPARE(*line->aryTimes(), shifted);
        }
    }

    void takesTypedText()
    {
        const std::tuple<QString, QString> rows[] = {
            // typed, written afterwards if it was a property line
            {u"[al:Album]"_s, u"[al:Album]"_s},
            {u"[ti:a:b]"_s, u"[ti:]"_s},
            {u"[ti::b]"_s, u"[ti:]"_s},
            {u" [ar:x]"_s, u"[[ar:x]"_s},
            {u"see [ab:c] here"_s, u"[ee [ab:c] her]"_s},
            {u":[ab:c]"_s, u"[:[a]"_s},
            {u"[ti:a\U0001f3b5:b]"_s, u"[ti:a\xd83c]"_s},
            {u"a: b"_s, u"[00:00.00]a: b"_s},
            {u"[00:01.00]x"_s, u"[00:00.00][00:01.00]x"_s},
        };
        for (const auto &[typed, written] : rows) {
            const Line line = makeLine({9}, u"old"_s, u"re"_s, true);
            line->updateWithText(typed);
            QCOMPARE(line->displayText(), written);
            QCOMPARE(line->propertyStr() == u"re"_s, !line->isProperty());
            const Line lyric = makeLine({9}, u"old"_s);
            lyric->updateWithText(typed);
            QCOMPARE(lyric->displayText(), u"[00:00.00]"_s + typed);
        }
    }

    void takesTypedTimes()
    {
        const Line line = makeLine({1'000, 5'000}, {});
        for (const qint64 index : {qint64(2), qint64(-1), Max, Min})
            line->updateWithTimeStr(u"["_s, index);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, line->updateWithTimeStr(u"["_s, 0));
        QCOMPARE(*line->aryTimes(), (QVTimeList{1'000, 5'000}));
        line->updateWithTimeStr(u"[00:02.03]"_s, 1);
        line->updateWithTimeStr({}, 0);
        QCOMPARE(*line->aryTimes(), QVTimeList{2'029});
    }

    void sharesItsTimes()
    {
        Line a = makeLine({1}, {});
        Line b = makeLine({4}, {});
        b->setAryTimes(a->aryTimes());
        a->appendTime(2);
        b->shiftAllTime(10);
        QCOMPARE(*a->aryTimes(), (QVTimeList{11, 12}));
        b->setAryTimes(nullptr);
        b->appendTime(5);
        QCOMPARE(*b->aryTimes(), QVTimeList{5});
        QCOMPARE(a->aryTimes()->size(), 2);

        // Lines that swap their lists do not keep each other alive, and a list may outlive its line.
        const auto times = a->aryTimes();
        a->setAryTimes(b->aryTimes());
        b->setAryTimes(times);
        const std::weak_ptr<QVSongLine> lines[] = {a, b};
        a.reset();
        b.reset();
        QVERIFY(lines[0].expired() && lines[1].expired());
        QCOMPARE(*times, (QVTimeList{11, 12}));
    }

    void ownsItsStrings()
    {
        char16_t buffer[] = u"text";
        const QString text = QString::fromRawData(reinterpret_cast<QChar *>(buffer), 4);
        const Line line = makeLine({}, text, text, true);
        std::fill_n(buffer, 4, u'#');
        QCOMPARE(line->displayText(), u"[text:text]"_s);
    }
};

QTEST_APPLESS_MAIN(TestSongLine)
#include "tst_songline.moc"
