// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>

/// What a request key is made of: the text "interval=" and whole seconds since 1970, enciphered with
/// AES-128-CBC (PKCS#7 padding) under a key and initialisation vector that client and service share, in Base64.
namespace QVSongLrcPrivate::RequestKey {

inline constexpr QLatin1StringView Prefix("interval=");
inline constexpr QLatin1StringView Key("9e41c07ab3d6f2e8");                  // 16 bytes
inline constexpr QLatin1StringView InitialisationVector("r3t9x27104cda58e"); // 16 bytes

} // namespace QVSongLrcPrivate::RequestKey
