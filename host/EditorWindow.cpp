// SPDX-License-Identifier: MIT
#include "EditorWindow.h"

#include "ClockBar.h"
#include "Command.h"
#include "FileMenu.h"
#include "LineDelegate.h"
#include "LineTableModel.h"
#include "PreviewPane.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
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
    return data.urls().size() == 1 ? data.urls().first().toLocalFile() : QString();
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
    statusBar()->addPermanentWidget(m_warning);
    addCommands();

    connect(&m_document, &SongDocument::spliced, this, &EditorWindow::showSong);
    connect(&m_document, &SongDocument::fileChanged, this, [this] {
        m_clock.setPlaying(false);
        m_clock.seek(0);
        select(0);
        showTitle();
    });
    connect(&m_document.undoStack(), &QUndoStack::cleanChanged, this, &EditorWindow::showTitle);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &EditorWindow::showCurrentLine);
    connect(&m_clock, &Clock::moved, m_preview, &PreviewPane::setNow);
    connect(m_model, &LineTableModel::refused, this, &EditorWindow::say);
    connect(m_files, &FileMenu::message, this, &EditorWindow::say);
    connect(m_files, &FileMenu::aboutToLook, m_delegate, &LineDelegate::commitOpenEditor);
    connect(&m_recovery, &Recovery::written, this, [this](const QString &why) {
        m_warning->setText(why.isEmpty() ? QString() : tr("No recovery file: %1").arg(why));
    });

    const QSettings settings;
    resize(1040, 640);
    restoreGeometry(settings.value("geometry"_L1).toByteArray());
    m_panes->restoreState(settings.value("panes"_L1).toByteArray());
    showTitle();
}

EditorWindow::~EditorWindow()
{
    // Whoever looks at the song goes before it does.
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
    m_table = new QTableView;
    m_table->setObjectName(u"lines"_s);
    m_table->setModel(m_model);
    m_delegate = new LineDelegate(m_table);
    m_table->setItemDelegate(m_delegate);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    m_table->setTabKeyNavigation(false);
    const int height = m_table->fontMetrics().height();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(height * 3 / 2);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->setColumnWidth(LineTableModel::Times,
                            m_table->fontMetrics().horizontalAdvance(u"[00:00.00]"_s) * 5 / 2);
    m_table->setColumnWidth(LineTableModel::Kind,
                            m_table->fontMetrics().horizontalAdvance(u"Property ti"_s) * 3 / 2);

    m_text = new LyricView;
    m_text->setObjectName(u"text"_s);
    m_preview = new PreviewPane;
    m_preview->setObjectName(u"preview"_s);
    auto *const texts = new QSplitter(Qt::Vertical);
    texts->addWidget(titled(m_text, tr("Te&xt"), tr("The song's text")));
    texts->addWidget(titled(m_preview, tr("Pre&view"), tr("The song as it plays")));
    texts->setChildrenCollapsible(false);
    m_panes = new QSplitter;
    m_panes->addWidget(titled(m_table, tr("&Lines"), tr("The song's lines")));
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
                                     tr("Take the last change back"), &stack, &QUndoStack::undo);
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
    edit->addSeparator();
    addLineCommands();

    QMenu *const song = menuBar()->addMenu(tr("&Song"));
    QAction *const search = addCommand(song, "searchAction", tr("Search &Online…"), Qt::CTRL | Qt::Key_L,
                                       tr("Look the song's lyric up, by its title and artist"), this,
                                       &EditorWindow::searchOnline);
    addCommand(song, "markAction", tr("Insert &Maker Mark"), Qt::CTRL | Qt::Key_K,
               tr("Add the lines that name the maker"), this, &EditorWindow::insertMakerMark);
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
    const QList<QAction *> files = m_files->actions();
    bar->addActions({files[0], files[1], findChild<QAction *>(u"saveAction"_s)});
    bar->addSeparator();
    undo->setPriority(QAction::LowPriority);
    redo->setPriority(QAction::LowPriority);
    bar->addActions({undo, redo});
    bar->addSeparator();
    bar->addActions({findChild<QAction *>(u"insertAction"_s), findChild<QAction *>(u"deleteAction"_s),
                     findChild<QAction *>(u"stampAction"_s)});
    bar->addSeparator();
    bar->addAction(search);
    addToolBar(Qt::BottomToolBarArea, m_clockBar);
}

