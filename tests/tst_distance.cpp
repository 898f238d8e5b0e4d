// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "lookup/EditDistance.h"

#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace QVSongLrcPrivate;

using namespace Qt::StringLiterals;

namespace {

// By the full table of distances, row by row.
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

QString randomText(QRandomGenerator &random, int length, int alphabet)
{
    // With a distance of 128 the units collide in the hash table.
    const bool collide = random.bounded(2) == 0;
    QString text;
    while (text.size() < length)
        text += QChar(char16_t(0x61 + random.bounded(alphabet) * (collide ? 128 : 1)));
    return text;
}

// The text with a few changes, or another text.
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

QJsonObject song(const char *track, const char *artist)
{
    return {{Key_Lyric_Trackname, QLatin1StringView(track)}, {Key_Lyric_Artist, QLatin1StringView(artist)}};
}

} // namespace

class TestDistance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scores()
    {
        const struct
        {
            QString receiver, argument;
            float score;
        } cases[] = {
            {u"abc"_s, u"abc"_s, 100.0f},
            {u"abc"_s, u"abd"_s, 66.666664f},
            {u"abcdefg"_s, u"abcdefx"_s, 85.71429f},
            {u"ab"_s, u"abcd"_s, 0.0f}, // divided by the receiver's length
            {u"abcd"_s, u"ab"_s, 50.0f},
            {u"a"_s, u"xyz"_s, -200.0f},
            {u""_s, u"xyz"_s, 3.0f}, // not scored
            {u"xyz"_s, QString(), 3.0f},
            {u"Abc"_s, u"abc"_s, 66.666664f},
            {u"\u00e9"_s, u"e\u0301"_s, -100.0f},
            {u"\U0001f3b5"_s, u"\U0001f3b6"_s, 50.0f}, // one of two surrogates
            {u"abcd "_s, u"abcd"_s, 80.0f},
        };
        for (const auto &[receiver, argument, score] : cases) {
            // Exactly equal; QCOMPARE compares floats only approximately.
            const float got = Distance::likePercent(receiver, argument);
            QVERIFY2(got == score,
                     qPrintable(u"%1, %2: %3"_s.arg(receiver, argument).arg(double(got), 0, 'g', 9)));
        }
    }

    // Lengths around the 64 rows of a word, similar and different texts, limits below and above the distance.
    void agreesWithTheTable()
    {
        QRandomGenerator random(1);
        for (int round = 0; round < 1500; ++round) {
            const int alphabet = 2 + random.bounded(round % 2 ? 4 : 60);
            const QString a = randomText(random, random.bounded(round % 50 ? 200 : 1500), alphabet);
            const QString b = changedText(random, a, alphabet);
            const qint64 right = tableDistance(a, b);
            const qint64 any = random.bounded(int(a.size() + b.size()) + 1);
            for (const qint64 limit : {qint64(std::max(a.size(), b.size())), right, any}) {
                const qint64 limited = editDistance(a, b, limit);
                QVERIFY2(right <= limit ? limited == right : limited > limit, qPrintable(a + u'/' + b));
            }
        }
    }

    void comparesLongTexts()
    {
        QRandomGenerator random(2);
        const QString text = randomText(random, 1'000'000, 60);
        QString near = text;
        near[10] = u'!';
        near.insert(500'000, u"!!"_s);
        near.remove(999'000, 1);
        QCOMPARE(Distance::likePercent(text, near), float(100.0 - 4 * 100.0 / 1'000'000));
        QCOMPARE(Distance::likePercent(u"!"_s.repeated(1'000'000), u"?"_s.repeated(64)), 0.0f);
        // Similar, but the path is outside of narrow bands.
        const QString shifted = text.sliced(350, 650) + QString(350, u'!');
        const QStringView whole = QStringView(text).first(1'000);
        QCOMPARE(editDistance(whole, shifted, 1'000), tableDistance(whole, shifted));
        QString allDifferent; // the most distinct units that a hash table must hold
        while (allDifferent.size() < 256)
            allDifferent += QChar(char16_t(0x100 + allDifferent.size()));
        QCOMPARE(Distance::likePercent(allDifferent, u"?"_s.repeated(256)), 0.0f);
        std::stop_source stop; // without it the comparison takes minutes
        stop.request_stop();
        QElapsedTimer clock;
        clock.start();
        editDistance(QString(text.size(), u'!'), QString(text.size(), u'?'), text.size(), stop.get_token());
        QVERIFY(clock.elapsed() < 5'000);
    }

    void filters()
    {
        const QJsonArray list =
            QJsonDocument::fromJson(R"([{"track":"t","artist":"a"}, {"track":"","artist":"a"},
                {"track":"t","artist":""}, {"track":5,"artist":"a"}, {"track":"t"}, "track", 5, null,
                [{"track":"t","artist":"a"}], {"track":"t","artist":" ","link":5,"x":[]}])")
                .array();
        QCOMPARE(ZTLyricRequestModel::filterResultList(list),
                 (QList{list.first().toObject(), list.last().toObject()}));
    }

    void choosesTheBest()
    {
        const struct
        {
            QJsonObject query;
            QList<QJsonObject> songs;
            int best;
        } cases[] = {
            {song("ab", "cd"), {song("xx", "cd"), song("ab", "cd"), song("ab", "cx")}, 1},
            {song("ab", "cd"), {song("ab", "c"), song("a", "bcd"), song("ab", "cd")}, 1}, // joined
            {song("ab", "c"), {song("x", "bc"), song("ab", "x")}, 0}, // the first of equals
            // Distances of 3 in 10 and 2 in 6: divided by the candidate's length.
            {song("abcd", "efg"), {song("abcd", "ex"), song("abcd", "efgxyz")}, 1},
            {song("abcdefghij", ""), {song("x", "y"), song("a", "b"), song("z", "z")}, 0}, // all far away
            {song("", ""), {song("x", "y"), song("ab", "c"), song("de", "f")}, 1},
        };
        for (const auto &[query, songs, best] : cases)
            QCOMPARE(ZTLyricRequestModel::initWithReqParams(query)->getBestMatch(songs), songs[best]);
        QCOMPARE(ZTLyricRequestModel::initWithReqParams({})->getBestMatch({}), std::nullopt);
    }

    // Stopping early for bad candidates does not change the result, despite rounded scores.
    void choosesLikeTheSimpleRule()
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
                const float score = Distance::likePercent(text + u'a', query);
                if (score > bestScore) {
                    bestScore = score;
                    best = list.size() - 1;
                }
            }
            const auto model = ZTLyricRequestModel::initWithReqParams({{Key_Lyric_Trackname, query}});
            QCOMPARE(model->getBestMatch(list), list[best]);
        }
    }
};

QTEST_APPLESS_MAIN(TestDistance)
#include "tst_distance.moc"
