// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/editor/EditorWindow.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <functional>

using namespace Qt::StringLiterals;

/// What a test does in a modal dialog. It must close the dialog.
using DialogStep = std::function<void(QWidget *dialog)>;

/// Clicks the button \p text, presses Return or Esc, or enters \p text.
inline DialogStep answer(const QString &text)
{
    return [text](QWidget *dialog) {
        for (auto *const button : dialog->findChildren<QPushButton *>()) {
            if (button->isVisible() && button->text().remove(u'&') == text)
                return QTest::mouseClick(button, Qt::LeftButton);
        }
        if (text == u"Return"_s || text == u"Esc"_s)
            return QTest::keySequence(dialog, QKeySequence(text));
        auto *const line = dialog->findChild<QLineEdit *>();
        line->setText(text); // not by keys: a file dialog would complete the name
        QTest::keyClick(line, Qt::Key_Return);
    };
}

/// Writes a file, or deletes it if \p bytes are empty.
inline void writeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    QVERIFY(bytes.isEmpty() ? file.remove() : file.open(QIODevice::WriteOnly) && file.write(bytes) > 0);
}

/// An editor window, used by keys and clicks.
class EditorDriver
{
public:
    explicit EditorDriver(const QString &file)
        : m_file(file)
    {
        new QAbstractItemModelTester(table->model(), window.get());
        window->show();
        press(u"0:0"_s);
        window->open(file);
        QCoreApplication::processEvents(); // the recent files are listed later
    }

    /// Uses the window. \p script is a list of words:
    /// - `2:1` goes to the cell in row 2, column 1;
    /// - `'text'` replaces the text of the current cell, which stays open;
    /// - `@1` clicks this line of the preview, `#1` this remark;
    /// - `^a.lrc,b.lrc` drops these files, which may be URLs;
    /// - `?Save` clicks this button in the dialog that the next key opens, see answer(); `?'text'` enters a text;
    /// - `!'text'` lets another program write the file, `!''` delete it;
    /// - `link` gives the file a second name;
    /// - `back` comes back from another window;
    /// - any other word is a key.
    void run(const QString &script, QList<DialogStep> steps = {})
    {
        static const QRegularExpression word(u"[?!]?'[^']*'|\\S+"_s);
        for (const QRegularExpressionMatch &match : word.globalMatch(script)) {
            const QString found = match.captured();
            const QString quoted = found.section(u'\'', 1, 1);
            if (found.startsWith(u'?'))
                steps += answer(quoted.isEmpty() ? found.sliced(1) : quoted);
            else if (found.startsWith(u'!'))
                writeFile(m_file, quoted.toUtf8());
            else if (found == u"link"_s)
                std::filesystem::create_hard_link(m_file.toStdString(), m_file.toStdString() + ".2");
            else
                press(found, std::exchange(steps, {}));
        }
    }

    /// The lines of a view, joined by "|".
    QString text(const char *name = "text") const
    {
        QStringList lines;
        for (int i = 0; i < view(name)->model()->rowCount(); ++i)
            lines += view(name)->model()->index(i, 0).data().toString();
        return lines.join(u'|');
    }
    QString highlighted(const char *name) const { return view(name)->currentIndex().data().toString(); }

    /// What the bar says about the file's remarks; empty if it is hidden.
    QString remarks() const
    {
        const auto *const summary = window->findChild<QLabel *>(u"remarkSummary"_s);
        return summary->isVisible() ? summary->text() : QString();
    }

    /// The title, with a "*" if the song is modified, or "closed".
    QString state() const
    {
        const QString mark = window->isWindowModified() ? u"*"_s : QString();
        return window->isVisible() ? window->windowTitle().replace(u"[*]"_s, mark) : u"closed"_s;
    }

    QString message() const { return window->statusBar()->currentMessage(); }

    std::unique_ptr<EditorWindow> window = std::make_unique<EditorWindow>();
    QTableView *table = window->findChild<QTableView *>(u"lines"_s);
    QString questions; ///< the texts of the message boxes so far

private:
    QListView *view(const char *name) const
    {
        return window->findChild<QListView *>(QLatin1StringView(name));
    }

    // Activates the window, since the tests' X server has no window manager.
    static void activate(QWidget *window)
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window, 30'000));
    }

    // Shows one modal dialog for each of \p steps. Any other dialog is closed and fails the test.
    void press(const QString &word, QList<DialogStep> steps)
    {
        QTimer poll;
        poll.callOnTimeout([&] {
            QWidget *const dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isVisible() || dialog->property("isSeen").toBool())
                return;
            dialog->setProperty("isSeen", true);
            if (const auto *const box = qobject_cast<QMessageBox *>(dialog))
                questions += box->text();
            if (steps.isEmpty()) {
                QTest::qFail(qPrintable(u"unexpected: "_s + dialog->windowTitle()), __FILE__, __LINE__);
                dialog->close();
                return;
            }
            // Not here: a timer does not fire while its slot waits for the next dialog.
            QTimer::singleShot(0, dialog, [step = steps.takeFirst(), dialog] {
                QVERIFY(QTest::qWaitForWindowExposed(dialog, 30'000)); // clicks may get lost before
                step(dialog);
            });
        });
        poll.start(10);
        press(word);
        QTRY_VERIFY_WITH_TIMEOUT(steps.isEmpty() && !QApplication::activeModalWidget(), 30'000);
    }

    void press(const QString &word)
    {
        QWidget other;
        if (word == u"back"_s) {
            other.show();
            activate(&other);
        }
        activate(window.get()); // a dialog may have been there
        if (word.startsWith(u'@') || word.startsWith(u'#')) {
            auto *const list =
                window->findChild<QAbstractItemView *>(word[0] == u'@' ? u"preview"_s : u"remarks"_s);
            const QModelIndex line = list->model()->index(word.sliced(1).toInt(), 0);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(line).center());
        } else if (word.startsWith(u'\'')) {
            QGuiApplication::clipboard()->setText(word.chopped(1).sliced(1));
            if (window->focusWidget() == table)
                QTest::keyClick(table, Qt::Key_F2);
            for (const char *keys : {"Ctrl+A", "Del", "Ctrl+V"})
                QTest::keySequence(window->focusWidget(), QKeySequence(QLatin1StringView(keys)));
        } else if (word.startsWith(u'^')) {
            QMimeData data;
            QList<QUrl> urls;
            for (const QString &name : word.sliced(1).split(u','))
                urls += QUrl::fromLocalFile(m_file).resolved(QUrl(name));
            data.setUrls(urls);
            QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(table->viewport(), &enter); // passes it on to the window
            QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
            if (enter.isAccepted())
                QApplication::sendEvent(table->viewport(), &drop);
        } else if (word.contains(u':')) {
            table->setFocus();
            table->setCurrentIndex(
                table->model()->index(word.section(u':', 0, 0).toInt(), word.section(u':', 1).toInt()));
        } else if (word != u"back"_s) {
            QTest::keySequence(window->focusWidget(), QKeySequence(word));
        }
        QCoreApplication::processEvents(); // the table closes a cell later
    }

    QString m_file;
};