void EditorWindow::addLineCommands()
{
    QMenu *const menu = menuBar()->addMenu(tr("&Line"));
    addCommand(menu, "insertAction", tr("&Insert Line"), Qt::Key_Insert, tr("Insert a line below this one"),
               this, &EditorWindow::insertLine);
    const auto addLineCommand = [&](const char *name, const QString &text, const QKeySequence &keys,
                                    const QString &tip, auto slot) {
        QAction *const action = addCommand(menu, name, text, keys, tip, this, slot);
        action->setEnabled(false);
        connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, action,
                [this, action] { action->setEnabled(m_table->selectionModel()->hasSelection()); });
    };
    addLineCommand("deleteAction", tr("&Delete Lines"), Qt::Key_Delete, tr("Delete the selected lines"),
                   &EditorWindow::deleteLines);
    menu->addSeparator();
    addLineCommand("stampAction", tr("&Stamp Time"), Qt::Key_F8,
                   tr("Give the line the clock's time, and go to the next"), &EditorWindow::stamp);
    addLineCommand("seekLineAction", tr("Set &Clock to Line"), Qt::Key_F9,
                   tr("Set the clock to the line's time"), &EditorWindow::seekToLine);
    menu->addSeparator();
    addLineCommand("moveAction", tr("&Move By…"), Qt::CTRL | Qt::Key_M,
                   tr("Move the times of the selected lines by an amount"), &EditorWindow::moveByAmount);
    addLineCommand("earlier10Action", tr("10 ms &Earlier"), Qt::ALT | Qt::Key_Left,
                   tr("Move the selected lines 10 ms back"), [this] { moveLines(-10); });
    addLineCommand("later10Action", tr("10 ms L&ater"), Qt::ALT | Qt::Key_Right,
                   tr("Move the selected lines 10 ms on"), [this] { moveLines(10); });
    addLineCommand("earlier100Action", tr("100 ms Ea&rlier"), Qt::ALT | Qt::SHIFT | Qt::Key_Left,
                   tr("Move the selected lines 100 ms back"), [this] { moveLines(-100); });
    addLineCommand("later100Action", tr("100 ms La&ter"), Qt::ALT | Qt::SHIFT | Qt::Key_Right,
                   tr("Move the selected lines 100 ms on"), [this] { moveLines(100); });
}

void EditorWindow::insertLine()
{
    const qsizetype row = currentRow() + 1;
    m_document.insertLine(row);
    select(row);
    m_table->edit(m_model->index(int(row), LineTableModel::Text));
}

void EditorWindow::deleteLines()
{
    const SongDocument::Rows rows = selectedRows();
    m_document.deleteLines(rows);
    select(std::min(qsizetype(*rows.begin()), m_document.lines().size() - 1));
    say(tr("Deleted %n line(s)", nullptr, int(rows.size())));
}

void EditorWindow::moveByAmount()
{
    const SongDocument::Rows rows = selectedRows();
    bool isChosen = false;
    const int milliseconds = QInputDialog::getInt(
        this, tr("Move Lines"), tr("Move %n line(s) by so many milliseconds:", nullptr, int(rows.size())), 0,
        std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 10, &isChosen);
    if (isChosen)
        moveLines(milliseconds);
}

void EditorWindow::moveLines(qint64 milliseconds)
{
    m_document.moveLines(selectedRows(), milliseconds);
}

void EditorWindow::stamp()
{
    const qsizetype row = currentRow();
    if (row < 0)
        return;
    if (m_document.stamp(row, m_clock.now()))
        select(std::min(row + 1, m_document.lines().size() - 1));
    else
        say(tr("A property has no time"));
}

void EditorWindow::seekToLine()
{
    if (const qsizetype row = currentRow(); row >= 0)
        m_clock.seek(qint64(m_document.lines()[row]->playTime() * 1000));
}

void EditorWindow::insertMakerMark()
{
    say(m_document.insertMakerMark() ? tr("Inserted the maker mark") : tr("The song has the maker mark"));
}

void EditorWindow::searchOnline()
{
    m_delegate->commitOpenEditor();
    // The lyric may come after the dialog is closed, when the window may be gone or show another song.
    const auto load = [window = QPointer(this), song = m_document.number()](const QString &lyric) {
        if (!window || window->m_document.number() != song)
            return;
        if (lyric.isNull()) {
            window->say(tr("The lyric could not be downloaded"));
            return;
        }
        window->m_document.load(lyric);
        window->select(0);
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
    if (removed != inserted || currentRow() < row || currentRow() >= row + inserted)
        select(std::min(row, m_document.lines().size() - 1));
    showCurrentLine();
}

void EditorWindow::showCurrentLine()
{
    const qsizetype row = currentRow();
    m_text->highlight(row < 0 ? std::nullopt : std::optional(m_document.lines()[row]->txtRg()));
}

void EditorWindow::showTitle()
{
    const QString name = m_document.file().name();
    setWindowFilePath(name);
    setWindowTitle(
        tr("%1[*] – Lyric Editor").arg(name.isEmpty() ? tr("New song") : QFileInfo(name).fileName()));
    setWindowModified(m_document.isModified());
}

void EditorWindow::select(qsizetype row)
{
    const QModelIndex index = m_model->index(int(row), LineTableModel::Text);
    m_table->setCurrentIndex(index);
    m_table->scrollTo(index);
}

qsizetype EditorWindow::currentRow() const
{
    return m_table->currentIndex().row();
}

SongDocument::Rows EditorWindow::selectedRows() const
{
    SongDocument::Rows rows;
    for (const QItemSelectionRange &range : m_table->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.insert(quint64(row));
    }
    return rows;
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
    m_files->open(draggedFile(*event->mimeData()));
}
