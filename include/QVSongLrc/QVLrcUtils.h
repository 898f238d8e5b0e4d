// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

/// Helpers of the lookup. Stateless; use from the main thread.
class QVSONGLRC_LOOKUP_EXPORT QVLrcUtils
{
public:
    QVLrcUtils() = delete;

    /// A new key for one request: the time of day in whole seconds, enciphered by the shared
    /// EncryptionTools. Empty, never absent, when that fails; the service then decides.
    static QString generateLyricApiKey();
};
