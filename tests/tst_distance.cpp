// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The score by the full table of distances, row by row.
float score(const QString &a, const QString &b)
{
    std::vector<int> row(size_t(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar unit : a) {
        int diagonal = row[0]++;
        for (size_t column = 1; column < row.size(); ++column) {
            const int changed = diagonal + (unit == b[qsizetype(column) - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({row[column] + 1, row[column - 1] + 1, changed});
        }
    }
    return float(100.0 - row.back() * 100.0 / double(a.size()));
}

/// Units with a distance of 128 collide in the hash table of the library.
QString randomText(QRandomGenerator &random, int length, int alphabet)
{
    QString text;
    while (text.size() < length)
        text += QChar(char16_t(0x61 + random.bounded(alphabet) * 128));
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
        const QString million = u"abcdefghij"_s.repeated(100'000);
        QString changed = million;
        changed[10] = u'!';
        changed.insert(500'000, u"!!"_s).remove(999'000, 1);
        const std::tuple<QString, QString, float> rows[] = {
            {u"abc"_s, u"abc"_s, 100.0f},
            {u"abc"_s, u"abd"_s, 66.666664f},
            {u"Abc"_s, u"abc"_s, 66.666664f},
            {u"ab"_s, u"abcd"_s, 0.0f}, // divided by the receiver's length
            {u"abcd"_s, u"ab"_s, 50.0f},
            {u"a"_s, u"xyz"_s, -200.0f},
            {u""_s, u"xyz"_s, 3.0f}, // not scored
            {u"xyz"_s, QString(), 3.0f},
            {u""_s, u""_s, 0.0f},
            {u"\u00e9"_s, u"e\u0301"_s, -100.0f},
            {u"\U0001f3b5"_s, u"\U0001f3b6"_s, 50.0f}, // one of two surrogates
            {million, changed, 99.9996f},
        };
        for (const auto &[receiver, argument, expected] : rows) {
            const float got =
                Distance::likePercent(receiver, argument); // QCOMPARE would compare it approximately
            QVERIFY2(got == expected,
                     qPrintable(QString::number(double(got)) + receiver.left(9) + argument.left(9)));
        }
    }

    void filters()
    {
        const QJsonArray list =
            QJsonDocument::fromJson(R"([{"track":"t","artist":"a"}, {"track":"","artist":"a"},
                {"track":"t","artist":""}, {"track":5,"artist":"a"}, {"track":"t"}, "track", 5, null,
                [{"track":"t","artist":"a"}], {"track":"t","artist":" ","link":5,"x":[]}])")
                .array();
        const QList expected{list.first().toObject(), list.last().toObject()};
        QCOMPARE(ZTLyricRequestModel::filterResultList(list), expected);
    }

    // The query's title and artist, candidates, and the best of them.
    void choosesTheBest()
    {
        const struct
        {
            QJsonObject query;
            QList<QJsonObject> songs;
            int best;
        } rows[] = {
            {song("ab", "cd"), {song("xx", "cd"), song("ab", "cd"), song("ab", "cx")}, 1},
            {song("ab", "cd"), {song("ab", "c"), song("a", "bcd"), song("ab", "cd")}, 1}, // joined
            {song("ab", "c"), {song("x", "bc"), song("ab", "x")}, 0},               // the first of equals
            {song("abcd", "efg"), {song("abcd", "ex"), song("abcd", "efgxyz")}, 1}, // 3 of 10 beats 2 of 6
            {song("abcdefghij", ""), {song("x", "y"), song("a", "b"), song("z", "z")}, 0}, // all below -1
            {song("", ""), {song("x", "y"), song("ab", "c"), song("de", "f")}, 1},
        };
        const auto model = ZTLyricRequestModel::initWithReqParams({});
        QCOMPARE(model->getBestMatch({}), std::nullopt);
        for (const auto &[query, songs, best] : rows) {
            model->setReqParams(query);
            QCOMPARE(model->getBestMatch(songs), songs[best]);
        }
    }

    // Random texts with lengths around the 64 units of a machine word: near and far ones, many of them equally good.
    void agreesWithTheTable()
    {
        const auto model = ZTLyricRequestModel::initWithReqParams({});
        QRandomGenerator random(1);
        for (int round = 0; round < 400; ++round) {
            const int alphabet = 2 + random.bounded(round % 2 ? 3 : 300);
            const int length =
                round % 20 ? 64 * random.bounded(6) + random.bounded(-1, 3) : random.bounded(1'500);
            const QString query = randomText(random, std::max(length, 1), alphabet);
            QList<QJsonObject> candidates;
            qsizetype best = 0;
            float bestScore = -1;
            for (int count = 1 + random.bounded(6); count > 0; --count) {
                QString text = random.bounded(4) ? query : randomText(random, random.bounded(700), alphabet);
                for (int change = random.bounded(30); change > 0; --change) {
                    const QString added = randomText(random, random.bounded(3), alphabet);
                    text.replace(random.bounded(text.size() + 1), random.bounded(3), added);
                }
                if (const int shift = random.bounded(100); random.bounded(3) == 0)
                    text = text.mid(shift) + randomText(random, shift, alphabet);
                candidates += {{Key_Lyric_Trackname, text}, {Key_Lyric_Artist, u"a"_s}, {u"link"_s, count}};
                text += u'a';
                const float right = score(text, query);
                QVERIFY2(Distance::likePercent(text, query) == right, qPrintable(query + u'/' + text));
                if (right > bestScore) {
                    bestScore = right;
                    best = candidates.size() - 1;
                }
            }
            model->setReqParams({{Key_Lyric_Trackname, query}});
            QCOMPARE(model->getBestMatch(candidates), candidates[best]);
        }
    }
};

QTEST_APPLESS_MAIN(TestDistance)
#include "tst_distance.moc"
