// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Runs songlrc search and fetch against a service of the test.

#include "MisbehavingServer.h"
#include "TestAuthority.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class TestLookupCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QFile file(m_directory.filePath(u"authority.pem"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(m_authority.pem());
    }

    void answers_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<MisbehavingServer::Behaviour>("behaviour");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("output");
        const auto row = [](const char *name, const QString &arguments, const QByteArray &reply, int status,
                            const QByteArray &output = {}) {
            QTest::newRow(name) << arguments << MisbehavingServer::reply(reply) << status << output;
        };
        const QByteArray two = R"({"results":[{"track":"Other","artist":"B","link":"1"},)"
                               R"({"track":"Song","artist":"A","link":"2"}]})";
        row("search", u"search --title Song --artist A"_s, two, 0, "  B - Other  (1)\n* A - Song  (2)\n");
        row("search to JSON", u"search --title Song --artist A --json"_s, two, 0,
            R"({"bestIndex":1,"results":[{"artist":"B","link":"1","track":"Other"},)"
            R"({"artist":"A","link":"2","track":"Song"}]})"
            "\n");
        row("nothing found", u"search --title Song"_s, R"({"results":[]})", 1);
        row("refused, to JSON", u"search --title Song --json"_s, R"({"code":5,"message":"no"})", 1,
            R"({"error":{"domain":"com.zt.lyric","code":5,"localizedDescription":"no"}})"
            "\n");
        row("fetch", u"fetch --link 2"_s, R"({"result":{"lyric":"[00:01.00]x\r\n"}})", 0, "[00:01.00]x\r\n");
        row("no lyric", u"fetch --link 2"_s, R"({"result":{}})", 1);
        QTest::newRow("no reply") << u"search --title Song"_s << MisbehavingServer::send({}) << 3 << ""_ba;
    }
    void answers()
    {
        QFETCH(const QString, arguments);
        QFETCH(const MisbehavingServer::Behaviour, behaviour);
        const MisbehavingServer server(m_authority.issue("IP:127.0.0.1"), behaviour);
        QProcess process;
        start(process, server, arguments.split(u' '));
        QVERIFY(process.waitForFinished());
        QTEST(process.readAllStandardOutput(), "output");
        QTEST(process.exitCode(), "status");
        QCOMPARE(process.readAllStandardError().count('\n'), process.exitCode() == 0 ? 0 : 1);
    }

    void endsOnCtrlC()
    {
        const MisbehavingServer server(m_authority.issue("IP:127.0.0.1"), MisbehavingServer::stallAfter({}));
        const QString output = m_directory.filePath(u"song.lrc"_s);
        QProcess process;
        start(process, server, {u"fetch"_s, u"--link"_s, u"x"_s, u"-o"_s, output});
        QTRY_VERIFY(!server.requests().isEmpty());
        ::kill(pid_t(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 130);
        QVERIFY(!QFile::exists(output));
    }

private:
    void start(QProcess &process, const MisbehavingServer &server, QStringList arguments) const
    {
        arguments += {u"--service"_s, u"127.0.0.1:%1"_s.arg(server.port()), u"--ca-file"_s,
                      m_directory.filePath(u"authority.pem"_s)};
        process.start(QStringLiteral(SONGLRC), arguments);
    }

    const TestAuthority m_authority;
    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(TestLookupCommands)
#include "tst_lookupcommands.moc"
