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
#include <QLoggingCategory>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <limits>
#include <optional>
#include <stdexcept>

using namespace QVSongLrcPrivate;

namespace {

Q_LOGGING_CATEGORY(dialogLog, "qvsonglrc.dialog")

/// An object that is destroyed just before the application object. No window may live longer.
QObject *applicationEnd()
{
    static QPointer<QObject> end;
    if (!end) {
        end = new QObject;
        qAddPostRoutine([] { delete end; });
    }
    return end.data();
}

bool isRepeatedEnter(const QEvent *event)
{
    const auto *const key = dynamic_cast<const QKeyEvent *>(event);
    return key && key->type() == QEvent::KeyPress && key->isAutoRepeat()
        && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
}

} // namespace

class QVLyricSearchWndCtl::Private final : public QObject
{
public:
    Private(QVLyricSearchWndCtl &controller, QWidget *parent)
        : m_controller(controller)
        , m_window(new QDialog(parent))
    {
        Translations::followUsersLanguage();
        m_ui.setupUi(m_window);
        // The dialog may be the host's only window; closing it must not quit the application.
        m_window->setAttribute(Qt::WA_QuitOnClose, false);
        connect(applicationEnd(), &QObject::destroyed, m_window,
                [window = m_window.get()] { delete window; });
    }

    ~Private() override { delete m_window; }

    void windowDidLoad()
    {
        QSizePolicy policy = m_ui.loadingIndicater->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        m_ui.loadingIndicater->setSizePolicy(policy);
        m_ui.tableView->setModel(&m_results);

        m_window->installEventFilter(this);
        m_ui.btnDownload->installEventFilter(this);
        // Enter searches in the name fields and downloads in the table; the default button shows which.
        connect(qApp, &QApplication::focusChanged, m_window, [this](QWidget *, QWidget *now) {
            if (now == m_ui.lblTrackName || now == m_ui.lblArtistName)
                m_ui.btnSearch->setDefault(true);
            else if (now == m_ui.tableView)
                m_ui.btnDownload->setDefault(true);
        });
        connect(m_ui.tableView, &QTableView::doubleClicked, this, &Private::tableDoubleClick);
        connect(m_ui.lblTrackName, &QLineEdit::textChanged, this, &Private::controlTextDidChange);
        connect(m_ui.lblArtistName, &QLineEdit::textChanged, this, &Private::controlTextDidChange);
        connect(m_ui.btnSearch, &QPushButton::clicked, this, &Private::searchClick);
        connect(m_ui.btnDownload, &QPushButton::clicked, this, &Private::downloadClick);
        connect(m_ui.btnCancel, &QPushButton::clicked, this, &Private::cancelClick);
    }

    void setTrack(const QString &track, const QString &artist)
    {
        m_ui.lblTrackName->setText(track);
        m_ui.lblArtistName->setText(artist);
        refreshBtnsState();
        searchClick();
    }

    void runModal()
    {
        QEventLoop run;
        m_modalRun = &run; // cppcheck-suppress danglingLifetime ; it is a QPointer
        m_window->show();
        run.exec(QEventLoop::DialogExec);
        closeWindow(); // still open if QCoreApplication::exit() ended the loop
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // Ignore auto-repeated Enter: it would start download after download, since the table gets the focus.
        if (isRepeatedEnter(event))
            return true;
        if (event->type() == QEvent::Hide && watched == m_window && !event->spontaneous())
            windowWillClose();
        return QObject::eventFilter(watched, event);
    }

    void setIsSearching(bool isSearching)
    {
        m_isSearching = isSearching;
        refreshBtnsState();
    }

    void refreshBtnsState()
    {
        if (!m_window)
            return;
        const bool hasNames = !m_ui.lblTrackName->text().isEmpty() || !m_ui.lblArtistName->text().isEmpty();
        m_ui.btnSearch->setEnabled(hasNames && !m_isSearching);
        m_ui.loadingIndicater->setVisible(m_isSearching);
        if (m_isSearching)
            setSearchState(m_results.isEmpty() ? QCoreApplication::translate("Localized", "Searching...")
                                               : QCoreApplication::translate("Localized", "Downloading..."));
        // Also enabled during a download: the user may start a second one.
        m_ui.btnDownload->setEnabled(!m_results.isEmpty());
    }

    void setSearchState(const QString &text)
    {
        if (m_window)
            m_ui.lblSearchState->announce(text);
    }

    QJsonObject reqParams() const
    {
        return {{Key_Lyric_Artist, m_ui.lblArtistName->text()},
                {Key_Lyric_Trackname, m_ui.lblTrackName->text()}};
    }

