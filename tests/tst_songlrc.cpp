// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Runs the program songlrc.

#include "Cases.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

struct Run
{
    int status = -1;
    QByteArray output;
    QByteArray error;
};

Run run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished();
    const bool exited = process.exitStatus() == QProcess::NormalExit;
    return {exited ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

Run songlrc(const QStringList &arguments, const QByteArray &input = {})
{
    return run(QStringLiteral(SONGLRC), arguments, input);
}

bool isErrorLine(const QByteArray &error)
{
    return error.startsWith("songlrc: ") && error.indexOf('\n') == error.size() - 1;
}

} // namespace

class TestSonglrc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data() { addCases("songlrc", "prints"); }
    void prints()
    {
        QFETCH(const QJsonArray, row);
        const Run result = songlrc(strings(row[1]), row[2].toString().toLatin1());
        QCOMPARE(result.output, row[3].toString().toUtf8());
        QCOMPARE(result.error, QByteArray());
        QCOMPARE(result.status, 0);
    }

    void refuses_data() { addCases("songlrc", "refuses"); }
    void refuses()
    {
        QFETCH(const QJsonArray, row);
        const Run result = songlrc(strings(row[2]), row[3].toString().toLatin1());
        QCOMPARE(result.status, row[1].toInt());
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(isErrorLine(result.error), result.error.constData());
        QVERIFY2(!QFileInfo(u"/dev/full"_s).isFile(), "the device was replaced by a file");
    }

    void compares()
    {
        const QString a = makeFile(u"a.lrc"_s, "[ti:A]\n[0:1.0]x");
        const QString b = makeFile(u"b.lrc"_s, "[ti:A]\n\n[00:01.00]x\n");
        const QString c = makeFile(u"c.lrc"_s, "[ti:A]\n[00:01.01]x\n");
        QCOMPARE(songlrc({u"compare"_s, a, b}).status, 0);
        QCOMPARE(songlrc({u"compare"_s, a, c}).status, 1);
        QCOMPARE(songlrc({u"compare"_s, a, file(u"none"_s)}).status, 3);
    }

    void continuesAfterAFailure()
    {
        const QString good = makeFile(u"good.lrc"_s, "[00:01.00]x");
        for (const QString &command : {u"parse"_s, u"preview"_s}) {
            const Run result = songlrc({command, u"--json"_s, good, file(u"none"_s), good});
            QCOMPARE(result.status, 3);
            QVERIFY2(isErrorLine(result.error), result.error.constData());
            const QByteArrayList lines = result.output.split('\n');
            QCOMPARE(lines.size(), 4);
            QCOMPARE(lines[0], lines[2]);
            QCOMPARE(QJsonDocument::fromJson(lines[0])[u"lines"].toArray().size(), 1);
            QCOMPARE(QJsonDocument::fromJson(lines[1])[u"error"][u"code"].toInt(), 3);
            QCOMPARE(QJsonDocument::fromJson(lines[1])[u"file"].toString(), file(u"none"_s));
        }
        const QByteArray heading = "==> " + good.toUtf8() + " <==\n[00:01.00]x\n";
        QCOMPARE(songlrc({u"preview"_s, good, good}).output, heading + heading);
    }

    // Title and numbers of all lines, timed lines and property lines, counted by hand.
    void readsSamples_data() { addCases("songlrc", "samples"); }
    void readsSamples()
    {
        QFETCH(const QJsonArray, row);
        const QString sample = QStringLiteral(SAMPLES "/") + row[0].toString();
        const QString output = QString::fromUtf8(songlrc({u"parse"_s, sample}).output);
        QVERIFY2(output.contains(u"  property  ti = "_s + row[1].toString() + u'\n'), qPrintable(output));
        QCOMPARE(output.count(u'\n'), row[2].toInt());
        QCOMPARE(output.count(u"  timed     "), row[3].toInt());
        QCOMPARE(output.count(u"  property  "), row[4].toInt());
    }

    void keepsBytes_data()
    {
        addCases("songlrc", "keepsBytes");
        QFile shiftJis(QStringLiteral(SAMPLES "/sakura-sakura.lrc"));
        QVERIFY(shiftJis.open(QIODevice::ReadOnly));
        const QByteArray large = QByteArray("\u6b4c").repeated(30'000) + '\n'; // several blocks of conversion
        QTest::newRow("large") << QJsonArray{{}, QString::fromLatin1(large)};
        QTest::newRow("Shift_JIS") << QJsonArray{{}, QString::fromLatin1(shiftJis.readAll())};
    }
    void keepsBytes()
    {
        QFETCH(const QJsonArray, row);
        const QByteArray bytes = row[1].toString().toLatin1();
        const QString song = makeFile(u"[a]"_s, bytes);
        QCOMPARE(songlrc({u"format"_s, song, u"-o"_s, file(u"written.lrc"_s)}).status, 0);
        QCOMPARE(content(u"written.lrc"_s), bytes);
        QCOMPARE(songlrc({u"shift"_s, u"--by"_s, u"0"_s, u"--in-place"_s, song}).status, 0);
        QCOMPARE(content(u"[a]"_s), bytes);
    }

    void readsAndWritesNamedEncodings()
    {
        const QStringList recode{u"format"_s, u"--encoding"_s, u"koi8-r"_s, u"--output-encoding"_s,
                                 u"cp1251"_s, u"-"_s};
        QCOMPARE(songlrc(recode, "[ti:\xF0\xC5\xD3\xCE\xD1]").output,
                 QByteArray("[ti:\xCF\xE5\xF1\xED\xFF]\n"));
        QCOMPARE(songlrc({u"format"_s, u"--output-encoding"_s, u"utf-16"_s, u"-"_s}, "x").output,
                 QByteArray("\xFF\xFEx\0\n\0", 6));
    }

    // A limit on the file size simulates a full disk.
    void reportsExhaustion_data()
    {
        QTest::addColumn<QString>("script");
#ifndef __SANITIZE_ADDRESS__ // needs more memory than the limit to start
        QTest::newRow("memory") << u"ulimit -v 4000000; exec \"$0\" preview \"$1\""_s;
#endif
        QTest::newRow("disk") << u"trap '' XFSZ; ulimit -f 8; exec \"$0\" mark --in-place \"$1\""_s;
        QTest::newRow("standard output") << u"exec \"$0\" parse \"$1\" >/dev/full"_s;
    }
    void reportsExhaustion()
    {
        QFETCH(const QString, script);
        const QByteArray old = QByteArray("[0:1.0]").repeated(60'000) + QByteArray(400'000, 'x');
        const QString song = makeFile(u"old.lrc"_s, old);
        const Run result = run(u"/bin/sh"_s, {u"-c"_s, script, QStringLiteral(SONGLRC), song});
        QCOMPARE(result.status, 3);
        QVERIFY2(isErrorLine(result.error), result.error.constData());
        QCOMPARE(content(u"old.lrc"_s), old);
        QCOMPARE(QDir(m_directory.path()).entryList({u"old.lrc*"_s}), QStringList{u"old.lrc"_s});
    }

    // Qt would read them as resources.
    void readsNamesThatStartWithColon()
    {
        makeFile(u"./:a"_s, "[0:1.0]x");
        const QString script = u"cd \"$1\" && exec \"$0\" format --in-place :a"_s;
        QCOMPARE(run(u"/bin/sh"_s, {u"-c"_s, script, QStringLiteral(SONGLRC), m_directory.path()}).status, 0);
        QCOMPARE(content(u"./:a"_s), "[00:01.00]x\n"_ba);
    }

    void writesThroughLinks()
    {
        const QString song = makeFile(u"linked.lrc"_s, "[0:1.0]x");
        QVERIFY(QFile::setPermissions(song, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        QVERIFY(QFile::link(song, file(u"link.lrc"_s)));
        QCOMPARE(songlrc({u"format"_s, u"--in-place"_s, file(u"link.lrc"_s)}).status, 0);
        QVERIFY(QFileInfo(file(u"link.lrc"_s)).isSymLink());
        QCOMPARE(content(u"linked.lrc"_s), QByteArray("[00:01.00]x\n"));
        QVERIFY(!(QFile::permissions(song) & QFileDevice::ReadOther));
    }

private:
    QString file(const QString &name) const
    {
        return m_directory.filePath(name);
    }
    QString makeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile made(file(name));
        if (!made.open(QIODevice::WriteOnly) || made.write(bytes) != bytes.size())
            qFatal("can't write %s", qPrintable(made.fileName()));
        return made.fileName();
    }
    QByteArray content(const QString &name) const
    {
        QFile made(file(name));
        return made.open(QIODevice::ReadOnly) ? made.readAll() : QByteArray("(not there)");
    }

    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(TestSonglrc)
#include "tst_songlrc.moc"
