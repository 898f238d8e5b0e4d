// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/EncryptionTools.h>

namespace QVSongLrcPrivate {

/// AES-128-CBC with PKCS#7 padding on the UTF-8 bytes of text and key; the result is Base64. Fails when the key
/// or the initialisation vector is not 16 bytes long.
class AesEncryptionTools final : public EncryptionTools
{
public:
    QString encryptString(const QString &text, const QString &keyString, const QByteArray &iv) const override;
};

} // namespace QVSongLrcPrivate
