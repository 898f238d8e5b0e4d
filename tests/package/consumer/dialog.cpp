// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QLocale>
#include <QTimer>

int main(int argc, char **argv)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QApplication application(argc, argv);
    QTimer::singleShot(0, &QApplication::closeAllWindows);
    QVLyricSearchWndCtl::popUp(QString(), QString(), [](const QString &) {});
    // The library contains its translations.
    return QCoreApplication::translate("Localized", "Found no lyric") == "Found no lyric" ? 1 : 0;
}
