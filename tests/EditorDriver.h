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

/// A folder for a test's files, where the editor keeps its settings and recovery files too.
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

    /// Writes the file \p name, and answers its path.
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

/// An editor's window, used by keys as a person uses it.
class EditorDriver
{
public:
    enum Watch { Watched, Unwatched };

    /// \p watch says whether the table's model is watched for breaches of a model's contract, which takes long
    /// with a long song.
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

    /// As a window manager would do, which a test's X server lacks.
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

    /// On the first cell of a row.
    static void click(QAbstractItemView *view, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers,
                          view->visualRect(view->model()->index(row, 0)).center());
    }

    /// Opens the cell, types over what is there and, unless told otherwise, presses Enter.
    void type(int row, int column, const QString &typed, bool enters = true)
    {
        table->setCurrentIndex(table->model()->index(row, column));
        table->setFocus();
        QTest::keyClick(table, Qt::Key_F2);
        QWidget *const editor = QApplication::focusWidget();
        QVERIFY(editor && editor != table);
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(editor, Qt::Key_Delete);
        for (const QChar c : typed) // keyClicks() knows ASCII alone
            QTest::sendKeyEvent(QTest::Click, editor, Qt::Key_unknown, QString(c), Qt::NoModifier);
        if (enters)
            press(Qt::Key_Return);
    }

    /// A key in the cell that is being edited.
    void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCoreApplication::processEvents(); // the table closes a cell when the key has been dealt with
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

/// Runs \p act, which shows one modal dialog after the other; each is given to one of \p steps, which must make
/// it close. Nothing hangs: a dialog that nobody expects is closed, and that counts as a failure.
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
            return; // its step is under way
        if (isSeen || steps.isEmpty()) {
            unexpected = QStringLiteral("nobody expects this dialog, or it stays: ") + dialog->windowTitle();
            dialog->close();
            return;
        }
        dialog->setProperty("isSeen", true);
        sinceStep.start();
        // In a turn of its own: while a timer's slot waits for the next dialog, the timer stands still.
        QTimer::singleShot(0, dialog, [step = steps.takeFirst(), dialog] {
            QVERIFY(QTest::qWaitForWindowExposed(dialog)); // before that a click may go nowhere
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

/// Puts a name into a file dialog, or an amount into the dialog that asks for one, and presses the button that
/// takes it.
inline DialogStep enter(const QString &typed)
{
    return [typed](QWidget *dialog) {
        auto *const line = dialog->findChild<QLineEdit *>();
        line->selectAll();
        line->insert(typed); // at once: a file dialog completes what is typed, when it gets to it
        for (auto *const button : dialog->findChild<QDialogButtonBox *>()->buttons()) {
            if (auto *const push = qobject_cast<QPushButton *>(button); push && push->isDefault())
                return QTest::mouseClick(push, Qt::LeftButton);
        }
    };
}
