// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "EditorWindow.h"

#include "ClockBar.h"
#include "FileCommands.h"
#include "LineTable.h"
#include "PreviewPane.h"

#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
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

QWidget *titled(QWidget *view, const char *name, const QString &title, const QString &accessibleName)
{
    view->setObjectName(QLatin1StringView(name));
    view->setAccessibleName(accessibleName);
    auto *const pane = new QWidget;
    auto *const layout = new QVBoxLayout(pane);
    layout->setContentsMargins({});
    auto *const label = new QLabel(title);
    label->setBuddy(view);
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
    , m_files(new FileCommands(m_song, this))
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
    // Whoever looks at the song goes before it does, and what it says on its way out is heard by nobody.
    m_song.undoStack().disconnect(this);
    delete takeCentralWidget();
}

void EditorWindow::addPanes()
{
    m_table = new LineTable(m_song);
    m_text = new LyricView;
    m_preview = new PreviewPane;
    auto *const texts = new QSplitter(Qt::Vertical);
    texts->addWidget(titled(m_text, "text", tr("Te&xt"), tr("The song's text")));
    texts->addWidget(titled(m_preview, "preview", tr("Pre&view"), tr("The song as it plays")));
    texts->setChildrenCollapsible(false);
    m_panes = new QSplitter;
    m_panes->setContentsMargins(6, 6, 6, 6);
    m_panes->addWidget(titled(m_table, "lines", tr("L&ines"), tr("The song's lines")));
    m_panes->addWidget(texts);
    m_panes->setStretchFactor(0, 3);
    m_panes->setStretchFactor(1, 2);
    m_panes->setChildrenCollapsible(false);
    setCentralWidget(m_panes);
}

