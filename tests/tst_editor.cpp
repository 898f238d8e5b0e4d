// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The editor's window, used by keys and clicks: its commands, files, recovery and speed on long songs.

#include "EditorDriver.h"
#include "programs/editor/ClockBar.h"
#include "programs/editor/Recovery.h"

#include <QVSongLrc/QVUtils.h>

#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QRandomGenerator>
#include <QSettings>
#include <QSlider>
#include <QToolBar>
#include <QWidgetAction>

#include <csignal>
#include <ctime>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString Song = u"[ti:Song]\n[ar:A]\n[00:01.00]one\n[00:02.00][00:09.00]two\nthree\n"_s;

using Act = std::function<void(EditorDriver &)>;

// Debug and sanitizer builds are slower.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
constexpr double MostMs = 50;
#else
constexpr double MostMs = 1500;
#endif

// CPU time, which does not depend on the machine's load. A key must not make the thread wait for anything.
double threadMs()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

} // namespace

Q_DECLARE_METATYPE(Act)

class TestEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Ends a test that waits for ever on an unexpected dialog.
    void init()
    {
        m_watchdog.callOnTimeout([] { qFatal("a test takes too long"); });
        m_watchdog.setSingleShot(true);
        m_watchdog.start(60'000);
    }

    void cleanup()
    {
        m_watchdog.stop();
        m_watchdog.disconnect();
        QSettings().clear();
        QCOMPARE(Recovery::abandoned(), QStringList()); // closed windows delete theirs
    }

    void undoesEverything_data()
    {
        QTest::addColumn<Act>("act");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const Act &act, const QString &text) {
            QTest::newRow(name) << act << text;
        };
        const auto typed = [row](const char *name, int line, int column, const QString &words,
                                 const QString &text) {
            row(
                name, [=](auto &e) { e.type(line, column, words); }, text);
        };
        typed("text", 2, 2, u"[un]:1"_s,
              u"[ti:Song]\n[ar:A]\n[00:01.00][un]:1\n[00:02.00][00:09.00]two\nthree\n"_s);
        typed("a property's value, colons and all", 1, 2, u"B: C:D"_s,
              u"[ti:Song]\n[ar:B: C:D]\n[00:01.00]one\n[00:02.00][00:09.00]two\nthree\n"_s);
        typed("times, without brackets", 4, 0, u"1:02.50"_s,
              u"[ti:Song]\n[ar:A]\n[00:01.00]one\n[00:02.00][00:09.00]two\n[01:02.50]three\n"_s);
        typed("more times", 2, 0, u"[00:01.00][00:03.00] [00:05.00]"_s,
              u"[ti:Song]\n[ar:A]\n[00:01.00][00:03.00][00:05.00]one\n[00:02.00][00:09.00]two\nthree\n"_s);
        typed("one time less", 3, 0, u"[00:09.00]"_s,
              u"[ti:Song]\n[ar:A]\n[00:01.00]one\n[00:09.00]two\nthree\n"_s);
        typed("no times", 3, 0, u""_s, u"[ti:Song]\n[ar:A]\n[00:01.00]one\ntwo\nthree\n"_s);
        typed("a lyric line to a property", 4, 1, u"by"_s,
              u"[ti:Song]\n[ar:A]\n[00:01.00]one\n[00:02.00][00:09.00]two\n[by:three]\n"_s);
        typed("a property to a lyric line", 0, 1, u"Lyric"_s,
              u"Song\n[ar:A]\n[00:01.00]one\n[00:02.00][00:09.00]two\nthree\n"_s);
        row(
            "insert",
            [](auto &e) {
                e.select(2);
                e.key(Qt::Key_Insert);
                QTest::keyClicks(QApplication::focusWidget(), u"new"_s);
                e.press(Qt::Key_Return);
            },
            u"[ti:Song]\n[ar:A]\n[00:01.00]one\nnew\n[00:02.00][00:09.00]two\nthree\n"_s);
        row(
            "delete lines that are not adjacent",
            [](auto &e) {
                e.select(1);
                EditorDriver::click(e.table, 3, Qt::ControlModifier);
                EditorDriver::click(e.table, 4, Qt::ControlModifier);
                e.key(Qt::Key_Delete);
            },
            u"[ti:Song]\n[00:01.00]one\n"_s);
        row(
            "delete all",
            [](auto &e) {
                QTest::keyClick(e.table, Qt::Key_A, Qt::ControlModifier);
                e.key(Qt::Key_Delete);
            },
            u""_s);
        row(
            "move by an amount",
            [](auto &e) {
                e.select(2, 3);
                inDialogs([&] { e.key(Qt::Key_M, Qt::ControlModifier); }, {enter(u"-1500"_s)});
            },
            u"[ti:Song]\n[ar:A]\n[00:00.00]one\n[00:00.50][00:07.50]two\nthree\n"_s);
        row(
            "nudge",
            [](auto &e) {
                e.select(2);
                e.key(Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
                e.key(Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
                e.key(Qt::Key_Right, Qt::AltModifier);
                e.key(Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
                e.key(Qt::Key_Left, Qt::AltModifier);
                e.key(Qt::Key_Left, Qt::AltModifier);
            },
            u"[ti:Song]\n[ar:A]\n[00:01.09]one\n[00:02.00][00:09.00]two\nthree\n"_s);
        row(
            "nudge the selection twice, without the current line",
            [](auto &e) {
                e.select(2, 4);
                EditorDriver::click(e.table, 4, Qt::ControlModifier);
                e.key(Qt::Key_Right, Qt::AltModifier);
                e.key(Qt::Key_Right, Qt::AltModifier);
            },
            u"[ti:Song]\n[ar:A]\n[00:01.02]one\n[00:02.02][00:09.02]two\nthree\n"_s);
        row(
            "stamp two lines",
            [](auto &e) {
                e.window->template findChild<QSlider *>(u"clockSlider"_s)->setValue(7500);
                e.select(3);
                e.key(Qt::Key_F8);
                e.key(Qt::Key_F8);
            },
            u"[ti:Song]\n[ar:A]\n[00:01.00]one\n[00:07.50][00:09.00]two\n[00:07.50]three\n"_s);
        row(
            "commands commit the open cell",
            [](auto &e) {
                e.type(2, 2, u"un"_s, false);
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_F8);
                e.type(3, 2, u"deux"_s, false);
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right, Qt::AltModifier);
            },
            u"[ti:Song]\n[ar:A]\n[00:00.00]un\n[00:02.01][00:09.01]deux\nthree\n"_s);
        row(
            "maker mark", [](auto &e) { e.key(Qt::Key_K, Qt::ControlModifier); },
            u"[ti:Song]\n[ar:A]\n[00:00.30]Maker Tool: Quendle\n[00:00.70]https://%1\n"
            "[00:01.00]one\n[00:02.00][00:09.00]two\nthree\n"_s.arg(QStringLiteral(MAKER_HOST)));
    }
    void undoesEverything()
    {
        QFETCH(const Act, act);
        QFETCH(const QString, text);
        EditorDriver editor(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        act(editor);
        QCOMPARE(editor.text(), text);
        QCOMPARE(editor.window->isWindowModified(), text != Song);
        for (int i = 0; i < 10; ++i)
            editor.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(editor.text(), Song);
        QVERIFY(!editor.window->isWindowModified());
        for (int i = 0; i < 10; ++i)
            editor.key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(editor.text(), text);
    }

    // Not from the last click.
    void extendsTheSelectionFromACommandsLine()
    {
        EditorDriver editor(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        EditorDriver::click(editor.table, 2);
        editor.key(Qt::Key_F8); // goes to the next line
        QTest::keyClick(editor.table, Qt::Key_Down, Qt::ShiftModifier);
        editor.key(Qt::Key_Delete);
        QCOMPARE(editor.text(), u"[ti:Song]\n[ar:A]\n[00:00.00]one\n"_s);
        discard(editor);
    }

    void answersKeysOnALongSongInTime_data()
    {
        QTest::addColumn<Act>("prepare");
        QTest::addColumn<Act>("press");
        const auto row = [](const char *name, const Act &prepare, const Act &press) {
            QTest::newRow(name) << prepare << press;
        };
        const auto toMiddle = [](auto &e) { e.select(10'000); };
        const auto selectAll = [](auto &e) { QTest::keyClick(e.table, Qt::Key_A, Qt::ControlModifier); };
        row(
            "a letter", [](auto &e) { e.type(10'000, 2, u"so"_s, false); },
            [](auto &) { QTest::keyClick(QApplication::focusWidget(), Qt::Key_X); });
        row(
            "Enter",
            [](auto &e) { e.type(10'000, 2, u"%1"_s.arg(QRandomGenerator::global()->generate()), false); },
            [](auto &e) { e.press(Qt::Key_Return); });
        row("nudge a line", toMiddle, [](auto &e) { e.key(Qt::Key_Right, Qt::AltModifier); });
        row("nudge all", selectAll, [](auto &e) { e.key(Qt::Key_Right, Qt::AltModifier); });
        row("insert", toMiddle, [](auto &e) { e.key(Qt::Key_Insert); });
        row("delete a line", toMiddle, [](auto &e) { e.key(Qt::Key_Delete); });
        row(
            "stamp",
            [](auto &e) {
                e.key(Qt::Key_F7);
                e.select(10'000);
            },
            [](auto &e) { e.key(Qt::Key_F8); });
        row(
            "undo",
            [](auto &e) {
                e.key(Qt::Key_Delete);
                QCOMPARE(e.table->model()->rowCount(), 20'000); // undo leaves one line selected
            },
            [](auto &e) { e.key(Qt::Key_Z, Qt::ControlModifier); });
        row("down", toMiddle, [](auto &e) { QTest::keyClick(e.table, Qt::Key_Down); });
    }
    void answersKeysOnALongSongInTime()
    {
        QFETCH(const Act, prepare);
        QFETCH(const Act, press);
        QByteArray song = "[ti:Long]\n";
        for (int i = 0; i < 20'000; ++i)
            song +=
                u"[%1]some words that are sung, number %2\n"_s.arg(QVUtils::getTimeIntervalMMSSMSStr(i * 250))
                    .arg(i)
                    .toUtf8();
        EditorDriver editor(m_home.file(u"long.lrc"_s, song), EditorDriver::Unwatched);
        QCOMPARE(editor.table->model()->rowCount(), 20'001);
        QList<double> ms;
        for (int i = 0; i < 7; ++i) {
            prepare(editor);
            QCoreApplication::processEvents();
            const double start = threadMs();
            press(editor);
            QCoreApplication::processEvents(); // includes painting
            ms += threadMs() - start;
        }
        std::sort(ms.begin(), ms.end());
        qInfo("median %.1f ms, slowest %.1f ms", ms[3], ms[6]);
        QVERIFY2(ms[3] < MostMs, QByteArray::number(ms[3]).constData());
        discard(editor);
    }

    // Compares the bytes on disk: saving keeps the file's encoding, mark and line ends.
    void savesInTheFilesOwnForm_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("UTF-8") << "[00:01.00]\xC3\xA4\n"_ba << u"ö"_s << "[00:01.00]\xC3\xB6\n"_ba;
        QTest::newRow("UTF-8 with a mark")
            << "\xEF\xBB\xBF[00:01.00]a\n"_ba << u"b"_s << "\xEF\xBB\xBF[00:01.00]b\n"_ba;
        QTest::newRow("UTF-16") << "\xFF\xFE[\0t\0i\0:\0a\0]\0\n\0"_ba << u"b"_s
                                << "\xFF\xFE[\0t\0i\0:\0b\0]\0\n\0"_ba;
        const QByteArray sakura = bytesOf(QStringLiteral(SAMPLES "/sakura-sakura.lrc"));
        const qsizetype title = sakura.indexOf("[ti:") + 4;
        QTest::newRow("Shift_JIS") << sakura << u"さ"_s
                                   << "[ti:\x82\xB3" + sakura.sliced(sakura.indexOf(']', title));
        QTest::newRow("CR LF") << "[00:01.00]a\r\n[00:02.00]b\r\n"_ba << u"c"_s
                               << "[00:01.00]c\r\n[00:02.00]b\r\n"_ba;
    }
    void savesInTheFilesOwnForm()
    {
        QFETCH(const QByteArray, before);
        QFETCH(const QString, typed);
        const QString name = m_home.file(u"song.lrc"_s, before);
        EditorDriver editor(name);
        editor.type(0, 2, typed, false); // the open cell is saved too
        editor.key(Qt::Key_S, Qt::ControlModifier);
        QTEST(bytesOf(name), "after");
        QVERIFY(!editor.window->isWindowModified());
        QVERIFY(editor.window->close());
    }

    void offersUtf8ForOtherCharacters()
    {
        const QString name = m_home.file(u"song.lrc"_s, "[00:01.00]caf\xE9 cr\xE8me, d\xE9j\xE0 vu\n");
        EditorDriver editor(name);
        editor.type(0, 2, u"歌"_s);
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier); }, {press(u"Cancel"_s)});
        QCOMPARE(bytesOf(name), "[00:01.00]caf\xE9 cr\xE8me, d\xE9j\xE0 vu\n"_ba);
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier); }, {press(u"Yes"_s)});
        QCOMPARE(bytesOf(name), u"[00:01.00]歌\n"_s.toUtf8());
    }

    void savesAsAndOpens()
    {
        EditorDriver editor;
        const QString first = m_home.path(u"first.lrc"_s);
        editor.key(Qt::Key_Insert);
        QTest::keyClicks(QApplication::focusWidget(), u"words"_s);
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier); },
                  {enter(first)}); // a song without a file
        QCOMPARE(bytesOf(first), "words\n"_ba);
        QVERIFY2(editor.window->windowTitle().contains(u"first.lrc"_s),
                 qPrintable(editor.window->windowTitle()));

        const QString second = m_home.file(u"second.lrc"_s, Song.toUtf8());
        inDialogs([&] { editor.key(Qt::Key_O, Qt::ControlModifier); }, {enter(second)});
        QCOMPARE(editor.text(), Song);
        QCoreApplication::processEvents();
        editor.key(Qt::Key_2, Qt::ControlModifier); // the recent file before this one
        QCOMPARE(editor.text(), u"words\n"_s);
        QVERIFY(QFile::remove(second));
        QCoreApplication::processEvents();
        inDialogs([&] { editor.key(Qt::Key_2, Qt::ControlModifier); }, {press(u"OK"_s)});
        QCOMPARE(editor.text(), u"words\n"_s);
        editor.key(Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(editor.text(), u""_s);
    }

    // The current line is removed, and the table selects another.
    void opensASongOfFewerButLongerLines()
    {
        EditorDriver editor(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        editor.select(4);
        editor.window->open(m_home.file(u"other.lrc"_s, QByteArray(3000, 'x') + "\nend\n"));
        QCOMPARE(editor.table->currentIndex().row(), 0);
        QCOMPARE(editor.highlighted("text"), QString(3000, u'x'));
    }

    // The menu of a window that has opened no file is empty at first.
    void offersWhatAnotherWindowOpened()
    {
        EditorDriver editor;
        const EditorDriver other(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        QMenu *const menu = editor.window->menuBar()->actions().constFirst()->menu();
        Q_EMIT menu->aboutToShow();
        const auto *const recent = menu->findChild<QMenu *>();
        QVERIFY(recent->isEnabled() && recent->actions().size() == 1);
    }

    void opensADroppedFile()
    {
        const QString name = m_home.file(u"song.lrc"_s, Song.toUtf8());
        EditorDriver editor;
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(name)});
        // People drop it on the table, which passes the event on to the window.
        const QPoint at(5, 5);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(editor.table->viewport(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(editor.table->viewport(), &drop);
        QTRY_COMPARE(editor.text(), Song);
    }

    // A changed song is only given up when it is saved or the user discards it.
    void guardsUnsavedChanges()
    {
        const QString directory = m_home.path(u"gone"_s);
        QVERIFY(QDir().mkpath(directory));
        const QString name = m_home.file(u"gone/song.lrc"_s, Song.toUtf8());
        const QString other = m_home.file(u"other.lrc"_s, "other\n");
        EditorDriver editor(name);
        editor.type(4, 2, u"changed"_s);
        const QString changed = editor.text();
        const auto close = [&] { editor.window->close(); };

        inDialogs(close, {press(u"Cancel"_s)});
        inDialogs([&] { editor.window->open(other); }, {press(u"Cancel"_s)});
        inDialogs([&] { editor.key(Qt::Key_N, Qt::ControlModifier); }, {press(u"Cancel"_s)});
        QVERIFY(QDir(directory).removeRecursively());
        inDialogs(close, {press(u"Save"_s), press(u"OK"_s)}); // saving fails
        QVERIFY(editor.window->isVisible() && editor.window->isWindowModified());
        QCOMPARE(editor.text(), changed);
        // A full disk.
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier); },
                  {enter(u"/dev/full"_s), press(u"Yes"_s), press(u"OK"_s)});
        QVERIFY(editor.window->isWindowModified());
        QVERIFY2(editor.window->windowTitle().contains(u"song.lrc"_s), "a failed save renames nothing");

        QVERIFY(QDir().mkpath(directory));
        inDialogs(close, {press(u"Save"_s)});
        QVERIFY(!editor.window->isVisible());
        QCOMPARE(bytesOf(name), changed.toUtf8());

        // Saved, but deleted since.
        editor.window->show();
        QVERIFY(QFile::remove(name));
        inDialogs(close, {press(u"Save"_s)});
        QCOMPARE(bytesOf(name), changed.toUtf8());
    }

    void warnsOfAFileThatChangedOnDisk()
    {
        const QString name = m_home.file(u"song.lrc"_s, Song.toUtf8());
        EditorDriver editor(name);
        editor.type(4, 2, u"mine"_s);
        m_home.file(u"song.lrc"_s, "theirs\n");
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier); }, {press(u"Cancel"_s)});
        QCOMPARE(bytesOf(name), "theirs\n"_ba);
        QVERIFY(editor.window->isWindowModified());
        inDialogs([&] { editor.key(Qt::Key_S, Qt::ControlModifier); }, {press(u"Save"_s)});
        QVERIFY(bytesOf(name).endsWith("mine\n"));
        // An activated window offers to reload the file.
        m_home.file(u"song.lrc"_s, "theirs again\n");
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        inDialogs(
            [&] {
                editor.window->activateWindow();
                QTRY_COMPARE(editor.text(), u"theirs again\n"_s);
            },
            {press(u"Yes"_s)});
    }

    void goesOnWithoutARecoveryFile()
    {
        const QByteArray home = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", m_home.file(u"no directory"_s, {}).toLocal8Bit());
        const QString name = m_home.file(u"song.lrc"_s, Song.toUtf8());
        {
            EditorDriver editor(name);
            editor.type(4, 2, u"changed"_s);
            const auto *const warning = editor.window->statusBar()->findChild<QLabel *>(u"warning"_s);
            QTRY_VERIFY(warning->text().contains(u"no directory"_s));
            editor.key(Qt::Key_S, Qt::ControlModifier);
            QVERIFY(bytesOf(name).endsWith("changed\n"));
        }
        qputenv("XDG_DATA_HOME", home);
    }

    void keepsTheRecoveryFileOnAFullDisk()
    {
        EditorDriver editor(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        editor.type(4, 2, u"changed"_s);
        const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + u"/QVSongLrc/songlrc-editor/recovery"_s);
        QTRY_COMPARE(folder.entryList({u"*.json"_s}).size(), 1);
        const QString recovery = folder.filePath(folder.entryList({u"*.json"_s}).first());
        const QByteArray before = bytesOf(recovery);
        // Limits the size of files, which fails like a full disk.
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &usual), 0);
        const rlimit small{64, usual.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        editor.type(4, 2, u"changed again"_s);
        const auto *const warning = editor.window->statusBar()->findChild<QLabel *>(u"warning"_s);
        const bool isWarned = QTest::qWaitFor([&] { return !warning->text().isEmpty(); });
        ::setrlimit(RLIMIT_FSIZE, &usual);
        QVERIFY(isWarned);
        QCOMPARE(bytesOf(recovery), before);
        discard(editor);
    }

    void recoversAbandonedChanges()
    {
        const QString name = m_home.file(u"song.lrc"_s,
                                         "\xFF\xFE"
                                         "a\0\r\0\n\0"_ba);
        EditorDriver first(name);
        first.type(0, 2, u"歌"_s);
        const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + u"/QVSongLrc/songlrc-editor/recovery"_s);
        QTRY_COMPARE(folder.entryList({u"*.json"_s}).size(), 1);
        QCOMPARE(Recovery::abandoned(), QStringList()); // its program is running
        // A copy that no program has locked, as if the program had ended.
        const QString left = folder.filePath(u"left.json"_s);
        QVERIFY(QFile::copy(folder.filePath(folder.entryList({u"*.json"_s}).first()), left));
        QCOMPARE(Recovery::abandoned(), QStringList(left));
        discard(first);

        EditorDriver second;
        QVERIFY(second.window->recover(left));
        QVERIFY(!EditorWindow().recover(left)); // in use
        QCOMPARE(second.text(), u"歌\n"_s);
        QVERIFY(second.window->isWindowModified());
        m_home.file(u"song.lrc"_s,
                    "\xFF\xFE"
                    "b\0\r\0\n\0"_ba); // changed by another program
        inDialogs([&] { second.key(Qt::Key_S, Qt::ControlModifier); }, {press(u"Save"_s)});
        QCOMPARE(bytesOf(name), "\xFF\xFE\x4C\x6B\r\0\n\0"_ba);
        QVERIFY(!QFile::exists(left));

        const QString broken = folder.filePath(u"broken.json"_s);
        QVERIFY(QFile::copy(name, broken));
        QVERIFY(!EditorWindow().recover(broken));
        QVERIFY(QFile::exists(broken)); // kept, since somebody may be able to read it
        Recovery::discard(broken);
    }

    // Discarding a recovered song leaves the next one unmodified.
    void discardsARecoveredSong()
    {
        const QString left = m_home.path(u"data/QVSongLrc/songlrc-editor/recovery/left.json"_s);
        QVERIFY(QDir().mkpath(QFileInfo(left).path()));
        m_home.file(u"data/QVSongLrc/songlrc-editor/recovery/left.json"_s, R"({"text":"words\n"})");
        EditorDriver editor;
        QVERIFY(editor.window->recover(left));
        inDialogs([&] { editor.key(Qt::Key_N, Qt::ControlModifier); }, {press(u"Discard"_s)});
        QVERIFY(!editor.window->isWindowModified());
        QVERIFY(!QFile::exists(left));
    }

    void refusesInvalidTimesAndKeys()
    {
        const QString name = m_home.file(u"song.lrc"_s, Song.toUtf8());
        EditorDriver editor(name);
        for (const auto &[column, typed] : {std::pair(0, u"soon"_s),
                                            {0, u"[00:01.00"_s},
                                            {0, u"[00:01.00]x"_s},
                                            {0, u"[x[00:01.00]"_s},
                                            {0, u"00:01.00][00:02.00"_s},
                                            {0, u"1 2:03.00"_s},
                                            {1, u"title"_s}}) {
            editor.type(2, column, typed);
            QVERIFY2(editor.message().contains(typed), qPrintable(typed));
            QCOMPARE(editor.text(), Song);
        }
        editor.select(2); // a tag has two digits for the minutes
        inDialogs([&] { editor.key(Qt::Key_M, Qt::ControlModifier); }, {enter(u"5999000"_s)});
        QVERIFY(editor.message().contains(u"99:59.99"_s));
        QCOMPARE(editor.text(), Song);
        editor.select(0); // a property has no time
        editor.key(Qt::Key_F8);
        QVERIFY(!editor.window->isWindowModified());
        editor.type(2, 2, u"a\nb"_s); // may be pasted
        QCOMPARE(editor.table->model()->rowCount(), 5);
        discard(editor);
    }

    void showsWhereTheClockIs()
    {
        EditorDriver editor(m_home.file(u"song.lrc"_s, Song.toUtf8()));
        QCOMPARE(editor.preview(), u"[ti:Song]\n[00:01.00]one\n[ar:A]\n[00:02.00]two\n[00:09.00]two\n"_s);
        editor.key(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(editor.preview(), u"Song\none\nA\ntwo\ntwo\n"_s);
        editor.key(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(editor.highlighted("preview"), QString());
        editor.key(Qt::Key_F7); // 5 seconds on
        QCOMPARE(editor.highlighted("preview"), u"[00:02.00]two"_s);
        editor.key(Qt::Key_F7, Qt::ShiftModifier);
        editor.key(Qt::Key_F5);
        QTRY_COMPARE_WITH_TIMEOUT(editor.highlighted("preview"), u"[00:09.00]two"_s, 10'000);
        editor.key(Qt::Key_F5);
        auto *const slider = editor.window->findChild<QSlider *>(u"clockSlider"_s);
        const int stopped = slider->value();
        QTest::qWait(100);
        QCOMPARE(slider->value(), stopped);
        EditorDriver::click(editor.view("preview"), 1);
        QCOMPARE(slider->value(), 1000);

        editor.select(3); // text and table follow each other's current line
        QCOMPARE(editor.highlighted("text"), u"[00:02.00][00:09.00]two"_s);
        QTest::keyClick(editor.view("text"), Qt::Key_Down);
        QCOMPARE(editor.table->currentIndex().row(), 4);
        editor.key(Qt::Key_F8);
        QCOMPARE(editor.highlighted("text"), u"[00:01.00]three"_s);
        discard(editor);
    }

    void seeksToTheLineThatIsClicked_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::newRow("1 ms less in seconds as a double") << u"[01:04.10]"_s;
        QTest::newRow("the latest") << u"[99:59.99]"_s;
    }
    void seeksToTheLineThatIsClicked()
    {
        QFETCH(const QString, tag);
        EditorDriver editor(m_home.file(u"song.lrc"_s, "[00:01.00]a\n" + tag.toUtf8() + "b\n"));
        EditorDriver::click(editor.view("preview"), 1);
        editor.key(Qt::Key_T, Qt::ControlModifier); // highlights the clock's line again
        QCOMPARE(editor.highlighted("preview"), u"b"_s);
        editor.key(Qt::Key_F7);
        QCOMPARE(editor.highlighted("preview"), u"b"_s);
    }

    void runsAtItsSpeed()
    {
        ClockBar clock;
        auto *const speeds = clock.findChild<QComboBox *>();
        speeds->setCurrentIndex(speeds->count() - 1); // 2
        clock.setPlaying(true);
        QElapsedTimer passed;
        passed.start();
        QTRY_VERIFY(clock.now() >= 1000);
        QVERIFY2(passed.elapsed() >= 490, QByteArray::number(passed.elapsed()).constData());
        const qint64 now = clock.now();
        clock.stepSpeed(-100); // to 0.25; keeps the time
        QVERIFY(clock.now() >= now && speeds->currentIndex() == 0);
        clock.seek(-5);
        QVERIFY(clock.now() < 1000);
    }

    void givesEveryCommandAMenuAShortcutAndATip()
    {
        const QString name = m_home.file(u"song.lrc"_s, Song.toUtf8());
        EditorDriver editor(name);
        QCoreApplication::processEvents();
        QSet<QKeySequence> keys;
        QList<QMenu *> menus =
            editor.window->menuBar()->findChildren<QMenu *>() + editor.window->findChildren<QMenu *>();
        QSet<QAction *> commands;
        for (const QMenu *const menu : std::as_const(menus)) {
            for (QAction *const action : menu->actions()) {
                if (!action->isSeparator() && !action->menu())
                    commands += action;
            }
        }
        QVERIFY2(commands.size() > 20, QByteArray::number(commands.size()).constData());
        for (const QAction *const command : std::as_const(commands)) {
            QVERIFY2(!command->shortcut().isEmpty() && !keys.contains(command->shortcut()),
                     qPrintable(command->text()));
            QVERIFY2(command->toolTip().size() > command->text().size(), qPrintable(command->text()));
            keys += command->shortcut();
        }
        for (auto *const bar : editor.window->findChildren<QToolBar *>()) {
            for (QAction *const action : bar->actions())
                QVERIFY(action->isSeparator() || qobject_cast<QWidgetAction *>(action)
                        || commands.contains(action));
        }
    }

private:
    static void discard(EditorDriver &editor)
    {
        if (editor.window->isWindowModified())
            inDialogs([&] { QVERIFY(editor.window->close()); }, {press(u"Discard"_s)});
    }

    EditorHome m_home;
    QTimer m_watchdog;
};

QTEST_MAIN(TestEditor)
#include "tst_editor.moc"
