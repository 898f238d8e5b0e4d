// SPDX-License-Identifier: MIT
#include "SearchDialogDriver.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Songs = R"({"results":[{"track":"Bells","artist":"Zoe","link":"1"},
    {"track":"Air","artist":"Moe","link":"2"}, {"track":"Clouds","artist":"Moe","link":"3"},
    {"track":"Dawn","artist":"Abe"}]})";

} // namespace

/// The dialog's states and steps.
class TestSearchDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void opensWithoutNames();
    void goesThroughItsStates();
    void searchesEndWithACount_data();
    void searchesEndWithACount();
    void downloadsEndTheDialog_data();
    void downloadsEndTheDialog();
    void sorts();
    void loadsOnlyWhatHasALink();

private:
    std::optional<HoldingService> m_service;
    QStringList m_lyrics; // what the completion got
    const QVLyricSearchWndCtl::CompletionCallback m_completion = [this](const QString &lyric) {
        m_lyrics += lyric.isNull() ? u"(null)"_s : lyric;
    };
};

void TestSearchDialog::init()
{
    m_service.emplace();
    m_lyrics.clear();
}

void TestSearchDialog::opensWithoutNames()
{
    const auto controller = popUpWith(
        [](SearchWindow &d) {
            QCOMPARE(d.window->objectName(), u"QVLyricSearchWndCtl"_s);
            QCOMPARE(d.track->text() + d.artist->text(), QString());
            QCOMPARE(d.look(), u"idle 0 0 Enter a title or an artist"_s);
            for (QLineEdit *const name : {d.track, d.artist}) {
                QTest::keyClicks(name, u"x"_s);
                QVERIFY(d.search->isEnabled());
                QTest::keyClick(name, Qt::Key_Backspace);
                QVERIFY(!d.search->isEnabled());
            }
            QTest::keyClick(d.artist, Qt::Key_Return);  // does nothing, Search being disabled
            QVERIFY(d.window->windowHandle()->close()); // as the title bar does
        },
        QString(), QString(), m_completion);
    QCOMPARE(m_service->asked(), 0);
    QVERIFY(m_lyrics.isEmpty() && !controller->isSearching());
}

void TestSearchDialog::goesThroughItsStates()
{
    const auto controller = popUpWith(
        [this](SearchWindow &d) {
            QCOMPARE(d.look(), u"busy 0 0 Searching..."_s);
            const QRect place = d.state->geometry();
            QTRY_COMPARE(m_service->asked(), 1);
            QCOMPARE(m_service->sent("track"), u"Clouds"_s);
            QCOMPARE(m_service->sent("artist"), u"Moe"_s);
            m_service->reply(Songs);
            QTRY_COMPARE(d.look(), u"idle 1 1 Found 4 results"_s);
            QCOMPARE(d.column(0), u"Bells Air Clouds Dawn"_s);
            QCOMPARE(d.column(1), u"Zoe Moe Moe Abe"_s);
            QCOMPARE(d.selectedRow(), -1); // not yet, and a press that comes too early does nothing
            QTest::mouseClick(d.download, Qt::LeftButton);
            QCOMPARE(m_service->asked(), 1);
            QTRY_COMPARE(d.selectedRow(), 2);
            QVERIFY(d.table->hasFocus());
            QCOMPARE(d.state->geometry(), place);

            QTest::keyClick(d.artist, Qt::Key_End);
            QTest::keyClicks(d.artist, u"!"_s); // the results stay
            QCOMPARE(d.look(), u"idle 1 1 Found 4 results"_s);
            QTest::mouseClick(d.download, Qt::LeftButton);
            QCOMPARE(d.look(), u"busy 0 1 Downloading..."_s);
            QTRY_COMPARE(m_service->asked(), 2);
            QCOMPARE(m_service->sent("link"), u"3"_s);
            QCOMPARE(m_service->sent("artist"), u"Moe!"_s);
            QTest::keyClick(d.table, Qt::Key_Up);
            QTest::mouseClick(d.download, Qt::LeftButton);
            QTRY_COMPARE(m_service->asked(), 3);
            QCOMPARE(m_service->sent("link"), u"2"_s);
            m_service->reply(R"({"result":{"lyric":"late"}})", 1);
            QTRY_VERIFY(!d.window->isVisible());
        },
        u"Clouds"_s, u"Moe"_s, m_completion);
    QCOMPARE(m_lyrics, QStringList{u"late"_s});
    m_service->reply(R"({"result":{"lyric":"later"}})");
    QTRY_COMPARE(m_lyrics, (QStringList{u"late"_s, u"later"_s}));
}

void TestSearchDialog::searchesEndWithACount_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("state");
    QTest::newRow("nothing found") << QByteArray("{}") << QByteArray("200 OK") << u"Found 0 results"_s;
    QTest::newRow("the service's error")
        << QByteArray(R"({"code":5,"message":"no"})") << QByteArray("200 OK") << u"Found 0 results"_s;
    QTest::newRow("no answer") << QByteArray() << QByteArray("500 No") << u"Found 0 results"_s;
    QTest::newRow("one") << QByteArray(R"({"results":[{"track":"T","artist":"A"}]})") << QByteArray("200 OK")
                         << u"Found 1 results"_s;
}

