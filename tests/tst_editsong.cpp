// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVEditSong.h>

#include <QTest>
#include <QTranslator>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

static_assert(!std::is_copy_constructible_v<QVEditSong>);

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

std::shared_ptr<QVEditSong> song(const QString &text)
{
    auto document = std::make_shared<QVEditSong>();
    document->buildWithLrcText(text);
    return document;
}

// A line as "key=value" for properties, "time,time|text" for others.
QString shown(const QVSongLine &line)
{
    if (line.isProperty())
        return line.propertyStr() + u'=' + line.lineText();
    QStringList times;
    for (const qint64 time : *line.aryTimes())
        times += QString::number(time);
    return times.join(u',') + u'|' + line.lineText();
}

QStringList shown(const QVEditSong &document)
{
    QStringList lines;
    for (const auto &line : *document.aryLines())
        lines += shown(*line);
    return lines;
}

// Whether the song text is the display texts, a line feed after each, and the ranges say where they are.
bool rangesFit(const QVEditSong &document)
{
    quint64 at = 0;
    for (const auto &line : *document.aryLines()) {
        const QString display = line->displayText();
        if (line->txtRg() != QVTextRange{at, quint64(display.size())})
            return false;
        if (document.songText().mid(qsizetype(at), display.size() + 1) != display + u'\n')
            return false;
        at += quint64(display.size()) + 1;
    }
    return at == quint64(document.songText().size());
}

class OneTranslation : public QTranslator
{
public:
    explicit OneTranslation(const QString &text)
        : m_text(text)
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        const bool asked = qstrcmp(context, "QVEditSong") == 0 && qstrcmp(source, "Maker Tool: Quendle") == 0;
        return asked ? m_text : QString();
    }

private:
    QString m_text;
};

} // namespace

class TestEditSong : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty();
    void reads_data();
    void reads();
    void keepsWhatTheHostHolds();
    void writesWhatItsCallersTextNoLongerHolds();
    void rewritesChangedLines();
    void inserts_data();
    void inserts();
    void deletes();
    void deletesSets();
    void compares();
    void marks_data();
    void marks();
    void translatesTheMark();
    void takesListsOfTheHost();
    void readsHugeText();
};

void TestEditSong::startsEmpty()
{
    QVEditSong document;
    QVERIFY(document.songText().isNull() && document.tagSongText().isNull());
    QVERIFY(document.aryLines()->isEmpty());
    for (const QString &text : {QString(), u""_s, u"\n\n"_s}) {
        document.buildWithLrcText(text);
        QVERIFY(document.aryLines()->isEmpty());
        QVERIFY(document.songText().isEmpty() && !document.songText().isNull());
    }
}

void TestEditSong::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const QString &text, const QStringList &lines) {
        QTest::newRow(name) << text << lines;
    };
    row("property and lyric", u"[ti:Song]\n\n[00:01.00]Hello\n"_s, {u"ti=Song"_s, u"1000|Hello"_s});
    row("CR LF", u"[ti:Song]\r\n[00:01.00]Hello\r\n\r\n"_s, {u"ti=Song"_s, u"1000|Hello\r"_s, u"|\r"_s});
    row("several tags", u"[00:01.00][00:02.50]Both"_s, {u"1000,2500|Both"_s});
    row("more tags than fit a line", u"[0:1.0][0:2.0][0:3.0][0:4.0][0:1.0]x"_s,
        {u"1000,2000,3000,4000,1000|x"_s});
    row("tags alone", u"[00:01.00]"_s, {u"1000|"_s});
    row("text between and before tags is dropped", u"x[00:01.00]a[00:02.00]b"_s, {u"1000,2000|b"_s});
    row("odd separators", u"[00:01,50]a\n[00:01:50]b\n[0:1.5]c"_s, {u"1000|a"_s, u"50000|b"_s, u"1500|c"_s});
    row("no tags", u"[00:01]\n[00:01.500]\n[offset:+300]\n[TI:x]\n[t1:x]\n  \n"_s,
        {u"|[00:01]"_s, u"|[00:01.500]"_s, u"|[offset:+300]"_s, u"|[TI:x]"_s, u"|[t1:x]"_s, u"|  "_s});
    row("empty values give two lines", u"[ti:]\n[ti:a:b]\n[ti::x]"_s,
        {u"ti="_s, u"|[ti:]"_s, u"ti="_s, u"|[ti:a:b]"_s, u"ti="_s, u"|[ti::x]"_s});
    row("empty value behind a time", u"[00:01.00][ti:]x"_s, {u"ti="_s, u"1000|[ti:]x"_s});
    row("a property swallows times", u"[00:01.00]see[ab:c] here"_s, {u"ab=c"_s});
    row("a property swallows properties", u"[ar:A][ti:T]"_s, {u"ar=A][t"_s});
    row("text around a property", u"abc[ar:Someone]def"_s, {u"ar=Someone"_s});
    row("a colon ends a value", u"[ti:10:20]"_s, {u"ti=1"_s});
    row("white space before a property", u"  [ar:x]"_s, {u" [ar=x"_s});
    row("white space before a time", u" [01:02.00]x"_s, {u"2000|x"_s});
    row("digits of other scripts", u"[\u0661\u0662:\u0663\u0664.\u0665]x"_s, {u"0|x"_s});
    row("half a pair left", u"[ti:a\U0001F3B5:b]"_s, {QString(u"ti=a"_s + QChar(0xD83C))});
    row("lone surrogates and NUL", QString(QChar(0xDC00)) + u"[00:01.00]"_s + QChar(0) + QChar(0xD800),
        {QString(u"1000|"_s + QChar(0) + QChar(0xD800))});
    row("line ends other than LF", u"[00:01.00]a\r[00:02.00]b\u2028c"_s, {u"1000,2000|b\u2028c"_s});
}

