// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI {
class App;
}

/// The options by which a program is told where to look lyrics up.
struct LookupOptions
{
    std::string service;
    std::string caFile;

    /// Gives \p command the options --service and --ca-file, which are checked, and end up in here.
    void addTo(CLI::App &command);

    /// Makes the service and its authority those of LyricService. \throws FileError
    void apply() const;
};
