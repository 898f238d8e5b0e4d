// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <CLI/CLI.hpp>

void CommandLine::addStandardOptions(CLI::App &program, const std::string &version)
{
    program.set_help_flag("-h,--help", "Print this help and exit.");
    program.set_version_flag("--version", program.get_name() + ' ' + version, "Print the version and exit.");
}