void TestEditSong::reads()
{
    QFETCH(const QString, text);
    const auto document = song(text);
    QTEST(shown(*document), "lines");
    QVERIFY(rangesFit(*document));
    for (const auto &line : *document->aryLines())
        QCOMPARE(line->propertyStr().isNull(), !line->isProperty());
}

void TestEditSong::keepsWhatTheHostHolds()
{
    const auto document = song(u"[00:01.00]one\n[00:02.00]two"_s);
    const auto lines = document->aryLines();
    const auto second = lines->at(1);
    document->buildWithLrcText(u"[00:09.00]other"_s);
    QCOMPARE(lines->size(), 2);
    QCOMPARE(second->displayText(), u"[00:02.00]two"_s);
    QCOMPARE(second->lineText(), u"two"_s);
    QCOMPARE(second->txtRg(), (QVTextRange{14, 13}));
}

void TestEditSong::writesWhatItsCallersTextNoLongerHolds()
{
    std::u16string buffer = u"[ti:Song]\n[00:01.00]Hello";
    const auto document =
        song(QString::fromRawData(reinterpret_cast<QChar *>(buffer.data()), qsizetype(buffer.size())));
    buffer.assign(buffer.size(), u'#');
    QCOMPARE(shown(*document), (QStringList{u"ti=Song"_s, u"1000|Hello"_s}));

    QString text = document->songText();
    text.fill(u'#');
    document->setSongText(text);
    document->updateSongText();
    QCOMPARE(document->songText(), u"[ti:Song]\n[00:01.00]Hello\n"_s);
}

void TestEditSong::rewritesChangedLines()
{
    const auto document = song(u"[ti:A]\n[00:01.00]x\n[00:02.00]y"_s);
    const auto &lines = *document->aryLines();
    const QString before = document->songText();
    lines[0]->updateWithText(u"[ar:Longer]"_s);
    lines[1]->appendTime(-1'500);
    lines[1]->appendTime(6'000'000);
    lines[2]->setLineText({});
    QCOMPARE(document->songText(), before);
    document->updateSongText();
    QCOMPARE(document->songText(), u"[ar:Longer]\n[00:01.00][00:-1.-50][100:00.00]x\n[00:02.00](null)\n"_s);
    QVERIFY(rangesFit(*document));
    document->updateSongText();
    QVERIFY(rangesFit(*document));
}

void TestEditSong::inserts_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("index");
    QTest::addColumn<int>("place");
    for (const qint64 index : {qint64(0), qint64(5), qint64(-1), Max, Min})
        QTest::addRow("into none at %lld", index) << 0 << index << 0;
    QTest::newRow("first") << 3 << qint64(0) << 0;
    QTest::newRow("before the last") << 3 << qint64(2) << 2;
    QTest::newRow("append") << 3 << qint64(3) << 3;
    for (const qint64 index : {qint64(4), qint64(-2), Max, Min})
        QTest::addRow("before the last at %lld", index) << 3 << index << 2;
    QTest::newRow("before the only") << 1 << qint64(-1) << 0;
}

