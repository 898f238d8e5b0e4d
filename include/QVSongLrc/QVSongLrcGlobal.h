// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#if defined(QVSONGLRC_STATIC) // the CMake target and the pkg-config file of a static library define it
#define QVSONGLRC_CORE_EXPORT
#define QVSONGLRC_LOOKUP_EXPORT
#define QVSONGLRC_DIALOG_EXPORT
#else // in ELF libraries, export and import are the same attribute
#define QVSONGLRC_CORE_EXPORT Q_DECL_EXPORT
#define QVSONGLRC_LOOKUP_EXPORT Q_DECL_EXPORT
#define QVSONGLRC_DIALOG_EXPORT Q_DECL_EXPORT
#endif
