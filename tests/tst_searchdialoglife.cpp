// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SearchDialogDriver.h"

#include <optional>

using namespace Qt::StringLiterals;

static_assert(!std::is_copy_constructible_v<QVLyricSearchWndCtl>);

namespace {

const QByteArray Songs = R"({"results":[{"track":"Air","artist":"Moe","link":"1"}]})";
const QByteArray Lyric = R"({"result":{"lyric":"la"}})";

} // namespace

/// What ends the dialog, and what continues afterwards.
class TestSearchDialogLife : public QObject
{
    Q_OBJECT

    using Action = std::function<void()>;

private Q_SLOTS:
    // Each test has its own application object, since tests destroy it.
    void init()
    {
        m_application = std::make_unique<QApplication>(m_argc, m_argv);
        m_service.emplace();
        m_lyrics.clear();
        m_parent = std::make_unique<QWidget>();
        m_context = std::make_unique<QObject>();
    }

    void cleanup()
    {
        m_parent = nullptr;
        m_service.reset();
        m_application = nullptr;
    }

    // Closing does not cancel a search.
    void searchesOnWithoutItsWindow()
    {
        QPointer<QTableView> table;
        QPointer<QLabel> state;
        const auto controller = popUpWith(
            [&](SearchWindow &d) {
                table = d.table;
                state = d.state;
                QTRY_COMPARE(m_service->asked(), 1);
                QTest::mouseClick(d.cancel, Qt::LeftButton);
            },
            u"Air"_s);
        QVERIFY(controller->isSearching() && controller->lrcResults().isEmpty());
        m_service->reply(1, Songs);
        QTRY_VERIFY(!controller->isSearching());
        QCOMPARE(controller->lrcResults().size(), 1);
        QCOMPARE(state->text(), u"Found 1 results"_s);
        QTRY_COMPARE(table->selectionModel()->selectedRows().size(), 1);
    }

    void downloadsOnWithoutItsWindow_data()
    {
        QTest::addColumn<Script>("end");
        QTest::addColumn<QString>("lyric");
        const auto row = [](const char *name, const Script &end, const QString &lyric) {
            QTest::newRow(name) << end << lyric;
        };
        row(
            "closed", [](auto &d) { QTest::keyClick(d.window, Qt::Key_Escape); }, u"la"_s);
        row(
            "its parent destroyed", [this](auto &) { m_parent = nullptr; }, u"la"_s);
        row("the context destroyed", [this](auto &) { m_context = nullptr; }, {});
    }
    void downloadsOnWithoutItsWindow()
    {
        QFETCH(const Script, end);
        const std::weak_ptr<QVLyricSearchWndCtl> life = popUpWith(
            [&](SearchWindow &d) {
                download(d);
                end(d);
            },
            u"Air"_s, {}, m_completion, m_parent.get(), m_context.get());
        QVERIFY(!life.expired() && m_lyrics.isEmpty()); // the request holds the controller
        m_service->reply(2, Lyric);
        QTRY_VERIFY(life.expired());
        QTEST(m_lyrics.join(u'|'), "lyric");
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                 QVLyricSearchWndCtl::popUp({}, {}, nullptr, m_completion, nullptr));
    }

    void leavesNothingBehind()
    {
        QPointer<QDialog> window;
        auto controller =
            popUpWith([&window](SearchWindow &d) { window = d.window; }, {}, {}, {}, m_parent.get());
        QVERIFY(window && !window->isVisible() && window->parentWidget() == m_parent.get());
        QCOMPARE(controller.use_count(), 1);
        controller.reset();
        QVERIFY(!window);
    }

    // The lower dialog closes while the upper one is open: each run ends with its own window.
    void nests()
    {
        popUpWith(
            [&](SearchWindow &lower) {
                download(lower);
                popUpWith(
                    [&](SearchWindow &upper) {
                        m_service->reply(2, Lyric);
                        QTRY_VERIFY(!lower.window->isVisible());
                        QVERIFY(upper.window->isVisible());
                        QTimer::singleShot(0, upper.window, [this, window = upper.window.get()] {
                            m_lyrics += u"upper closes"_s;
                            window->close();
                        });
                        upper.window = nullptr; // keeps popUpWith() from closing it
                    },
                    {});
                m_lyrics += u"upper has returned"_s;
            },
            u"Air"_s, {}, m_completion);
        QCOMPARE(m_lyrics, (QStringList{u"la"_s, u"upper closes"_s, u"upper has returned"_s}));
    }

    void completionsMayDoAnything_data()
    {
        QTest::addColumn<Action>("action");
        QTest::addColumn<int>("status");
        QTest::newRow("open another") << Action([] { popUpWith([](SearchWindow &) {}, {}); }) << 7;
        QTest::newRow("delete the parent") << Action([this] { m_parent = nullptr; }) << 7;
        QTest::newRow("quit") << Action(&QCoreApplication::quit) << 0;
    }
    void completionsMayDoAnything()
    {
        QFETCH(const Action, action);
        QTimer::singleShot(0, qApp, [&] {
            popUpWith(
                [this](SearchWindow &d) {
                    download(d);
                    m_service->reply(2, Lyric);
                    QTRY_VERIFY(!d.window || !d.window->isVisible());
                },
                u"Air"_s, {},
                [&](const QString &lyric) {
                    m_lyrics += lyric;
                    QVERIFY(QApplication::activeModalWidget()); // the dialog is still open
                    action();
                },
                m_parent.get());
            // Closing the dialog, the only window, must not have quit the application.
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(7); });
        });
        QTEST(QApplication::exec(), "status");
        QCOMPARE(m_lyrics, QStringList{u"la"_s});
    }

    // exit() ends the modal loop and leaves the window open, so popUp() must close it. The application object is
    // then destroyed while the host holds the controller and a reply and a selection are pending.
    void endsWithTheApplication()
    {
        QPointer<QDialog> window;
        std::shared_ptr<QVLyricSearchWndCtl> controller;
        QTimer::singleShot(0, qApp, [&] {
            controller = popUpWith(
                [&](SearchWindow &d) {
                    window = d.window;
                    m_service->reply(1, Songs);
                    QTRY_COMPARE(d.state->text(), u"Found 1 results"_s);
                    QTest::keyClick(d.artist, Qt::Key_Return);
                    QTRY_COMPARE(m_service->asked(), 2);
                    QCoreApplication::exit(7);
                    d.window = nullptr; // keeps popUpWith() from closing it
                },
                u"Air"_s);
            QVERIFY(!window->isVisible());
        });
        QCOMPARE(QApplication::exec(), 7);
        const std::weak_ptr<QVLyricSearchWndCtl> life = controller;
        cleanup();
        QVERIFY(!window);
        controller.reset();
        QVERIFY(life.expired());
    }

private:
    /// Starts a download and waits for its request.
    void download(const SearchWindow &d)
    {
        m_service->reply(1, Songs);
        QTRY_COMPARE(d.selectedRow(), 0);
        QTest::keyClick(d.table, Qt::Key_Return);
        QTRY_COMPARE(m_service->asked(), 2);
    }

    int m_argc = 1;
    char m_name[17] = "searchdialoglife";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QApplication> m_application;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<QObject> m_context;
    std::optional<HoldingService> m_service;
    QStringList m_lyrics; // received by the completion
    const QVLyricSearchWndCtl::CompletionCallback m_completion = [this](const QString &lyric) {
        m_lyrics += lyric;
    };
};

QTEST_APPLESS_MAIN(TestSearchDialogLife)
#include "tst_searchdialoglife.moc"
