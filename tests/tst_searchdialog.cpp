// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupServer.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTableView>
#include <QTimer>
#include <QToolTip>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static_assert(!std::is_copy_constructible_v<QVLyricSearchWndCtl>);

namespace {

const QHash<QString, QByteArray> Replies = {
    {u"songs"_s, R"({"results":[{"track":"Bells","artist":"Zoe","link":"1"},
        {"track":"Air","artist":"Moe","link":"2"}, {"track":"Clouds","artist":"Moe","link":"3"},
        {"track":"Dawn","artist":"Abe"}]})"},
    {u"accents"_s, R"({"results":[{"track":"b","artist":"Z","link":"1"},
        {"track":"é","artist":"m","link":"2"}, {"track":"A","artist":"M","link":"3"},
        {"track":"f","artist":"m","link":"4"}, {"track":"C","artist":"m","link":"5"}]})"},
    {u"one"_s, R"({"results":[{"track":"T","artist":"A"}]})"},
    {u"lyric"_s, R"({"result":{"lyric":"la"}})"},
    {u"nothing"_s, "{}"},
    {u"text"_s, R"({"result":{"lyric":"late"}})"},
    {u"error"_s, R"({"code":5,"message":"<b>no"})"},
};

/// Acts, separated by "; ", and all the changes that they make. A story ends where the next has its name.
const struct Step
{
    const char *story, *acts, *changes;
} Steps[] = {
    {"no names", "open /", "0, open, idle, -S, -D, [], -row, lblTrackName, Enter a title or an artist"},
    {"", "key lblArtistName Return", "lblArtistName"},
    {"", "type lblTrackName x", "S, lblTrackName"},
    {"", "type lblTrackName", "-S"},
    {"", "type lblArtistName x", "S, lblArtistName"},
    {"", "type lblArtistName", "-S"},
    {"", "close", "closed"},
    {"a title", "open Air/", "1//Air, open, busy, -S, -D, [], -row, lblTrackName, Searching..."},
    {"", "key lblTrackName Return", ""},
    {"", "reply 1 one", "idle, S, D, [T], row 0, tableView, Found 1 results"},
    {"", "click btnSearch", "2//Air, busy, -S, -D, [], -row, Searching..."},
    {"", "reply 2 accents", "idle, S, D, [béAfC], row 2, Found 5 results"},
    {"", "key lblArtistName Return", "3//Air, busy, -S, -D, [], -row, lblArtistName, Searching..."},
    {"", "click btnCancel", "closed, btnCancel"},
    {"", "reply 3 songs", "idle, S, D, [BACD], row 1, tableView, Found 4 results"},
    {"", "drop controller", "gone"},
    {"an artist", "open /Moé &", "1/Moé &/, open, busy, -S, -D, [], -row, lblTrackName, Searching..."},
    {"", "reply 1 nothing", "idle, S, tableView, Found 0 results"},
    {"", "key lblArtistName Return", "2/Moé &/, busy, -S, lblArtistName, Searching..."},
    {"", "reply 2 error", "idle, S, tableView, Found 0 results"},
    {"", "key tableView Alt+S", "3/Moé &/, busy, -S, Searching..."},
    {"", "reply 3 nothing 500",
     "qvsonglrc.lookup Error Domain=QVSongLrc.Transport Code=7, idle, S, Found 0 results"},
    {"", "close", "closed"},
    {"", "drop controller", "gone"},
    {"many downloads", "open Clouds/Moe",
     "1/Moe/Clouds, open, busy, -S, -D, [], -row, lblTrackName, Searching..."},
    {"", "reply 1 songs", "idle, S, D, [BACD], row 2, tableView, Found 4 results"},
    {"", "type lblArtistName M!", "lblArtistName"},
    {"", "click btnDownload", "2/M!/Clouds/3, busy, -S, btnDownload, Downloading..."},
    {"", "key lblTrackName Return", "lblTrackName"},
    {"", "key tableView Return", "3/M!/Clouds/3, tableView"},
    {"", "key tableView Up", "row 1"},
    {"", "key tableView Enter", "4/M!/Clouds/2"},
    {"", "key btnCancel Alt+D", "5/M!/Clouds/2, btnCancel"},
    {"", "double 2 0", "6/M!/Clouds/3, row 2, tableView"},
    {"", "double 0 1", "7/M!/Clouds/1, row 0"},
    {"", "right 1 0", "row 1"},
    {"", "double 4 0", "-row"},
    {"", "click btnDownload", "btnDownload"},
    {"", "reply 3 lyric", "la, closed, idle, S"},
    {"", "reply 2 text", "la late"},
    {"", "drop controller", ""},
    {"no effect", "open Air/Moe; reply 1 songs",
     "1/Moe/Air, open, idle, S, D, [BACD], row 1, tableView, Found 4 results"},
    {"", "held tableView; header 1; header 1; header 0; header 0", "[DCBA]"},
    {"", "held btnDownload", "btnDownload"},
    {"", "held lblArtistName", "lblArtistName"},
    {"", "double 0 0", "qvsonglrc.dialog [LYRIC] no link to load, row 0, tableView"},
    {"", "type lblTrackName", "lblTrackName"},
    {"", "type lblArtistName; key lblTrackName Return", "-S"},
    {"", "key tableView Tab", "btnDownload"},
    {"", "key btnDownload Tab; key btnCancel Tab", "lblTrackName"},
    {"", "key lblTrackName Tab; key lblArtistName Tab", "tableView"},
    {"", "type lblArtistName b", "S, lblArtistName"},
    {"", "key lblArtistName Tab", "btnSearch"},
    {"", "key lblArtistName Alt+T", "lblTrackName"},
    {"", "key lblTrackName Alt+A", "lblArtistName"},
    {"", "key lblTrackName Escape", "closed, lblTrackName"},
    {"sorting", "open f/m; reply 1 accents",
     "1/m/f, open, idle, S, D, [béAfC], row 3, tableView, Found 5 results"},
    {"", "header 0", "[AbCéf]"},
    {"", "header 0", "[féCbA]"},
    {"", "key lblArtistName Return", "2/m/f, busy, -S, -D, [], -row, lblArtistName, Searching..."},
    {"", "reply 2 accents", "idle, S, D, [béAfC], row 3, tableView, Found 5 results"},
    {"", "header 0; header 1", "[CéfAb]"},
    {"", "header 1", "[bACéf]"},
    {"", "click btnDownload", "3/m/f/2, busy, -S, btnDownload, Downloading..."},
    {"", "reply 3 nothing", "no text, closed, idle, S"},
    {"failure", "open Air/Moe; reply 1 songs; double 1 0",
     "2/Moe/Air/2, open, busy, -S, D, [BACD], row 1, tableView, Downloading..."},
    {"", "reply 2 error", "no text, closed, idle, S, <b>no"},
    {"no completion", "drop completion; open Air/Moe; reply 1 songs; double 1 0",
     "2/Moe/Air/2, open, busy, -S, D, [BACD], row 1, tableView, Downloading..."},
    {"", "reply 2 lyric", "closed, idle, S"},
    {"closed", "open Air/Moe; reply 1 songs; double 1 0; close",
     "2/Moe/Air/2, closed, busy, -S, D, [BACD], row 1, tableView, Downloading..."},
    {"", "drop controller", ""},
    {"", "reply 2 lyric", "la, gone, idle"},
    {"no parent", "open Air/Moe; reply 1 songs; double 1 0; drop parent", "2/Moe/Air/2, gone, idle"},
    {"", "wait", "busy"},
    {"", "reply 2 lyric", "la, idle"},
    {"no context", "open Air/Moe; reply 1 songs; double 1 0; drop context",
     "2/Moe/Air/2, open, busy, -S, D, [BACD], row 1, tableView, Downloading..."},
    {"", "reply 2 lyric", "closed, idle, S"},
    {"nested", "open Air/Moe; reply 1 songs; double 1 0",
     "2/Moe/Air/2, open, busy, -S, D, [BACD], row 1, tableView, Downloading..."},
    {"", "open /", "idle, -D, [], -row, lblTrackName, Enter a title or an artist"},
    {"", "reply 2 lyric", "la"},
    {"", "close", "closed"},
    {"", "wait", "S, D, [BACD], row 1, tableView, Downloading..."},
    {"end", "", ""},
};

