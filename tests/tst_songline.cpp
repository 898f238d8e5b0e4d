// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLine.h>

#include <QTest>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

static_assert(!std::is_convertible_v<const QVSongLine &, QVSongLine>,
              "lines have identity: no silent copies");
static_assert(!std::is_copy_assignable_v<QVSongLine>);

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

std::shared_ptr<QVSongLine> lyricLine(const QVTimeList &times, const QString &text)
{
    auto line = QVSongLine::emptyLine();
    line->setLineText(text);
    for (const qint64 time : times)
        line->appendTime(time);
    return line;
}

std::shared_ptr<QVSongLine> propertyLine(const QString &key, const QString &value)
{
    auto line = std::make_shared<QVSongLine>();
    line->setIsProperty(true);
    line->setPropertyStr(key);
    line->setLineText(value);
    return line;
}

} // namespace

class TestSongLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutText();
    void showsItself();
    void describesItself();
    void comparesByValue();
    void copiesAreIndependent();
    void shiftsTimes();
    void takesTypedText_data();
    void takesTypedText();
    void takesTypedTimes();
    void listsAreShared();
    void listsOutliveTheirLine();
    void swappedListsKeepNoLineAlive();
    void ownsItsStrings();
};

void TestSongLine::startsWithoutText()
{
    const QVSongLine line;
    QVERIFY(line.lineText().isNull() && line.propertyStr().isNull() && !line.isProperty());
    QVERIFY(line.aryTimes()->isEmpty());
    QCOMPARE(line.txtRg(), QVTextRange());
    QCOMPARE(line.displayText(), u"(null)"_s);
    QCOMPARE(line.description(), u"0 | {0, 0} | (null)\n"_s);
    QVERIFY(!line.isEqual(&line));
    QCOMPARE(propertyLine({}, {})->displayText(), u"[(null):(null)]"_s);

    const auto empty = QVSongLine::emptyLine();
    QVERIFY(!empty->lineText().isNull());
    QCOMPARE(empty->displayText(), u""_s);
    QCOMPARE(empty->playTime(), 0.0);
    QVERIFY(empty->isEqual(empty));
}

