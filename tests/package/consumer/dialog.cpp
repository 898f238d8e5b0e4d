// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVLyricSearchWndCtl.h>

#include <QApplication>
#include <QTimer>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    bool wasOpen = false;
    QTimer::singleShot(0, [&] {
        wasOpen = QApplication::activeModalWidget();
        QApplication::closeAllWindows();
    });
    QVLyricSearchWndCtl::popUp(QString(), QString(), [](const QString &) { });
    return wasOpen ? 0 : 1;
}
