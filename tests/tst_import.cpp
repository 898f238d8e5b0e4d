// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Examples.h"

#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVWordTimes.h>

#include <limits>

namespace {

QString remarksOf(const QVLyricImport &lyric)
{
    QStringList remarks;
    for (const QVLyricRemark &remark : lyric.remarks())
        remarks += u"%1 %2:%3+%4"_s.arg(QVLyricRemark::name(remark.kind))
                       .arg(remark.line)
                       .arg(remark.column)
                       .arg(remark.range.length);
    return remarks.join(u'\n');
}

} // namespace

class TestImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imports_data()
    {
        addExamples(u"| LRC text | imported lines | remarks |"_s);
        QFile table(QStringLiteral(TESTS "/data/import.txt"));
        QVERIFY(table.open(QIODevice::ReadOnly));
        for (const QString &row : QString::fromUtf8(table.readAll()).split(u'\n')) {
            QStringList cells = row.split(u'|');
            if (cells.size() != 4)
                continue;
            const QString name = cells.takeFirst();
            for (QString &cell : cells)
                cell = withoutSymbols(cell.trimmed().replace(u" / "_s, u"\n"_s));
            QTest::newRow(qPrintable(name)) << cells;
        }
    }
    void imports()
    {
        QFETCH(const QStringList, cells);
        const QVLyricImport lyric(cells[0]);
        QCOMPARE(linesOf(*lyric.lines()), cells[1]);
        QCOMPARE(remarksOf(lyric), cells[2]);
    }

    void explains()
    {
        const QVLyricImport lyric(u"[00:00.00]a\n[00:01,50]b[1:2.3]\x1"_s);
        QCOMPARE(lyric.remarks().size(), 3);
        QCOMPARE(lyric.remarks()[0].range, (QVTextRange{12, 10}));
        QCOMPARE(lyric.remarks()[0].message, u"the documents read this time as 00:01.00"_s);
        QVERIFY(lyric.remarks()[1].isWarning() && !lyric.remarks()[2].isWarning());
    }

    void writesInTheUsualForm()
    {
        QCOMPARE(QVLyricImport(u"[00:60.00]a"_s).lines()->first()->displayText(), u"[01:00.00]a"_s);
    }

    // Quadratic time would take hours: the test would end at its time limit.
    void takesLinearTime()
    {
        for (const QString &piece :
             {u" "_s, u"["_s, u"] "_s, u"[00:"_s, u"[0:1"_s, u"[00:00.0"_s, u"[ti:] "_s})
            QVERIFY(!QVLyricImport(piece.repeated(1'000'000)).lines()->isEmpty() || piece == u" "_s);
        QCOMPARE(QVWordTimes::shifted(u"<00:00.0"_s.repeated(1'000'000), 1, {})->size(), 8'000'000);
    }

    void shiftsWords_data() { addExamples(u"| words | 1500 ms later |"_s); }
    void shiftsWords()
    {
        QFETCH(const QStringList, cells);
        QCOMPARE(QVWordTimes::shifted(cells[0], 1'500, QVWordTimes::BelowZero::Fails), cells[1]);
    }

    void shiftsWordsToTheLimits()
    {
        using enum QVWordTimes::BelowZero;
        const QString words = u"a<00:02.00>b<9999:59.00>c<00:00.5009>"_s;
        QVTextRange place;
        QVERIFY(!QVWordTimes::shifted(words, 991, BecomesZero, &place));
        QCOMPARE(place, (QVTextRange{12, 12}));
        QVERIFY(!QVWordTimes::shifted(words, -501, Fails, &place));
        QCOMPARE(place, (QVTextRange{25, 12}));
        QCOMPARE(QVWordTimes::shifted(words, -500, Fails), u"a<00:01.50>b<9999:58.50>c<00:00.0009>"_s);
        QVERIFY(!QVWordTimes::shifted(words, std::numeric_limits<qint64>::max(), Fails));
        QCOMPARE(QVWordTimes::shifted(words, 990, Fails), u"a<00:02.99>b<9999:59.99>c<00:01.4909>"_s);
        QCOMPARE(QVWordTimes::shifted(words, -501, BecomesZero),
                 u"a<00:01.499>b<9999:58.499>c<00:00.0000>"_s);
    }
};

QTEST_APPLESS_MAIN(TestImport)
#include "tst_import.moc"
