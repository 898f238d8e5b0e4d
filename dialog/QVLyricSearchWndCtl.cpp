// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include "LyricResultsModel.h"
#include "Translations.h"
#include "lookup/LookupProtocol.h"
#include "lookup/SafeModel.h"
#include "ui_QVLyricSearchWndCtl.h"

#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>

#include <chrono>
#include <limits>
#include <optional>

using namespace QVSongLrcPrivate;

namespace {

/// What a table says that marks a selection by "not found"; QTableView and this one say -1.
constexpr qint64 NotFound = std::numeric_limits<qint64>::max();

/// Is destroyed shortly before the application object is, which no window may outlive.
QObject *applicationEnd()
{
    static QPointer<QObject> end;
    if (!end) {
        end = new QObject;
        qAddPostRoutine([] { delete end; });
    }
    return end.data();
}

bool isHeldEnter(const QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *const press = static_cast<const QKeyEvent *>(event);
    return press->isAutoRepeat() && (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter);
}

} // namespace

std::shared_ptr<QVLyricSearchWndCtl> QVLyricSearchWndCtl::popUp(const QString &track, const QString &artist,
                                                                CompletionCallback completion,
                                                                QWidget *parent)
{
    std::shared_ptr<QVLyricSearchWndCtl> controller(new QVLyricSearchWndCtl(parent));
    controller->setCompletionCB(std::move(completion));
    controller->windowDidLoad();
    controller->setTrack(track, artist);
    controller->runModal();
    return controller;
}

QVLyricSearchWndCtl::QVLyricSearchWndCtl(QWidget *parent)
    : m_results(std::make_unique<LyricResultsModel>())
    , m_ui(std::make_unique<Ui::QVLyricSearchWndCtl>())
    , m_window(new QDialog(parent))
{
    Translations::followUsersLanguage();
    m_ui->setupUi(m_window);
    // It may be a host's only window for the time being.
    m_window->setAttribute(Qt::WA_QuitOnClose, false);
    connect(applicationEnd(), &QObject::destroyed, m_window, [window = m_window.get()] { delete window; });
}

QVLyricSearchWndCtl::~QVLyricSearchWndCtl()
{
    delete m_window;
}

QList<QJsonObject> QVLyricSearchWndCtl::lrcResults() const
{
    return m_results->results();
}

