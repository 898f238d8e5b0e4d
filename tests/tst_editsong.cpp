// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QVSongLrc/QVEditSong.h>

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

// The lines as "key=value" for properties, "time,time|text" for others.
QStringList shown(const QVEditSong &document)
{
    QStringList lines;
    for (const auto &line : *document.aryLines()) {
        QStringList times;
        for (const qint64 time : *line->aryTimes())
            times += QString::number(time);
        lines +=
            (line->isProperty() ? line->propertyStr() + u'=' : times.join(u',') + u'|') + line->lineText();
    }
    return lines;
}

// Whether the song text is the display texts, a line feed after each, and the ranges say where they are.
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

// Translates the name line of the maker mark.
class MarkTranslator : public QTranslator
{
public:
    explicit MarkTranslator(const QString &text)
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
    void startsEmpty()
    {
        QVEditSong document;
        QVERIFY(document.songText().isNull() && document.tagSongText().isNull());
        QVERIFY(document.aryLines()->isEmpty());
        document.buildWithLrcText(QString());
        QVERIFY(document.aryLines()->isEmpty() && rangesFit(document));
    }

    void reads_data() { addCases("editsong", "reads"); }
    void reads()
    {
        QFETCH(const QJsonArray, row);
        const auto document = song(row[1].toString());
        QVERIFY(rangesFit(*document));
        QCOMPARE(shown(*document), strings(row[2]));
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

    void rewritesChangedLines()
    {
        const auto document = song(u"[ti:A]\n[00:01.00]x\n[00:02.00]y"_s);
        const auto &lines = *document->aryLines();
        const QString before = document->songText();
        lines[0]->updateWithText(u"[ar:Longer]"_s);
        lines[1]->appendTime(-1'500);
        lines[1]->appendTime(6'000'000);
        lines[2]->setLineText({});
        QCOMPARE(document->songText(), before);
        for (int i = 0; i < 2; ++i) {
            document->setSongText(u"the host's"_s);
            document->updateSongText();
            QCOMPARE(document->songText(),
                     u"[ar:Longer]\n[00:01.00][00:-1.-50][100:00.00]x\n[00:02.00](null)\n"_s);
            QVERIFY(rangesFit(*document));
        }
    }

    // Lines remember where their tags stand in the song text; no way to change a line may miss that.
    void showsEveryChange()
    {
        const std::pair<std::function<void(QVSongLine &)>, QString> changes[] = {
            {[](QVSongLine &line) { line.appendTime(3'000); }, u"[00:01.00][00:02.00][00:03.00]x"_s},
            {[](QVSongLine &line) { line.shiftAllTime(1'000); }, u"[00:02.00][00:03.00]x"_s},
            {[](QVSongLine &line) { line.updateWithTimeStr(u"[0:7.0]"_s, 0); }, u"[00:07.00][00:02.00]x"_s},
            {[](QVSongLine &line) { line.updateWithTimeStr({}, 0); }, u"[00:02.00]x"_s},
            {[](QVSongLine &line) { line.aryTimes()->clear(); }, u"x"_s},
            {[](QVSongLine &line) { line.setAryTimes(nullptr); }, u"x"_s},
            {[](QVSongLine &line) { line.setLineText(line.lineText() + u'y'); }, u"[00:01.00][00:02.00]xy"_s},
            {[](QVSongLine &line) { line.lineText(); }, u"[00:01.00][00:02.00]x"_s},
            {[](QVSongLine &line) { line.setIsProperty(true); }, u"[(null):x]"_s},
        };
        for (const auto &[change, expected] : changes) {
            const auto document = song(u"[ti:before]\n[00:01.00][00:02.00]x\n[00:09.00]behind"_s);
            QVSongLine &line = *document->aryLines()->at(1);
            const QVSongLine copy(line);
            const auto held = line.aryTimes(); // changed after it was handed out
            document->updateSongText();
            change(line);
            QCOMPARE(line.displayText(), expected);
            document->updateSongText();
            QVERIFY(rangesFit(*document));

            const auto fresh = song(u"[00:01.00][00:02.00]x"_s);
            change(*fresh->aryLines()->first());
            fresh->updateSongText();
            QCOMPARE(fresh->songText(), expected + u'\n');
            QCOMPARE(copy.displayText(), u"[00:01.00][00:02.00]x"_s);
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
        QCOMPARE(shown(*document), QStringList{u"|b"_s});
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
        QCOMPARE(shown(*document).join(QString()).remove(u'|'), row[2].toString());
    }

    void compares()
    {
        const auto document = song(u"[ti:A]\n[00:01.00]x"_s);
        class Derived : public QVEditSong
        {
        };
        const auto equal = std::make_shared<Derived>();
        equal->buildWithLrcText(u"[ti:A]\n[0:1.0]x\n"_s);
        equal->setSongText(u"other"_s);
        QVERIFY(document->isEqual(equal));
        for (const auto &other :
             {song(u"[ti:A]\n[00:01.00]y"_s), song(u"[ti:A]"_s), std::shared_ptr<QVEditSong>()})
            QVERIFY(!document->isEqual(other));
        QVERIFY(song({})->isEqual(std::make_shared<QVEditSong>()));
        document->aryLines()->first()->setLineText({});
        QVERIFY(!document->isEqual(document));
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
        QStringList expected = shown(*document);
        QCOMPARE(document->insertCopyrightMark(), index >= 0);
        if (index >= 0) {
            expected.insert(index, QStringLiteral("%1|Maker Tool: Quendle").arg(row[5].toInt() + 300));
            expected.insert(index + 1, QStringLiteral("%1|https://" MAKER_HOST).arg(row[5].toInt() + 700));
            QVERIFY(!document->insertCopyrightMark());
        }
        QCOMPARE(shown(*document), expected);
        QVERIFY(rangesFit(*document));
    }

    void translatesTheMark()
    {
        MarkTranslator named(u"100%% von Quendle, 5% %d"_s);
        QVERIFY(QCoreApplication::installTranslator(&named));
        const auto document = song(u"[00:01.00]x"_s);
        QVERIFY(document->insertCopyrightMark());
        QCOMPARE(document->aryLines()->at(0)->lineText(), u"100% von Quendle, 5% %d"_s);
        QVERIFY(!document->insertCopyrightMark());

        MarkTranslator nameless(u"nobody"_s);
        QVERIFY(QCoreApplication::installTranslator(&nameless));
        const auto again = song({});
        QVERIFY(again->insertCopyrightMark() && again->insertCopyrightMark());
        QCOMPARE(again->aryLines()->size(), 4);
    }

    void takesListsOfTheHost()
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
        // Lines that slice the text of another document, one of them in twice, and an absent one.
        const auto document = song(u"[ti:x]\n[00:01.00]slice"_s);
        const auto slicing = document->aryLines()->at(1);
        *lines += QVSongLineList{slicing, slicing, nullptr, document->aryLines()->at(0)};
        b.updateSongText();
        QCOMPARE(b.songText(), u"twice\ntwice\n[00:01.00]slice\n[00:01.00]slice\n[ti:x]\n"_s);
        QCOMPARE(line->txtRg(), (QVTextRange{6, 5}));
        QVERIFY(!a.isEqual(&a)); // an absent line equals nothing
        QVERIFY(a.insertCopyrightMark());
        document->updateSongText();
        QVERIFY(rangesFit(*document));

        a.setAryLines(nullptr);
        a.updateSongText();
        QVERIFY(a.aryLines()->isEmpty() && rangesFit(a));
    }

    void readsHugeText() // 100 MB
    {
        const QString line = u"[00:01.00]"_s + u"\u6b4c"_s.repeated(1'000'000) + u'\n';
        const auto document = song(line.repeated(50));
        QCOMPARE(document->songText().size(), 50 * line.size());
        QCOMPARE(document->aryLines()->last()->lineText().size(), 1'000'000);
    }
};

QTEST_GUILESS_MAIN(TestEditSong)
#include "tst_editsong.moc"
