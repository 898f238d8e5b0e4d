// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Options.h"

/// The commands that use the lyric service. Ctrl-C ends them with the status Interrupted.
namespace LookupCommands {

ExitStatus search(const Options &options);
ExitStatus fetch(const Options &options);

} // namespace LookupCommands