void TestSearchDialog::searchesEndWithACount()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QByteArray, status);
    QFETCH(const QString, state);
    popUpWith(
        [&](SearchWindow &d) {
            QTRY_COMPARE(m_service->asked(), 1);
            QCOMPARE(m_service->sent("track"), QString());
            m_service->reply(body, 0, status);
            QTRY_COMPARE(d.state->text(), state);
            QVERIFY(!d.indicator->isVisible() && d.search->isEnabled());
            QTRY_VERIFY(d.table->hasFocus()); // also when there is nothing to select
            QCOMPARE(d.selectedRow(), d.table->model()->rowCount() - 1);
        },
        QString(), u"an artist alone"_s);
}

void TestSearchDialog::downloadsEndTheDialog_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("lyric");
    QTest::addColumn<QString>("state");
    QTest::newRow("a lyric") << QByteArray(R"({"result":{"lyric":"[00:01.00]a"}})") << u"[00:01.00]a"_s
                             << u"Downloading..."_s;
    QTest::newRow("no text") << QByteArray("{}") << u"(null)"_s << u"Downloading..."_s;
    QTest::newRow("an error") << QByteArray(R"({"code":5,"message":"<b>no"})") << u"(null)"_s << u"<b>no"_s;
}

void TestSearchDialog::downloadsEndTheDialog()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, lyric);
    QFETCH(const QString, state);
    for (const bool hasCompletion : {true, false})
        popUpWith(
            [&](SearchWindow &d) {
                QTRY_COMPARE(m_service->asked(), 1);
                m_service->reply(Songs);
                QTRY_COMPARE(d.selectedRow(), 1);
                d.doubleClick(d.table->visualRect(d.table->model()->index(0, 1)).center());
                QTRY_COMPARE(m_service->asked(), 2);
                QCOMPARE(m_service->sent("link"), u"1"_s);
                m_service->reply(body);
                QTRY_VERIFY(!d.window->isVisible());
                QCOMPARE(d.state->text(), state);
                m_service.emplace();
            },
            u"Air"_s, u"Moe"_s, hasCompletion ? m_completion : nullptr);
    QCOMPARE(m_lyrics, QStringList{lyric});
}

void TestSearchDialog::sorts()
{
    QLocale::setDefault(QLocale(QLocale::English));
    popUpWith(
        [this](SearchWindow &d) {
            QTRY_COMPARE(m_service->asked(), 1);
            m_service->reply(R"({"results":[{"track":"b","artist":"Z","link":"1"},
                {"track":"é","artist":"m","link":"2"}, {"track":"A","artist":"M","link":"3"},
                {"track":"f","artist":"m","link":"4"}, {"track":"C","artist":"m","link":"5"}]})");
            QTRY_COMPARE(d.column(0), u"b é A f C"_s);
            QTRY_COMPARE(d.selectedRow(), 3);
            d.clickHeader(0);
            QCOMPARE(d.column(0), u"A b C é f"_s);
            d.clickHeader(1);
            QCOMPARE(d.column(1), u"m m m M Z"_s);
            QCOMPARE(d.column(0), u"C é f A b"_s); // still in order within an artist
            d.clickHeader(1);
            QCOMPARE(d.column(0), u"b A C é f"_s);
            QCOMPARE(d.selectedRow(), 3); // the row, not what was in it
            QTest::mouseClick(d.download, Qt::LeftButton);
            QTRY_COMPARE(m_service->asked(), 2);
            QCOMPARE(m_service->sent("link"), u"2"_s);
        },
        u"f"_s, u"m"_s);
    QLocale::setDefault(QLocale::c());
}

void TestSearchDialog::loadsOnlyWhatHasALink()
{
    popUpWith(
        [this](SearchWindow &d) {
            QTRY_COMPARE(m_service->asked(), 1);
            m_service->reply(Songs);
            QTRY_COMPARE(d.selectedRow(), 3);
            QTest::ignoreMessage(QtWarningMsg, "[LYRIC] no link to load");
            QTest::mouseClick(d.download, Qt::LeftButton);
            QCOMPARE(d.look(), u"idle 1 1 Found 4 results"_s);
            d.table->clearSelection();
            QTest::mouseClick(d.download, Qt::LeftButton);
            d.doubleClick({10, d.table->viewport()->height() - 5}); // below the rows
            d.doubleClick(d.table->visualRect(d.table->model()->index(0, 0)).center(), Qt::RightButton);
            QCOMPARE(d.look(), u"idle 1 1 Found 4 results"_s);
            // A search without names empties the table and says nothing.
            d.track->clear();
            d.artist->clear();
            QCOMPARE(d.look(), u"idle 0 1 Found 4 results"_s);
        },
        u"Dawn"_s, u"Abe"_s);
    QCOMPARE(m_service->asked(), 1);
}

QTEST_MAIN(TestSearchDialog)
#include "tst_searchdialog.moc"
