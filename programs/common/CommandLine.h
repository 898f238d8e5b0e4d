// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace CommandLine {

/// Adds --help and --version to \p program. Call it before adding subcommands, which inherit --help.
void addStandardOptions(CLI::App &program, const std::string &version);

} // namespace CommandLine
