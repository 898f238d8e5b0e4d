// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CommandLine.h"

/// The parts of a manual page that a command line gives, in the language of man(7).
namespace ManualPage {

/// The sections NAME and SYNOPSIS.
std::string synopsis(const CommandLine::Command &program);

/// The section OPTIONS, or COMMANDS where the program has some.
std::string options(const CommandLine::Command &program);

} // namespace ManualPage
