// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LookupServer.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>

using namespace Qt::StringLiterals;

inline const QHash<QString, QByteArray> Replies = {
    {u"songs"_s, R"({"results":[{"track":"b","artist":"Z","link":"1"},
        {"track":"é","artist":"m","link":"2"}, {"track":"A","artist":"M","link":"3"},
        {"track":"f","artist":"m","link":"4"}, {"track":"C","artist":"m","link":""}]})"},
    {u"odd"_s,
     R"({"results":[{"track":"1\n2","artist":"B"},{"track":"שלום","artist":"B"},
        {"artist":"A","track":"a <b>m)"
         + QByteArray(995, 'm') + "\"}]}"},
    {u"lyric"_s, R"({"result":{"lyric":"la"}})"},
    {u"nothing"_s, "{}"},
    {u"error"_s, R"({"code":5,"message":"<b>no"})"},
};

/// Opens the search dialog, acts in it as a user does and says what has changed.
class SearchDialogDriver
{
public:
    QWidget *control(const QString &name) const { return window->findChild<QWidget *>(name); }
    QTableView *table() const { return window->findChild<QTableView *>(); }
    int selectedRow() const { return table()->selectionModel()->selectedRows().value(0).row(); }

    /// The status line as screen readers announce it, wherever the focus is. It must not read a text as markup.
    QString status() const
    {
        auto *const label = window->findChild<QLabel *>(u"lblSearchState"_s);
        const auto *const face = QAccessible::queryAccessibleInterface(label);
        const bool isPlain = label->textFormat() == Qt::PlainText;
        return isPlain && face->role() == QAccessible::Notification ? face->text(QAccessible::Name)
                                                                    : QString();
    }

    /// What the user and the host see; "-" is "not".
    QStringList state()
    {
        const QByteArrayList requests = m_server.requests().mid(m_asked);
        const QString request = QUrl::fromPercentEncoding(requests.value(requests.size() - 1));
        const QString form = request.section(u"\r\n\r\n"_s, 1)
                                 .section(u"&apiKey"_s, 0, 0)
                                 .replace(QRegularExpression(u"&?\\w+="_s), u"/"_s);
        const QStringList seen{received.join(u' '), QString::number(requests.size()) + form};
        if (!window)
            return seen + QStringList{u"gone"_s} + QStringList(7);
        QString titles;
        for (int row = 0; row < table()->model()->rowCount(); ++row)
            titles += table()->model()->index(row, 0).data().toString();
        const auto flag = [](bool isSet, const QString &text) { return isSet ? text : u'-' + text; };
        return seen
            + QStringList{flag(window->isVisible(), u"open"_s),
                          flag(control(u"loadingIndicater"_s)->isVisibleTo(window), u"busy"_s),
                          flag(control(u"btnSearch"_s)->isEnabled(), u"S"_s),
                          flag(control(u"btnDownload"_s)->isEnabled(), u"D"_s),
                          u'[' + titles + u']',
                          flag(selectedRow() >= 0, u"row %1"_s.arg(selectedRow())),
                          window->focusWidget() ? window->focusWidget()->objectName() : QString(),
                          status()};
    }

    QString changes()
    {
        QStringList now = state();
        for (qsizetype at = 0; at < m_before.size(); ++at)
            if (now[at] == m_before[at])
                now[at].clear();
        now.removeAll(QString());
        return now.join(u", ");
    }

    /// Opens the dialog with the story's title and artist, separated by "/". Takes the steps in its modal loop, and
    /// the rest after it has closed.
    void play(const QString &story)
    {
        QStringList steps = QString(story).replace(u"; "_s, u"\n"_s).split(u'\n');
        open(steps.takeFirst(), [&] {
            while (!steps.isEmpty() && window && window->isVisible())
                take(steps.takeFirst());
        });
        for (const QString &step : steps)
            take(step);
    }

