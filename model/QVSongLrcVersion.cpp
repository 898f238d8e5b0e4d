// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include <QVSongLrc/QVSongLrcVersion.h>

const double QVSongLrcVersionNumber = QVSONGLRC_PROJECT_VERSION;

const char QVSongLrcVersionString[] =
    "@(#)PROGRAM:QVSongLrc  PROJECT:" QVSONGLRC_PROJECT_NAME "-" QT_STRINGIFY(QVSONGLRC_PROJECT_VERSION) "\n";
