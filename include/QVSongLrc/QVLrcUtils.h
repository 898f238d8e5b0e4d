// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QString>

/// Stateless helpers of the lookup. Use from the main thread.
class QVSONGLRC_LOOKUP_EXPORT QVLrcUtils
{
public:
    QVLrcUtils() = delete;

    /// A new key for one request: the time in whole seconds since 1970, encrypted by the shared
    /// EncryptionTools. Empty, never absent, when the encryption fails.
    static QString generateLyricApiKey();
};
