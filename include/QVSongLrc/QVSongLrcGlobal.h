// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#if defined(QVSONGLRC_STATIC) // the CMake target and the pkg-config file of a static library define it
#define QVSONGLRC_CORE_EXPORT
#elif defined(QVSongLrcCore_EXPORTS)
#define QVSONGLRC_CORE_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_CORE_EXPORT Q_DECL_IMPORT
#endif

#if defined(QVSONGLRC_STATIC)
#define QVSONGLRC_LOOKUP_EXPORT
#elif defined(QVSongLrcLookup_EXPORTS)
#define QVSONGLRC_LOOKUP_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_LOOKUP_EXPORT Q_DECL_IMPORT
#endif

#if defined(QVSONGLRC_STATIC)
#define QVSONGLRC_DIALOG_EXPORT
#elif defined(QVSongLrcDialog_EXPORTS)
#define QVSONGLRC_DIALOG_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_DIALOG_EXPORT Q_DECL_IMPORT
#endif
