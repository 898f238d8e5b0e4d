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
    // The library contains its translations.
    if (QCoreApplication::translate("Localized", "Found no lyric") == "Found no lyric")
        return 2;
    bool wasOpen = false;
    QTimer::singleShot(0, [&] {
        wasOpen = QApplication::activeModalWidget();
        QApplication::closeAllWindows();
    });
    QVLyricSearchWndCtl::popUp(QString(), QString(), [](const QString &) {});
    return wasOpen ? 0 : 1;
}
