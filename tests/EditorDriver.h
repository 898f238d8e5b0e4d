// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "programs/editor/EditorWindow.h"

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

/// A folder for a test's files and for the editor's settings and recovery files.
class EditorHome
{
public:
    EditorHome()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(QStringLiteral("settings")));
        qputenv("XDG_DATA_HOME", path(QStringLiteral("data")).toLocal8Bit());
        QCoreApplication::setOrganizationName(QStringLiteral("QVSongLrc"));
        QCoreApplication::setApplicationName(QStringLiteral("songlrc-editor"));
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Writes the file \p name and returns its path.
    QString file(const QString &name, const QByteArray &bytes) const
    {
        QFile out(path(name));
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            qFatal("can't write %s", qPrintable(out.fileName()));
        return out.fileName();
    }

private:
    QTemporaryDir m_folder;
};

inline QByteArray bytesOf(const QString &path)
{
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("no such file");
}

/// An editor window, used by keys and clicks.
class EditorDriver
{
public:
    enum Watch { Watched, Unwatched };

    /// Watched: a QAbstractItemModelTester checks the table's model, which is slow for long songs.
    explicit EditorDriver(Watch watch = Watched)
    {
        if (watch == Watched)
            new QAbstractItemModelTester(table->model(), window.get());
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        activate();
    }

    explicit EditorDriver(const QString &file, Watch watch = Watched)
        : EditorDriver(watch)
    {
        window->open(file);
    }

    /// Activates the window, since the tests' X server has no window manager.
    void activate()
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        activate(); // a dialog may have been there
        QTest::keyClick(window.get(), Qt::Key(key), modifiers);
    }

    void select(int row, int last = -1)
    {
        table->setCurrentIndex(table->model()->index(row, 0));
        for (int i = row; i < last; ++i)
            QTest::keyClick(table, Qt::Key_Down, Qt::ShiftModifier);
    }

    /// Clicks the first cell of a row.
    static void click(QAbstractItemView *view, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers,
                          view->visualRect(view->model()->index(row, 0)).center());
    }

    /// Opens the cell, replaces its text by \p typed and, if \p enters, presses Enter.
    void type(int row, int column, const QString &typed, bool enters = true)
    {
        table->setCurrentIndex(table->model()->index(row, column));
        table->setFocus();
        QTest::keyClick(table, Qt::Key_F2);
        QWidget *const editor = QApplication::focusWidget();
        QVERIFY(editor && editor != table);
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(editor, Qt::Key_Delete);
        for (const QChar c : typed) // keyClicks() only supports ASCII
            QTest::sendKeyEvent(QTest::Click, editor, Qt::Key_unknown, QString(c), Qt::NoModifier);
        if (enters)
            press(Qt::Key_Return);
    }

    /// Presses a key in the open cell.
    void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCoreApplication::processEvents(); // the table closes the cell later
    }

    QString text() const { return all(view("text")); }
    QString preview() const { return all(view("preview")); }
    QString highlighted(const char *name) const { return view(name)->currentIndex().data().toString(); }
    QListView *view(const char *name) const
    {
        return window->findChild<QListView *>(QLatin1StringView(name));
    }
    QString message() const { return window->statusBar()->currentMessage(); }

    static QString all(const QListView *view)
    {
        QString text;
        for (int i = 0; i < view->model()->rowCount(); ++i)
            text += view->model()->index(i, 0).data().toString() + u'\n';
        return text;
    }

    std::unique_ptr<EditorWindow> window = std::make_unique<EditorWindow>();
    QTableView *table = window->findChild<QTableView *>(QStringLiteral("lines"));
};

using DialogStep = std::function<void(QWidget *dialog)>;

/// Runs \p act, which shows one modal dialog for each of \p steps. A step gets its dialog and must close it. A
/// dialog that is not expected or stays open is closed and fails the test.
inline void inDialogs(const std::function<void()> &act, QList<DialogStep> steps)
{
    QTimer poll;
    QElapsedTimer sinceStep;
    sinceStep.start();
    QString unexpected;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isVisible())
            return;
        const bool isSeen = dialog->property("isSeen").toBool();
        if (isSeen && !sinceStep.hasExpired(10'000))
            return; // its step is running
        if (isSeen || steps.isEmpty()) {
            unexpected =
                QStringLiteral("an unexpected dialog, or one that stays open: ") + dialog->windowTitle();
            dialog->close();
            return;
        }
        dialog->setProperty("isSeen", true);
        sinceStep.start();
        // Not here: a timer does not fire while its slot waits for the next dialog.
        QTimer::singleShot(0, dialog, [step = steps.takeFirst(), dialog] {
            QVERIFY(QTest::qWaitForWindowExposed(dialog)); // clicks may get lost before
            step(dialog);
        });
    });
    poll.start(10);
    act();
    poll.stop();
    QVERIFY2(unexpected.isNull(), qPrintable(unexpected));
    QVERIFY2(steps.isEmpty(), "a dialog did not come");
}

/// Clicks the button with this text.
inline DialogStep press(const QString &text)
{
    return [text](QWidget *dialog) {
        for (auto *const button : dialog->findChildren<QAbstractButton *>()) {
            if (button->isVisible() && button->text().remove(u'&') == text)
                return QTest::mouseClick(button, Qt::LeftButton);
        }
        dialog->close();
        QFAIL(qPrintable(QStringLiteral("no button ") + text));
    };
}

/// Enters a file name or an amount, and clicks the default button.
inline DialogStep enter(const QString &typed)
{
    return [typed](QWidget *dialog) {
        auto *const line = dialog->findChild<QLineEdit *>();
        line->selectAll();
        line->insert(typed); // not by keys: a file dialog would complete the name
        for (auto *const button : dialog->findChild<QDialogButtonBox *>()->buttons()) {
            if (auto *const push = qobject_cast<QPushButton *>(button); push && push->isDefault())
                return QTest::mouseClick(push, Qt::LeftButton);
        }
    };
}
