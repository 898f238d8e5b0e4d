// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <cstring>
#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// The input as UTF-16 code units in native byte order. An odd byte at the end is left out.
inline QString fuzzText(const std::uint8_t *data, std::size_t size)
{
    QString text(qsizetype(size / sizeof(char16_t)), Qt::Uninitialized);
    if (!text.isEmpty())
        std::memcpy(text.data(), data, std::size_t(text.size()) * sizeof(char16_t));
    return text;
}

/// Throws if \p holds is false. libFuzzer counts the exception as a crash.
inline void require(bool holds, int line = __builtin_LINE())
{
    if (!holds)
        throw std::logic_error("line " + std::to_string(line));
}