bool QVLyricSearchWndCtl::eventFilter(QObject *watched, QEvent *event)
{
    // Who holds Enter for long would start one download after the other, the focus being in the table soon.
    if (isHeldEnter(event))
        return true;
    if (event->type() == QEvent::Hide && watched == m_window && !event->spontaneous())
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

void QVLyricSearchWndCtl::windowDidLoad()
{
    QSizePolicy policy = m_ui->loadingIndicater->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->loadingIndicater->setSizePolicy(policy);

    m_ui->tableView->setModel(m_results.get());

    m_window->installEventFilter(this);
    m_ui->btnDownload->installEventFilter(this);
    // So that Enter searches in the names and downloads in the table, and people see which.
    connect(qApp, &QApplication::focusChanged, m_window, [ui = m_ui.get()](QWidget *, QWidget *now) {
        if (now == ui->lblTrackName || now == ui->lblArtistName)
            ui->btnSearch->setDefault(true);
        else if (now == ui->tableView)
            ui->btnDownload->setDefault(true);
    });
    connect(m_ui->tableView, &QTableView::doubleClicked, this, &QVLyricSearchWndCtl::tableDoubleClick);
    connect(m_ui->lblTrackName, &QLineEdit::textChanged, this, &QVLyricSearchWndCtl::controlTextDidChange);
    connect(m_ui->lblArtistName, &QLineEdit::textChanged, this, &QVLyricSearchWndCtl::controlTextDidChange);
    connect(m_ui->btnSearch, &QPushButton::clicked, this, &QVLyricSearchWndCtl::searchClick);
    connect(m_ui->btnDownload, &QPushButton::clicked, this, &QVLyricSearchWndCtl::downloadClick);
    connect(m_ui->btnCancel, &QPushButton::clicked, this, &QVLyricSearchWndCtl::cancelClick);
}

void QVLyricSearchWndCtl::runModal()
{
    QEventLoop run;
    m_modalRun = &run; // cppcheck-suppress danglingLifetime ; it is a QPointer
    m_window->show();
    run.exec(QEventLoop::DialogExec);
    closeWindow(); // which is still open when the application has been told to end
}

void QVLyricSearchWndCtl::setTrack(const QString &track, const QString &artist)
{
    m_ui->lblTrackName->setText(track);
    m_ui->lblArtistName->setText(artist);
    refreshBtnsState();
    searchClick();
}

void QVLyricSearchWndCtl::setIsSearching(bool isSearching)
{
    m_isSearching = isSearching;
    refreshBtnsState();
}

void QVLyricSearchWndCtl::refreshBtnsState()
{
    if (!m_window)
        return;
    const bool hasNames = !m_ui->lblTrackName->text().isEmpty() || !m_ui->lblArtistName->text().isEmpty();
    m_ui->btnSearch->setEnabled(hasNames && !m_isSearching);
    m_ui->loadingIndicater->setVisible(m_isSearching);
    if (m_isSearching)
        setSearchState(m_results->isEmpty() ? QCoreApplication::translate("Localized", "Searching...")
                                            : QCoreApplication::translate("Localized", "Downloading..."));
    // Also while a download runs: the user may start a second one.
    m_ui->btnDownload->setEnabled(!m_results->isEmpty());
}

void QVLyricSearchWndCtl::setSearchState(const QString &text)
{
    if (m_window)
        m_ui->lblSearchState->say(text);
}

/// The names as they stand in the fields.
QJsonObject QVLyricSearchWndCtl::reqParams() const
{
    return {{Key_Lyric_Artist, m_ui->lblArtistName->text()},
            {Key_Lyric_Trackname, m_ui->lblTrackName->text()}};
}

void QVLyricSearchWndCtl::searchClick()
{
    m_results->setResults({});
    if (m_ui->lblArtistName->text().isEmpty() && m_ui->lblTrackName->text().isEmpty())
        return;
    const auto model = ZTLyricRequestModel::initWithReqParams(reqParams());
    setIsSearching(true);
    model->requestListWithCompletion([self = shared_from_this()](const std::optional<QVLyricError> &error,
                                                                 const QList<QJsonObject> &results,
                                                                 qint64 bestIndex) {
        if (error)
            self->setSearchState(error->localizedDescription);
        self->m_results->setResults(results);
        // After an error too, which it replaces. This is meant.
        self->setSearchState(QCoreApplication::translate("Localized", "Found %@ results")
                                 .replace(QLatin1StringView("%@"), QString::number(results.size())));
        self->selectRow(bestIndex);
        self->setIsSearching(false);
    });
}

void QVLyricSearchWndCtl::selectRow(qint64 row)
{
    constexpr std::chrono::milliseconds Delay(100);
    QTimer::singleShot(Delay, this, [self = shared_from_this(), row] {
        if (!self->m_window)
            return;
        LyricResultsTable *const table = self->m_ui->tableView;
        if (row >= 0 && row < self->m_results->rowCount()) {
            table->scrollTo(self->m_results->index(int(row), 0));
            table->selectRow(int(row));
        }
        table->setFocus();
    });
}

void QVLyricSearchWndCtl::downloadClick()
{
    const qint64 row = m_ui->tableView->selectedRow();
    const QList<QJsonObject> results = m_results->results();
    if (row < 0 || row >= results.size())
        return;
    const QString link = stringForKeySafeModel(results[row], LookupProtocol::Link);
    if (link.isEmpty())
        qWarning("[LYRIC] no link to load");
    else
        requestDetail(link);
}

void QVLyricSearchWndCtl::requestDetail(const QString &link)
{
    const auto model = ZTLyricRequestModel::initWithReqParams(reqParams());
    setIsSearching(true);
    model->requestDetail(
        link, [self = shared_from_this()](const std::optional<QVLyricError> &error, const QString &lyric) {
            self->setIsSearching(false);
            if (error)
                self->setSearchState(error->localizedDescription);
            if (const CompletionCallback completion = self->m_completionCB) // which may set another
                completion(lyric);
            self->closeWindow();
        });
}

void QVLyricSearchWndCtl::tableDoubleClick()
{
    // Lets every row through, since no selection is -1 here; downloadClick() tells the rows that there are.
    if (m_ui->tableView->selectedRow() != NotFound)
        downloadClick();
}

void QVLyricSearchWndCtl::cancelClick()
{
    closeWindow();
}

void QVLyricSearchWndCtl::closeWindow()
{
    if (m_window)
        m_window->close();
}

void QVLyricSearchWndCtl::windowWillClose()
{
    if (m_modalRun)
        m_modalRun->exit();
}

void QVLyricSearchWndCtl::controlTextDidChange()
{
    refreshBtnsState();
}
