// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Options.h"

/// The commands on files. All but compare() report a file that fails and continue with the next.
namespace Commands {

ExitStatus check(const Options &options);
ExitStatus parse(const Options &options);
ExitStatus preview(const Options &options);
ExitStatus compare(const Options &options);

ExitStatus format(const Options &options);
ExitStatus shift(const Options &options);
ExitStatus mark(const Options &options);

} // namespace Commands