void TestEditSong::inserts()
{
    QFETCH(const int, count);
    QFETCH(const qint64, index);
    QFETCH(const int, place);
    const auto document = song(u"x\n"_s.repeated(count));
    const auto line = QVSongLine::emptyLine();
    document->insertLine(line, index);
    QCOMPARE(document->aryLines()->size(), count + 1);
    QCOMPARE(document->aryLines()->indexOf(line), place);
    QVERIFY_EXCEPTION_THROWN(document->insertLine(nullptr, 0), std::invalid_argument);
    QCOMPARE(document->aryLines()->size(), count + 1);
}

void TestEditSong::deletes()
{
    const auto document = song(u"a\nb\nc"_s);
    for (const qint64 index : {qint64(-1), qint64(3), Max, Min})
        document->deleteLineAtIndex(index);
    QCOMPARE(shown(*document).size(), 3);
    document->deleteLineAtIndex(2);
    document->deleteLineAtIndex(0);
    QCOMPARE(shown(*document), QStringList{u"|b"_s});
}

void TestEditSong::deletesSets()
{
    const QString text = u"a\nb\nc\nd\ne\nf"_s;
    const auto left = [&text](const std::set<quint64> &indexes) {
        const auto document = song(text);
        document->deleteLineAtIndexs(indexes);
        return shown(*document).join(QString()).remove(u'|');
    };
    QCOMPARE(left({}), u"abcdef"_s);
    QCOMPARE(left({0}), u"bcdef"_s);
    QCOMPARE(left({5}), u"abcde"_s);
    QCOMPARE(left({1, 2, 4}), u"adf"_s);
    QCOMPARE(left({0, 5}), u"bcde"_s);
    QCOMPARE(left({0, 1, 2, 3, 4, 5}), u""_s);

    const auto document = song(text);
    for (const quint64 outside : {quint64(6), ~quint64(0)})
        QVERIFY_EXCEPTION_THROWN(document->deleteLineAtIndexs({0, outside}), std::out_of_range);
    QCOMPARE(document->aryLines()->size(), 6);
}

void TestEditSong::compares()
{
    const auto document = song(u"[ti:A]\n[00:01.00]x"_s);
    const auto equal = song(u"[ti:A]\n[0:1.0]x\n"_s);
    equal->setSongText(u"other"_s);
    QVERIFY(document->isEqual(equal));
    QVERIFY(!document->isEqual(song(u"[ti:A]\n[00:01.00]y"_s)));
    QVERIFY(!document->isEqual(song(u"[ti:A]"_s)));
    QVERIFY(!document->isEqual(nullptr));
    QVERIFY(song({})->isEqual(std::make_shared<QVEditSong>()));

    class Derived : public QVEditSong
    {
    };
    Derived derived;
    derived.buildWithLrcText(document->songText());
    QVERIFY(document->isEqual(&derived));

    document->aryLines()->first()->setLineText({});
    QVERIFY(!document->isEqual(document));
}