void TestSongLine::showsItself()
{
    QCOMPARE(lyricLine({12'340, 72'500}, u"la la"_s)->displayText(), u"[00:12.34][01:12.50]la la"_s);
    QCOMPARE(lyricLine({-1'500, 6'000'000}, u""_s)->displayText(), u"[00:-1.-50][100:00.00]"_s);
    QCOMPARE(lyricLine({Min, 1, Max}, u"x"_s)->displayText(),
             u"[-153722867280912:-55.-80][00:00.00][153722867280912:55.80]x"_s);
    QCOMPARE(propertyLine(u"ar"_s, u"Artist"_s)->displayText(), u"[ar:Artist]"_s);
    QCOMPARE(lyricLine({72'500, 12'340}, u""_s)->playTime(), 72.5);
}

void TestSongLine::describesItself()
{
    const auto line = lyricLine({12'340}, u"la %1 la"_s);
    line->setTxtRg({5, 5});
    QCOMPARE(line->description(), u"12340 | {5, 5} | la %1 la\n"_s);
    line->appendTime(72'500);
    QCOMPARE(line->description(), u"12340 |72500 | | {5, 5} | la %1 la\n"_s);
}

void TestSongLine::comparesByValue()
{
    const auto line = lyricLine({1'000, 2'000}, u"x"_s);
    QVERIFY(line->isEqual(lyricLine({1'000, 2'000}, u"x"_s)));
    QVERIFY(!line->isEqual(lyricLine({2'000, 1'000}, u"x"_s)));
    QVERIFY(!line->isEqual(lyricLine({1'000}, u"x"_s)));
    QVERIFY(!line->isEqual(lyricLine({1'000, 2'000}, u"X"_s)));
    QVERIFY(!line->isEqual(nullptr));
    QVERIFY(!lyricLine({}, u"\u00e9"_s)->isEqual(lyricLine({}, u"e\u0301"_s)));

    const auto artist = propertyLine(u"ar"_s, u"x"_s);
    const auto timedArtist = propertyLine(u"ar"_s, u"x"_s);
    timedArtist->appendTime(5);
    QVERIFY(artist->isEqual(timedArtist));
    QVERIFY(!artist->isEqual(propertyLine(u"ti"_s, u"x"_s)));
    QVERIFY(!artist->isEqual(propertyLine(u"ar"_s, u"y"_s)));
    QVERIFY(!artist->isEqual(lyricLine({}, u"x"_s)));
    QVERIFY(!propertyLine({}, u"x"_s)->isEqual(propertyLine({}, u"x"_s)));
}

void TestSongLine::copiesAreIndependent()
{
    const auto source = lyricLine({1, 2, 3, 4, 5}, u"x"_s);
    source->setTxtRg({7, 8});
    const QVSongLine copy(*source);
    QVERIFY(copy.isEqual(source));
    QCOMPARE(copy.txtRg(), source->txtRg());

    const auto shared = source->aryTimes();
    const auto second = std::make_shared<QVSongLine>(*source);
    second->appendTime(6);
    QCOMPARE(shared->size(), 5);
    QCOMPARE(second->aryTimes()->size(), 6);
}

void TestSongLine::shiftsTimes()
{
    const auto line = lyricLine({3'000, 8'000}, u""_s);
    line->shiftAllTime(-5'000);
    QCOMPARE(*line->aryTimes(), (QVTimeList{0, 3'000}));
    line->shiftAllTime(Max);
    QCOMPARE(*line->aryTimes(), (QVTimeList{Max, Max}));
    line->shiftAllTime(Min);
    QCOMPARE(*line->aryTimes(), (QVTimeList{0, 0}));
    const auto early = lyricLine({Min, -1}, u""_s);
    early->shiftAllTime(Min);
    QCOMPARE(*early->aryTimes(), (QVTimeList{0, 0}));

    const auto artist = propertyLine(u"ar"_s, u""_s);
    artist->appendTime(-5);
    artist->shiftAllTime(1'000);
    QCOMPARE(*artist->aryTimes(), QVTimeList{-5});
}

void TestSongLine::takesTypedText_data()
{
    QTest::addColumn<bool>("wasProperty");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isProperty");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("usual") << true << u"[al:Album]"_s << true << u"al"_s << u"Album"_s;
    QTest::newRow("second colon") << true << u"[ti:a:b]"_s << true << u"ti"_s << u""_s;
    QTest::newRow("nothing between colons") << true << u"[ti::b]"_s << true << u"ti"_s << u""_s;
    QTest::newRow("white space in front") << true << u" [ar:x]"_s << true << u"[ar"_s << u"x"_s;
    QTest::newRow("tag inside") << true << u"see [ab:c] here"_s << true << u"ee [ab"_s << u"c] her"_s;
    QTest::newRow("colon in front") << true << u":[ab:c]"_s << true << u""_s << u"[a"_s;
    QTest::newRow("half a pair cut off")
        << true << u"[ti:a\U0001F3B5:b]"_s << true << u"ti"_s << QString(u"a"_s + QChar(0xD83C));
    QTest::newRow("no tag") << true << u"hello"_s << false << u"ar"_s << u"hello"_s;
    QTest::newRow("lyric line") << false << u"[00:01.00]x"_s << false << QString() << u"[00:01.00]x"_s;
    QTest::newRow("lyric line, tag") << false << u"[al:x]"_s << false << QString() << u"[al:x]"_s;
}

void TestSongLine::takesTypedText()
{
    QFETCH(const bool, wasProperty);
    QFETCH(const QString, typed);
    const auto line = wasProperty ? propertyLine(u"ar"_s, u"old"_s) : lyricLine({}, u"old"_s);
    line->appendTime(9);
    line->updateWithText(typed);
    QTEST(line->isProperty(), "isProperty");
    QTEST(line->propertyStr(), "key");
    QTEST(line->lineText(), "text");
    QVERIFY(!line->lineText().isNull());
    QCOMPARE(*line->aryTimes(), QVTimeList{9});
}

void TestSongLine::takesTypedTimes()
{
    const auto line = lyricLine({1'000, 5'000}, u""_s);
    line->updateWithTimeStr(u"[00:09.00]"_s, 2);
    line->updateWithTimeStr(u"["_s, -1);
    QCOMPARE(*line->aryTimes(), (QVTimeList{1'000, 5'000}));
    line->updateWithTimeStr(u"[00:02.03]"_s, 1);
    QCOMPARE(*line->aryTimes(), (QVTimeList{1'000, 2'029}));
    QVERIFY_EXCEPTION_THROWN(line->updateWithTimeStr(u"["_s, 0), std::out_of_range);
    QCOMPARE(*line->aryTimes(), (QVTimeList{1'000, 2'029}));
    line->updateWithTimeStr(u""_s, 0);
    QCOMPARE(*line->aryTimes(), QVTimeList{2'029});
}

void TestSongLine::listsAreShared()
{
    const auto a = lyricLine({1}, u""_s);
    const auto b = lyricLine({}, u""_s);
    b->setAryTimes(a->aryTimes());
    a->appendTime(2);
    a->aryTimes()->append(3);
    b->shiftAllTime(10);
    QCOMPARE(*a->aryTimes(), (QVTimeList{11, 12, 13}));
    QCOMPARE(b->aryTimes(), a->aryTimes());

    b->setAryTimes(nullptr);
    QCOMPARE(b->displayText(), u""_s);
    b->appendTime(5);
    QCOMPARE(*b->aryTimes(), QVTimeList{5});
    QCOMPARE(a->aryTimes()->size(), 3);
}

void TestSongLine::listsOutliveTheirLine()
{
    std::shared_ptr<QVTimeList> times;
    {
        QVSongLine onTheStack;
        onTheStack.appendTime(1);
        times = onTheStack.aryTimes();
        onTheStack.appendTime(2);
    }
    QCOMPARE(*times, (QVTimeList{1, 2}));
}

void TestSongLine::swappedListsKeepNoLineAlive()
{
    std::weak_ptr<QVSongLine> watched;
    {
        const auto a = lyricLine({1}, u""_s);
        const auto b = lyricLine({2}, u""_s);
        watched = a;
        const auto ofA = a->aryTimes();
        a->setAryTimes(b->aryTimes());
        b->setAryTimes(ofA);
        a->setAryTimes(a->aryTimes());
        QCOMPARE(*a->aryTimes(), QVTimeList{2});
        QCOMPARE(*b->aryTimes(), QVTimeList{1});
    }
    QVERIFY(watched.expired());
}

void TestSongLine::ownsItsStrings()
{
    char16_t buffer[] = u"text";
    const auto line = propertyLine(QString::fromRawData(reinterpret_cast<QChar *>(buffer), 4),
                                   QString::fromRawData(reinterpret_cast<QChar *>(buffer), 4));
    std::fill_n(buffer, 4, u'#');
    QCOMPARE(line->displayText(), u"[text:text]"_s);
}

QTEST_APPLESS_MAIN(TestSongLine)
#include "tst_songline.moc"
