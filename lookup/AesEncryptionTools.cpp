// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "AesEncryptionTools.h"

#include <openssl/evp.h>

#include <limits>

namespace QVSongLrcPrivate {
namespace {

constexpr int BlockSize = 16; // bytes; key and initialisation vector have the same size

const unsigned char *bytes(const QByteArray &array)
{
    return reinterpret_cast<const unsigned char *>(array.constData());
}

} // namespace

QString AesEncryptionTools::encryptString(const QString &text, const QString &keyString,
                                          const QByteArray &iv) const
{
    const QByteArray plain = text.toUtf8();
    const QByteArray key = keyString.toUtf8();
    if (key.size() != BlockSize || iv.size() != BlockSize
        || plain.size() > std::numeric_limits<int>::max() - BlockSize)
        return QString();

    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    QByteArray cipher(plain.size() + BlockSize, Qt::Uninitialized);
    auto *const out = reinterpret_cast<unsigned char *>(cipher.data());
    int length = 0;
    int lastLength = 0;
    // OpenSSL uses PKCS#7 padding by default.
    if (!context || !EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, bytes(key), bytes(iv))
        || !EVP_EncryptUpdate(context.get(), out, &length, bytes(plain), int(plain.size()))
        || !EVP_EncryptFinal_ex(context.get(), out + length, &lastLength))
        return QString();
    cipher.truncate(length + lastLength);
    return QString::fromLatin1(cipher.toBase64());
}

} // namespace QVSongLrcPrivate
