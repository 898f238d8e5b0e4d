// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The tag scanner finds what ICU's regular expressions find, in any sequence of code units.

#include "FuzzText.h"
#include "tests/IcuTags.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fuzzText(data, size);
    require(scannedPropertyTags(text) == IcuTags::property().in(text));
    require(scannedTimeTags(text) == IcuTags::time().in(text));
    return 0;
}
