// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Cases.h"

#include <QVSongLrc/QVSongLrc.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

class TestUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTags_data() { addCases("utils", "readsTags"); }
    void readsTags()
    {
        QFETCH(const QJsonArray, row);
        QCOMPARE(QVUtils::getTimeInterval(row[1].toString()), row[2].toInteger());
    }

    void throwsOnShortTags()
    {
        for (const QString &tag : {QString(), u""_s, u"["_s})
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, QVUtils::getTimeInterval(tag));
    }

    // Intended: 37 of the 6000 hundredths of a minute read 1 ms low, since seconds are multiplied as doubles.
    void readsSomeTagsOneMillisecondLow()
    {
        QStringList low;
        for (int hundredths = 0; hundredths < 6000; ++hundredths) {
            const QString tag = QString::asprintf("[00:%02d.%02d]", hundredths / 100, hundredths % 100);
            const qint64 missing = hundredths * 10 - QVUtils::getTimeInterval(tag);
            QVERIFY2(missing == 0 || missing == 1, qPrintable(tag));
            if (missing)
                low += tag;
        }
        QCOMPARE(low.size(), 37);
        QCOMPARE(low.first(3), (QStringList{u"[00:02.01]"_s, u"[00:02.03]"_s, u"[00:04.02]"_s}));
    }

    void writesTimes_data() { addCases("utils", "writesTimes"); }
    void writesTimes()
    {
        QFETCH(const QJsonArray, row);
        const qint64 time = row[1].toInteger();
        QCOMPARE(QVUtils::getTimeIntervalMMSSMSStr(time), row[2].toString());
        QCOMPARE(QVUtils::getTimeIntervalPeerStr(time), u'[' + row[2].toString() + u']');
    }

    void recognisesTags_data() { addCases("utils", "recognisesTags"); }
    void recognisesTags()
    {
        QFETCH(const QJsonArray, row);
        QCOMPARE(QVUtils::isPropertyString(row[1].toString()), row[2].toBool());
        QCOMPARE(QVUtils::isTimeString(row[1].toString()), row[3].toBool());
    }

    void version()
    {
        QCOMPARE(QVSongLrcVersionNumber, 1.0);
        QCOMPARE(QByteArray(QVSongLrcVersionString),
                 QByteArray("@(#)PROGRAM:QVSongLrc  PROJECT:QVSongLrc-1\n"));
    }
};

QTEST_APPLESS_MAIN(TestUtils)
#include "tst_utils.moc"
