// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Commands.h"

/// The commands that ask the lyric service. They end early, with Interrupted, when the user presses Ctrl-C.
namespace LookupCommands {

ExitStatus search(const Options &options);
ExitStatus fetch(const Options &options);

} // namespace LookupCommands
