// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The program in the last step of docs/tutorial.md. Clicks its button and "Download" in its dialog, and prints the
// lyric that it shows.

#include "tutorial_search.cpp"

#include <QPushButton>
#include <QTimer>

#include <cstdio>

// Runs before the program's event loop starts.
static void useTheProgram()
{
    auto *const poll = new QTimer(QCoreApplication::instance());
    poll->callOnTimeout([] {
        if (const QWidget *const dialog = QApplication::activeModalWidget()) // nothing to download at first
            return dialog->findChild<QPushButton *>(QStringLiteral("btnDownload"))->click();
        for (const QWidget *const window : QApplication::topLevelWidgets()) {
            const auto *const text = window->findChild<QPlainTextEdit *>();
            if (text && text->toPlainText().isEmpty())
                // Queued, since a timer does not fire while its slot runs a dialog.
                QMetaObject::invokeMethod(window->findChild<QToolBar *>()->actions().first(), "trigger",
                                          Qt::QueuedConnection);
            else if (text && std::puts(text->toPlainText().toUtf8().constData()) >= 0)
                QApplication::quit();
        }
    });
    poll->start(100);
}
Q_COREAPP_STARTUP_FUNCTION(useTheProgram)
