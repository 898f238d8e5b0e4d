// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>
#include <QVSongLrc/QVUtils.h>

#include <QTranslator>

#include <limits>
#include <stdexcept>

static_assert(!std::is_copy_constructible_v<QVEditSong> && !std::is_copy_constructible_v<QVPreviewSong>);

namespace {

constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr qint64 Min = std::numeric_limits<qint64>::min();

template <typename Document = QVEditSong>
std::shared_ptr<Document> song(const QString &text)
{
    auto document = std::make_shared<Document>();
    document->buildWithLrcText(text);
    return document;
}

// A song with a line for each letter.
std::shared_ptr<QVEditSong> spelled(const QString &letters)
{
    return song(letters.split(QString()).join(u'\n'));
}

QString lettersOf(QVEditSong &document)
{
    document.updateSongText();
    return document.songText().remove(u'\n');
}

// Translates the name in the maker mark.
struct MarkTranslator : QTranslator
{
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return context == "QVEditSong"_ba && source == "Maker Tool: Quendle"_ba ? text : QString();
    }
    QString text = u"100%% von Quendle, 5% %d"_s;
};

// Document and lines own their strings, and lines outlive their document.
template <typename Document>
void ownsItsTexts()
{
    std::u16string buffer = u"[00:01.00]one\n[00:02.00]two";
    const auto text =
        QString::fromRawData(reinterpret_cast<QChar *>(buffer.data()), qsizetype(buffer.size()));
    auto document = song<Document>(text);
    document->setSongText(text);
    document->setTagSongText(text);
    const auto lines = document->aryLines();
    lines->at(0)->setLineText(text);
    lines->at(0)->setPropertyStr(text);
    buffer.assign(buffer.size(), u'#');
    for (const QString &owned : {document->songText(), document->tagSongText(), lines->at(0)->lineText(),
                                 lines->at(0)->propertyStr()})
        QCOMPARE(owned, u"[00:01.00]one\n[00:02.00]two"_s);
    document->buildWithLrcText(u"[00:09.00]other"_s);
    document.reset();
    QCOMPARE(lines->size(), 2);
    QCOMPARE(lines->at(1)->displayText(), u"[00:02.00]two"_s);
    QCOMPARE(lines->at(1)->lineText(), u"two"_s);
}

} // namespace

class TestDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty()
    {
        QVEditSong edit;
        QVERIFY(edit.songText().isNull() && edit.tagSongText().isNull() && edit.aryLines()->isEmpty());
        for (const QString &text : {QString(), u"\n\n"_s}) {
            edit.buildWithLrcText(text);
            QVERIFY(edit.aryLines()->isEmpty() && edit.songText().isEmpty() && !edit.songText().isNull());
        }
        QVPreviewSong preview;
        QVERIFY(!preview.aryLines() && !preview.previewSongTextWithHasTag(true).isNull());
        preview.buildWithLrcText({});
        QVERIFY(preview.aryLines()->isEmpty() && preview.songText().isNull()
                && preview.tagSongText().isNull());
    }

    void reads_data() { addExamples(u"| LRC text | lines | written back |"_s, 4); }
    void reads()
    {
        QFETCH(const QStringList, cells);
        const auto document = song(cells[0]);
        QCOMPARE(linesOf(*document->aryLines()), cells[1]);
        QCOMPARE(document->songText(), cells[2] + u'\n');
    }

    void previews_data() { addExamples(u"| LRC text | with tags | without tags |"_s); }
    void previews()
    {
        QFETCH(const QStringList, cells);
        const auto preview = song<QVPreviewSong>(cells[0]);
        QCOMPARE(preview->previewSongTextWithHasTag(true), cells[1] + u'\n');
        QCOMPARE(preview->previewSongTextWithHasTag(false), cells[2] + u'\n');
    }

    void marks_data() { addExamples(u"| LRC text | with the maker mark |"_s); }
    void marks()
    {
        QFETCH(const QStringList, cells);
        const bool isMarked = cells[0] != cells[1];
        const auto document = song(cells[0]);
        document->setSongText(u"not written"_s);
        QCOMPARE(document->insertCopyrightMark(), isMarked);
        QCOMPARE(document->songText(), isMarked ? cells[1] + u'\n' : u"not written"_s);
        QVERIFY(!document->insertCopyrightMark());
    }

    void marksAtTheEndsOfTime()
    {
        // The marked lines' times. The first two gaps overflow 64 bits.
        for (const auto &[a, b, expected] :
             {std::tuple(Min, Max, QVTimeList{Min, Min + 300, Min + 700, Max}),
              std::tuple(Max, Min, QVTimeList{300, 700, Max, Min}),
              std::tuple(Max - 500, Max, QVTimeList{Max - 500, Max - 200, Max, Max})}) {
            const auto document = spelled(u"ab"_s);
            document->aryLines()->at(0)->appendTime(a);
            document->aryLines()->at(1)->appendTime(b);
            document->aryLines()->at(0)->setIsProperty(true);
            document->aryLines()->at(0)->setPropertyStr(
                QStringLiteral("Quendle " MAKER_HOST)); // only texts count
            QVERIFY(document->insertCopyrightMark());
            QVTimeList times;
            for (const auto &line : *document->aryLines())
                times += line->aryTimes()->first();
            QCOMPARE(times, expected);
        }
    }

    void translatesTheMark()
    {
        MarkTranslator translator;
        QCoreApplication::installTranslator(&translator);
        QVEditSong document;
        QVERIFY(document.insertCopyrightMark());
        QCOMPARE(document.songText(),
                 u"[00:00.30]100% von Quendle, 5% %d\n[00:00.70]https://" MAKER_HOST "\n"_s);
        QVERIFY(!document.insertCopyrightMark());
        translator.text = u"nobody"_s; // without the name, the mark is not recognised
        QVERIFY(song(u"nobody\nhttps://" MAKER_HOST ""_s)->insertCopyrightMark());
    }

    void inserts()
    {
        const std::tuple<QString, QList<qint64>, QString> rows[] = {
            {u""_s, {0, 1, 5, -1, Max, Min}, u"x"_s},
            {u"a"_s, {0, 2, -1}, u"xa"_s},
            {u"a"_s, {1}, u"ax"_s},
            {u"abc"_s, {0}, u"xabc"_s},
            {u"abc"_s, {1}, u"axbc"_s},
            {u"abc"_s, {2, 4, 5, -1, -2, Max, Min}, u"abxc"_s},
            {u"abc"_s, {3}, u"abcx"_s},
        };
        for (const auto &[letters, indexes, expected] : rows) {
            for (const qint64 index : indexes) {
                const auto document = spelled(letters);
                QVERIFY_THROWS_EXCEPTION(std::invalid_argument, document->insertLine(nullptr, index));
                document->insertLine(spelled(u"x"_s)->aryLines()->at(0), index);
                QCOMPARE(lettersOf(*document), expected);
            }
        }
    }

    void deletes()
    {
        const std::pair<std::set<quint64>, QString> rows[] = {
            {{}, u"abcdef"_s},     {{0}, u"bcdef"_s},     {{5}, u"abcde"_s},
            {{1, 2, 4}, u"adf"_s}, {{0, 3, 5}, u"bce"_s}, {{0, 1, 2, 3, 4, 5}, u""_s}};
        const auto document = spelled(u"abcdef"_s);
        for (const auto &[indexes, expected] : rows) {
            const auto some = spelled(u"abcdef"_s);
            some->deleteLineAtIndexs(indexes);
            QCOMPARE(lettersOf(*some), expected);
        }
        for (const quint64 outside : {quint64(6), ~quint64(0)})
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, document->deleteLineAtIndexs({0, outside}));
        for (const qint64 index : {qint64(-1), qint64(6), Max, Min})
            document->deleteLineAtIndex(index);
        QCOMPARE(lettersOf(*document), u"abcdef"_s);
        for (const int index : {5, 0, 1})
            document->deleteLineAtIndex(index);
        QCOMPARE(lettersOf(*document), u"bde"_s);
    }

    void compares()
    {
        const auto document = song(u"[ti:A]\n[00:01.00]x"_s);
        const auto equal = song(u"[ti:A]\n[0:1.0]x\n"_s);
        equal->setSongText(u"other"_s);
        QVERIFY(document->isEqual(equal) && !document->isEqual(std::shared_ptr<QVEditSong>()));
        for (const QString &other : {u"[ti:A]\n[00:01.00]y"_s, u"[ti:B]\n[00:01.00]x"_s, u"[ti:A]"_s,
                                     u"[ti:A]\n[00:01.00]x\nx"_s, u""_s})
            QVERIFY(!document->isEqual(song(other)) && !song(other)->isEqual(document));
        QVERIFY(song({})->isEqual(std::make_shared<QVEditSong>()));
    }

    void setsProvisionalRanges()
    {
        const auto preview =
            song<QVPreviewSong>(u"[ti:Song]\n[ar:]\nplain\n[00:00.01]ab[00:09.00]c\n[00:09.50]d"_s);
        QList<quint64> ranges; // locations and lengths
        for (const auto &line : *preview->aryLines())
            ranges << line->txtRg().location << line->txtRg().length;
        // Intended: before the preview is written, the locations count only texts (a plain line and an empty
        // value as empty ones), and the length for the first of two tags includes the second tag.
        QCOMPARE(ranges, (QList<quint64>{7, 13, 0, 4, 5, 0, 7, 1, 9, 1}));
    }

    void keepsTheOrderOfEqualTimes()
    {
        QString text;
        for (const char letter : "abcdefghijklmnopqrstuvwx"_ba)
            text += QString::asprintf("[0:%d.0]%c\n", letter % 2, letter);
        QCOMPARE(song<QVPreviewSong>(text)->previewSongTextWithHasTag(false).remove(u'\n'),
                 u"bdfhjlnprtvxacegikmoqsuw"_s);
    }

    // A build keeps one copy of the text, although the preview, of 140 GB, repeats it for each tag.
    void findsTheLineToShow()
    {
        const auto preview =
            song<QVPreviewSong>(u"[01:00.00]c\n[00:01.20][00:01.20]a\n[ti:A]\n[ar:B]\n[00:02.00]b"_s);
        QCOMPARE(preview->previewSongTextWithHasTag(false), u"A\na\na\nB\nb\nc\n"_s);
        const std::pair<qint64, qint64> expected[] = {{Min, -1},  {1'199, -1}, {1'200, 1},  {1'999, 1},
                                                      {2'000, 4}, {59'999, 4}, {60'000, 5}, {Max, 5}};
        for (const auto &[milliseconds, index] : expected)
            QCOMPARE(preview->lineIndexAt(milliseconds), index);
        QCOMPARE(QVPreviewSong().lineIndexAt(0), -1);
    }

    // All seconds and hundredths, since some lose a millisecond.
    void readsUsualTags()
    {
        QStringList tags;
        for (int i = 0; i < 10'000; ++i)
            tags += u"[59:%1.%2]"_s.arg(i / 100, 2, 10, QChar(u'0')).arg(i % 100, 2, 10, QChar(u'0'));
        const auto lines = song(tags.join(u'\n'))->aryLines();
        QCOMPARE(lines->size(), tags.size());
        for (qsizetype i = 0; i < tags.size(); ++i) {
            QCOMPARE(lines->at(i)->aryTimes()->at(0), QVUtils::getTimeInterval(tags[i]));
            QCOMPARE(lines->at(i)->displayText(),
                     QVUtils::getTimeIntervalPeerStr(QVUtils::getTimeInterval(tags[i])));
        }
    }

    void sharesTheTextOfManyTags()
    {
        QString text = u"[0:1.0]"_s.repeated(100'000) + u"x"_s.repeated(700'000);
        const auto preview = song<QVPreviewSong>(QString::fromRawData(text.constData(), text.size()));
        text.fill(u'#');
        QCOMPARE(preview->aryLines()->size(), 100'000);
        QCOMPARE(preview->aryLines()->last()->lineText().count(u'x'), 700'000);
    }

    void ownsTexts()
    {
        ownsItsTexts<QVEditSong>();
        ownsItsTexts<QVPreviewSong>();
    }

    void takesListsOfTheHost()
    {
        // A null pointer, a line of another document, and a line without text.
        const auto lines = spelled(u"a"_s)->aryLines();
        lines->prepend(nullptr);
        lines->append(std::make_shared<QVSongLine>());
        QVEditSong edit;
        edit.setAryLines(lines);
        QCOMPARE(lettersOf(edit), u"a(null)"_s);
        QVERIFY(!edit.isEqual(&edit) && !edit.isEqual(spelled(u"abc"_s))); // a null line equals nothing
        QVPreviewSong preview;
        preview.setAryLines(lines);
        QVERIFY(edit.aryLines() == lines && preview.aryLines() == lines);
        for (const bool hasTag : {true, false}) {
            QCOMPARE(preview.previewSongTextWithHasTag(hasTag), u"a\n(null)\n"_s);
            QCOMPARE(lines->at(2)->txtRg(), (QVTextRange{2, hasTag ? 6u : 0u})); // intended
        }
        QVERIFY(edit.insertCopyrightMark());
        edit.setAryLines(nullptr);
        preview.setAryLines(nullptr);
        QVERIFY(edit.aryLines()->isEmpty() && preview.previewSongTextWithHasTag(true).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDocuments)
#include "tst_documents.moc"
