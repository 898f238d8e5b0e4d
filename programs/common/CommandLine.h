// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// What a program's command line takes, from the one place that says so: the program's own parser. Its --help,
/// its manual page and its completions come from there.
namespace CommandLine {

struct Option
{
    std::vector<std::string> names; ///< "-o" and "--output"; none: an argument that is no option
    std::string value;              ///< "FILE", "DIR", "MS", ...; empty: a flag
    std::string description;        ///< sentences
    bool isRequired = false;
    int most = 1; ///< values
    std::vector<std::string> excludes;
};

struct Command
{
    std::string name;
    std::string description; ///< one sentence
    std::vector<Option> options;
    std::vector<Command> commands;
};

/// What \p program takes; what its --help hides is left out.
Command read(const CLI::App &program);

/// Adds --help, --version, and the hidden option --generate to \p program, which prints "synopsis" or "options"
/// for its manual page, or its completions for "bash" or "zsh", and ends it. Call before commands are added.
void addStandardOptions(CLI::App &program, const std::string &version);

} // namespace CommandLine
