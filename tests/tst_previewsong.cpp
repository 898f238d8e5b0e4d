// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QVSongLrc/QVPreviewSong.h>

using namespace Qt::StringLiterals;

class TestPreviewSong : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutLines()
    {
        QVPreviewSong preview;
        QVERIFY(!preview.aryLines() && preview.songText().isNull() && preview.tagSongText().isNull());
        const QString text = preview.previewSongTextWithHasTag(true);
        QVERIFY(text.isEmpty() && !text.isNull());
        preview.buildWithLrcText({});
        QVERIFY(preview.aryLines() && preview.aryLines()->isEmpty() && preview.songText().isNull());
    }

    void expandsAndSorts_data() { addCases("previewsong", "expandsAndSorts"); }
    void expandsAndSorts()
    {
        QFETCH(const QJsonArray, row);
        QVPreviewSong preview;
        preview.buildWithLrcText(row[1].toString());
        QCOMPARE(preview.previewSongTextWithHasTag(true), row[2].toString());
        QCOMPARE(preview.previewSongTextWithHasTag(false), row[3].toString());
        for (const auto &line : *preview.aryLines())
            QCOMPARE(line->aryTimes()->size(), 1);
    }

    // A build keeps one copy of the text, although the preview would repeat it for each tag.
    void sharesTheTextOfManyTags()
    {
        constexpr int Tags = 100'000;
        constexpr int Length = 700'000;
        QVPreviewSong preview;
        preview.buildWithLrcText(u"[0:1.0]"_s.repeated(Tags)
                                 + u"x"_s.repeated(Length)); // the preview text would take 140 GB
        QCOMPARE(preview.aryLines()->size(), Tags);
        QCOMPARE(preview.aryLines()->last()->lineText().size(), Length);
    }

    void setsRanges()
    {
        QVPreviewSong preview;
        const auto ranges = [&preview] {
            QStringList list;
            for (const auto &line : *preview.aryLines())
                list += QStringLiteral("%1+%2").arg(line->txtRg().location).arg(line->txtRg().length);
            return list.join(u' ');
        };
        preview.buildWithLrcText(u"[ti:Song]\n[ar:]\nplain\n[00:00.01]ab[00:09.00]c\n[00:09.50]d"_s);
        // Intended: before the preview is written, the locations count only texts (a plain line and an empty
        // value as empty ones), and the length for the first of two tags includes the second tag.
        QCOMPARE(ranges(), u"7+13 0+4 5+0 7+1 9+1"_s);
        preview.previewSongTextWithHasTag(true);
        QCOMPARE(ranges(), u"0+11 12+9 22+5 28+11 40+11"_s);
        preview.previewSongTextWithHasTag(false);
        QCOMPARE(ranges(), u"0+1 2+4 7+0 8+1 10+1"_s);
    }

    void ownsItsText()
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

    void takesListsOfTheHost()
    {
        QVPreviewSong preview;
        const auto line = std::make_shared<QVSongLine>();
        preview.setAryLines(std::make_shared<QVSongLineList>(QVSongLineList{nullptr, line}));
        for (const bool hasTag : {false, true}) {
            QCOMPARE(preview.previewSongTextWithHasTag(hasTag), u"(null)\n"_s);
            QCOMPARE(line->txtRg(), (QVTextRange{0, quint64(hasTag ? 6 : 0)}));
        }
        preview.setAryLines(nullptr);
        QCOMPARE(preview.previewSongTextWithHasTag(true), u""_s);
    }
};

QTEST_APPLESS_MAIN(TestPreviewSong)
#include "tst_previewsong.moc"
