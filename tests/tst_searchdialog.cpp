// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SearchDialogDriver.h"

#include <QHelpEvent>
#include <QToolTip>

static_assert(!std::is_copy_constructible_v<QVLyricSearchWndCtl>);

class TestSearchDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English)); }

    void goesThroughItsStates_data()
    {
        QTest::addColumn<QString>("story");
        QFile file(QStringLiteral(TESTS "/data/searchdialog.txt"));
        QVERIFY(file.open(QFile::ReadOnly));
        for (const QString &story : QString::fromUtf8(file.readAll()).trimmed().split(u"\n\n"_s).mid(1))
            QTest::newRow(qPrintable(story.section(u": "_s, 0, 0))) << story.section(u": "_s, 1);
    }
    void goesThroughItsStates()
    {
        QFETCH(const QString, story);
        SearchDialogDriver dialog;
        if (QByteArray(QTest::currentDataTag()) == "no completion")
            dialog.completion = nullptr;
        dialog.play(story);
    }

    // Timers with an earlier deadline run first, however busy the machine is.
    void showsOddTitlesAndSelectsAfterATenthOfASecond()
    {
        const QString m(995, u'm');
        const struct
        {
            QString text, toolTip;
            bool isLeft;
        } cells[] = {
            {u"1 2"_s, {}, true},
            {u"שלום"_s, {}, false},
            {u"a <b>"_s + m, u"<p>a &lt;b&gt;%1</p>"_s.arg(m), true}, // cut off
        };
        SearchDialogDriver dialog;
        QList<bool> isSelected;
        dialog.open(u"m/A"_s, [&] {
            connect(dialog.table()->model(), &QAbstractItemModel::modelReset, dialog.window, [&] {
                for (const int delay : {60, 600})
                    QTimer::singleShot(delay, dialog.window,
                                       [&] { isSelected += dialog.selectedRow() == 2; });
            });
            const QRect place = dialog.control(u"lblSearchState"_s)->geometry();
            dialog.take(u"reply 1 odd"_s);
            QTRY_COMPARE_WITH_TIMEOUT(isSelected, (QList<bool>{false, true}), 30'000);
            QCOMPARE(dialog.control(u"lblSearchState"_s)->geometry(),
                     place); // the progress bar keeps its room
            for (int row = 0; row < 3; ++row) {
                const QModelIndex cell = dialog.table()->model()->index(row, 0);
                QCOMPARE(cell.data(), cells[row].text);
                QWidget *const view = dialog.table()->viewport();
                const QRect box = dialog.table()->visualRect(cell);
                QHelpEvent hover(QEvent::ToolTip, box.center(), view->mapToGlobal(box.center()));
                QApplication::sendEvent(view, &hover);
                QCOMPARE(QToolTip::text(), cells[row].toolTip);
                const QImage left =
                    view->grab({box.x(), box.y(), box.width() / 4, box.height() - 1}).toImage();
                QCOMPARE(left.convertToFormat(QImage::Format_Indexed8).colorCount() > 1, cells[row].isLeft);
            }
        });
    }

    void dividesItsWidth()
    {
        SearchDialogDriver dialog;
        dialog.open(u"/"_s, [&] {
            QHeaderView *const header = dialog.table()->horizontalHeader();
            const auto share = [&] { return qRound(100.0 * header->sectionSize(0) / header->length()); };
            QTRY_COMPARE_WITH_TIMEOUT(share(), 60, 30'000);
            header->resizeSection(0, header->length() / 4);
            dialog.window->resize(900, 500);
            QTRY_COMPARE_WITH_TIMEOUT(header->length() > 800 ? share() : 0, 25, 30'000);
            QCOMPARE(header->length(), dialog.table()->viewport()->width());
            QCOMPARE(header->model()->headerData(0, Qt::Horizontal), u"Title"_s);
        });
    }

    void speaksTheUsersLanguage()
    {
        qputenv("LANGUAGE", "en_GB:de"); // the system's languages
        SearchDialogDriver dialog;
        QStringList searching;
        QSet<QString> others;
        for (const char *language : {"de_AT", "", "fr", "es", "pt_BR", "ja", "ko", "zh_SG", "zh_HK", "it"}) {
            QLocale::setDefault(*language ? QLocale(QLatin1StringView(language)) : QLocale::system());
            dialog.open(u"A/"_s, [&] { searching += dialog.status(); });
            for (const char *other : {"Downloading...", "Found %@ results", "Found no lyric"})
                others += QCoreApplication::translate("Localized", other);
        }
        QCOMPARE(searching.join(u'|'),
                 u"Suche läuft …|Searching...|Recherche en cours…|Buscando…|Pesquisando…|検索中…|"
                 u"검색 중…|正在搜索…|正在搜尋…|Searching..."_s);
        QCOMPARE(others.size(), 3 * 9 - 1); // Spanish and Portuguese share a text;
    }

    // A completion deletes the dialog's parent, and closing the only window does not quit the application. Then exit()
    // ends a modal loop and leaves popUp() to close the window. At last the application object is destroyed while the
    // host holds the controller and a reply is pending.
    void endsWithTheApplication()
    {
        SearchDialogDriver dialog;
        dialog.completion = [&](const QString &) {
            QVERIFY(dialog.window->isVisible()); // closes after its completion
            dialog.parent = nullptr;
        };
        QPointer<QDialog> last;
        QTimer::singleShot(0, qApp, [&] {
            dialog.play(u"A/M; reply 1 songs; double 2 0; reply 2 lyric; look => 2/M/A/3, gone"_s);
            dialog.open(u"/"_s, [] {});
            QCoreApplication::processEvents(); // no event that quits
            dialog.open(u"A/M"_s, [&] {
                QCoreApplication::exit(7);
                last = std::exchange(dialog.window, nullptr); // open() must not close it
            });
        });
        QCOMPARE(QApplication::exec(), 7);
        QVERIFY(last && !last->isVisible() && dialog.controller->isSearching());
        const std::weak_ptr<QVLyricSearchWndCtl> life = dialog.controller;
        dialog.application = nullptr;
        QVERIFY(!last && !life.expired());
        dialog.controller = nullptr;
        QVERIFY(life.expired());
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument,
                                 QVLyricSearchWndCtl::popUp({}, {}, nullptr, dialog.completion));
    }
};

QTEST_APPLESS_MAIN(TestSearchDialog)
#include "tst_searchdialog.moc"