    void searchClick()
    {
        m_results.setResults({});
        if (m_ui.lblArtistName->text().isEmpty() && m_ui.lblTrackName->text().isEmpty())
            return;
        const auto model = ZTLyricRequestModel::initWithReqParams(reqParams());
        setIsSearching(true);
        model->requestListWithCompletion([this, controller = m_controller.shared_from_this()](
                                             const std::optional<QVLyricError> &error,
                                             const QList<QJsonObject> &results, qint64 bestIndex) {
            if (error)
                setSearchState(error->localizedDescription);
            m_results.setResults(results);
            // Intended: this also replaces an error's text.
            setSearchState(QCoreApplication::translate("Localized", "Found %@ results")
                               .replace(QLatin1StringView("%@"), QString::number(results.size())));
            selectRow(bestIndex);
            setIsSearching(false);
        });
    }

    void selectRow(qint64 row)
    {
        constexpr std::chrono::milliseconds Delay(100);
        QTimer::singleShot(Delay, this, [this, controller = m_controller.shared_from_this(), row] {
            if (!m_window)
                return;
            if (row >= 0 && row < m_results.rowCount()) {
                m_ui.tableView->scrollTo(m_results.index(int(row), 0));
                m_ui.tableView->selectRow(int(row));
            }
            m_ui.tableView->setFocus();
        });
    }

    void downloadClick()
    {
        const qint64 row = m_ui.tableView->selectedRow();
        const QList<QJsonObject> results = m_results.results();
        if (row < 0 || row >= results.size())
            return;
        const QString link = stringForKeySafeModel(results[row], LookupProtocol::Link);
        if (link.isEmpty())
            qCWarning(dialogLog, "[LYRIC] no link to load");
        else
            requestDetail(link);
    }

    void requestDetail(const QString &link)
    {
        const auto model = ZTLyricRequestModel::initWithReqParams(reqParams());
        setIsSearching(true);
        model->requestDetail(
            link,
            [this, controller = m_controller.shared_from_this()](const std::optional<QVLyricError> &error,
                                                                 const QString &lyric) {
                setIsSearching(false);
                if (error)
                    setSearchState(error->localizedDescription);
                if (const CompletionCallback call = m_completionCB) // a copy: it may set another
                    call(lyric);
                closeWindow();
            });
    }

    void tableDoubleClick()
    {
        // Intended: always true, since "no selection" is -1. downloadClick() checks the row.
        if (m_ui.tableView->selectedRow() != std::numeric_limits<qint64>::max())
            downloadClick();
    }

    void cancelClick() { closeWindow(); }
    void closeWindow()
    {
        if (m_window)
            m_window->close();
    }

    void windowWillClose()
    {
        if (m_modalRun)
            m_modalRun->exit();
    }

    void controlTextDidChange() { refreshBtnsState(); }

    QVLyricSearchWndCtl &m_controller;
    LyricResultsModel m_results;    // outlives the window, which shows it
    Ui::QVLyricSearchWndCtl m_ui{}; // its pointers dangle once the window is gone
    bool m_isSearching = false;
    CompletionCallback m_completionCB;
    QPointer<QDialog> m_window;
    QPointer<QEventLoop> m_modalRun;
};

std::shared_ptr<QVLyricSearchWndCtl> QVLyricSearchWndCtl::popUp(const QString &track, const QString &artist,
                                                                CompletionCallback completion,
                                                                QWidget *parent)
{
    std::shared_ptr<QVLyricSearchWndCtl> controller(new QVLyricSearchWndCtl(parent));
    controller->setCompletionCB(std::move(completion));
    controller->d->windowDidLoad();
    controller->d->setTrack(track, artist);
    controller->d->runModal();
    return controller;
}

std::shared_ptr<QVLyricSearchWndCtl> QVLyricSearchWndCtl::popUp(const QString &track, const QString &artist,
                                                                QObject *context,
                                                                CompletionCallback completion,
                                                                QWidget *parent)
{
    if (!context)
        throw std::invalid_argument("QVLyricSearchWndCtl::popUp: null context");
    const auto complete = [context = QPointer(context), completion = std::move(completion)](auto &lyric) {
        if (context && completion)
            completion(lyric);
    };
    return popUp(track, artist, complete, parent);
}

QVLyricSearchWndCtl::QVLyricSearchWndCtl(QWidget *parent)
    : d(std::make_unique<Private>(*this, parent))
{
}

QVLyricSearchWndCtl::~QVLyricSearchWndCtl() = default;

bool QVLyricSearchWndCtl::isSearching() const
{
    return d->m_isSearching;
}

QList<QJsonObject> QVLyricSearchWndCtl::lrcResults() const
{
    return d->m_results.results();
}

QVLyricSearchWndCtl::CompletionCallback QVLyricSearchWndCtl::completionCB() const
{
    return d->m_completionCB;
}

void QVLyricSearchWndCtl::setCompletionCB(CompletionCallback completion)
{
    d->m_completionCB = std::move(completion);
}
