// SPDX-License-Identifier: MIT
#include "../lookup/EditDistance.h"

#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace QVSongLrcPrivate;

using namespace Qt::StringLiterals;

namespace {

// The plain table, a row at a time.
qint64 tableDistance(QStringView a, QStringView b)
{
    std::vector<qint64> row(size_t(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar unit : a) {
        qint64 diagonal = row[0]++;
        for (size_t column = 1; column < row.size(); ++column) {
            const qint64 changed = diagonal + (unit == b[qsizetype(column) - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({row[column] + 1, row[column - 1] + 1, changed});
        }
    }
    return row.back();
}

float plainScore(QStringView receiver, QStringView argument)
{
    if (receiver.isEmpty() || argument.isEmpty())
        return float(receiver.size() + argument.size());
    return float(100.0 - double(tableDistance(receiver, argument)) * 100.0 / double(receiver.size()));
}

QString randomText(QRandomGenerator &random, int length, int alphabet)
{
    // 128 apart, so that the units meet in one slot of the hash table.
    const bool collide = random.bounded(2) == 0;
    QString text;
    while (text.size() < length)
        text += QChar(char16_t(0x61 + random.bounded(alphabet) * (collide ? 128 : 1)));
    return text;
}

// Something a few changes away from the text, or far.
QString changedText(QRandomGenerator &random, QString text, int alphabet)
{
    if (random.bounded(4) == 0)
        return randomText(random, int(random.bounded(600)), alphabet);
    for (int change = random.bounded(40); change > 0; --change) {
        const qsizetype at = random.bounded(text.size() + 1);
        text.replace(at, random.bounded(3), randomText(random, random.bounded(3), alphabet));
    }
    return text;
}

QJsonObject candidate(const QString &track, const QString &artist)
{
    return {{Key_Lyric_Trackname, track}, {Key_Lyric_Artist, artist}};
}

} // namespace

class TestDistance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scores_data();
    void scores();
    void agreesWithTheTable();
    void comparesLongTexts();
    void filters();
    void choosesTheBest_data();
    void choosesTheBest();
    void choosesAsThePlainRuleDoes();
};

void TestDistance::scores_data()
{
    QTest::addColumn<QString>("receiver");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<float>("score");
    QTest::newRow("equal") << u"abc"_s << u"abc"_s << 100.0f;
    QTest::newRow("one of three") << u"abc"_s << u"abd"_s << 66.666664f;
    QTest::newRow("half") << u"ab"_s << u"abcd"_s << 0.0f;
    QTest::newRow("the other way round") << u"abcd"_s << u"ab"_s << 50.0f;
    QTest::newRow("negative") << u"a"_s << u"xyz"_s << -200.0f;
    QTest::newRow("case counts") << u"Abc"_s << u"abc"_s << 66.666664f;
    QTest::newRow("receiver empty") << u""_s << u"xyz"_s << 3.0f;
    QTest::newRow("argument empty") << u"xyz"_s << u""_s << 3.0f;
    QTest::newRow("argument absent") << u"xyz"_s << QString() << 3.0f;
    QTest::newRow("both empty") << u""_s << u""_s << 0.0f;
    QTest::newRow("composition counts") << u"\u00e9"_s << u"e\u0301"_s << -100.0f;
    QTest::newRow("surrogates are two") << u"\U0001f3b5"_s << u"\U0001f3b6"_s << 50.0f;
    QTest::newRow("no trimming") << u"abcd "_s << u"abcd"_s << 80.0f;
    QTest::newRow("one of seven") << u"abcdefg"_s << u"abcdefx"_s << 85.71429f;
}

void TestDistance::scores()
{
    QFETCH(const QString, receiver);
    QFETCH(const QString, argument);
    QFETCH(const float, score);
    // To the bit: QCOMPARE alone lets floats differ a little.
    QVERIFY2(Distance::likePercent(receiver, argument) == score,
             qPrintable(QString::number(double(Distance::likePercent(receiver, argument)), 'g', 9)));
}

// Lengths around the 64 rows of a word, near and far texts, every kind of limit.
void TestDistance::agreesWithTheTable()
{
    QRandomGenerator random(1);
    for (int round = 0; round < 4000; ++round) {
        const int alphabet = 2 + random.bounded(round % 2 ? 4 : 60);
        const QString a = randomText(random, random.bounded(round % 50 ? 200 : 1500), alphabet);
        const QString b = changedText(random, a, alphabet);
        const qint64 right = tableDistance(a, b);
        QCOMPARE(editDistance(a, b, std::max(a.size(), b.size())), right);
        QCOMPARE(editDistance(a, b, right), right);
        const qint64 limit = random.bounded(int(a.size() + b.size()) + 1);
        const qint64 limited = editDistance(a, b, limit);
        QVERIFY2(right <= limit ? limited == right : limited > limit, qPrintable(a + u'/' + b));
    }
}

void TestDistance::comparesLongTexts()
{
    QRandomGenerator random(2);
    const QString text = randomText(random, 1'000'000, 60);
    QCOMPARE(Distance::likePercent(text, text), 100.0f);
    QString near = text;
    near[10] = u'!';
    near.insert(500'000, u"!!"_s);
    near.remove(999'000, 1);
    QCOMPARE(Distance::likePercent(text, near), float(100.0 - 4 * 100.0 / 1'000'000));
    QCOMPARE(Distance::likePercent(u"!"_s.repeated(1'000'000), u"?"_s.repeated(64)), 0.0f);
}

void TestDistance::filters()
{
    const QJsonObject good = candidate(u"t"_s, u"a"_s);
    const QJsonObject withMore{
        {u"track"_s, u"t"_s}, {u"artist"_s, u" "_s}, {u"link"_s, 5}, {u"x"_s, QJsonArray()}};
    const QJsonArray list{good,
                          candidate(u""_s, u"a"_s),
                          candidate(u"t"_s, u""_s),
                          QJsonObject{{u"track"_s, 5}, {u"artist"_s, u"a"_s}},
                          QJsonObject{{u"track"_s, u"t"_s}},
                          u"track"_s,
                          5,
                          QJsonValue(),
                          QJsonArray{good},
                          withMore,
                          good};
    QCOMPARE(ZTLyricRequestModel::filterResultList(list), (QList<QJsonObject>{good, withMore, good}));
    QVERIFY(ZTLyricRequestModel::filterResultList({}).isEmpty());
}

void TestDistance::choosesTheBest_data()
{
    QTest::addColumn<QString>("track");
    QTest::addColumn<QString>("artist");
    QTest::addColumn<QStringList>("candidates"); // track/artist
    QTest::addColumn<int>("best");
    QTest::newRow("alike") << u"ab"_s << u"cd"_s << QStringList{u"xx/cd"_s, u"ab/cd"_s, u"ab/cx"_s} << 1;
    QTest::newRow("joined") << u"ab"_s << u"cd"_s << QStringList{u"ab/c"_s, u"a/bcd"_s, u"ab/cd"_s} << 1;
    QTest::newRow("first of equals") << u"ab"_s << u"c"_s << QStringList{u"x/bc"_s, u"ab/x"_s} << 0;
    // 3 of 10 and 2 of 6: the candidate's length divides.
    QTest::newRow("divided") << u"abcd"_s << u"efg"_s << QStringList{u"abcd/ex"_s, u"abcd/efgxyz"_s} << 1;
    QTest::newRow("all far away") << u"abcdefghij"_s << u""_s << QStringList{u"x/y"_s, u"a/b"_s, u"z/z"_s}
                                  << 0;
    QTest::newRow("empty query") << u""_s << u""_s << QStringList{u"x/y"_s, u"ab/c"_s, u"de/f"_s} << 1;
}

void TestDistance::choosesTheBest()
{
    QFETCH(const QString, track);
    QFETCH(const QString, artist);
    QFETCH(const QStringList, candidates);
    QFETCH(const int, best);
    QList<QJsonObject> list;
    for (const QString &text : candidates)
        list += candidate(text.section(u'/', 0, 0), text.section(u'/', 1));
    const auto model = ZTLyricRequestModel::initWithReqParams(candidate(track, artist));
    QCOMPARE(model->getBestMatch(list), list[best]);
    QCOMPARE(model->getBestMatch({}), std::nullopt);
}

// The cut-off of hopeless candidates changes nothing, rounding of the scores included.
void TestDistance::choosesAsThePlainRuleDoes()
{
    QRandomGenerator random(3);
    for (int round = 0; round < 300; ++round) {
        const QString query = randomText(random, 1 + random.bounded(90), 4);
        QList<QJsonObject> list;
        qsizetype best = 0;
        float bestScore = -1;
        for (int count = random.bounded(20) + 1; count > 0; --count) {
            const QString text = u"t"_s + changedText(random, query, 4);
            list += {{Key_Lyric_Trackname, text}, {Key_Lyric_Artist, u"a"_s}, {u"link"_s, count}};
            const float score = plainScore(text + u'a', query);
            if (score > bestScore) {
                bestScore = score;
                best = list.size() - 1;
            }
        }
        const auto model = ZTLyricRequestModel::initWithReqParams({{Key_Lyric_Trackname, query}});
        QCOMPARE(model->getBestMatch(list), list[best]);
    }
}

QTEST_APPLESS_MAIN(TestDistance)
#include "tst_distance.moc"
