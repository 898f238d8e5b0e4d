// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Runs the program in the last step of docs/tutorial.md, and uses it.

#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#define main tutorialMain
#include "tutorial_search.cpp"
#undef main

using namespace Qt::StringLiterals;

namespace {

QString shown;

void download()
{
    QWidget *const dialog = QApplication::activeModalWidget();
    QVERIFY(dialog);
    dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    const auto *const table = dialog->findChild<QTableView *>(u"tableView"_s);
    QTRY_COMPARE(table->selectionModel()->selectedRows().size(), 1); // the best match
    QTest::mouseClick(dialog->findChild<QPushButton *>(u"btnDownload"_s), Qt::LeftButton);
}

void useTheProgram()
{
    for (const QWidget *const widget : QApplication::topLevelWidgets()) {
        const auto *const window = qobject_cast<const QMainWindow *>(widget);
        if (!window)
            continue;
        QTimer::singleShot(0, window, download);
        window->findChild<QToolBar *>()->actions().value(0)->trigger();
        shown = window->findChild<QPlainTextEdit *>()->toPlainText();
    }
    QApplication::quit();
}

// Runs before the program's event loop starts.
void schedule()
{
    QTimer::singleShot(0, &useTheProgram);
    QTimer::singleShot(30'000, [] { qFatal("the dialog has not closed"); });
}
Q_COREAPP_STARTUP_FUNCTION(schedule)

} // namespace

class TestTutorial : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksASongUp()
    {
        const QTemporaryDir data;
        QProcess service;
        service.start(QStringLiteral(SONGLRC_SERVICE),
                      {u"--library"_s, QStringLiteral(SAMPLES), u"--data"_s, data.path()});
        QByteArray printed;
        while (!printed.contains("url: ") && service.waitForReadyRead(20'000))
            printed += service.readAllStandardOutput();
        QByteArray port = printed.trimmed().split(':').last();
        QByteArray authority = data.path().toLocal8Bit() + "/authority.pem";
        char name[] = "lyrics";
        char *arguments[] = {name, port.data(), authority.data(), nullptr};
        QCOMPARE(tutorialMain(3, arguments), 0);
        QVERIFY2(shown.startsWith(u"[ti:Auld Lang Syne]\n"_s), qPrintable(shown));
        service.terminate();
        QVERIFY(service.waitForFinished());
    }
};

QTEST_APPLESS_MAIN(TestTutorial)
#include "tst_tutorial.moc"
