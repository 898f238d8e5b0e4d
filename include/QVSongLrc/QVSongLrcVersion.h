// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

/// The interface version of the library that the program runs with: 1.0.
QVSONGLRC_CORE_EXPORT extern const double QVSongLrcVersionNumber;

/// The identification line of the library that the program runs with, zero-terminated, in the form that
/// `what` looks for: "@(#)PROGRAM:QVSongLrc  PROJECT:", project name, hyphen, project version, line feed.
QVSONGLRC_CORE_EXPORT extern const char QVSongLrcVersionString[];