QStringList logged;

} // namespace

class TestSearchDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each test has its own application object, since some destroy it.
    void init()
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
        m_lyrics.clear();
        m_asked = m_server.requests().size();
        m_completion = [this](const QString &lyric) { m_lyrics += lyric.isNull() ? u"no text"_s : lyric; };
    }

    void cleanup()
    {
        m_parent = nullptr;
        m_controller = nullptr;
        m_application = nullptr;
    }

    void goesThroughItsStates_data()
    {
        QTest::addColumn<const Step *>("first");
        for (const Step *step = Steps; step != std::end(Steps) - 1; ++step)
            if (*step->story)
                QTest::newRow(step->story) << step;
    }
    void goesThroughItsStates()
    {
        QFETCH(const Step *, first);
        m_story = m_step = first;
        takeSteps();
    }

    // Timers with an earlier deadline run first, however busy the machine is.
    void selectsAfterATenthOfASecond()
    {
        QList<bool> isSelected;
        open(u"Air/Moe"_s, [&] {
            connect(table()->model(), &QAbstractItemModel::modelReset, m_window, [&] {
                for (const auto delay : {60ms, 600ms})
                    QTimer::singleShot(delay, m_window,
                                       [&] { isSelected += table()->selectionModel()->hasSelection(); });
            });
            take(u"reply 1 songs"_s);
            QTRY_COMPARE_WITH_TIMEOUT(isSelected, (QList<bool>{false, true}), 20'000);
        });
    }

    void showsOddTitles_data()
    {
        QTest::addColumn<QStringList>("texts"); // the title, its cell and its tooltip
        QTest::addColumn<bool>("isLeft");
        const QString m(995, u'm');
        QTest::newRow("long") << QStringList{u"a <b>m"_s + m, u"a <b>"_s + m,
                                             u"<p>a &lt;b&gt;%1</p>"_s.arg(m)}
                              << true;
        QTest::newRow("two lines") << QStringList{u"1\\n2"_s, u"1 2"_s, {}} << true;
        QTest::newRow("right to left") << QStringList{u"שלום"_s, u"שלום"_s, {}} << false;
    }
    void showsOddTitles()
    {
        QFETCH(const QStringList, texts);
        open(u"x/"_s, [&] {
            const QRect place = control("lblSearchState")->geometry();
            m_server.waitForRequests(m_asked + 1);
            m_server.reply(int(m_asked + 1),
                           uR"({"results":[{"artist":"A","track":"%1"}]})"_s.arg(texts[0]).toUtf8());
            const auto cell = [this](int column) { return table()->model()->index(0, column); };
            QTRY_VERIFY_WITH_TIMEOUT(cell(0).isValid(), 20'000);
            QCOMPARE(cell(0).data(), texts[1]);
            QCOMPARE(cell(1).data(), u"A"_s);
            QCOMPARE(control("lblSearchState")->geometry(), place);
            const QRect box = table()->visualRect(cell(0));
            QHelpEvent hover(QEvent::ToolTip, box.center(), table()->viewport()->mapToGlobal(box.center()));
            QApplication::sendEvent(table()->viewport(), &hover);
            QCOMPARE(QToolTip::text(), texts[2]);
            const QRect left(box.topLeft(), QSize(box.width() / 4, box.height() - 1));
            const QImage image = table()->viewport()->grab(left).toImage();
            QImage blank = image;
            blank.fill(image.pixel(0, 0));
            QTEST(image != blank, "isLeft");
        });
    }

    void dividesItsWidth()
    {
        open(u"/"_s, [this] {
            QHeaderView *const header = table()->horizontalHeader();
            const auto share = [&] {
                return qRound(100.0 * header->sectionSize(0) / table()->viewport()->width());
            };
            QTRY_COMPARE_WITH_TIMEOUT(share(), 60, 20'000);
            header->resizeSection(0, table()->viewport()->width() / 4);
            const int width = table()->width();
            m_window->resize(900, 500);
            QTRY_VERIFY_WITH_TIMEOUT(table()->width() > width, 20'000);
            QCOMPARE(share(), 25);
            QCOMPARE(header->length(), table()->viewport()->width());
            for (const int column : {0, 1})
                m_lyrics += header->model()->headerData(column, Qt::Horizontal).toString();
            QCOMPARE(m_lyrics, (QStringList{u"Title"_s, u"Artist"_s}));
        });
    }

    void isAccessible()
    {
        open(u"Air/Moe"_s, [this] {
            take(u"reply 1 songs; double 1 0"_s);
            for (const char *name : {"lblTrackName", "lblArtistName", "btnSearch", "tableView", "btnDownload",
                                     "btnCancel", "loadingIndicater", "lblSearchState"}) {
                const QAccessibleInterface *const face = QAccessible::queryAccessibleInterface(control(name));
                for (const auto kind : {QAccessible::Name, QAccessible::Description})
                    QVERIFY2(!face->text(kind).isEmpty(), name);
            }
            const auto *const state = QAccessible::queryAccessibleInterface(control("lblSearchState"));
            QCOMPARE(state->text(QAccessible::Name), u"Downloading..."_s);
            QCOMPARE(state->role(), QAccessible::Notification); // announced wherever the focus is
        });
    }

    void speaksTheUsersLanguage()
    {
        const struct
        {
            const char *language, *texts;
        } rows[] = {
            {"de_AT", "Suche läuft …|Wird heruntergeladen …|%@ Ergebnisse gefunden|Kein Liedtext gefunden"},
            {"fr", "Recherche en cours…|Téléchargement en cours…|%@ résultats trouvés|Aucune parole trouvée"},
            {"es", "Buscando…|Descargando…|%@ resultados encontrados|No se encontró ninguna letra"},
            {"pt_BR", "Pesquisando…|Baixando…|%@ resultados encontrados|Nenhuma letra encontrada"},
            {"ja", "検索中…|ダウンロード中…|%@ 件見つかりました|歌詞が見つかりませんでした"},
            {"ko", "검색 중…|다운로드 중…|결과 %@개를 찾았습니다|가사를 찾지 못했습니다"},
            {"zh_SG", "正在搜索…|正在下载…|找到 %@ 个结果|没有找到歌词"},
            {"zh_HK", "正在搜尋…|正在下載…|找到 %@ 個結果|沒有找到歌詞"},
            {"it", "Searching...|Downloading...|Found %@ results|Found no lyric"},
            {"en_GB", "Searching...|Downloading...|Found %@ results|Found no lyric"},
        };
        for (const auto &row : rows) {
            QLocale::setDefault(QLocale(QLatin1StringView(row.language)));
            QStringList seen;
            open(u"Air/"_s, [&] { seen += control<QLabel>("lblSearchState")->text(); });
            for (const char *other : {"Downloading...", "Found %@ results", "Found no lyric"})
                seen += QCoreApplication::translate("Localized", other);
            QCOMPARE(seen.join(u'|'), QString::fromUtf8(row.texts));
        }
    }

    // A completion deletes the dialog's parent. Closing the only window does not quit the application. Then exit() ends a modal loop
    // and leaves popUp() to close the window. At last the application object is destroyed while the host holds the
    // controller and a reply and a selection are pending.
    void endsWithTheApplication()
    {
        m_completion = [this](const QString &) {
            QVERIFY(m_window->isVisible()); // closes after its completion
            m_parent = nullptr;
        };
        QTimer::singleShot(0, qApp, [this] {
            open(u"Air/Moe"_s, [this] {
                take(u"reply 1 songs; double 1 0; reply 2 lyric"_s);
                QTRY_VERIFY_WITH_TIMEOUT(!m_window, 20'000);
            });
            open(u"/"_s, [] {});
            open(u"Air/Moe"_s, [this] {
                take(u"reply 3 one"_s);
                QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>("lblSearchState")->text(), u"Found 1 results"_s,
                                          20'000);
                take(u"key lblTrackName Return"_s);
                QCoreApplication::exit(7);
            });
        });
        QCOMPARE(QApplication::exec(), 7);
        QVERIFY(m_window && !m_window->isVisible());
        const std::weak_ptr<QVLyricSearchWndCtl> life = m_controller;
        m_application = nullptr;
        QVERIFY(!m_window && !life.expired());
        m_controller = nullptr;
        QVERIFY(life.expired());
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                 QVLyricSearchWndCtl::popUp({}, {}, nullptr, m_completion));
    }

private:
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

    /// Takes the story's next steps; those inside a dialog end when it has closed.
    void takeSteps(bool isInside = false)
    {
        while ((m_step == m_story || !*m_step->story) && !QTest::currentTestFailed()
               && !(isInside && (!m_window || !m_window->isVisible()))) {
            const Step &step = *m_step++;
            take(QString::fromUtf8(step.acts), [&, this] {
                const QString expected = QString::fromUtf8(step.changes);
                const bool isExpected = QTest::qWaitFor([&] { return changes() == expected; }, 20'000);
                QVERIFY2(isExpected,
                         qPrintable(u"%1 changes %2"_s.arg(QString::fromUtf8(step.acts), changes())));
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
            const QPointer<QDialog> window = m_window;
            script();
            if (window)
                window->close();
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
    const Step *m_story = Steps;
    const Step *m_step = std::end(Steps) - 1; // the next
};

QTEST_APPLESS_MAIN(TestSearchDialog)
#include "tst_searchdialog.moc"
