// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Cases.h"
#include "IcuTags.h"

#include <QRandomGenerator>

using namespace QVSongLrcPrivate;

using namespace Qt::StringLiterals;

namespace {

QByteArray listed(const TagMatches &matches)
{
    QByteArray list;
    for (const auto &[begin, end] : matches)
        list += '[' + QByteArray::number(begin) + ',' + QByteArray::number(end) + ')';
    return list;
}

// "" if the scanner and ICU find the same tags, else what each of them found.
QByteArray disagreement(const QString &text)
{
    const TagMatches property = IcuTags::property().in(text);
    const TagMatches time = IcuTags::time().in(text);
    if (scannedPropertyTags(text) == property && scannedTimeTags(text) == time)
        return {};
    return QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact) + ": ICU finds property "
        + listed(property) + " time " + listed(time) + ", the scanner property "
        + listed(scannedPropertyTags(text)) + " time " + listed(scannedTimeTags(text));
}

} // namespace

class TestTagScanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithIcu_data() { addCases("tags", "agreesWithIcu"); }
    void agreesWithIcu()
    {
        QFETCH(const QJsonArray, row);
        const QString text = row[1].toString();
        QCOMPARE(listed(scannedPropertyTags(text)), row[2].toString().toLatin1());
        QCOMPARE(listed(scannedTimeTags(text)), row[3].toString().toLatin1());
        QCOMPARE(disagreement(text), QByteArray());
    }

    // Texts of up to 24 pieces, chosen so that tags and almost-tags are frequent.
    void agreesWithIcuOnRandomText_data() { addCases("tags", "pieces"); }
    void agreesWithIcuOnRandomText()
    {
        constexpr int Texts = 250'000;
        QFETCH(const QJsonArray, row);
        const QStringList pieces = strings(row[1]);
        QRandomGenerator random(20261122);
        int withTime = 0;
        int withProperty = 0;
        for (int i = 0; i < Texts; ++i) {
            QString text;
            for (quint32 n = random.bounded(25u); n > 0; --n)
                text += pieces[random.bounded(int(pieces.size()))];
            const QByteArray difference = disagreement(text);
            QVERIFY2(difference.isEmpty(), difference.constData());
            withTime += !scannedTimeTags(text).empty();
            withProperty += !scannedPropertyTags(text).empty();
        }
        // Without tags in the texts, the comparison would prove nothing.
        QVERIFY(withTime > Texts / 50 && withProperty > Texts / 50);
    }

    // Linear time takes milliseconds, quadratic time hours.
    void takesLinearTime()
    {
        constexpr int Size = 8'000'000;
        for (const QString &piece : {u" "_s, u"[aa:"_s, u"[00:00.0"_s, u"["_s, u"]["_s, u"[aa:]"_s}) {
            const QString text = piece.repeated(Size / piece.size());
            QElapsedTimer timer;
            timer.start();
            scannedPropertyTags(text);
            scannedTimeTags(text);
            QVERIFY2(timer.elapsed() < 10'000, qPrintable(piece));
        }
    }
};

QTEST_APPLESS_MAIN(TestTagScanner)
#include "tst_tagscanner.moc"