void TestEditSong::marks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index"); // of the name line, -1 when there is to be none
    QTest::addColumn<qint64>("anchor");
    const auto timed = [](const QList<int> &seconds) {
        QString text;
        for (const int s : seconds)
            text += QString::asprintf("[%02d:%02d.00]x\n", s / 60, s % 60);
        return text;
    };
    const QString name = u"by Quendle\n"_s;
    const QString address = u"see http://www.quendle.example/x\n"_s;
    QTest::newRow("empty") << QString() << 0 << qint64(0);
    QTest::newRow("one line") << timed({5}) << 0 << qint64(0);
    QTest::newRow("properties, then three lines")
        << u"[ti:a]\n[ar:b]\n"_s + timed({5, 6, 20}) << 4 << qint64(6'000);
    QTest::newRow("growing gaps") << timed({1, 2, 9}) << 2 << qint64(2'000);
    QTest::newRow("the last gap above the one before, not the largest")
        << timed({0, 10, 11, 13, 14}) << 3 << qint64(11'000);
    QTest::newRow("shrinking gaps: the first stays") << timed({0, 10, 15, 18}) << 1 << qint64(0);
    QTest::newRow("falling times") << timed({9, 5, 1}) << 0 << qint64(0);
    QTest::newRow("a gap of 0 is more than the fall before it") << timed({9, 5, 5}) << 2 << qint64(5'000);
    QTest::newRow("falling ever slower") << timed({9, 4, 1}) << 2 << qint64(4'000);
    QTest::newRow("the eleventh gap counts")
        << timed({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}) << 11 << qint64(0);
    QTest::newRow("the twelfth does not") << timed({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}) << 0 << qint64(0);
    QTest::newRow("name alone") << timed({0, 5}) + name << 1 << qint64(0);
    QTest::newRow("address alone") << timed({0, 5}) + address << 1 << qint64(0);
    QTest::newRow("other case") << timed({0, 5}) + name.toUpper() + address << 3 << qint64(0);
    QTest::newRow("both") << timed({0, 5}) + name + address << -1 << qint64(0);
    QTest::newRow("both in one line, far down")
        << u"x\n"_s.repeated(50) + u"[by:Quendle www.quendle.example]"_s << -1 << qint64(0);
}

void TestEditSong::marks()
{
    QFETCH(const QString, text);
    QFETCH(const int, index);
    QFETCH(const qint64, anchor);
    const auto document = song(text);
    const QStringList before = shown(*document);
    QCOMPARE(document->insertCopyrightMark(), index >= 0);
    if (index >= 0) {
        QStringList expected = before;
        expected.insert(index, QStringLiteral("%1|Maker Tool: Quendle").arg(anchor + 300));
        expected.insert(index + 1, QStringLiteral("%1|https://www.quendle.example").arg(anchor + 700));
        QCOMPARE(shown(*document), expected);
        QVERIFY(rangesFit(*document));
        QVERIFY(!document->insertCopyrightMark());
    }
    QCOMPARE(document->aryLines()->size(), before.size() + (index >= 0 ? 2 : 0));
}

void TestEditSong::translatesTheMark()
{
    OneTranslation translation(u"100%% von Quendle, 5% %d"_s);
    QVERIFY(QCoreApplication::installTranslator(&translation));
    const auto document = song(u"[00:01.00]x"_s);
    QVERIFY(document->insertCopyrightMark());
    QCOMPARE(document->aryLines()->at(0)->lineText(), u"100% von Quendle, 5% %d"_s);
    QVERIFY(!document->insertCopyrightMark());

    OneTranslation nameless(u"nobody"_s);
    QVERIFY(QCoreApplication::installTranslator(&nameless));
    const auto again = song({});
    QVERIFY(again->insertCopyrightMark());
    QVERIFY(again->insertCopyrightMark());
    QCOMPARE(again->aryLines()->size(), 4);
}

void TestEditSong::takesListsOfTheHost()
{
    QVEditSong a;
    QVEditSong b;
    const auto lines = std::make_shared<QVSongLineList>();
    a.setAryLines(lines);
    b.setAryLines(lines);
    const auto line = QVSongLine::emptyLine();
    line->updateWithText(u"twice"_s);
    a.insertLine(line, 0);
    a.insertLine(line, 0);
    QCOMPARE(b.aryLines()->size(), 2);
    b.updateSongText();
    QCOMPARE(b.songText(), u"twice\ntwice\n"_s);
    QCOMPARE(line->txtRg(), (QVTextRange{6, 5}));

    // A line that slices, in twice and in two documents.
    const auto document = song(u"[ti:x]\n[00:01.00]slice"_s);
    lines->append(document->aryLines()->at(1));
    lines->append(document->aryLines()->at(1));
    lines->append(nullptr);
    lines->append(document->aryLines()->at(0));
    a.updateSongText();
    QCOMPARE(a.songText(), u"twice\ntwice\n[00:01.00]slice\n[00:01.00]slice\n[ti:x]\n"_s);
    QVERIFY(!a.isEqual(&a)); // an absent line equals nothing
    QVERIFY(a.insertCopyrightMark());
    document->updateSongText();
    QCOMPARE(document->songText(), u"[ti:x]\n[00:01.00]slice\n"_s);

    a.setAryLines(nullptr);
    QVERIFY(a.aryLines() && a.aryLines()->isEmpty());
    a.updateSongText();
    QCOMPARE(a.songText(), u""_s);
}

void TestEditSong::readsHugeText()
{
    const QString line = u"[00:01.00]"_s + u"\u6b4c"_s.repeated(1'000'000) + u'\n';
    const auto document = song(line.repeated(50)); // 100 MB
    QCOMPARE(document->aryLines()->size(), 50);
    QCOMPARE(document->songText().size(), 50 * line.size());
    QCOMPARE(document->aryLines()->last()->lineText().size(), 1'000'000);
}

QTEST_GUILESS_MAIN(TestEditSong)
#include "tst_editsong.moc"
