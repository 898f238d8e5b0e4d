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

private Q_SLOTS:
    // An application object a test, since it is one of the things that end.
    void init();
    void cleanup();
    void outlivesItsWindow();
    void leavesNothingBehind();
    void nests();
    void goesWithItsParent();
    void completionsMayDoAnything_data();
    void completionsMayDoAnything();
    void leavesItsHostRunning();
    void endsWithTheApplication();

private:
    /// Waits until the dialog has asked for one lyric.
    void download(const SearchWindow &d)
    {
        const qsizetype asked = m_service->asked();
        QTRY_COMPARE(m_service->asked(), asked + 1);
        m_service->reply(Songs);
        QTRY_COMPARE(d.selectedRow(), 0);
        QTest::keyClick(d.table, Qt::Key_Return);
        QTRY_COMPARE(m_service->asked(), asked + 2);
    }

    int m_argc = 1;
    char m_name[17] = "searchdialoglife";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QApplication> m_application;
    std::optional<HoldingService> m_service;
};

void TestSearchDialogLife::init()
{
    m_application = std::make_unique<QApplication>(m_argc, m_argv);
    m_service.emplace();
}

void TestSearchDialogLife::cleanup()
{
    m_service.reset();
    m_application = nullptr;
}

// Nothing is cancelled: replies find the closed window, and the completion is called once more.
void TestSearchDialogLife::outlivesItsWindow()
{
    QPointer<QTableView> table;
    QPointer<QLabel> state;
    const auto searching = popUpWith(
        [&](SearchWindow &d) {
            table = d.table;
            state = d.state;
            QTRY_COMPARE(m_service->asked(), 1);
            QTest::mouseClick(d.cancel, Qt::LeftButton);
        },
        u"Air"_s);
    QVERIFY(searching->isSearching() && searching->lrcResults().isEmpty());
    m_service->reply(Songs);
    QTRY_VERIFY(!searching->isSearching());
    QCOMPARE(searching->lrcResults().size(), 1);
    QCOMPARE(state->text(), u"Found 1 results"_s);
    QTRY_COMPARE(table->selectionModel()->selectedRows().size(), 1);

    QStringList lyrics;
    const std::weak_ptr<QVLyricSearchWndCtl> life = popUpWith(
        [this](SearchWindow &d) {
            download(d);
            QTest::keyClick(d.window, Qt::Key_Escape);
        },
        u"Air"_s, QString(), [&lyrics](const QString &lyric) { lyrics += lyric; });
    QVERIFY(!life.expired() && lyrics.isEmpty()); // the request holds the controller
    m_service->reply(Lyric);
    QTRY_VERIFY(life.expired());
    QCOMPARE(lyrics, QStringList{u"la"_s});
}

void TestSearchDialogLife::leavesNothingBehind()
{
    QPointer<QDialog> window;
    QWidget parent;
    auto controller =
        popUpWith([&window](SearchWindow &d) { window = d.window; }, QString(), QString(), {}, &parent);
    QVERIFY(window && !window->isVisible() && window->parentWidget() == &parent);
    QCOMPARE(controller.use_count(), 1);
    controller.reset();
    QVERIFY(!window);
}

// The lower dialog closes while the upper one is open: each run ends with its own window.
void TestSearchDialogLife::nests()
{
    QStringList events;
    popUpWith(
        [&](SearchWindow &lower) {
            download(lower);
            popUpWith(
                [&](SearchWindow &upper) {
                    QVERIFY(upper.window != lower.window);
                    m_service->reply(Lyric);
                    QTRY_VERIFY(!lower.window->isVisible());
                    QVERIFY(upper.window->isVisible());
                    QTest::qWait(50); // in which its run would end
                    events += u"upper closes"_s;
                },
                QString());
            events += u"upper has returned"_s;
        },
        u"Air"_s, QString(), [&events](const QString &lyric) { events += lyric; });
    QCOMPARE(events, (QStringList{u"la"_s, u"upper closes"_s, u"upper has returned"_s}));
}

void TestSearchDialogLife::goesWithItsParent()
{
    auto parent = std::make_unique<QWidget>();
    QStringList lyrics;
    const auto controller = popUpWith(
        [&](SearchWindow &d) {
            download(d);
            parent.reset();
            QVERIFY(!d.window);
        },
        u"Air"_s, QString(), [&lyrics](const QString &lyric) { lyrics += lyric; }, parent.get());
    QVERIFY(controller->isSearching());
    m_service->reply(Lyric);
    QTRY_COMPARE(lyrics, QStringList{u"la"_s});
    QVERIFY(!controller->isSearching());
}

void TestSearchDialogLife::completionsMayDoAnything_data()
{
    QTest::addColumn<QString>("deed");
    for (const char *deed : {"open another", "delete the parent", "quit"})
        QTest::newRow(deed) << QString::fromUtf8(deed);
}

void TestSearchDialogLife::completionsMayDoAnything()
{
    QFETCH(const QString, deed);
    auto parent = std::make_unique<QWidget>();
    parent->show();
    int calls = 0;
    const auto completion = [&](const QString &lyric) {
        QCOMPARE(lyric, u"la"_s);
        ++calls;
        if (deed == u"open another")
            popUpWith([](SearchWindow &d) { d.window->close(); }, QString());
        else if (deed == u"delete the parent")
            parent.reset();
        else if (deed == u"quit")
            QCoreApplication::quit();
    };
    QTimer::singleShot(0, qApp, [&] {
        popUpWith(
            [&](SearchWindow &d) {
                download(d);
                m_service->reply(Lyric);
                QTRY_VERIFY(!d.window || !d.window->isVisible());
            },
            u"Air"_s, QString(), completion, parent.get());
        if (deed != u"quit" || calls == 0) // else the test would wait for ever
            QCoreApplication::exit(7);
    });
    QCOMPARE(QApplication::exec(), deed == u"quit" ? 0 : 7);
    QCOMPARE(calls, 1);
}

// A host without another window is not ended by the dialog's closing.
void TestSearchDialogLife::leavesItsHostRunning()
{
    QTimer::singleShot(0, qApp, [] {
        popUpWith([](SearchWindow &d) { QTest::keyClick(d.window, Qt::Key_Escape); }, QString());
        QTimer::singleShot(50, qApp, [] { QCoreApplication::exit(7); });
    });
    QCOMPARE(QApplication::exec(), 7);
}

// Ended by exit() the run leaves an open window, which popUp() closes; then the application goes while a host
// holds the controller and a reply and a selection are due.
void TestSearchDialogLife::endsWithTheApplication()
{
    QPointer<QDialog> window;
    std::shared_ptr<QVLyricSearchWndCtl> controller;
    QTimer::singleShot(0, qApp, [&] {
        controller = popUpWith(
            [&](SearchWindow &d) {
                window = d.window;
                QTRY_COMPARE(m_service->asked(), 1);
                m_service->reply(Songs);
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
    m_service.reset();
    m_application = nullptr;
    QVERIFY(!window);
    controller.reset();
    QVERIFY(life.expired());
}

QTEST_APPLESS_MAIN(TestSearchDialogLife)
#include "tst_searchdialoglife.moc"
