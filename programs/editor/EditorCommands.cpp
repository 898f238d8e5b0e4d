// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The window's menus and toolbars.

#include "ClockBar.h"
#include "EditorWindow.h"
#include "FileCommands.h"
#include "LineTable.h"
#include "PreviewPane.h"

#include <QApplication>
#include <QFileInfo>
#include <QMenuBar>

using namespace Qt::StringLiterals;

void EditorWindow::addCommands()
{
    QMenu *const file = menuBar()->addMenu(tr("&File"));
    QMenu *const edit = menuBar()->addMenu(tr("&Edit"));
    QMenu *const line = menuBar()->addMenu(tr("&Line"));
    QMenu *const song = menuBar()->addMenu(tr("&Song"));
    QMenu *const clock = menuBar()->addMenu(tr("&Clock"));

    // A command first commits the cell that is being edited. The clock's commands don't, since people type while
    // the clock runs.
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
        add(file, tr("&New"), Qt::CTRL | Qt::Key_N, tr("Start a new song"), m_files, &FileCommands::newSong));
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
    connect(file, &QMenu::aboutToShow, this, showRecent); // other windows change the list too
    connect(m_files, &FileCommands::recentFilesChanged, this, showRecent,
            Qt::QueuedConnection); // its action may be running

    bar->addSeparator();
    QUndoStack &stack = m_song.undoStack();
    QAction *const undo =
        add(edit, tr("&Undo"), Qt::CTRL | Qt::Key_Z, tr("Undo the last change"), &stack, &QUndoStack::undo);
    QAction *const redo = add(edit, tr("&Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                              tr("Redo the last undone change"), &stack, &QUndoStack::redo);
    bar->addActions({undo, redo});
    const auto showStack = [undo, redo, &stack] {
        undo->setEnabled(stack.canUndo());
        undo->setText(tr("&Undo %1").arg(stack.undoText()));
        undo->setIconText(tr("Undo")); // in the toolbar
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
                       tr("Set the line's first time to the clock's, and go to the next line"), m_table,
                       [this] { m_table->stamp(m_clock->now()); }));
    line->addSeparator();
    add(line, tr("&Move By…"), Qt::CTRL | Qt::Key_M, tr("Move the selected lines by an amount"), m_table,
        &LineTable::moveLinesByAmount);
    add(line, tr("10 ms &Earlier"), Qt::ALT | Qt::Key_Left, tr("Move the selected lines 10 ms earlier"),
        m_table, [this] { m_table->moveLines(-10); });
    add(line, tr("10 ms L&ater"), Qt::ALT | Qt::Key_Right, tr("Move the selected lines 10 ms later"), m_table,
        [this] { m_table->moveLines(10); });
    add(line, tr("100 ms Ea&rlier"), Qt::ALT | Qt::SHIFT | Qt::Key_Left,
        tr("Move the selected lines 100 ms earlier"), m_table, [this] { m_table->moveLines(-100); });
    add(line, tr("100 ms La&ter"), Qt::ALT | Qt::SHIFT | Qt::Key_Right,
        tr("Move the selected lines 100 ms later"), m_table, [this] { m_table->moveLines(100); });

    bar->addSeparator();
    bar->addAction(add(song, tr("Search &Online…"), Qt::CTRL | Qt::Key_L,
                       tr("Search for the song's lyric by title and artist"), this,
                       &EditorWindow::searchOnline));
    add(song, tr("Insert &Maker Mark"), Qt::CTRL | Qt::Key_K, tr("Add the lines that name the maker"), this,
        [this] {
            showMessage(m_song.insertMakerMark() ? tr("Inserted the maker mark")
                                                 : tr("The song has the maker mark"));
        });
    song->addSeparator();
    QAction *const tags = add(song, tr("&Tags in Preview"), Qt::CTRL | Qt::Key_T,
                              tr("Show the tags in the preview"), m_preview, &PreviewPane::setHasTags);
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
    add(clock, tr("S&lower"), Qt::SHIFT | Qt::Key_F6, tr("Slow the clock down"), m_clock,
        [this] { m_clock->stepSpeed(-1); });
    add(clock, tr("Fas&ter"), Qt::SHIFT | Qt::Key_F7, tr("Speed the clock up"), m_clock,
        [this] { m_clock->stepSpeed(1); });
}
