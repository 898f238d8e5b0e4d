// SPDX-License-Identifier: MIT

// The tables of docs/lrc-format.md tell the truth.

#include <QVSongLrc/QVSongLrc.h>

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// What the page shows in place of what can't be seen.
const std::pair<QChar, QChar> Pictures[] = {{u' ', u'␣'}, {u'\r', u'␍'}, {u'\n', u'␊'}};

QString meant(QString shown)
{
    for (const auto &[character, picture] : Pictures)
        shown.replace(picture, character);
    return shown.replace(u"\\uFEFF"_s, u"\uFEFF"_s);
}

QStringList codeSpans(const QString &cell)
{
    static const QRegularExpression span(u"`([^`]*)`"_s);
    QStringList found;
    for (const auto &match : span.globalMatch(cell))
        found += meant(match.captured(1));
    return found;
}

QString told(const QVSongLine &line)
{
    QString kind = u"plain"_s;
    QStringList times;
    for (const qint64 time : *line.aryTimes())
        times += QString::number(time);
    if (line.isProperty())
        kind = u"property "_s + line.propertyStr();
    else if (!times.isEmpty())
        kind = u"time "_s + times.join(u", "_s);
    return line.lineText().isEmpty() ? kind + u':' : kind + u": "_s + line.lineText();
}

} // namespace

class TestLrcFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAsThePageTells_data()
    {
        QFile page(QStringLiteral(PAGE));
        QVERIFY(page.open(QIODevice::ReadOnly));
        QTest::addColumn<QStringList>("cells");
        int tables = 0;
        const QStringList lines = QString::fromUtf8(page.readAll()).split(u'\n');
        for (const QString &line : lines) {
            tables += line == u"| LRC text | lines | written back |"_s;
            if (line.startsWith(u"| `"_s))
                QTest::newRow(qPrintable(line)) << line.split(u'|').sliced(1);
        }
        QCOMPARE(tables, 4);
    }
    void readsAsThePageTells()
    {
        QFETCH(const QStringList, cells);
        QCOMPARE(cells.size(), 4); // the last is what follows the table's edge
        const QStringList text = codeSpans(cells[0]);
        QCOMPARE(text.size(), 1);
        QVEditSong song;
        song.buildWithLrcText(text.front());
        QStringList lines;
        for (const auto &line : *song.aryLines())
            lines += told(*line);
        QCOMPARE(lines, codeSpans(cells[1]));
        QCOMPARE(QStringList(song.songText()), QStringList(codeSpans(cells[2]).value(0) + u'\n'));
    }
};

QTEST_APPLESS_MAIN(TestLrcFormat)
#include "tst_lrcformat.moc"
