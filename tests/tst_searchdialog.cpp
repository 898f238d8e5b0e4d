// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SearchDialogDriver.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

using namespace std::chrono_literals;

static_assert(!std::is_copy_constructible_v<QVLyricSearchWndCtl>);

class TestSearchDialog : public SearchDialogDriver
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }
    void cleanup() { end(); }

    void goesThroughItsStates_data()
    {
        QTest::addColumn<QStringList>("steps");
        QFile file(QStringLiteral(TESTS "/data/searchdialog.txt"));
        QVERIFY(file.open(QFile::ReadOnly));
        for (const QString &story : QString::fromUtf8(file.readAll()).split(u"\n\n"_s).mid(1))
            QTest::newRow(qPrintable(story.section(u": "_s, 0, 0))) << story.section(u": "_s, 1).split(u'\n');
    }
    void goesThroughItsStates()
    {
        QFETCH(const QStringList, steps);
        m_steps = steps;
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
            {"en_GB", "Searching...|Downloading...|Found %@ results|Found no lyric"},
            {"it", "Searching...|Downloading...|Found %@ results|Found no lyric"},
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

    // A completion deletes the dialog's parent, and closing the only window does not quit the application. Then exit()
    // ends a modal loop and leaves popUp() to close the window. At last the application object is destroyed while the
    // host holds the controller and a reply and a selection are pending.
    void endsWithTheApplication()
    {
        m_completion = [this](const QString &) {
            QVERIFY(m_window->isVisible()); // closes after its completion
            m_parent = nullptr;
        };
        QPointer<QDialog> last;
        QTimer::singleShot(0, qApp, [&, this] {
            open(u"Air/Moe"_s, [this] {
                take(u"reply 1 songs; double 1 0; reply 2 lyric"_s);
                QTRY_VERIFY_WITH_TIMEOUT(!m_window, 20'000);
            });
            open(u"/"_s, [] {});
            QCoreApplication::processEvents(); // no event that quits
            open(u"Air/Moe"_s, [&, this] {
                take(u"reply 3 one"_s);
                QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>("lblSearchState")->text(), u"Found 1 results"_s,
                                          20'000);
                take(u"key lblTrackName Return"_s);
                QVERIFY(m_window->isVisible());
                QCoreApplication::exit(7);
                last = std::exchange(m_window, nullptr); // open() must not close it
            });
        });
        QCOMPARE(QApplication::exec(), 7);
        QVERIFY(last && !last->isVisible());
        const std::weak_ptr<QVLyricSearchWndCtl> life = m_controller;
        m_application = nullptr;
        QVERIFY(!last && !life.expired());
        m_controller = nullptr;
        QVERIFY(life.expired());
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                 QVLyricSearchWndCtl::popUp({}, {}, nullptr, m_completion));
    }
};

QTEST_APPLESS_MAIN(TestSearchDialog)
#include "tst_searchdialog.moc"
