// SPDX-License-Identifier: MIT
#include "EditorWindow.h"

#include "ClockBar.h"
#include "Command.h"
#include "FileMenu.h"
#include "LineMenu.h"
#include "LineTable.h"
#include "LineTableModel.h"
#include "PreviewPane.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QWidget *titled(QWidget *view, const QString &title, const QString &accessibleName)
{
    auto *const pane = new QWidget;
    auto *const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *const label = new QLabel(title);
    label->setBuddy(view);
    view->setAccessibleName(accessibleName);
    layout->addWidget(label);
    layout->addWidget(view);
    return pane;
}

// The one local file that is dragged; empty for anything else.
QString draggedFile(const QMimeData &data)
{
    return data.urls().size() == 1 ? data.urls().constFirst().toLocalFile() : QString();
}

} // namespace

EditorWindow::EditorWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_model(new LineTableModel(m_document, this))
    , m_files(new FileMenu(m_document, this))
    , m_warning(new QLabel(this))
{
    setAcceptDrops(true);
    setCentralWidget(makePanes());
    m_warning->setObjectName(u"warning"_s);
    statusBar()->addPermanentWidget(m_warning);
    addCommands();

    connect(&m_document, &SongDocument::changed, this, &EditorWindow::showSong);
    connect(&m_document, &SongDocument::fileChanged, this, &EditorWindow::showTitle);
    connect(&m_document, &SongDocument::begun, this, [this] {
        m_clock.setPlaying(false);
        m_clock.seek(0);
        m_table->select(0);
    });
    connect(&m_document.undoStack(), &QUndoStack::cleanChanged, this, &EditorWindow::showTitle);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &EditorWindow::showCurrentLine);
    connect(m_text->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const auto &line) {
                if (line.isValid() && line.row() != m_table->currentRow())
                    m_table->select(line.row()); // each line of the text is one of the table's
            });
    connect(m_preview, &PreviewPane::lineChosen, &m_clock, &Clock::seek);
    connect(&m_clock, &Clock::moved, m_preview, &PreviewPane::setNow);
    connect(m_model, &LineTableModel::refused, this, &EditorWindow::say);
    connect(m_files, &FileMenu::message, this, &EditorWindow::say);
    connect(m_files, &FileMenu::aboutToLook, m_table, &LineTable::commitOpenEditor);
    connect(&m_recovery, &Recovery::written, this, [this](const QString &why) {
        m_warning->setText(why.isEmpty() ? QString() : tr("No recovery file: %1").arg(why));
    });

    const QSettings settings;
    resize(1100, 680);
    restoreGeometry(settings.value("geometry"_L1).toByteArray());
    m_panes->restoreState(settings.value("panes"_L1).toByteArray());
    showTitle();
}

EditorWindow::~EditorWindow()
{
    // Whoever looks at the song goes before it does, and what it says on its way out is heard by nobody.
    m_document.undoStack().disconnect(this);
    delete takeCentralWidget();
}

void EditorWindow::open(const QString &file)
{
    m_files->open(file);
}

bool EditorWindow::recover(const QString &recoveryFile)
{
    if (!m_recovery.takeOver(recoveryFile))
        return false;
    say(tr("Recovered; not saved yet"));
    return true;
}

QWidget *EditorWindow::makePanes()
{
    m_table = new LineTable(*m_model);
    m_table->setObjectName(u"lines"_s);
    m_text = new LyricView;
    m_text->setObjectName(u"text"_s);
    m_preview = new PreviewPane;
    m_preview->setObjectName(u"preview"_s);
    auto *const texts = new QSplitter(Qt::Vertical);
    texts->addWidget(titled(m_text, tr("Te&xt"), tr("The song's text")));
    texts->addWidget(titled(m_preview, tr("Pre&view"), tr("The song as it plays")));
    texts->setChildrenCollapsible(false);
    m_panes = new QSplitter;
    m_panes->addWidget(titled(m_table, tr("L&ines"), tr("The song's lines")));
    m_panes->addWidget(texts);
    m_panes->setStretchFactor(0, 3);
    m_panes->setStretchFactor(1, 2);
    m_panes->setChildrenCollapsible(false);
    auto *const margin = new QWidget;
    auto *const layout = new QVBoxLayout(margin);
    layout->addWidget(m_panes);
    return margin;
}

