// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// Takes the README's pictures of the editor and the dialog.
// screenshots --service HOST:PORT --ca-file FILE SONG FOLDER

#include "EditorDriver.h"
#include "programs/common/LookupOptions.h"

#include <CLI/CLI.hpp>

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

void take(QWidget *window, const QString &folder, const QString &name)
{
    QTest::qWait(300); // for delayed updates
    if (!window->grab().save(QDir(folder).filePath(name), "PNG", 0))
        qFatal("can't write %s in %s", qPrintable(name), qPrintable(folder));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QTemporaryDir home; // keeps the user's own settings and files out of the pictures
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());

    CLI::App options;
    LookupOptions lookup;
    std::string song;
    std::string folder;
    lookup.addTo(options);
    options.add_option("SONG", song)->required();
    options.add_option("FOLDER", folder)->required();
    CLI11_PARSE(options, argc, argv)
    lookup.apply();
    const QString images = QString::fromStdString(folder);

    EditorDriver editor(QString::fromStdString(song));
    editor.window->resize(960, 560);
    editor.type(6, 2, u"And days of auld lang syne!"_s);
    for (int i = 0; i < 5; ++i)
        editor.key(Qt::Key_F7); // 25 seconds on
    editor.select(7);
    editor.window->statusBar()->clearMessage();
    take(editor.window.get(), images, u"editor.png"_s);
    inDialogs([&] { editor.key(Qt::Key_L, Qt::ControlModifier); }, {[&](QWidget *dialog) {
                  auto *const results = dialog->findChild<QTableView *>(u"tableView"_s);
                  QTRY_VERIFY(results->currentIndex().isValid());
                  take(dialog, images, u"dialog.png"_s);
                  QTest::keyClick(dialog, Qt::Key_Escape);
              }});
    return 0;
}
