// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SearchDialogDriver.h"

#include <optional>

using namespace Qt::StringLiterals;

static_assert(!std::is_copy_constructible_v<QVLyricSearchWndCtl>);
static_assert(!std::is_default_constructible_v<QVLyricSearchWndCtl>);

namespace {

const QByteArray Songs = R"({"results":[{"track":"Air","artist":"Moe","link":"1"}]})";
const QByteArray Lyric = R"({"result":{"lyric":"la"}})";

} // namespace

/// What ends the dialog, and what goes on after it.
class TestSearchDialogLife : public QObject
{
    Q_OBJECT

    using Deed = std::function<void()>;

private Q_SLOTS:
    // An application object a test, since it is one of the things that end.
    void init()
    {
        m_application = std::make_unique<QApplication>(m_argc, m_argv);
        m_service.emplace();
        m_lyrics.clear();
        m_parent = std::make_unique<QWidget>();
    }

    void cleanup()
    {
        m_parent = nullptr;
        m_service.reset();
        m_application = nullptr;
    }

    // Closing cancels nothing.
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
        QTest::newRow("closed") << Script([](SearchWindow &d) { QTest::keyClick(d.window, Qt::Key_Escape); });
        QTest::newRow("gone with its parent") << Script([this](SearchWindow &d) {
            m_parent = nullptr;
            QVERIFY(!d.window);
        });
    }
    void downloadsOnWithoutItsWindow()
    {
        QFETCH(const Script, end);
        const std::weak_ptr<QVLyricSearchWndCtl> life = popUpWith(
            [&](SearchWindow &d) {
                download(d);
                end(d);
            },
            u"Air"_s, {}, m_completion, m_parent.get());
        QVERIFY(!life.expired() && m_lyrics.isEmpty()); // the request holds the controller
        m_service->reply(2, Lyric);
        QTRY_VERIFY(life.expired());
        QCOMPARE(m_lyrics, QStringList{u"la"_s});
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
                        upper.window = nullptr; // so that the script leaves it open
                    },
                    {});
                m_lyrics += u"upper has returned"_s;
            },
            u"Air"_s, {}, m_completion);
        QCOMPARE(m_lyrics, (QStringList{u"la"_s, u"upper closes"_s, u"upper has returned"_s}));
    }

    void completionsMayDoAnything_data()
    {
        QTest::addColumn<Deed>("deed");
        QTest::addColumn<int>("status");
        QTest::newRow("open another") << Deed([] { popUpWith([](SearchWindow &) {}, {}); }) << 7;
        QTest::newRow("delete the parent") << Deed([this] { m_parent = nullptr; }) << 7;
        QTest::newRow("quit") << Deed(&QCoreApplication::quit) << 0;
    }
    void completionsMayDoAnything()
    {
        QFETCH(const Deed, deed);
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
                    QVERIFY(QApplication::activeModalWidget()); // is called before the dialog closes
                    deed();
                },
                m_parent.get());
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(7); });
        });
        QTEST(QApplication::exec(), "status");
        QCOMPARE(m_lyrics, QStringList{u"la"_s});
    }

    // A host without another window is not ended by the dialog's closing.
    void leavesItsHostRunning()
    {
        QTimer::singleShot(0, qApp, [] {
            popUpWith([](SearchWindow &d) { QTest::keyClick(d.window, Qt::Key_Escape); }, {});
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(7); });
        });
        QCOMPARE(QApplication::exec(), 7);
    }

    // Ended by exit() the run leaves an open window, which popUp() closes; then the application goes while a
    // host holds the controller and a reply and a selection are due.
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
                    d.window = nullptr; // so that the script leaves it open
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
    /// Waits until the dialog has asked for a lyric.
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
    std::optional<HoldingService> m_service;
    QStringList m_lyrics; // what the completion got
    const QVLyricSearchWndCtl::CompletionCallback m_completion = [this](const QString &lyric) {
        m_lyrics += lyric;
    };
};

QTEST_APPLESS_MAIN(TestSearchDialogLife)
#include "tst_searchdialoglife.moc"
