// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CommandLine.h"

/// Scripts that let a shell complete a command line.
namespace Completion {

/// For bash, with the functions of the package bash-completion.
std::string bash(const CommandLine::Command &program);

/// For zsh; the text of the file that autoloading takes.
std::string zsh(const CommandLine::Command &program);

} // namespace Completion
