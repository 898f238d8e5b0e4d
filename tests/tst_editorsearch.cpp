// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// "Search Online…": what the editor does with the lyrics that the dialog downloads.

#include "EditorDriver.h"
#include "MisbehavingServer.h"
#include "TestAuthority.h"

#include <QVSongLrc/QVLyricService.h>

#include <QProcess>
#include <QSemaphore>

using namespace Qt::StringLiterals;

namespace {

// What the user does. Calls the function to let the lyric arrive.
using Act = std::function<void(EditorDriver &, const std::function<void()> &)>;

// Waits for the dialog's first search, and downloads the selected result.
void download(QWidget *dialog)
{
    auto *const table = dialog->findChild<QTableView *>(u"tableView"_s);
    QTRY_VERIFY(table && table->currentIndex().isValid());
    QTest::mouseClick(dialog->findChild<QAbstractButton *>(u"btnDownload"_s), Qt::LeftButton);
}

} // namespace

Q_DECLARE_METATYPE(Act)

class TestEditorSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVLyricService::addCertificateAuthorities(m_authority.pem()); }

    void loadsFromTheService()
    {
        QProcess service;
        service.start(QStringLiteral(SONGLRC_SERVICE),
                      {u"--library"_s, QStringLiteral(SAMPLES), u"--data"_s, m_home.path(u"service"_s)});
        QByteArray printed;
        QTRY_VERIFY_WITH_TIMEOUT((printed += service.readAllStandardOutput()).contains("\nurl: ")
                                     && printed.endsWith('\n'),
                                 20'000);
        QByteArray authority;
        for (const QByteArray &line : printed.split('\n')) {
            if (line.startsWith("url: "))
                QVLyricService::setEndpoint(u"localhost"_s,
                                            quint16(QUrl(QString::fromUtf8(line.sliced(5))).port()));
            else if (line.startsWith("authority: "))
                authority = line.sliced(11);
        }
        QFile file(QString::fromUtf8(authority));
        QVERIFY(file.open(QFile::ReadOnly));
        QVLyricService::addCertificateAuthorities(file.readAll());

        EditorDriver editor(song());
        inDialogs([&] { editor.key(Qt::Key_L, Qt::ControlModifier); }, {download});
        QVERIFY2(editor.text().contains(u"[00:18.75]And auld lang syne!\n"_s), qPrintable(editor.text()));
        QVERIFY(!editor.text().contains(u"my own"_s) && editor.window->isWindowModified());
        QVERIFY2(editor.window->windowTitle().contains(u"song.lrc"_s), "it is still the same file");
        editor.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(editor.text().contains(u"my own"_s) && !editor.window->isWindowModified());
        service.terminate();
        QVERIFY(service.waitForFinished());
    }

    void keepsTheSongWhenTheDownloadFails()
    {
        const MisbehavingServer server(m_authority.issue("IP:127.0.0.1"),
                                       answer(R"({"code":5,"message":"no"})"));
        QVLyricService::setEndpoint(u"127.0.0.1"_s, server.port());
        EditorDriver editor(song());
        const QString before = editor.text();
        inDialogs([&] { editor.key(Qt::Key_L, Qt::ControlModifier); }, {download});
        QTRY_VERIFY(!editor.message().isEmpty() && !editor.message().contains(u"song.lrc"_s));
        QCOMPARE(editor.text(), before);
        QVERIFY(!editor.window->isWindowModified());
    }

    // The user closes the dialog during a slow download.
    void takesALateLyricForTheSameSongOnly_data()
    {
        QTest::addColumn<Act>("act");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isLoaded");
        const QString before = u"[ti:Auld Lang Syne]\n[ar:Robert Burns]\n[00:01.00]my own\n"_s;
        QTest::newRow("the same song") << Act([](auto &, auto come) { come(); }) << before << true;
        QTest::newRow("another song") << Act([](auto &e, auto come) {
            e.key(Qt::Key_N, Qt::ControlModifier);
            come();
        }) << QString() << false;
        // The song must not change while the user is asked whether to save it.
        QTest::newRow("a song that may be saved") << Act([](auto &e, auto come) {
            e.activate();
            e.type(2, 2, u"typed"_s);
            inDialogs([&] { e.key(Qt::Key_W, Qt::ControlModifier); }, {[&](QWidget *dialog) {
                          come();
                          press(u"Cancel"_s)(dialog);
                      }});
        }) << u"[ti:Auld Lang Syne]\n[ar:Robert Burns]\n[00:01.00]typed\n"_s
                                                  << false;
    }
    void takesALateLyricForTheSameSongOnly()
    {
        QFETCH(const Act, act);
        QFETCH(const QString, text);
        QFETCH(const bool, isLoaded);
        QSemaphore mayAnswer;
        const MisbehavingServer server(m_authority.issue("IP:127.0.0.1"),
                                       answer(R"({"result":{"lyric":"late\n"}})", &mayAnswer));
        QVLyricService::setEndpoint(u"127.0.0.1"_s, server.port());
        EditorDriver editor(song());
        inDialogs([&] { editor.key(Qt::Key_L, Qt::ControlModifier); }, {[&](QWidget *dialog) {
                      download(dialog);
                      QTRY_COMPARE(server.requests().size(), 2);
                      QTest::keyClick(dialog, Qt::Key_Escape);
                  }});
        act(editor, [&] {
            mayAnswer.release();
            (void)QTest::qWaitFor([&] { return editor.text() == u"late\n"_s; }, 1000);
        });
        QCOMPARE(editor.text(), isLoaded ? u"late\n"_s : text);
        if (isLoaded)
            editor.key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(editor.text(), text);
    }

private:
    QString song() const
    {
        return m_home.file(u"song.lrc"_s, "[ti:Auld Lang Syne]\n[ar:Robert Burns]\n[00:01.00]my own\n");
    }

    // Answers the search with one candidate, and the next request with \p detail once \p mayAnswer allows it.
    static MisbehavingServer::Behaviour answer(const QByteArray &detail, QSemaphore *mayAnswer = nullptr)
    {
        return [detail, mayAnswer, count = std::make_shared<int>(0)](QSslSocket *socket) {
            const bool isSearch = (*count)++ == 0;
            if (!isSearch && mayAnswer)
                mayAnswer->tryAcquire(1, 20'000);
            MisbehavingServer::reply(
                isSearch ? R"({"results":[{"track":"Auld Lang Syne","artist":"Burns","link":"1"}]})"_ba
                         : detail)(socket);
        };
    }

    const TestAuthority m_authority;
    EditorHome m_home;
};

QTEST_MAIN(TestEditorSearch)
#include "tst_editorsearch.moc"
