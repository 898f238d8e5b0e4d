// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QString>

#include <memory>

/// The cipher of the request key. A program whose service needs another cipher installs its own before the
/// first request. Use from the main thread.
class QVSONGLRC_LOOKUP_EXPORT EncryptionTools
{
public:
    EncryptionTools() = default;
    EncryptionTools(const EncryptionTools &) = delete;
    EncryptionTools &operator=(const EncryptionTools &) = delete;
    virtual ~EncryptionTools();

    /// The shared instance; never null. By default AES-128-CBC with PKCS#7 padding and Base64 output.
    static std::shared_ptr<EncryptionTools> sharedEncryptionTools();

    /// Makes \p tools the shared instance; null restores the default.
    static void setSharedEncryptionTools(std::shared_ptr<EncryptionTools> tools);

    /// Encrypts \p text into printable text; absent on failure. The library passes a key of 16 characters and
    /// an initialisation vector of 16 bytes.
    virtual QString encryptString(const QString &text, const QString &keyString,
                                  const QByteArray &iv) const = 0;
};
