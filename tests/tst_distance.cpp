// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/Distance.h>
#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QJsonArray>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Units with a distance of 128 collide in the hash table of the library.
QString randomText(QRandomGenerator &random, int length, int alphabet)
{
    QString text;
    while (text.size() < length)
        text += QChar(char16_t(random.bounded(alphabet) * 128));
    return text;
}

/// A candidate or query from "title/artist".
QJsonObject song(const QString &name)
{
    return {{Key_Lyric_Trackname, name.section(u'/', 0, 0)}, {Key_Lyric_Artist, name.section(u'/', 1)}};
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
            {u"Abc"_s, u"abc"_s, 66.666664f}, {u"ab"_s, u"abcd"_s, 0.0f}, // divided by the receiver's length
            {u"a"_s, u"xyz"_s, -200.0f},      {u""_s, u"xyz"_s, 3.0f},    // not scored
            {u"xyz"_s, QString(), 3.0f},      {million, changed, 99.9996f},
        };
        for (const auto &[receiver, argument, expected] : rows) // QCOMPARE would compare approximately
            QVERIFY2(Distance::likePercent(receiver, argument) == expected, qPrintable(receiver.left(9)));
    }

    void choosesTheBest()
    {
        const std::tuple<QString, QStringList, int> rows[] = {
            {u"ab/cd"_s, {u"xx/cd"_s, u"ab/c"_s, u"a/bcd"_s, u"ab/cd"_s}, 2}, // joined, the first of equals
            {u"abcd/efg"_s, {u"abcd/ex"_s, u"abcd/efgxyz"_s}, 1},             // 3 of 10 beats 2 of 6
            {u"abcdefghij/"_s, {u"x/y"_s, u"a/b"_s, u"z/z"_s}, 0},            // all below -1
            {u"/"_s, {u"x/y"_s, u"ab/c"_s, u"de/f"_s}, 1},
        };
        for (const auto &[query, songs, best] : rows)
            QCOMPARE(bestOf(query, songs), best);
        QCOMPARE(m_model->getBestMatch({}), std::nullopt);
    }

    // The sums are those of the full table of distances. Random texts with lengths around the 64 units of a machine
    // word: near and far ones, many of them equally good.
    void agreesWithTheTable()
    {
        QRandomGenerator random(1);
        double sum = 0;
        qsizetype bests = 0;
        for (int round = 0; round < 400; ++round) {
            const int alphabet = round % 3 ? 4 : 300;
            int length = round % 20 ? 64 * random.bounded(6) : 1'500;
            length += round % 20 ? random.bounded(-1, 2) : 0;
            const QString query = randomText(random, std::max(length, 1), alphabet);
            QStringList candidates;
            while (candidates.size() < 5) {
                QString text = random.bounded(4) ? query : randomText(random, random.bounded(700), alphabet);
                for (int change = random.bounded(30); change > 0; --change) {
                    const int longest = change % 8 == 0 ? 500 : 3;
                    const QString added = randomText(random, random.bounded(longest), alphabet);
                    const int removed = random.bounded(longest); // compilers differ in the order of arguments
                    text.replace(random.bounded(text.size() + 1), removed, added);
                    if (change == 5)
                        text = text.mid(300) + text.left(300);
                }
                candidates += text + u"b/a"_s;
                text += u"ba"_s;
                sum += double(Distance::likePercent(text, query));
            }
            bests += round * bestOf(query, candidates);
        }
        QCOMPARE(sum, 43911.105168618);
        QCOMPARE(bests, 156875);
    }

private:
    /// The position in \p songs of the best match of \p query.
    qsizetype bestOf(const QString &query, const QStringList &songs)
    {
        QJsonArray list;
        for (const QString &name : songs)
            list += song(name);
        m_model->setReqParams(song(query));
        const QList<QJsonObject> candidates = ZTLyricRequestModel::filterResultList(list);
        return candidates.indexOf(m_model->getBestMatch(candidates).value());
    }

    const std::shared_ptr<ZTLyricRequestModel> m_model = ZTLyricRequestModel::initWithReqParams({});
};

QTEST_APPLESS_MAIN(TestDistance)
#include "tst_distance.moc"