    /// Takes a step, "act" or "act => changes".
    void take(const QString &step)
    {
        if (QTest::currentTestFailed())
            return;
        const QStringList parts = step.split(u" =>"_s);
        act(parts[0].section(u' ', 0, 0), parts[0].section(u' ', 1, 1), parts[0].section(u' ', 2));
        const auto isExpected = [&] { return parts.size() < 2 || changes() == parts[1].trimmed(); };
        QVERIFY2(QTest::qWaitFor(isExpected, 30'000), qPrintable(step + u"\n changes "_s + changes()));
        if (parts.size() > 1)
            m_before = state();
    }

    void act(const QString &verb, const QString &object, const QString &rest)
    {
        if (verb == u"header" || verb == u"double" || verb == u"right")
            QTRY_VERIFY_WITH_TIMEOUT(selectedRow() >= 0, 30'000);
        if (verb == u"reply") {
            QVERIFY(m_server.waitForRequests(m_asked + object.toInt()));
            m_server.reply(int(m_asked) + object.toInt(), Replies[rest]);
        } else if (verb == u"logs") { // with the next act
            QTest::ignoreMessage(QtWarningMsg, qPrintable(object + u' ' + rest));
        } else if (verb == u"drop") {
            object == u"parent"           ? parent.reset()
                : object == u"controller" ? controller.reset()
                : object == u"context"    ? m_context.reset()
                                          : controller->setCompletionCB(nullptr);
        } else if (verb == u"header") {
            QSignalSpy shown(table()->model(), &QAbstractItemModel::dataChanged);
            QTest::mouseClick(table()->horizontalHeader()->viewport(), Qt::LeftButton, {},
                              {table()->columnViewportPosition(object.toInt()) + 20, 5});
            QCOMPARE(shown.value(0).value(1).toModelIndex(), table()->model()->index(4, 1));
        } else if (verb == u"double" || verb == u"right") { // row and column
            const QPoint at(table()->columnViewportPosition(rest.toInt()) + 20,
                            table()->rowHeight(0) * object.toInt() + 5);
            const Qt::MouseButton button = verb == u"right" ? Qt::RightButton : Qt::LeftButton;
            QTest::mouseClick(table()->viewport(), button, {}, at);
            QTest::mouseDClick(table()->viewport(), button, {}, at);
        } else if (verb == u"click") {
            QTest::mouseClick(control(object), Qt::LeftButton);
        } else if (verb == u"held") { // Return
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, u"\r"_s, true);
            control(object)->setFocus();
            QApplication::sendEvent(control(object), &held);
        } else if (verb == u"key") { // one or several, each to where the focus is then
            control(object)->setFocus();
            const QKeySequence keys(rest);
            for (uint i = 0; i < uint(keys.count()); ++i)
                QTest::keyClick(window->focusWidget(), keys[i].key(), keys[i].keyboardModifiers());
        }
    }

    /// Runs \p script in the dialog's modal loop, then closes the dialog.
    void open(const QString &names, const std::function<void()> &script)
    {
        QTimer::singleShot(0, qApp, [&, this] {
            window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            window->activateWindow();
            if (QTest::qWaitForWindowActive(window, 30'000))
                script();
            if (window)
                window->windowHandle()->close(); // as the title bar's button does
        });
        controller = QVLyricSearchWndCtl::popUp(names.section(u'/', 0, 0), names.section(u'/', 1),
                                                m_context.get(), completion, parent.get());
    }

    QPointer<QDialog> window;
    std::unique_ptr<QApplication> application = std::make_unique<QApplication>(m_argc, nullptr);
    std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
    std::shared_ptr<QVLyricSearchWndCtl> controller;
    QStringList received; ///< the lyrics
    QVLyricSearchWndCtl::CompletionCallback completion = [this](const QString &lyric) {
        received += lyric.isNull() ? u"no text"_s : lyric;
    };

private:
    int m_argc = 0;
    static inline LookupServer m_server{"trusted"};
    const qsizetype m_asked = m_server.requests().size(); // before the test
    std::unique_ptr<QObject> m_context = std::make_unique<QObject>();
    QStringList m_before; // the state at the last check
};
