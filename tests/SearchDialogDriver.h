// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "MisbehavingServer.h"
#include "TestAuthority.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>
#include <QVSongLrc/QVLyricService.h>

#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QUrlQuery>

/// A lyric service that holds back every reply until reply() is called. Requests are numbered from 1.
class HoldingService
{
public:
    HoldingService()
        : m_server(trusted(), [this](QSslSocket *socket) {
            const QMutexLocker lock(&m_mutex);
            m_sockets += socket;
        })
    {
        QVLyricService::setEndpoint(QStringLiteral("127.0.0.1"), m_server.port());
    }

    qsizetype asked() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_sockets.size();
    }

    /// Waits for a request and returns its form field \p field.
    QString sent(qsizetype number, const char *field) const
    {
        if (!QTest::qWaitFor([=, this] { return asked() >= number; }))
            return QStringLiteral("no request");
        const QByteArray request = m_server.requests().at(number - 1);
        const QByteArray form = request.mid(request.indexOf("\r\n\r\n") + 4).replace('+', ' ');
        return QUrlQuery(QString::fromUtf8(form))
            .queryItemValue(QString::fromUtf8(field), QUrl::FullyDecoded);
    }

    /// Waits for a request and replies to it.
    void reply(qsizetype number, const QByteArray &body, const QByteArray &status = "200 OK")
    {
        QTRY_VERIFY(asked() >= number);
        const QPointer<QSslSocket> socket = m_sockets.at(number - 1);
        QVERIFY(socket); // null if the client has disconnected
        QMetaObject::invokeMethod(
            socket.get(), [=] { MisbehavingServer::reply(body, status)(socket); }, Qt::QueuedConnection);
    }

private:
    static const QSslConfiguration &trusted()
    {
        static const QSslConfiguration configuration = [] {
            const TestAuthority authority;
            QVLyricService::addCertificateAuthorities(authority.pem());
            return authority.issue("IP:127.0.0.1");
        }();
        return configuration;
    }

    mutable QMutex m_mutex;
    QList<QPointer<QSslSocket>> m_sockets;
    MisbehavingServer m_server;
};

/// The dialog's window and controls, as a user has them.
struct SearchWindow
{
    /// The first words of a column's cells, joined by spaces.
    QString column(int column) const
    {
        QStringList cells;
        for (int row = 0; row < table->model()->rowCount(); ++row)
            cells += table->model()->index(row, column).data().toString().section(QLatin1Char(' '), 0, 0);
        return cells.join(QLatin1Char(' '));
    }

    int selectedRow() const
    {
        const QModelIndexList rows = table->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }

    void clickHeader(int column) const
    {
        const QHeaderView *const header = table->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }

    void doubleClick(const QPoint &at, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(table->viewport(), button, {}, at);
        QTest::mouseDClick(table->viewport(), button, {}, at);
    }

    /// Busy or idle, Search enabled, Download enabled and the status text, in one string.
    QString look() const
    {
        return QStringLiteral("%1 %2 %3 %4")
            .arg(indicator->isVisible() ? QStringLiteral("busy") : QStringLiteral("idle"))
            .arg(search->isEnabled())
            .arg(download->isEnabled())
            .arg(state->text());
    }

    template <typename Control>
    Control *control(const char *name) const
    {
        return window->findChild<Control *>(QString::fromLatin1(name));
    }

    QPointer<QDialog> window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    QLineEdit *track = control<QLineEdit>("lblTrackName");
    QLineEdit *artist = control<QLineEdit>("lblArtistName");
    QPushButton *search = control<QPushButton>("btnSearch");
    QPushButton *download = control<QPushButton>("btnDownload");
    QPushButton *cancel = control<QPushButton>("btnCancel");
    QProgressBar *indicator = control<QProgressBar>("loadingIndicater");
    QLabel *state = control<QLabel>("lblSearchState");
    QTableView *table = control<QTableView>("tableView");
};

using Script = std::function<void(SearchWindow &)>;

/// Opens the dialog and runs \p script in its modal loop. Closes the dialog when the script has ended, or after
/// 30 s as a failure.
inline std::shared_ptr<QVLyricSearchWndCtl>
popUpWith(const Script &script, const QString &track, const QString &artist = {},
          const QVLyricSearchWndCtl::CompletionCallback &completion = {}, QWidget *parent = nullptr,
          QObject *context = nullptr)
{
    QTimer watchdog;
    watchdog.callOnTimeout([] {
        QTest::qFail("the dialog has not closed", __FILE__, __LINE__);
        for (QWidget *const modal : QApplication::topLevelWidgets())
            if (modal->isModal())
                modal->close();
    });
    watchdog.start(30'000);
    QTimer::singleShot(0, &watchdog, [&script] {
        SearchWindow window;
        window.window->activateWindow();
        if (QTest::qWaitForWindowActive(window.window))
            script(window);
        else
            QTest::qFail("the dialog was not activated", __FILE__, __LINE__);
        if (window.window)
            window.window->close();
    });
    return context ? QVLyricSearchWndCtl::popUp(track, artist, context, completion, parent)
                   : QVLyricSearchWndCtl::popUp(track, artist, completion, parent);
}