void EditorWindow::addCommands()
{
    QMenu *const file = menuBar()->addMenu(tr("&File"));
    QMenu *const edit = menuBar()->addMenu(tr("&Edit"));
    QMenu *const line = menuBar()->addMenu(tr("&Line"));
    QMenu *const song = menuBar()->addMenu(tr("&Song"));
    QMenu *const clock = menuBar()->addMenu(tr("&Clock"));

    // All that a command has; the tip tells what it does. What is being typed into a cell becomes an edit first; only
    // the clock's commands leave the cell open, since people type while it runs.
    const auto add = [this, clock](QMenu *menu, const QString &text, const QKeySequence &keys,
                                   const QString &tip, auto *receiver, auto slot) {
        QAction *const action = menu->addAction(text, keys);
        if (menu != clock)
            connect(action, &QAction::triggered, m_table, &LineTable::commitOpenEditor);
        connect(action, &QAction::triggered, receiver, slot);
        action->setStatusTip(tip);
        action->setToolTip(u"%1 (%2)"_s.arg(tip, keys.toString(QKeySequence::NativeText)));
        menu->setToolTipsVisible(true);
        return action;
    };
    QToolBar *const bar = addToolBar(tr("Commands"));
    bar->setMovable(false);

    bar->addAction(
        add(file, tr("&New"), Qt::CTRL | Qt::Key_N, tr("Begin a song"), m_files, &FileCommands::newSong));
    bar->addAction(
        add(file, tr("&Open…"), Qt::CTRL | Qt::Key_O, tr("Open a lyric file"), m_files, &FileCommands::open));
    QMenu *const recent = file->addMenu(tr("Open &Recent"));
    file->addSeparator();
    bar->addAction(add(file, tr("&Save"), Qt::CTRL | Qt::Key_S, tr("Save the song to its file"), m_files,
                       &FileCommands::save));
    add(file, tr("Save &As…"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, tr("Save the song to another file"), m_files,
        &FileCommands::saveAs);
    file->addSeparator();
    add(file, tr("&Close"), Qt::CTRL | Qt::Key_W, tr("Close the window"), this, &QWidget::close);
    add(file, tr("&Quit"), Qt::CTRL | Qt::Key_Q, tr("Close all windows"), qApp,
        &QApplication::closeAllWindows);
    const auto showRecent = [this, recent, add] {
        recent->clear();
        for (const QString &name : FileCommands::recentFiles()) {
            const int number = int(recent->actions().size()) + 1;
            const QString title = QFileInfo(name).fileName().replace(u'&', u"&&"_s);
            add(recent, u"&%1 %2"_s.arg(number).arg(title), Qt::CTRL | Qt::Key(Qt::Key_0 + number),
                tr("Open %1").arg(name), m_files, [this, name] { m_files->openFile(name); });
        }
        recent->setEnabled(!recent->isEmpty());
    };
    showRecent();
    connect(file, &QMenu::aboutToShow, this, showRecent); // other windows open files too
    connect(m_files, &FileCommands::recentFilesChanged, this, showRecent,
            Qt::QueuedConnection); // one may run

    bar->addSeparator();
    QUndoStack &stack = m_song.undoStack();
    QAction *const undo = add(edit, tr("&Undo"), Qt::CTRL | Qt::Key_Z, tr("Take the last change back"),
                              &stack, &QUndoStack::undo);
    QAction *const redo = add(edit, tr("&Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                              tr("Make the change again"), &stack, &QUndoStack::redo);
    bar->addActions({undo, redo});
    const auto showStack = [undo, redo, &stack] {
        undo->setEnabled(stack.canUndo());
        undo->setText(tr("&Undo %1").arg(stack.undoText()));
        undo->setIconText(tr("Undo")); // on the bar
        redo->setEnabled(stack.canRedo());
        redo->setText(tr("&Redo %1").arg(stack.redoText()));
        redo->setIconText(tr("Redo"));
    };
    showStack();
    connect(&stack, &QUndoStack::indexChanged, this, showStack);

    bar->addSeparator();
    bar->addAction(add(line, tr("&Insert Line"), Qt::Key_Insert, tr("Insert a line below this one"), m_table,
                       &LineTable::insertLine));
    bar->addAction(add(line, tr("&Delete Lines"), Qt::Key_Delete, tr("Delete the selected lines"), m_table,
                       &LineTable::deleteLines));
    line->addSeparator();
    bar->addAction(add(line, tr("&Stamp Time"), Qt::Key_F8,
                       tr("Give the line the clock's time, and go to the next"), m_table,
                       [this] { m_table->stamp(m_clock->now()); }));
    line->addSeparator();
    add(line, tr("&Move By…"), Qt::CTRL | Qt::Key_M, tr("Move the selected lines by an amount"), m_table,
        &LineTable::moveLinesByAmount);
    add(line, tr("10 ms &Earlier"), Qt::ALT | Qt::Key_Left, tr("Move the selected lines 10 ms back"), m_table,
        [this] { m_table->moveLines(-10); });
    add(line, tr("10 ms L&ater"), Qt::ALT | Qt::Key_Right, tr("Move the selected lines 10 ms on"), m_table,
        [this] { m_table->moveLines(10); });
    add(line, tr("100 ms Ea&rlier"), Qt::ALT | Qt::SHIFT | Qt::Key_Left,
        tr("Move the selected lines 100 ms back"), m_table, [this] { m_table->moveLines(-100); });
    add(line, tr("100 ms La&ter"), Qt::ALT | Qt::SHIFT | Qt::Key_Right,
        tr("Move the selected lines 100 ms on"), m_table, [this] { m_table->moveLines(100); });

    bar->addSeparator();
    bar->addAction(add(song, tr("Search &Online…"), Qt::CTRL | Qt::Key_L,
                       tr("Look the song's lyric up, by its title and artist"), this,
                       &EditorWindow::searchOnline));
    add(song, tr("Insert &Maker Mark"), Qt::CTRL | Qt::Key_K, tr("Add the lines that name the maker"), this,
        [this] {
            say(m_song.insertMakerMark() ? tr("Inserted the maker mark") : tr("The song has the maker mark"));
        });
    song->addSeparator();
    QAction *const tags = add(song, tr("&Tags in Preview"), Qt::CTRL | Qt::Key_T,
                              tr("Show the preview with its tags"), m_preview, &PreviewPane::setHasTags);
    tags->setCheckable(true);
    tags->setChecked(true);

    QAction *const play = add(clock, tr("&Play"), Qt::Key_F5, tr("Run or stop the clock"), m_clock,
                              [this] { m_clock->setPlaying(!m_clock->isPlaying()); });
    connect(m_clock, &ClockBar::playingChanged, play,
            [play](bool isPlaying) { play->setText(isPlaying ? tr("&Pause") : tr("&Play")); });
    QAction *const back = add(clock, tr("&Back 5 Seconds"), Qt::Key_F6, tr("Set the clock 5 seconds back"),
                              m_clock, [this] { m_clock->seek(m_clock->now() - 5000); });
    QAction *const forward =
        add(clock, tr("&Forward 5 Seconds"), Qt::Key_F7, tr("Set the clock 5 seconds forward"), m_clock,
            [this] { m_clock->seek(m_clock->now() + 5000); });
    back->setIconText(tr("−5 s"));
    forward->setIconText(tr("+5 s"));
    m_clock->insertActions(m_clock->actions().constFirst(), {play, back, forward});
    addToolBar(Qt::BottomToolBarArea, m_clock);
    clock->addSeparator();
    add(clock, tr("S&lower"), Qt::SHIFT | Qt::Key_F6, tr("Let the clock run slower"), m_clock,
        [this] { m_clock->stepSpeed(-1); });
    add(clock, tr("Fas&ter"), Qt::SHIFT | Qt::Key_F7, tr("Let the clock run faster"), m_clock,
        [this] { m_clock->stepSpeed(1); });
}

void EditorWindow::connectPanes()
{
    connect(&m_song, &SongModel::changed, this, &EditorWindow::showSong);
    connect(&m_song, &SongModel::begun, this, [this] {
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
                    m_table->select(line.row()); // each line of the text is one of the table's
            });
    connect(m_preview, &PreviewPane::lineChosen, m_clock, &ClockBar::seek);
    connect(m_clock, &ClockBar::moved, m_preview, &PreviewPane::setNow);
    connect(m_table, &LineTable::message, this, &EditorWindow::say);
    connect(m_files, &FileCommands::message, this, &EditorWindow::say);
    connect(m_files, &FileCommands::aboutToLook, m_table, &LineTable::commitOpenEditor);
    auto *const warning = new QLabel;
    warning->setObjectName(u"warning"_s);
    statusBar()->addPermanentWidget(warning);
    // In the order in which it was said, in whatever thread.
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
    say(tr("Recovered; not saved yet"));
    return true;
}

void EditorWindow::searchOnline()
{
    // The lyric may come after the dialog is closed, when the window may be gone or show another song.
    const auto load = [window = QPointer(this), song = m_song.number()](const QString &lyric) {
        if (!window || window->m_song.number() != song)
            return;
        if (lyric.isNull())
            return window->say(tr("The lyric could not be downloaded"));
        if (window->m_files->isAsking())
            return window->say(tr("The lyric came while the song was being saved; search again"));
        window->m_table->commitOpenEditor();
        window->m_song.load(lyric);
        window->m_table->select(0);
        window->say(tr("Loaded the lyric; undo brings the song back"));
    };
    QVLyricSearchWndCtl::popUp(m_song.property(u"ti"), m_song.property(u"ar"), load, this);
}

void EditorWindow::showSong(qsizetype row, qsizetype removed, qsizetype inserted)
{
    m_text->setLyric(m_song.text());
    m_preview->setSong(m_song.text());
    m_clock->setLength(m_preview->length());
    // What an undo brings back should be seen.
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

void EditorWindow::say(const QString &text)
{
    statusBar()->showMessage(text, 10'000);
}

void EditorWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(m_files->mayGiveUp());
    QSettings().setValue("geometry"_L1, saveGeometry());
    QSettings().setValue("panes"_L1, m_panes->saveState());
}

void EditorWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) // when this event is over
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
    // When this event is over: the program that it was dragged from waits for that, and there may be questions.
    const QString file = draggedFile(*event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, file] { open(file); }, Qt::QueuedConnection);
}
