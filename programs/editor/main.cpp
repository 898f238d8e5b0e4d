// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "EditorWindow.h"
#include "Recovery.h"
#include "programs/common/CommandLine.h"
#include "programs/common/LookupOptions.h"
#include "programs/common/TextFile.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>

#include <cstdio>

namespace {

enum ExitStatus { WrongUsage = 2, Failed = 3 };

void show(EditorWindow *window)
{
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
}

// Offers to recover the songs of editors that were killed. Opens a window for each; returns how many.
int recoverSongs()
{
    int count = 0;
    const QStringList files = Recovery::abandoned();
    for (const QString &file : files) {
        QString song = Recovery::songOf(file);
        if (song.isEmpty())
            song = EditorWindow::tr("a new song");
        QMessageBox box(
            QMessageBox::Question, EditorWindow::tr("Recover Changes"),
            EditorWindow::tr("The editor ended before the changes to this song were saved:\n%1").arg(song));
        const auto *const recover = box.addButton(EditorWindow::tr("&Recover"), QMessageBox::AcceptRole);
        const auto *const discard =
            box.addButton(EditorWindow::tr("&Delete Them"), QMessageBox::DestructiveRole);
        box.setEscapeButton(box.addButton(EditorWindow::tr("Ask &Later"), QMessageBox::RejectRole));
        box.exec();
        if (box.clickedButton() == discard)
            Recovery::discard(file);
        if (box.clickedButton() != recover)
            continue;
        auto window = std::make_unique<EditorWindow>();
        if (!window->recover(file)) {
            QMessageBox::warning(
                nullptr, EditorWindow::tr("Recover Changes"),
                EditorWindow::tr("This file can't be read, or another editor has it:\n%1").arg(file));
            continue;
        }
        show(window.release());
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App options("Edit song lyrics in the LRC format.", "songlrc-editor");
    LookupOptions lookup;
    std::string file;
    CommandLine::addStandardOptions(options, SONGLRC_VERSION);
    options.add_option("FILE", file, "The lyric's file.")->type_name("");
    lookup.addTo(options);
    try {
        options.parse(argc, argv);
    } catch (const CLI::ParseError &error) { // --help and --version too
        return options.exit(error) == 0 ? 0 : WrongUsage;
    }

    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("QVSongLrc"));
    QApplication::setApplicationName(QStringLiteral("songlrc-editor"));
    QApplication::setApplicationDisplayName(EditorWindow::tr("Lyric Editor"));
    QApplication::setDesktopFileName(QStringLiteral("songlrc-editor"));
    try {
        lookup.apply();
    } catch (const FileError &error) {
        std::fprintf(stderr, "songlrc-editor: %s\n", error.what());
        return Failed;
    }

    if (recoverSongs() == 0 || !file.empty()) {
        auto *const window = new EditorWindow;
        show(window);
        if (!file.empty())
            window->open(QFile::decodeName(file.c_str()));
    }
    return QApplication::exec();
}
