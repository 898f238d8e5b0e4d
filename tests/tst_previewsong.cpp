// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVPreviewSong.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString ranges(const QVPreviewSong &preview)
{
    QStringList list;
    for (const auto &line : *preview.aryLines())
        list += QStringLiteral("%1+%2").arg(line->txtRg().location).arg(line->txtRg().length);
    return list.join(u' ');
}

} // namespace

class TestPreviewSong : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutLines();
    void expandsAndSorts_data();
    void expandsAndSorts();
    void setsRanges();
    void sortsByPlayTimeInSeconds();
    void keepsItsText();
    void takesListsOfTheHost();
};

void TestPreviewSong::startsWithoutLines()
{
    QVPreviewSong preview;
    QVERIFY(!preview.aryLines() && preview.songText().isNull() && preview.tagSongText().isNull());
    for (const bool hasTag : {true, false}) {
        QVERIFY(preview.previewSongTextWithHasTag(hasTag).isEmpty());
        QVERIFY(!preview.previewSongTextWithHasTag(hasTag).isNull());
    }
    preview.buildWithLrcText({});
    QVERIFY(preview.aryLines() && preview.aryLines()->isEmpty());
    QVERIFY(preview.songText().isNull());
}

void TestPreviewSong::expandsAndSorts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("withTags");
    QTest::addColumn<QString>("withoutTags");
    QTest::newRow("properties get times of their own")
        << u"[ti:T]\n[ar:A]\n[00:00.10]x\n[00:00.20]y\n[00:01.20]z\n[00:01.21]w"_s
        << u"[00:00.10]x\n[ti:T]\n[00:00.20]y\n[ar:A]\n[00:01.20]z\n[00:01.21]w\n"_s
        << u"x\nT\ny\nA\nz\nw\n"_s;
    QTest::newRow("a line for each tag")
        << u"[00:05.00][00:01.00]Refrain\n[00:03.00]Verse"_s
        << u"[00:01.00]Refrain\n[00:03.00]Verse\n[00:05.00]Refrain\n"_s << u"Refrain\nVerse\nRefrain\n"_s;
    QTest::newRow("all tags of a line share the last text")
        << u"[00:02.00]a[00:01.00]b"_s << u"[00:01.00]b\n[00:02.00]b\n"_s << u"b\nb\n"_s;
    QTest::newRow("equal times keep their order")
        << u"[00:01.00]b\n[00:01.00][00:01.00]a\n[0:1.0]c"_s
        << u"[00:01.00]b\n[00:01.00]a\n[00:01.00]a\n[00:01.00]c\n"_s << u"b\na\na\nc\n"_s;
    QTest::newRow("plain lines are left out")
        << u"Just text\n[00:01.00]x\n[offset:5]"_s << u"[00:01.00]x\n"_s << u"x\n"_s;
    QTest::newRow("an empty value gives one line")
        << u"[ti:]\n[ti:a:b]"_s << u"[ti:]\n[ti:]\n"_s << u"\n\n"_s;
    QTest::newRow("an empty value with a time")
        << u"[00:00.10][ti:]x"_s << u"[00:00.10][ti:]x\n[ti:]\n"_s << u"[ti:]x\n\n"_s;
    QTest::newRow("white space loses the minutes")
        << u"[00:03.00]b\n [01:02.00]a"_s << u"[00:02.00]a\n[00:03.00]b\n"_s << u"a\nb\n"_s;
}

void TestPreviewSong::expandsAndSorts()
{
    QFETCH(const QString, text);
    QVPreviewSong preview;
    preview.buildWithLrcText(text);
    QTEST(preview.previewSongTextWithHasTag(true), "withTags");
    QTEST(preview.previewSongTextWithHasTag(false), "withoutTags");
    for (const auto &line : *preview.aryLines())
        QCOMPARE(line->aryTimes()->size(), 1);
}

void TestPreviewSong::setsRanges()
{
    QVPreviewSong preview;
    preview.buildWithLrcText(u"[ti:Song]\n[ar:]\nplain\n[00:00.01]ab[00:09.00]c\n[00:09.50]d"_s);
    // Provisional: the offset counts texts alone, a plain line and an empty value counting as empty; the
    // first of two tags still counts the text up to the line's end.
    QCOMPARE(ranges(preview), u"7+13 0+4 5+0 7+1 9+1"_s);
    preview.previewSongTextWithHasTag(true);
    QCOMPARE(ranges(preview), u"0+11 12+9 22+5 28+11 40+11"_s);
    preview.previewSongTextWithHasTag(false);
    QCOMPARE(ranges(preview), u"0+1 2+4 7+0 8+1 10+1"_s);
}

void TestPreviewSong::sortsByPlayTimeInSeconds()
{
    QVPreviewSong preview;
    preview.buildWithLrcText(u"[10:01.99]late\n[09:59.99]early\n[99:99.99]last"_s);
    QCOMPARE(preview.previewSongTextWithHasTag(false), u"early\nlate\nlast\n"_s);
}

void TestPreviewSong::keepsItsText()
{
    std::u16string buffer = u"[ti:Song]\n[00:01.00]Hello";
    QVPreviewSong preview;
    preview.buildWithLrcText(
        QString::fromRawData(reinterpret_cast<QChar *>(buffer.data()), qsizetype(buffer.size())));
    buffer.assign(buffer.size(), u'#');
    const auto line = preview.aryLines()->last();
    preview.buildWithLrcText({});
    QCOMPARE(line->displayText(), u"[00:01.00]Hello"_s);
    QCOMPARE(line->lineText(), u"Hello"_s);
}

void TestPreviewSong::takesListsOfTheHost()
{
    QVPreviewSong preview;
    preview.setAryLines(
        std::make_shared<QVSongLineList>(QVSongLineList{nullptr, std::make_shared<QVSongLine>()}));
    QCOMPARE(preview.previewSongTextWithHasTag(false), u"(null)\n"_s);
    QCOMPARE(preview.aryLines()->last()->txtRg(), QVTextRange());
    QCOMPARE(preview.previewSongTextWithHasTag(true), u"(null)\n"_s);
    QCOMPARE(preview.aryLines()->last()->txtRg(), (QVTextRange{0, 6}));
    preview.setAryLines(nullptr);
    QVERIFY(preview.previewSongTextWithHasTag(true).isEmpty());
}

QTEST_APPLESS_MAIN(TestPreviewSong)
#include "tst_previewsong.moc"
