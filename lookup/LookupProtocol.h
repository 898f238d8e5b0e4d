// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>
#include <QtGlobal>

/// The protocol between the lookup and a lyric service, for client and service; docs/lookup-protocol.md
/// describes it. Keys that are missing here are in QVSongLrcConstants.h.
namespace QVSongLrcPrivate::LookupProtocol {

inline constexpr QLatin1StringView SearchPath("/phpLyricFetcher/search/search.php");
inline constexpr QLatin1StringView DetailPath("/phpLyricFetcher/detail/detail.php");

inline constexpr QLatin1StringView FormType("application/x-www-form-urlencoded");
inline constexpr QLatin1StringView JsonType("application/json");

inline constexpr QLatin1StringView ApiKey("apiKey"); // a form field
inline constexpr QLatin1StringView Link("link");     // a form field, and a key of a candidate
inline constexpr QLatin1StringView Code("code");     // the others are keys of a reply
inline constexpr QLatin1StringView Message("message");
inline constexpr QLatin1StringView Results("results");
inline constexpr QLatin1StringView Result("result");

inline constexpr qint64 Success = 0; // any other code is an error

// The request key.
inline constexpr QLatin1StringView KeyPrefix("interval=");
inline constexpr QLatin1StringView CipherKey("9e41c07ab3d6f2e8");            // 16 bytes
inline constexpr QLatin1StringView InitialisationVector("r3t9x27104cda58e"); // 16 bytes

} // namespace QVSongLrcPrivate::LookupProtocol
