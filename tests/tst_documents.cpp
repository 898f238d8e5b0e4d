// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVPreviewSong.h>
#include <QVSongLrc/QVUtils.h>

#include <QTranslator>

#include <stdexcept>

namespace {

template <typename Document = QVEditSong>
std::shared_ptr<Document> song(const QString &text)
{
    auto document = std::make_shared<Document>();
    document->buildWithLrcText(text);
    return document;
}

QString lettersOf(QVEditSong &document)
{
    document.updateSongText();
    return document.songText().remove(u'\n');
}

// Translates the name in the maker mark.
struct MarkTranslator : QTranslator
{
    QString translate(const char *context, const char *, const char *, int) const override
    {
        return context == "QVEditSong"_ba ? u"100%% von Quendle, 5% %d"_s : QString();
    }
};

} // namespace

class TestDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty()
    {
        QVEditSong edit;
        QVERIFY(edit.songText().isNull() && edit.tagSongText().isNull() && edit.aryLines()->isEmpty());
        edit.buildWithLrcText(u"\n\n"_s);
        QVERIFY(edit.aryLines()->isEmpty() && edit.songText().isEmpty() && !edit.songText().isNull());
        QVPreviewSong preview;
        QVERIFY(!preview.aryLines() && !preview.previewSongTextWithHasTag(true).isNull());
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
        const auto document = song(cells[0]);
        QCOMPARE(document->insertCopyrightMark(), cells[0] != cells[1]);
        QCOMPARE(document->songText(), cells[1] + u'\n');
        QVERIFY(!document->insertCopyrightMark());
    }

    void marksAtTheEndsOfTime()
    {
        // Two times, and those of the mark behind the first line or in front. The first two gaps overflow.
        for (const auto &[a, b, mark, first, second] :
             {std::tuple(Min, Max, 1, Min + 300, Min + 700), std::tuple(Max, Min, 0, 300ll, 700ll),
              std::tuple(Max - 200, Max, 1, Max, Max)}) {
            const auto document = song(u"a\nb"_s);
            document->aryLines()->at(0)->appendTime(a);
            document->aryLines()->at(0)->setPropertyStr(u"Quendle " MAKER_HOST ""_s); // only texts count
            document->aryLines()->at(1)->appendTime(b);
            QVERIFY(document->insertCopyrightMark());
            QCOMPARE(document->aryLines()->at(mark)->aryTimes()->first(), first);
            QCOMPARE(document->aryLines()->at(mark + 1)->aryTimes()->first(), second);
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
    }

    void inserts()
    {
        const std::tuple<QString, qint64, QString> rows[] = {
            {u""_s, Max, u"x"_s},         {u"a"_s, 0, u"xa"_s},         {u"a"_s, 2, u"xa"_s},
            {u"a\nb\nc"_s, 1, u"axbc"_s}, {u"a\nb\nc"_s, 3, u"abcx"_s}, {u"a\nb\nc"_s, 4, u"abxc"_s},
            {u"a\nb\nc"_s, -1, u"abxc"_s}};
        for (const auto &[text, index, expected] : rows) {
            const auto document = song(text);
            document->insertLine(song(u"x"_s)->aryLines()->at(0), index);
            QCOMPARE(lettersOf(*document), expected);
        }
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, QVEditSong().insertLine(nullptr, 0));
    }

    void deletes()
    {
        const std::pair<std::set<quint64>, QString> rows[] = {
            {{}, u"abcdef"_s}, {{1, 2, 4}, u"adf"_s}, {{0, 3, 5}, u"bce"_s}, {{0, 1, 2, 3, 4, 5}, u""_s}};
        for (const auto &[indexes, expected] : rows) {
            const auto document = song(u"a\nb\nc\nd\ne\nf"_s);
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, document->deleteLineAtIndexs({0, 6}));
            document->deleteLineAtIndexs(indexes);
            QCOMPARE(lettersOf(*document), expected);
        }
        const auto document = song(u"a\nb\nc\nd\ne\nf"_s);
        document->aryLines()->swapItemsAt(1, 4);
        QCOMPARE(lettersOf(*document), u"aecdbf"_s);
        for (const qint64 index : {qint64(6), qint64(-1), qint64(5), qint64(0), qint64(1)})
            document->deleteLineAtIndex(index);
        QCOMPARE(lettersOf(*document), u"edb"_s);
    }

    void compares()
    {
        const auto document = song(u"[ti:A]\n[00:01.00]x"_s);
        QVERIFY(document->isEqual(song(u"[ti:A]\n[0:1.0]x\n"_s)));
        for (const auto &other : {song(u"[ti:A]\n[00:01.00]y"_s), song(u"[ti:A]"_s)})
            QVERIFY(!document->isEqual(other) && !other->isEqual(document));
        QVERIFY(!document->isEqual(std::shared_ptr<QVEditSong>()));
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
        const QString letters = u"abcdefghijklmnopqrstuvwx"_s;
        // Few lines, many lines, and lines with two times.
        for (const auto &[tag, count, first] : {std::tuple(u""_s, 1, u""_s), std::tuple(u""_s, 50, u""_s),
                                                std::tuple(u"[0:0.0]"_s, 1, letters)}) {
            QString text;
            for (const QChar letter : letters)
                text += u"%1[%2:0.0]%3\n"_s.arg(tag).arg(letter.unicode() % 2 ? 70 : 1).arg(letter);
            const auto preview = song<QVPreviewSong>(text.repeated(count));
            QCOMPARE(preview->previewSongTextWithHasTag(false).remove(u'\n'),
                     first + u"bdfhjlnprtvx"_s.repeated(count) + u"acegikmoqsuw"_s.repeated(count));
        }
    }

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
        QCOMPARE(song<QVPreviewSong>(u"[00:00.10]a\n[ti:A]"_s)->lineIndexAt(200), 0);
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

    // A build keeps one copy of the text, although the preview, of 60 GB, repeats it for each tag.
    void sharesTheTextOfManyTags()
    {
        QString text = u"[0:1.0]"_s.repeated(100'000) + u"x"_s.repeated(300'000);
        // In both lines, more than 255 code units come before the text.
        for (const QString &line : {text, u" "_s.repeated(300) + u"[ti:A]"_s}) {
            const auto document = song(line);
            QVERIFY(document->songText() == document->aryLines()->first()->displayText() + u'\n');
        }
        const auto preview = song<QVPreviewSong>(QString::fromRawData(text.constData(), text.size()));
        text.fill(u'#');
        QCOMPARE(preview->aryLines()->size(), 100'000);
        QCOMPARE(preview->aryLines()->last()->lineText().count(u'x'), 300'000);
    }

    // Document and lines own their strings, and lines outlive their document.
    void ownsTexts()
    {
        const auto check = [](auto document) {
            QString buffer = QStringView(u"[00:01.00]one\n[00:02.00]two").toString(); // not a literal
            const auto text = QString::fromRawData(buffer.constData(), buffer.size());
            document->buildWithLrcText(text);
            document->setSongText(text);
            document->setTagSongText(text);
            const auto lines = document->aryLines();
            lines->at(0)->setLineText(text);
            lines->at(0)->setPropertyStr(text);
            buffer.fill(u'#');
            for (const QString &owned : {document->songText(), document->tagSongText(),
                                         lines->at(0)->lineText(), lines->at(0)->propertyStr()})
                QCOMPARE(owned, u"[00:01.00]one\n[00:02.00]two"_s);
            document.reset();
            QCOMPARE(lines->at(1)->displayText(), u"[00:02.00]two"_s);
            QCOMPARE(lines->at(1)->lineText(), u"two"_s);
        };
        check(std::make_shared<QVEditSong>());
        check(std::make_shared<QVPreviewSong>());
    }

    void takesListsOfTheHost()
    {
        // A null pointer, a line of another document, and a line without text.
        const auto lines = song(u"a"_s)->aryLines();
        lines->prepend(nullptr);
        lines->append(std::make_shared<QVSongLine>());
        QVEditSong edit;
        edit.setAryLines(lines);
        QCOMPARE(lettersOf(edit), u"a(null)"_s);
        QVERIFY(!edit.isEqual(&edit) && !edit.isEqual(song(u"a\nb\nc"_s))); // a null line equals nothing
        QVPreviewSong preview;
        preview.setAryLines(lines);
        for (const bool hasTag : {true, false}) {
            QCOMPARE(preview.previewSongTextWithHasTag(hasTag), u"a\n(null)\n"_s);
            QCOMPARE(lines->at(2)->txtRg(), (QVTextRange{2, hasTag ? 6u : 0u})); // intended
        }
        QVERIFY(edit.insertCopyrightMark() && preview.aryLines()->size() == 5); // the list is shared
        edit.setAryLines(nullptr);
        preview.setAryLines(nullptr);
        QVERIFY(edit.aryLines()->isEmpty() && preview.previewSongTextWithHasTag(true).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDocuments)
#include "tst_documents.moc"
