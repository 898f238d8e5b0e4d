// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

/// The interface version of the library that the program runs with: 1.0.
QVSONGLRC_CORE_EXPORT extern const double QVSongLrcVersionNumber;

/// The identification of the library that the program runs with, in the form that the `what` command looks
/// for: "@(#)PROGRAM:QVSongLrc  PROJECT:", the project name, a hyphen, the project version and a line feed,
/// zero-terminated.
QVSONGLRC_CORE_EXPORT extern const char QVSongLrcVersionString[];
