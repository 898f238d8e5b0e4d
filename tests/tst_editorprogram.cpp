// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The program songlrc-editor, used by keys. They come from xdotool, which needs an X server.

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class TestEditorProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_directory.isValid());
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, m_directory.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_HOME"_s, m_directory.filePath(u"data"_s));
        m_editor.setProcessEnvironment(environment);
    }

    void cleanup()
    {
        m_editor.kill();
        m_editor.waitForFinished();
    }

    void refusesWrongArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::newRow("version") << QStringList{u"--version"_s} << 0;
        QTest::newRow("help") << QStringList{u"--help"_s} << 0;
        QTest::newRow("two files") << QStringList{u"a.lrc"_s, u"b.lrc"_s} << 2;
        QTest::newRow("no service") << QStringList{u"--service"_s, u"a/b"_s} << 2;
        QTest::newRow("no authority") << QStringList{u"--ca-file"_s, u"/nowhere.pem"_s} << 3;
    }
    void refusesWrongArguments()
    {
        QFETCH(const QStringList, arguments);
        m_editor.start(QStringLiteral(SONGLRC_EDITOR), arguments);
        QVERIFY(m_editor.waitForFinished());
        QCOMPARE(m_editor.exitStatus(), QProcess::NormalExit);
        QTEST(m_editor.exitCode(), "status");
        QCOMPARE(m_editor.readAllStandardOutput().isEmpty(), m_editor.exitCode() != 0);
    }

    // An edit survives SIGKILL.
    void losesNothingWhenKilled()
    {
        if (QGuiApplication::platformName() != u"xcb"_s)
            QSKIP("xdotool needs an X server; tst_editorprogram_x11 has one");
        const QString name = m_directory.filePath(u"song.lrc"_s);
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[00:01.00]one\n") > 0);
        file.close();
        m_editor.start(QStringLiteral(SONGLRC_EDITOR), {name});
        type(u"song.lrc"_s, {u"key"_s, u"Insert"_s, u"type"_s, u"unsaved"_s});
        type(u"song.lrc"_s, {u"key"_s, u"Return"_s});
        const QDir recovery(m_directory.filePath(u"data/QVSongLrc/songlrc-editor/recovery"_s));
        QTRY_VERIFY(
            bytesOf(recovery.filePath(recovery.entryList({u"*.json"_s}).value(0))).contains("unsaved"));
        QCOMPARE(::kill(pid_t(m_editor.processId()), SIGKILL), 0);
        QVERIFY(m_editor.waitForFinished());
        QCOMPARE(m_editor.exitStatus(), QProcess::CrashExit);

        m_editor.start(QStringLiteral(SONGLRC_EDITOR), QStringList());
        type(u"Recover Changes"_s, {u"key"_s, u"alt+l"_s}); // ask later
        type(u"New song"_s, {u"key"_s, u"ctrl+w"_s});
        QVERIFY(m_editor.waitForFinished());
        QCOMPARE(m_editor.exitCode(), 0);

        m_editor.start(QStringLiteral(SONGLRC_EDITOR), QStringList());
        type(u"Recover Changes"_s, {u"key"_s, u"alt+r"_s});
        type(u"song.lrc"_s, {u"key"_s, u"ctrl+s"_s});
        QTRY_COMPARE(bytesOf(name), "[00:01.00]one\nunsaved\n"_ba);
        type(u"song.lrc"_s, {u"key"_s, u"ctrl+w"_s});
        QVERIFY(m_editor.waitForFinished());
        QCOMPARE(m_editor.exitCode(), 0);
        QCOMPARE(recovery.entryList(QDir::Files), QStringList());
    }

private:
    static QByteArray bytesOf(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Waits for the window with this title, focuses it and sends the keys.
    static void type(const QString &title, const QStringList &keys)
    {
        xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s, title, u"windowfocus"_s,
                 u"--sync"_s});
        xdotool(QStringList{u"sleep"_s, u"0.3"_s} + keys);
    }

    static void xdotool(const QStringList &arguments)
    {
        QProcess process;
        process.start(u"xdotool"_s, arguments);
        const bool isDone = process.waitForFinished(20'000) && process.exitCode() == 0;
        if (!isDone) {
            process.kill();
            process.waitForFinished();
        }
        QVERIFY2(isDone, process.readAllStandardError().constData());
    }

    QTemporaryDir m_directory;
    QProcess m_editor;
};

QTEST_MAIN(TestEditorProgram)
#include "tst_editorprogram.moc"
