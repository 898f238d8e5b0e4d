// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The editor's window, used by keys: its commands, files, recovery and online search.

#include "EditorDriver.h"
#include "Examples.h"
#include "LookupServer.h"
#include "programs/editor/Recovery.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTemporaryDir>

#include <csignal>

#include <sys/resource.h>

class TestEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each test has a folder of its own for its files, the settings and the recovery files.
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        m_name = m_home->filePath(u"song.lrc"_s);
        QCoreApplication::setOrganizationName(u"QVSongLrc"_s);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_home->path());
        qputenv("XDG_DATA_HOME", m_home->path().toLocal8Bit());
        writeFile(m_name, "one\n");
    }

    // A row has the bytes of a file, as Latin-1, and what the user does with it. What is expected then: the text, the
    // file's bytes, the window's state, a part of the questions or else of the message, the highlighted lines, the
    // preview, and what the bar says about remarks.
    void commands_data()
    {
        QTest::addColumn<QJsonObject>("row");
        const QByteArray json =
            bytesOf(QStringLiteral(TESTS "/data/editor.json")).replace("www.quendle.example", MAKER_HOST);
        const QJsonArray rows = QJsonDocument::fromJson(json).array();
        QVERIFY(!rows.isEmpty());
        for (const QJsonValue row : rows)
            QTest::newRow(qPrintable(row["name"_L1].toString())) << row.toObject();
    }
    void commands()
    {
        QFETCH(const QJsonObject, row);
        const QString song = u"[ti:S]\n[00:01.00]one\n[00:02.00][00:09.00]two\nthree\n"_s;
        const QString file = row["file"_L1].toString(song);
        writeFile(m_name, file.toLatin1());
        EditorDriver editor(m_name);
        const QString before = editor.text();
        editor.run(row["do"_L1].toString());

        const QString state =
            row["state"_L1].toString(row.contains("text"_L1) ? u"song.lrc*"_s : u"song.lrc"_s);
        const QString text = row["text"_L1].toString(row.contains("saved"_L1) ? editor.text() : before);
        QCOMPARE(QString::fromLatin1(bytesOf(m_name)), row["saved"_L1].toString(file));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(editor.state(), state);
            QCOMPARE(editor.text(), text);
            const QString said = editor.questions.isEmpty() ? editor.message() : editor.questions;
            QVERIFY2(said.contains(row["says"_L1].toString()), qPrintable(said));
            if (state != u"song.lrc*"_s)
                break;
            editor.run(u"Ctrl+Z "_s.repeated(9));
            QCOMPARE(editor.text() + editor.state(), before + u"song.lrc"_s);
            editor.run(u"Ctrl+Shift+Z "_s.repeated(9));
        }
        QTRY_COMPARE_WITH_TIMEOUT(editor.highlighted("preview"),
                                  row["preview"_L1].toString(editor.highlighted("preview")), 30'000);
        QCOMPARE(editor.highlighted("text"), row["line"_L1].toString(editor.highlighted("text")));
        QCOMPARE(editor.text("preview"), row["played"_L1].toString(editor.text("preview")));
        QCOMPARE(editor.remarks(), row["remarks"_L1].toString(editor.remarks()));
    }

    // What is saved has the lines of the file, and is the same when it is opened and saved again.
    void keepsLines()
    {
        const QByteArray table = bytesOf(QStringLiteral(TESTS "/data/import.txt"));
        QVERIFY(!table.isEmpty());
        for (const QString &row : QString::fromUtf8(table).split(u'\n')) {
            const QStringList cells = row.split(u'|');
            const QString text = withoutSymbols(cells.value(1).trimmed());
            if (cells.size() != 4 || !text.isValidUtf16())
                continue;
            writeFile(m_name, text.toUtf8());
            QString read, first, second;
            SongModel song;
            song.replaceSong(SongFile::read(m_name, read), read);
            QCOMPARE(linesOf(song.lines()), withoutSymbols(cells[2].trimmed().replace(u" / "_s, u"\n"_s)));
            const QString before = song.text();
            song.save(song.file());
            song.replaceSong(SongFile::read(m_name, first), first);
            QCOMPARE(song.text(), before);
            song.save(song.file());
            SongFile::read(m_name, second);
            QCOMPARE(second, first);
        }
    }

    // Another window may have opened the recent files. The next window has the size of the one closed last.
    void fillsItsMenus()
    {
        EditorDriver second(m_name);
        second.run(u"0:2 'x' Return Ctrl+K Ctrl+Z"_s);
        const QList<QAction *> edits = second.window->menuBar()->actions().at(1)->menu()->actions();
        QCOMPARE(edits[0]->text() + edits[1]->text(), u"&Undo Change Text&Redo Insert Maker Mark"_s);
        for (int i = 0; i < 10; ++i) {
            EditorDriver first(m_name);
            first.run(u"?'%1' Ctrl+Shift+S"_s.arg(i));
            first.window->resize(700 + i, 500);
            first.window->close();
        }
        QMenu *const menu = second.window->menuBar()->actions().constFirst()->menu();
        Q_EMIT menu->aboutToShow();
        QStringList recent;
        for (const QAction *const action : menu->findChild<QMenu *>()->actions())
            recent += action->text();
        QCOMPARE(recent.join(u' '), u"&1 9 &2 song.lrc &3 8 &4 7 &5 6 &6 5 &7 4 &8 3 &9 2"_s);
        QVERIFY(menu->findChild<QMenu *>()->isEnabled());
        QCOMPARE(EditorWindow().size(), QSize(709, 500));
    }

    void keepsOneRecoveryFile()
    {
        EditorDriver editor(m_name);
        editor.run(u"0:0 '[00:01.005]' Return 0:2 'first' Return"_s);
        const QDir folder(m_home->filePath(u"QVSongLrc/tst_editor/recovery"_s));
        QTRY_COMPARE_WITH_TIMEOUT(folder.entryList({u"*.json"_s}).size(), 1, 30'000);
        const QString recovery = folder.filePath(folder.entryList({u"*.json"_s}).first());
        QTRY_VERIFY_WITH_TIMEOUT(bytesOf(recovery).contains("[00:01.005]first"), 30'000);
        const QByteArray before = bytesOf(recovery);
        Recovery::discard(recovery); // in use
        // Limits the size of files, which fails like a full disk.
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        ::getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit small{64, usual.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        editor.run(u"0:2 'second' Return"_s);
        const auto *const warning = editor.window->statusBar()->findChild<QLabel *>(u"warning"_s);
        const bool isWarned = QTest::qWaitFor([&] { return warning->text().contains(recovery); }, 30'000);
        ::setrlimit(RLIMIT_FSIZE, &usual);
        QVERIFY(isWarned);
        QCOMPARE(bytesOf(recovery), before);
        editor.run(u"Ctrl+Z Ctrl+Z Ctrl+Z"_s);
        QTRY_COMPARE_WITH_TIMEOUT(warning->text(), QString(), 30'000);
        QVERIFY(!QFile::exists(recovery));

        const QString left = folder.filePath(u"left.json"_s);
        writeFile(left, R"({"text":"words\n"})");
        QVERIFY(editor.window->recover(left) && !EditorWindow().recover(left)); // in use
        QCOMPARE(editor.text() + editor.state(), u"wordsNew song*"_s);
        editor.run(u"?Discard Ctrl+N"_s); // the song has nothing to undo
        QVERIFY(editor.state() == u"New song"_s && !QFile::exists(left));
    }

    // The lyric arrives when the dialog has closed. SCREENSHOTS names a folder for the README's pictures.
    void searchesOnline()
    {
        LookupServer server;
        int asked = 0;
        const auto reply = [&] { server.reply(asked, R"({"result":{"lyric":"[00:01.00]la\r\nle\r\n"}})"); };
        const QString pictures = qEnvironmentVariable("SCREENSHOTS", m_home->path());
        const DialogStep download = [&](QWidget *dialog) {
            QVERIFY(server.waitForRequests(++asked));
            server.reply(asked,
                         R"({"results":[{"track":"Auld Lang Syne","artist":"Robert Burns","link":"1"}]})");
            const auto *const results = dialog->findChild<QTableView *>(u"tableView"_s);
            QTRY_VERIFY_WITH_TIMEOUT(results->currentIndex().isValid(), 30'000);
            if (asked == 1)
                QVERIFY(dialog->grab().save(pictures + u"/dialog.png"_s, nullptr, 0));
            QTest::mouseClick(dialog->findChild<QPushButton *>(u"btnDownload"_s), Qt::LeftButton);
            QVERIFY(server.waitForRequests(++asked));
            QTest::keyClick(dialog, Qt::Key_Escape);
        };
        EditorDriver editor(QStringLiteral(SAMPLES "/auld-lang-syne.lrc"));
        editor.window->resize(960, 560);
        editor.run(u"6:2 'And days of auld lang syne!' Return F7 F7 F7 F7 F7 7:0"_s);
        editor.window->statusBar()->clearMessage();
        QVERIFY(editor.window->grab().save(pictures + u"/editor.png"_s, nullptr, 0));
        editor.run(u"Ctrl+L"_s, {download});
        editor.run(u"6:2 'typed'"_s);
        reply();
        QTRY_COMPARE_WITH_TIMEOUT(editor.text(), u"[00:01.00]la|le"_s, 30'000);
        QCOMPARE(server.requests("artist=Robert%20Burns&track=Auld%20Lang%20Syne").size(), 2);
        editor.run(u"Ctrl+Z"_s);
        QVERIFY(editor.text().contains(u"]typed|"_s)); // was committed

        const QString refused = u"The lyric arrived while the song was being saved; search again"_s;
        editor.run(u"Ctrl+L"_s, {download});
        editor.run(u"Ctrl+W"_s, {[&](QWidget *dialog) {
                       editor.window->open(m_name); // must wait too
                       reply();
                       QTRY_COMPARE_WITH_TIMEOUT(editor.message(), refused, 30'000);
                       answer(u"Cancel"_s)(dialog);
                   }});
        QVERIFY(editor.text().contains(u"]typed|"_s));

        writeFile(m_name, "[ti:other]\n");
        editor.run(u"Ctrl+L"_s, {download});
        editor.run(u"?'%1' ?Discard Ctrl+O"_s.arg(m_name));
        reply(); // for the first song
        editor.run(u"Ctrl+L"_s, {download});
        server.reply(asked, "{}");
        QTRY_COMPARE_WITH_TIMEOUT(editor.message(), u"The lyric could not be downloaded"_s, 30'000);
        QCOMPARE(editor.text(), u"[ti:other]"_s);
    }

private:
    static QByteArray bytesOf(const QString &name)
    {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_home;
    QString m_name;
};

QTEST_MAIN(TestEditor)
#include "tst_editor.moc"
