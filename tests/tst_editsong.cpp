// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QVSongLrc/QVEditSong.h>

#include <QRegularExpression>
#include <QTranslator>

#include <functional>
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

// The lines in the notation of docs/lrc-format.md.
QStringList linesOf(const QVEditSong &document)
{
    QStringList lines;
    for (const auto &line : *document.aryLines()) {
        QStringList times;
        for (const qint64 time : *line->aryTimes())
            times += QString::number(time);
        const QString kind = line->isProperty() ? u"property "_s + line->propertyStr()
            : times.isEmpty()                   ? u"plain"_s
                                                : u"time "_s + times.join(u", ");
        lines += kind + (line->lineText().isEmpty() ? u":"_s : u": "_s + line->lineText());
    }
    return lines;
}

// The code spans of a table cell of that page, symbols replaced by the characters that they stand for.
QStringList codeSpans(QString cell)
{
    cell.replace(u'␣', u' ').replace(u'␍', u'\r').replace(u'␊', u'\n').replace(u"\\uFEFF"_s, u"\uFEFF"_s);
    QStringList found;
    for (const auto &match : QRegularExpression(u"`([^`]*)`"_s).globalMatch(cell))
        found += match.captured(1);
    return found;
}

// Whether the song text is the display texts, each with a line feed, and the ranges are their places in it.
bool rangesFit(const QVEditSong &document)
{
    QString text;
    for (const auto &line : *document.aryLines()) {
        const QString display = line->displayText();
        if (line->txtRg() != QVTextRange{quint64(text.size()), quint64(display.size())})
            return false;
        text += display + u'\n';
    }
    return document.songText() == text && !document.songText().isNull();
}

// Translates the name in the maker mark.
struct MarkTranslator : QTranslator
{
    explicit MarkTranslator(const QString &text)
        : m_text(text)
    {
        QCoreApplication::installTranslator(this);
    }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return context == "QVEditSong"_ba && source == "Maker Tool: Quendle"_ba ? m_text : QString();
    }
    const QString m_text;
};

} // namespace

