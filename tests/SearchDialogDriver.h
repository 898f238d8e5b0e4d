// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "LookupServer.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTableView>
#include <QTimer>

using namespace Qt::StringLiterals;

inline const QHash<QString, QByteArray> Replies = {
    {u"songs"_s, R"({"results":[{"track":"Bells","artist":"Zoe","link":"1"},
        {"track":"Air","artist":"Moe","link":"2"}, {"track":"Clouds","artist":"Moe","link":"3"},
        {"track":"Dawn","artist":"Abe","link":""}]})"},
    {u"accents"_s, R"({"results":[{"track":"b","artist":"Z","link":"1"},
        {"track":"é","artist":"m","link":"2"}, {"track":"A","artist":"M","link":"3"},
        {"track":"f","artist":"m","link":"4"}, {"track":"C","artist":"m","link":"5"}]})"},
    {u"one"_s, R"({"results":[{"track":"T","artist":"A"}]})"},
    {u"lyric"_s, R"({"result":{"lyric":"la"}})"},
    {u"nothing"_s, "{}"},
    {u"text"_s, R"({"result":{"lyric":"late"}})"},
    {u"error"_s, R"({"code":5,"message":"<b>no"})"},
};

inline QStringList logged;

/// Opens the search dialog, acts in it as a user does and says what has changed.
class SearchDialogDriver : public QObject
{
protected:
    // Each test has its own application object, since some destroy it.
    void start()
    {
        logged.clear();
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &at, const QString &text) {
            if (type != QtInfoMsg && QByteArray(at.category).startsWith("qvsonglrc"))
                logged += QLatin1StringView(at.category) + u' ' + text.left(39);
        });
        QLocale::setDefault(QLocale(QLocale::English));
        m_application = std::make_unique<QApplication>(m_argc, m_argv);
        m_parent = std::make_unique<QWidget>();
        m_context = std::make_unique<QObject>();
        m_window = nullptr;
        m_before.clear();
        m_steps.clear();
        m_lyrics.clear();
        m_asked = m_server.requests().size();
        m_completion = [this](const QString &lyric) { m_lyrics += lyric.isNull() ? u"no text"_s : lyric; };
    }

    void end()
    {
        m_parent = nullptr;
        m_controller = nullptr;
        m_application = nullptr;
    }

    template <typename Control = QWidget>
    Control *control(const char *name) const
    {
        return m_window->findChild<Control *>(QLatin1StringView(name));
    }

    QTableView *table() const { return control<QTableView>("tableView"); }

    int selectedRow() const
    {
        const QModelIndexList rows = table()->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }

    /// What the user and the host see.
    QStringList state()
    {
        static const QRegularExpression name(u"&?\\w+="_s);
        const QList<QByteArray> requests = m_server.requests().mid(m_asked);
        const QString form =
            QUrl::fromPercentEncoding(requests.value(requests.size() - 1)).section(u"\r\n\r\n"_s, 1);
        QStringList state{m_lyrics.join(u' '), logged.join(u' '),
                          QString::number(requests.size())
                              + form.section(u"&apiKey"_s, 0, 0).replace(name, u"/"_s)};
        const bool isSearching = m_controller && m_controller->isSearching();
        if (!m_window)
            return state << u"gone"_s << (isSearching ? u"busy"_s : u"idle"_s) << QStringList(6);
        const bool isBusy = control("loadingIndicater")->isVisibleTo(m_window);
        const QWidget *const focus = m_window->focusWidget();
        QString titles;
        for (int row = 0; row < table()->model()->rowCount(); ++row)
            titles += table()->model()->index(row, 0).data().toString().left(1);
        return state << (m_window->isVisible() ? u"open"_s : u"closed"_s)
                     << (m_controller && isSearching != isBusy ? u"wrong"_s
                             : isBusy                          ? u"busy"_s
                                                               : u"idle"_s)
                     << (control("btnSearch")->isEnabled() ? u"S"_s : u"-S"_s)
                     << (control("btnDownload")->isEnabled() ? u"D"_s : u"-D"_s) << u'[' + titles + u']'
                     << (selectedRow() < 0 ? u"-row"_s : u"row %1"_s.arg(selectedRow()))
                     << (focus ? focus->objectName() : QString())
                     << control<QLabel>("lblSearchState")->text();
    }

    QString changes()
    {
        const QStringList now = state();
        QStringList changed;
        for (qsizetype at = 0; at < now.size(); ++at)
            if (now[at] != m_before.value(at) && !now[at].isEmpty())
                changed += now[at];
        return changed.join(u", ");
    }

    /// Takes the remaining steps, each "acts => changes"; those inside a dialog end when it has closed.
    void takeSteps(bool isInside = false)
    {
        while (!m_steps.isEmpty() && !QTest::currentTestFailed()
               && !(isInside && (!m_window || !m_window->isVisible()))) {
            const QString step = m_steps.takeFirst();
            take(step.section(u" =>"_s, 0, 0), [=, this] {
                const QString expected = step.section(u"=> "_s, 1);
                const bool isExpected = QTest::qWaitFor([&] { return changes() == expected; }, 20'000);
                QVERIFY2(isExpected, qPrintable(step + u"\n changes "_s + changes()));
                m_before = state();
            });
        }
    }

    /// Carries out \p acts, then calls \p check. What follows "open" happens while the dialog is open, and so do the
    /// story's next steps.
    void take(
        const QString &acts, const std::function<void()> &check = [] {})
    {
        const QString act = acts.section(u"; "_s, 0, 0);
        const QString others = acts.section(u"; "_s, 1);
        if (act.startsWith(u"open ")) {
            open(act.mid(5), [&, this] {
                take(others, check);
                takeSteps(true);
            });
            return;
        }
        const QString verb = act.section(u' ', 0, 0);
        const QString object = act.section(u' ', 1, 1);
        const QString rest = act.section(u' ', 2);
        if (verb == u"reply") {
            QVERIFY(m_server.waitForRequests(m_asked + object.toInt()));
            m_server.reply(int(m_asked) + object.toInt(), Replies[rest.section(u' ', 0, 0)],
                           rest.endsWith(u" 500") ? "500 No" : "200 OK");
        } else if (verb == u"close") {
            m_window->windowHandle()->close(); // as the title bar's button does
        } else if (verb == u"drop") {
            object == u"controller"       ? m_controller.reset()
                : object == u"completion" ? void(m_completion = nullptr)
                : object == u"parent"     ? m_parent.reset()
                                          : m_context.reset();
        } else if (verb == u"header") {
            const QPoint at(table()->columnViewportPosition(object.toInt()) + 20, 5);
            QTRY_VERIFY_WITH_TIMEOUT(selectedRow() >= 0, 20'000);
            QTest::mouseClick(table()->horizontalHeader()->viewport(), Qt::LeftButton, {}, at);
        } else if (verb == u"double" || verb == u"right") {
            QTRY_VERIFY_WITH_TIMEOUT(selectedRow() >= 0, 20'000);
            const QModelIndex cell = table()->model()->index(object.toInt(), rest.toInt());
            const QPoint below(10, table()->viewport()->height() - 5);
            const QPoint at = cell.isValid() ? table()->visualRect(cell).center() : below;
            const Qt::MouseButton button = verb == u"right" ? Qt::RightButton : Qt::LeftButton;
            QTest::mouseClick(table()->viewport(), button, {}, at);
            QTest::mouseDClick(table()->viewport(), button, {}, at);
        } else if (verb == u"click") {
            QTest::mouseClick(control(qPrintable(object)), Qt::LeftButton);
        } else if (verb == u"type") { // in place of what is there
            auto *const field = control<QLineEdit>(qPrintable(object));
            field->setFocus();
            field->selectAll();
            QTest::keyClick(field, Qt::Key_Delete);
            QTest::keyClicks(field, rest);
        } else if (verb == u"key" || verb == u"held") {
            auto *const target = control(qPrintable(object));
            target->setFocus();
            const QKeyCombination keys = QKeySequence(rest)[0];
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, u"\r"_s, true);
            verb == u"held" ? void(QApplication::sendEvent(target, &held))
                            : QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
        }
        others.isEmpty() ? check() : take(others, check);
    }

    /// Opens the dialog with a title and an artist, separated by "/", and runs \p script in its modal loop. Then closes
    /// the dialog.
    void open(const QString &names, const std::function<void()> &script)
    {
        const QPointer<QDialog> below = m_window;
        QTimer watchdog;
        watchdog.callOnTimeout([] { qFatal("the dialog has not closed"); });
        watchdog.start(100'000);
        QTimer::singleShot(0, &watchdog, [&, this] {
            m_window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            m_window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(m_window, 20'000));
            script();
            if (m_window)
                m_window->close();
        });
        const auto controller = QVLyricSearchWndCtl::popUp(names.section(u'/', 0, 0), names.section(u'/', 1),
                                                           m_context.get(), m_completion, m_parent.get());
        if (below)
            m_window = below;
        else
            m_controller = controller;
    }

    int m_argc = 1;
    char m_name[13] = "searchdialog";
    char *m_argv[2] = {m_name, nullptr};
    LookupServer m_server;
    qsizetype m_asked = 0; // before the test
    std::unique_ptr<QApplication> m_application;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<QObject> m_context;
    QPointer<QDialog> m_window; // the uppermost
    std::shared_ptr<QVLyricSearchWndCtl> m_controller;
    QVLyricSearchWndCtl::CompletionCallback m_completion;
    QStringList m_lyrics; // received by the completion
    QStringList m_before; // the state at the last check
    QStringList m_steps;
};
