// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "EditorWindow.h"

#include "ClockBar.h"
#include "FileCommands.h"
#include "LineTable.h"
#include "PreviewPane.h"
#include "RemarkBar.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// \p bar, if any, is above the title.
QWidget *titled(QWidget *view, const char *name, const QString &title, const QString &accessibleName,
                QWidget *bar = nullptr)
{
    view->setObjectName(QLatin1StringView(name));
    view->setAccessibleName(accessibleName);
    auto *const pane = new QWidget;
    auto *const layout = new QVBoxLayout(pane);
    layout->setContentsMargins({});
    if (bar)
        layout->addWidget(bar);
    auto *const label = new QLabel(title);
    label->setBuddy(view);
    layout->addWidget(label);
    layout->addWidget(view);
    return pane;
}

// The file that is dragged; empty unless it is exactly one local file.
QString draggedFile(const QMimeData &data)
{
    return data.urls().size() == 1 ? data.urls().constFirst().toLocalFile() : QString();
}

} // namespace

EditorWindow::EditorWindow()
    : m_files(new FileCommands(m_song, this))
    , m_clock(new ClockBar(this))
{
    setAcceptDrops(true);
    addPanes();
    addCommands();
    connectPanes();
    const QSettings settings;
    resize(1100, 680);
    restoreGeometry(settings.value("geometry"_L1).toByteArray());
    m_panes->restoreState(settings.value("panes"_L1).toByteArray());
    showTitle();
}

EditorWindow::~EditorWindow()
{
    // The views use m_song, so delete them first. The undo stack's last signals must not reach this window.
    m_song.undoStack().disconnect(this);
    delete takeCentralWidget();
}

void EditorWindow::addPanes()
{
    m_remarks = new RemarkBar(m_song);
    m_table = new LineTable(m_song);
    m_text = new LyricView;
    m_preview = new PreviewPane;
    auto *const texts = new QSplitter(Qt::Vertical);
    texts->addWidget(titled(m_text, "text", tr("Te&xt"), tr("The song's text")));
    texts->addWidget(titled(m_preview, "preview", tr("Pre&view"), tr("The song as it plays")));
    texts->setChildrenCollapsible(false);
    m_panes = new QSplitter;
    m_panes->setContentsMargins(6, 6, 6, 6);
    m_panes->addWidget(titled(m_table, "lines", tr("L&ines"), tr("The song's lines"), m_remarks));
    m_panes->addWidget(texts);
    m_panes->setStretchFactor(0, 3);
    m_panes->setStretchFactor(1, 2);
    m_panes->setChildrenCollapsible(false);
    setCentralWidget(m_panes);
}

void EditorWindow::connectPanes()
{
    connect(&m_song, &SongModel::changed, this, &EditorWindow::showSong);
    connect(&m_song, &SongModel::songReplaced, this, [this] {
        m_clock->setPlaying(false);
        m_clock->seek(0);
        m_table->select(0);
        showTitle();
    });
    connect(&m_song, &SongModel::saved, this, &EditorWindow::showTitle);
    connect(&m_song.undoStack(), &QUndoStack::cleanChanged, this, &EditorWindow::showTitle);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &EditorWindow::showCurrentLine);
    connect(m_text->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &line) {
                if (line.isValid() && line.row() != m_table->currentRow())
                    m_table->select(line.row()); // text and table have the same lines
            });
    connect(m_remarks, &RemarkBar::rowChosen, m_table, &LineTable::select);
    connect(m_preview, &PreviewPane::lineChosen, m_clock, &ClockBar::seek);
    connect(m_clock, &ClockBar::moved, m_preview, &PreviewPane::setNow);
    connect(m_table, &LineTable::message, this, &EditorWindow::showMessage);
    connect(m_files, &FileCommands::message, this, &EditorWindow::showMessage);
    connect(m_files, &FileCommands::aboutToUseSong, m_table, &LineTable::commitOpenEditor);
    auto *const warning = new QLabel;
    warning->setObjectName(u"warning"_s);
    statusBar()->addPermanentWidget(warning);
    // Emitted in two threads; the queue keeps the order.
    connect(&m_recovery, &Recovery::written, warning, &QLabel::setText, Qt::QueuedConnection);
}

void EditorWindow::open(const QString &file)
{
    m_files->openFile(file);
}

bool EditorWindow::recover(const QString &recoveryFile)
{
    if (!m_recovery.takeOver(recoveryFile))
        return false;
    showMessage(tr("Recovered; not saved yet"));
    return true;
}

void EditorWindow::searchOnline()
{
    // The lyric may arrive after the dialog has closed, when the window may show another song.
    const auto load = [this, song = m_song.number()](const QString &lyric) {
        if (m_song.number() != song)
            return;
        if (lyric.isNull())
            return showMessage(tr("The lyric could not be downloaded"));
        if (m_files->isAsking())
            return showMessage(tr("The lyric arrived while the song was being saved; search again"));
        m_table->commitOpenEditor();
        m_song.load(lyric);
        m_remarks->hide(); // its lines are gone
        m_table->select(0);
        showMessage(tr("Loaded the lyric; undo restores the song"));
    };
    QVLyricSearchWndCtl::popUp(m_song.property(u"ti"), m_song.property(u"ar"), this, load, this);
}

void EditorWindow::showSong(qsizetype row, qsizetype removed, qsizetype inserted)
{
    m_text->setLyric(m_song.text());
    m_preview->setSong(m_song.lines());
    m_clock->setLength(m_preview->length());
    // Show what an undo restored.
    if (removed != inserted || !m_table->selectionModel()->isRowSelected(int(row)))
        m_table->select(std::min(row, m_song.lines().size() - 1));
    showCurrentLine();
}

void EditorWindow::showCurrentLine()
{
    const qsizetype row = m_table->currentRow();
    m_text->highlight(row < 0 ? std::nullopt : std::optional(m_song.lines()[row]->txtRg()));
}

void EditorWindow::showTitle()
{
    const SongFile &file = m_song.file();
    setWindowFilePath(file.name());
    setWindowTitle(u"%1[*]"_s.arg(file.name().isEmpty() ? tr("New song") : file.shortName()));
    setWindowModified(m_song.isModified());
}

void EditorWindow::showMessage(const QString &text)
{
    statusBar()->showMessage(text, 10'000);
}

void EditorWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(m_files->confirmDiscard());
    QSettings().setValue("geometry"_L1, saveGeometry());
    QSettings().setValue("panes"_L1, m_panes->saveState());
}

void EditorWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) // queued, since it may open a dialog
        QMetaObject::invokeMethod(m_files, &FileCommands::checkDisk, Qt::QueuedConnection);
}

void EditorWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void EditorWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    // Queued: the program that the file was dragged from waits for this event, and open() may ask questions.
    const QString file = draggedFile(*event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, file] { open(file); }, Qt::QueuedConnection);
}
