// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrcVersion.h>

const double QVSongLrcVersionNumber = 1.0;

const char QVSongLrcVersionString[] =
    "@(#)PROGRAM:QVSongLrc  PROJECT:" QVSONGLRC_PROJECT_NAME "-" QVSONGLRC_PROJECT_VERSION "\n";
