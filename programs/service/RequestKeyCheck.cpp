// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "RequestKeyCheck.h"

#include "lookup/LookupProtocol.h"

#include <openssl/evp.h>

#include <algorithm>
#include <memory>
#include <optional>

using namespace QVSongLrcPrivate;

namespace {

constexpr qsizetype MaxCipherSize = 64; // several times what a key takes
constexpr qsizetype MaxDigits = 18;     // always fits 64 bits

const unsigned char *bytes(const char *data)
{
    return reinterpret_cast<const unsigned char *>(data);
}

std::optional<QByteArray> decrypted(const QByteArray &cipher)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    QByteArray plain(cipher.size() + EVP_MAX_BLOCK_LENGTH, '\0');
    auto *out = reinterpret_cast<unsigned char *>(plain.data());
    int size = 0;
    int rest = 0;
    if (!context
        || !EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr,
                               bytes(LookupProtocol::CipherKey.data()),
                               bytes(LookupProtocol::InitialisationVector.data()))
        || !EVP_DecryptUpdate(context.get(), out, &size, bytes(cipher.constData()), int(cipher.size()))
        || !EVP_DecryptFinal_ex(context.get(), out + size, &rest))
        return std::nullopt;
    plain.truncate(size + rest);
    return plain;
}

} // namespace

RequestKeyState checkRequestKey(const QString &apiKey, qint64 now)
{
    if (apiKey.isEmpty())
        return RequestKeyState::Missing;
    const auto cipher =
        QByteArray::fromBase64Encoding(apiKey.toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    if (!cipher || (*cipher).isEmpty() || (*cipher).size() > MaxCipherSize)
        return RequestKeyState::Invalid;
    const auto plain = decrypted(*cipher);
    if (!plain || !plain->startsWith(QByteArrayView(LookupProtocol::KeyPrefix)))
        return RequestKeyState::Invalid;
    const QByteArray digits = plain->sliced(LookupProtocol::KeyPrefix.size());
    const bool isNumber = !digits.isEmpty() && digits.size() <= MaxDigits
        && std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber)
        return RequestKeyState::Invalid;
    return std::abs(digits.toLongLong() - now) <= RequestKeyTolerance ? RequestKeyState::Valid
                                                                      : RequestKeyState::OutOfTime;
}
