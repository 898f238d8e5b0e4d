// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT

// The main function of a fuzz target without libFuzzer: runs it on every file of the directories in its
// arguments.

#include "FuzzText.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
            ++count;
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