void EditorWindow::addCommands()
{
    menuBar()->addMenu(m_files);
    QMenu *const edit = menuBar()->addMenu(tr("&Edit"));
    QUndoStack &stack = m_document.undoStack();
    QAction *const undo = addCommand(edit, "undoAction", tr("&Undo"), Qt::CTRL | Qt::Key_Z,
                                     tr("Take the last change back"), this, [this] {
                                         m_table->commitOpenEditor(); // so that it can be had again by redo
                                         m_document.undoStack().undo();
                                     });
    QAction *const redo = addCommand(edit, "redoAction", tr("&Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                                     tr("Make the change again"), &stack, &QUndoStack::redo);
    undo->setEnabled(false);
    redo->setEnabled(false);
    undo->setIcon(style()->standardIcon(QStyle::SP_ArrowBack));
    redo->setIcon(style()->standardIcon(QStyle::SP_ArrowForward));
    connect(&stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(&stack, &QUndoStack::undoTextChanged, undo,
            [undo](const QString &name) { undo->setText(tr("&Undo %1").arg(name)); });
    connect(&stack, &QUndoStack::redoTextChanged, redo,
            [redo](const QString &name) { redo->setText(tr("&Redo %1").arg(name)); });
    auto *const lines = new LineMenu(m_document, *m_table, m_clock, this);
    connect(lines, &LineMenu::message, this, &EditorWindow::say);
    menuBar()->addMenu(lines);

    QMenu *const song = menuBar()->addMenu(tr("&Song"));
    QAction *const search = addCommand(song, "searchAction", tr("Search &Online…"), Qt::CTRL | Qt::Key_L,
                                       tr("Look the song's lyric up, by its title and artist"), this,
                                       &EditorWindow::searchOnline);
    addCommand(song, "markAction", tr("Insert &Maker Mark"), Qt::CTRL | Qt::Key_K,
               tr("Add the lines that name the maker"), this, [this] {
                   m_table->commitOpenEditor();
                   say(m_document.insertMakerMark() ? tr("Inserted the maker mark")
                                                    : tr("The song has the maker mark"));
               });
    song->addSeparator();
    QAction *const tags =
        addCommand(song, "tagsAction", tr("&Tags in Preview"), Qt::CTRL | Qt::Key_T,
                   tr("Show the preview with time and property tags"), m_preview, &PreviewPane::setHasTags);
    tags->setCheckable(true);
    tags->setChecked(true);

    m_clockBar = new ClockBar(m_clock, menuBar()->addMenu(tr("&Clock")), this);
    QToolBar *const bar = addToolBar(tr("Commands"));
    bar->setObjectName(u"commandBar"_s);
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions(m_files->mainActions());
    bar->addSeparator();
    undo->setPriority(QAction::LowPriority);
    redo->setPriority(QAction::LowPriority);
    bar->addActions({undo, redo});
    bar->addSeparator();
    bar->addActions(lines->mainActions());
    bar->addSeparator();
    bar->addAction(search);
    addToolBar(Qt::BottomToolBarArea, m_clockBar);
}

void EditorWindow::searchOnline()
{
    m_table->commitOpenEditor();
    // The lyric may come after the dialog is closed, when the window may be gone or show another song.
    const auto load = [window = QPointer(this), song = m_document.number()](const QString &lyric) {
        if (!window || window->m_document.number() != song)
            return;
        if (lyric.isNull() || window->m_files->isAsking()) {
            window->say(lyric.isNull() ? tr("The lyric could not be downloaded")
                                       : tr("The lyric came while the song was being saved; search again"));
            return;
        }
        window->m_table->commitOpenEditor();
        window->m_document.load(lyric);
        window->m_table->select(0);
        window->say(tr("Loaded the lyric; undo brings the song back"));
    };
    QVLyricSearchWndCtl::popUp(m_document.property(u"ti"), m_document.property(u"ar"), load, this);
}

void EditorWindow::showSong(qsizetype row, qsizetype removed, qsizetype inserted)
{
    m_text->setLyric(m_document.text());
    m_preview->setSong(m_document.text());
    m_clockBar->setLength(m_preview->length());
    // What an undo brings back should be seen.
    if (removed != inserted || !m_table->selectionModel()->isRowSelected(int(row)))
        m_table->select(std::min(row, m_document.lines().size() - 1));
    showCurrentLine();
}

void EditorWindow::showCurrentLine()
{
    const qsizetype row = m_table->currentRow();
    m_text->highlight(row < 0 ? std::nullopt : std::optional(m_document.lines()[row]->txtRg()));
}

void EditorWindow::showTitle()
{
    const QString name = m_document.file().name();
    setWindowFilePath(name);
    setWindowTitle(u"%1[*]"_s.arg(name.isEmpty() ? tr("New song") : m_document.file().shortName()));
    setWindowModified(m_document.isModified());
}

void EditorWindow::say(const QString &text)
{
    statusBar()->showMessage(text, 10'000);
}

void EditorWindow::closeEvent(QCloseEvent *event)
{
    if (!m_files->mayGiveUp()) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue("geometry"_L1, saveGeometry());
    settings.setValue("panes"_L1, m_panes->saveState());
    QMainWindow::closeEvent(event);
}

void EditorWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) // when this event is over
        QMetaObject::invokeMethod(m_files, &FileMenu::checkDisk, Qt::QueuedConnection);
}

void EditorWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void EditorWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    // When this event is over: the program that it was dragged from waits for that, and there may be questions.
    QMetaObject::invokeMethod(
        this, [this, name = draggedFile(*event->mimeData())] { open(name); }, Qt::QueuedConnection);
}
