// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QVSongLrc/QVSongLine.h>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

static_assert(!std::is_convertible_v<const QVSongLine &, QVSongLine>, "lines are not silently copied");
static_assert(!std::is_copy_assignable_v<QVSongLine>);

static_assert(QVTextRange{2, 3}.end() == 5 && QVTextRange{2, ~0ull}.end() == ~0ull);
static_assert(QVTextRange{1, 1}.sliceOf(u"abc").size() == 1
              && QVTextRange{1, 1}.sliceOf(u"abc").front() == u'b');
static_assert(QVTextRange{2, ~0ull}.sliceOf(u"abc").size() == 1
              && QVTextRange{~0ull, ~0ull}.sliceOf(u"abc").isEmpty());

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

std::shared_ptr<QVSongLine> lyricLine(const QVTimeList &times, const QString &text)
{
    auto line = QVSongLine::emptyLine();
    line->setLineText(text);
    line->setAryTimes(std::make_shared<QVTimeList>(times));
    return line;
}

std::shared_ptr<QVSongLine> propertyLine(const QString &key, const QString &value)
{
    auto line = lyricLine({}, value);
    line->setIsProperty(true);
    line->setPropertyStr(key);
    return line;
}

} // namespace

class TestSongLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutText()
    {
        const QVSongLine line;
        QVERIFY(line.lineText().isNull() && line.propertyStr().isNull() && !line.isProperty());
        QVERIFY(line.aryTimes()->isEmpty());
        QCOMPARE(line.displayText(), u"(null)"_s);
        QCOMPARE(line.description(), u"0 | {0, 0} | (null)\n"_s);
        QCOMPARE(propertyLine({}, {})->displayText(), u"[(null):(null)]"_s);

        const auto empty = QVSongLine::emptyLine();
        QVERIFY(!empty->lineText().isNull());
        QCOMPARE(empty->displayText(), u""_s);
        QCOMPARE(empty->playTime(), 0.0);
    }

    void writesItself()
    {
        const auto line = lyricLine({12'340}, u"la %1 la"_s);
        line->setTxtRg({5, 5});
        QCOMPARE(line->description(), u"12340 | {5, 5} | la %1 la\n"_s);
        line->appendTime(72'500);
        QCOMPARE(line->displayText(), u"[00:12.34][01:12.50]la %1 la"_s);
        QCOMPARE(line->description(), u"12340 |72500 | | {5, 5} | la %1 la\n"_s);
        QCOMPARE(lyricLine({Min, 1, Max}, u"x"_s)->displayText(),
                 u"[-153722867280912:-55.-80][00:00.00][153722867280912:55.80]x"_s);
        QCOMPARE(propertyLine(u"ar"_s, u"Artist"_s)->displayText(), u"[ar:Artist]"_s);
        QCOMPARE(lyricLine({72'500, 12'340}, u""_s)->playTime(), 72.5);
    }

    void comparesByValue()
    {
        const std::shared_ptr<QVSongLine> lines[] = {lyricLine({1'000, 2'000}, u"x"_s),
                                                     lyricLine({2'000, 1'000}, u"x"_s),
                                                     lyricLine({1'000}, u"x"_s),
                                                     lyricLine({1'000, 2'000}, u"X"_s),
                                                     lyricLine({}, u"\u00e9"_s),
                                                     lyricLine({}, u"e\u0301"_s),
                                                     lyricLine({}, u"x"_s),
                                                     propertyLine(u"ar"_s, u"x"_s),
                                                     propertyLine(u"ti"_s, u"x"_s),
                                                     propertyLine(u"ar"_s, u"y"_s)};
        for (const auto &line : lines) {
            for (const auto &other : lines)
                QCOMPARE(line->isEqual(std::make_shared<QVSongLine>(*other)), line == other);
            QVERIFY(!line->isEqual(nullptr));
        }
        const auto artist = propertyLine(u"ar"_s, u"x"_s);
        artist->appendTime(5); // is not compared
        QVERIFY(artist->isEqual(propertyLine(u"ar"_s, u"x"_s)));
        for (const auto &absent : {std::make_shared<QVSongLine>(), propertyLine({}, u"x"_s)})
            QVERIFY(!absent->isEqual(absent));
    }

    void copiesAreIndependent()
    {
        const auto source = lyricLine({1, 2, 3, 4, 5}, u"x"_s);
        source->setTxtRg({7, 8});
        QVSongLine copy(*source);
        QCOMPARE(copy.txtRg(), (QVTextRange{7, 8}));
        copy.appendTime(6);
        QCOMPARE(source->aryTimes()->size(), 5);
    }

    void shiftsTimes()
    {
        const auto line = lyricLine({3'000, 8'000}, u""_s);
        line->shiftAllTime(-5'000);
        QCOMPARE(*line->aryTimes(), (QVTimeList{0, 3'000}));
        line->shiftAllTime(Max);
        QCOMPARE(*line->aryTimes(), (QVTimeList{Max, Max}));
        line->appendTime(Min);
        line->shiftAllTime(Min);
        QCOMPARE(*line->aryTimes(), (QVTimeList{0, 0, 0}));

        const auto artist = propertyLine(u"ar"_s, u""_s);
        artist->appendTime(-5);
        artist->shiftAllTime(1'000);
        QCOMPARE(*artist->aryTimes(), QVTimeList{-5});
    }

    void takesTypedText_data() { addCases("songline", "takesTypedText"); }
    void takesTypedText()
    {
        QFETCH(const QJsonArray, row);
        const auto line = row[1].toBool() ? propertyLine(u"ar"_s, u"old"_s) : lyricLine({}, u"old"_s);
        line->appendTime(9);
        line->updateWithText(row[2].toString());
        QCOMPARE(line->isProperty(), row[3].toBool());
        QCOMPARE(line->propertyStr(), row[4].toString());
        QCOMPARE(line->lineText(), row[5].toString());
        QVERIFY(!line->lineText().isNull());
        QCOMPARE(*line->aryTimes(), QVTimeList{9});
    }

    void takesTypedTimes()
    {
        const auto line = lyricLine({1'000, 5'000}, u""_s);
        for (const qint64 index : {qint64(2), qint64(-1), Max, Min})
            line->updateWithTimeStr(u"["_s, index);
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, line->updateWithTimeStr(u"["_s, 0));
        QCOMPARE(*line->aryTimes(), (QVTimeList{1'000, 5'000}));
        line->updateWithTimeStr(u"[00:02.03]"_s, 1);
        line->updateWithTimeStr(u""_s, 0);
        QCOMPARE(*line->aryTimes(), QVTimeList{2'029});
    }

    void listsAreShared()
    {
        const auto a = lyricLine({1}, u""_s);
        const auto b = lyricLine({}, u""_s);
        b->setAryTimes(a->aryTimes());
        a->appendTime(2);
        a->aryTimes()->append(3);
        b->shiftAllTime(10);
        QCOMPARE(*a->aryTimes(), (QVTimeList{11, 12, 13}));
        b->setAryTimes(nullptr);
        QCOMPARE(b->displayText(), u""_s);
        b->appendTime(5);
        QCOMPARE(*b->aryTimes(), QVTimeList{5});
        QCOMPARE(a->aryTimes()->size(), 3);
    }

    // A list may outlive its line, and lines that swap their lists do not keep each other alive.
    void listsHaveTheirOwnLifetime()
    {
        std::shared_ptr<QVTimeList> times;
        std::weak_ptr<QVSongLine> watched;
        {
            QVSongLine onTheStack;
            onTheStack.appendTime(1);
            times = onTheStack.aryTimes();
            onTheStack.appendTime(2);

            const auto a = std::make_shared<QVSongLine>();
            const auto b = std::make_shared<QVSongLine>();
            watched = a;
            const auto ofA = a->aryTimes();
            a->setAryTimes(b->aryTimes());
            b->setAryTimes(ofA);
        }
        QCOMPARE(*times, (QVTimeList{1, 2}));
        QVERIFY(watched.expired());
    }

    void ownsItsStrings()
    {
        char16_t buffer[] = u"text";
        const QString text = QString::fromRawData(reinterpret_cast<QChar *>(buffer), 4);
        const auto line = propertyLine(text, text);
        std::fill_n(buffer, 4, u'#');
        QCOMPARE(line->displayText(), u"[text:text]"_s);
    }
};

QTEST_APPLESS_MAIN(TestSongLine)
#include "tst_songline.moc"
