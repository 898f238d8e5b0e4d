// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#if defined(QVSongLrcCore_EXPORTS)
#define QVSONGLRC_CORE_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_CORE_EXPORT Q_DECL_IMPORT
#endif

#if defined(QVSongLrcLookup_EXPORTS)
#define QVSONGLRC_LOOKUP_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_LOOKUP_EXPORT Q_DECL_IMPORT
#endif

#if defined(QVSongLrcDialog_EXPORTS)
#define QVSONGLRC_DIALOG_EXPORT Q_DECL_EXPORT
#else
#define QVSONGLRC_DIALOG_EXPORT Q_DECL_IMPORT
#endif