class TestEditSong : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty()
    {
        QVEditSong document;
        QVERIFY(document.songText().isNull() && document.tagSongText().isNull());
        QVERIFY(document.aryLines()->isEmpty());
        document.buildWithLrcText({});
        QVERIFY(document.aryLines()->isEmpty() && rangesFit(document));
    }

    void readsAsDocumented_data()
    {
        QFile page(QStringLiteral(PAGE));
        QVERIFY(page.open(QIODevice::ReadOnly));
        QTest::addColumn<QStringList>("cells");
        const QStringList lines = QString::fromUtf8(page.readAll()).split(u'\n');
        QCOMPARE(lines.count(u"| LRC text | lines | written back |"_s), 4);
        for (const QString &line : lines.filter(QRegularExpression(u"^\\| `"_s)))
            QTest::newRow(qPrintable(line)) << line.split(u'|').sliced(1);
    }
    void readsAsDocumented()
    {
        QFETCH(const QStringList, cells);
        QCOMPARE(cells.size(), 4); // the last one is what follows the last "|"
        const auto document = song(codeSpans(cells[0]).value(0));
        QVERIFY(rangesFit(*document));
        QCOMPARE(linesOf(*document), codeSpans(cells[1]));
        QCOMPARE(QStringList(document->songText()), QStringList(codeSpans(cells[2]).value(0) + u'\n'));
    }

    // Cases that are too rare for the page.
    void reads_data() { addCases("editsong", "reads"); }
    void reads()
    {
        QFETCH(const QJsonArray, row);
        const auto document = song(row[1].toString());
        QCOMPARE(linesOf(*document), strings(row[2]));
        QVERIFY(rangesFit(*document));
        for (const auto &line : *document->aryLines())
            QCOMPARE(line->propertyStr().isNull(), !line->isProperty());
    }

    void keepsWhatTheHostHolds()
    {
        std::u16string buffer = u"[00:01.00]one\n[00:02.00]two";
        const auto document =
            song(QString::fromRawData(reinterpret_cast<QChar *>(buffer.data()), qsizetype(buffer.size())));
        buffer.assign(buffer.size(), u'#');
        const auto lines = document->aryLines();
        const auto second = lines->at(1);
        document->buildWithLrcText(u"[00:09.00]other"_s);
        QCOMPARE(lines->size(), 2);
        QCOMPARE(second->displayText(), u"[00:02.00]two"_s);
        QCOMPARE(second->lineText(), u"two"_s);
        QCOMPARE(second->txtRg(), (QVTextRange{14, 13}));
    }

    // A line keeps its written tags until a change. Every function that changes a line must discard them.
    void showsEveryChange()
    {
        const std::pair<std::function<void(QVSongLine &)>, QString> changes[] = {
            {[](QVSongLine &line) { line.appendTime(-1'500); }, u"[00:01.00][00:02.00][00:-1.-50]x"_s},
            {[](QVSongLine &line) { line.shiftAllTime(1'000); }, u"[00:02.00][00:03.00]x"_s},
            {[](QVSongLine &line) { line.updateWithTimeStr(u"[0:7.0]"_s, 0); }, u"[00:07.00][00:02.00]x"_s},
            {[](QVSongLine &line) { line.updateWithTimeStr({}, 0); }, u"[00:02.00]x"_s},
            {[](QVSongLine &line) { line.aryTimes()->clear(); }, u"x"_s},
            {[](QVSongLine &line) { line.setAryTimes(nullptr); }, u"x"_s},
            {[](QVSongLine &line) { line.setLineText(line.lineText() + u'y'); }, u"[00:01.00][00:02.00]xy"_s},
            {[](QVSongLine &line) { line.setLineText({}); }, u"[00:01.00][00:02.00](null)"_s},
            {[](QVSongLine &line) { line.updateWithText(u"y"_s); }, u"[00:01.00][00:02.00]y"_s},
            {[](QVSongLine &line) { line.lineText(); }, u"[00:01.00][00:02.00]x"_s},
            {[](QVSongLine &line) { line.setIsProperty(true); }, u"[(null):x]"_s},
        };
        for (const auto &[change, expected] : changes) {
            for (const bool isListHeld : {true, false}) {
                const auto document = song(u"[ti:before]\n[00:01.00][00:02.00]x\n[00:09.00]behind"_s);
                QVSongLine &line = *document->aryLines()->at(1);
                const QVSongLine copy(line);
                const auto held = isListHeld ? line.aryTimes() : nullptr;
                document->updateSongText();
                const QString before = document->songText();
                change(line);
                QCOMPARE(document->songText(), before);
                QCOMPARE(line.displayText(), expected);
                for (int i = 0; i < 2; ++i) {
                    document->setSongText(u"the host's"_s);
                    document->updateSongText();
                    QVERIFY(rangesFit(*document));
                    QCOMPARE(line.displayText(), expected);
                }
                QCOMPARE(copy.displayText(), u"[00:01.00][00:02.00]x"_s);
            }
        }
    }

    void inserts_data() { addCases("editsong", "inserts"); }
    void inserts()
    {
        QFETCH(const QJsonArray, row);
        const auto document = song(u"x\n"_s.repeated(row[1].toInt()));
        const auto line = QVSongLine::emptyLine();
        document->insertLine(line, row[2].toInteger());
        QCOMPARE(document->aryLines()->indexOf(line), row[3].toInt());
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, document->insertLine(nullptr, 0));
        QCOMPARE(document->aryLines()->size(), row[1].toInt() + 1);
    }

    void deletes()
    {
        const auto document = song(u"a\nb\nc"_s);
        for (const qint64 index : {qint64(-1), qint64(3), Max, Min, qint64(2), qint64(0)})
            document->deleteLineAtIndex(index);
        QCOMPARE(linesOf(*document), QStringList(u"plain: b"_s));
    }

    void deletesSets_data() { addCases("editsong", "deletesSets"); }
    void deletesSets()
    {
        QFETCH(const QJsonArray, row);
        const auto document = song(u"a\nb\nc\nd\ne\nf"_s);
        for (const quint64 outside : {quint64(6), ~quint64(0)})
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, document->deleteLineAtIndexs({0, outside}));
        std::set<quint64> indexes;
        for (const QJsonValue &index : row[1].toArray())
            indexes.insert(quint64(index.toInteger()));
        document->deleteLineAtIndexs(indexes);
        document->updateSongText();
        QCOMPARE(document->songText(), row[2].toString());
    }

    void compares()
    {
        const auto document = song(u"[ti:A]\n[00:01.00]x"_s);
        const auto equal = song(u"[ti:A]\n[0:1.0]x\n"_s);
        equal->setSongText(u"other"_s);
        QVERIFY(document->isEqual(equal));
        for (const auto &other : {song(u"[ti:A]\n[00:01.00]y"_s), song(u"[ti:A]"_s),
                                  song(u"[ti:A]\n[00:01.00]x\nx"_s), std::shared_ptr<QVEditSong>()})
            QVERIFY(!document->isEqual(other));
        QVERIFY(song({})->isEqual(std::make_shared<QVEditSong>()));
    }

    void marks_data() { addCases("editsong", "marks"); }
    void marks()
    {
        QFETCH(const QJsonArray, row);
        QString text = row[2].toString();
        for (const QJsonValue &seconds : row[1].toArray())
            text += QString::asprintf("[00:%02d.00]x\n", seconds.toInt());
        const auto document = song(text + row[3].toString());
        const int index = row[4].toInt();
        QStringList expected = linesOf(*document);
        QCOMPARE(document->insertCopyrightMark(), index >= 0);
        if (index >= 0) {
            expected.insert(index, u"time %1: Maker Tool: Quendle"_s.arg(row[5].toInt() + 300));
            expected.insert(index + 1, u"time %1: https://" MAKER_HOST ""_s.arg(row[5].toInt() + 700));
            QVERIFY(!document->insertCopyrightMark());
        }
        QCOMPARE(linesOf(*document), expected);
        QVERIFY(rangesFit(*document));
    }

    void marksAtTheEndsOfTime()
    {
        const auto document = song(u"a\nb"_s);
        document->aryLines()->at(0)->appendTime(Min);
        document->aryLines()->at(1)->appendTime(Max); // the gap overflows 64 bits
        QVERIFY(document->insertCopyrightMark());
        QCOMPARE(*document->aryLines()->at(1)->aryTimes(), QVTimeList{Min + 300});
    }

    void translatesTheMark()
    {
        const MarkTranslator named(u"100%% von Quendle, 5% %d"_s);
        const auto document = song(u"[00:01.00]x"_s);
        QVERIFY(document->insertCopyrightMark());
        QCOMPARE(document->aryLines()->at(0)->lineText(), u"100% von Quendle, 5% %d"_s);
        QVERIFY(!document->insertCopyrightMark());

        const MarkTranslator nameless(u"nobody"_s); // without the name, the mark is not recognised
        QVERIFY(song({})->insertCopyrightMark());
        QVERIFY(song(u"nobody\nhttps://" MAKER_HOST ""_s)->insertCopyrightMark());
    }

    void takesListsOfTheHost()
    {
        // Lines that slice another document's text, one of them twice, and a null pointer.
        const auto other = song(u"[ti:x]\n[00:01.00]slice"_s);
        const auto slicing = other->aryLines()->at(1);
        const auto lines = std::make_shared<QVSongLineList>(*other->aryLines());
        QVEditSong a, b;
        a.setAryLines(lines);
        b.setAryLines(lines);
        a.insertLine(slicing, 0);
        *lines += nullptr;
        b.updateSongText();
        QCOMPARE(b.songText(), u"[00:01.00]slice\n[ti:x]\n[00:01.00]slice\n"_s);
        QCOMPARE(slicing->txtRg(), (QVTextRange{23, 15}));
        QVERIFY(!a.isEqual(&a)); // a null line equals nothing
        QVERIFY(a.insertCopyrightMark());
        other->updateSongText();
        QVERIFY(rangesFit(*other));
        a.setAryLines(nullptr);
        a.updateSongText();
        QVERIFY(a.aryLines()->isEmpty() && rangesFit(a));
    }
};

QTEST_GUILESS_MAIN(TestEditSong)
#include "tst_editsong.moc"
