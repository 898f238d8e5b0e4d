// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

#include <QByteArray>
#include <QString>

#include <memory>

/// The cipher of the request key. A program whose service wants another cipher than the library's installs
/// its own before its first request. Use from the main thread.
class QVSONGLRC_LOOKUP_EXPORT EncryptionTools
{
public:
    EncryptionTools() = default;
    EncryptionTools(const EncryptionTools &) = delete;
    EncryptionTools &operator=(const EncryptionTools &) = delete;
    virtual ~EncryptionTools();

    /// The instance in use; never null. It is AES-128-CBC with PKCS#7 padding, its text form Base64, until
    /// another is set.
    static std::shared_ptr<EncryptionTools> sharedEncryptionTools();

    /// Puts \p tools in use; null brings the library's own back.
    static void setSharedEncryptionTools(std::shared_ptr<EncryptionTools> tools);

    /// \p text enciphered, in a printable form; absent on failure. The library passes a key of 16
    /// characters and an initialisation vector of 16 bytes.
    virtual QString encryptString(const QString &text, const QString &keyString,
                                  const QByteArray &iv) const = 0;
};
