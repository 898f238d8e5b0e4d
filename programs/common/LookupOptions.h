// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI {
class App;
}

/// The options of programs that look lyrics up: the service and its certificate authorities.
struct LookupOptions
{
    std::string service;
    std::string caFile;

    /// Adds the options --service and --ca-file to \p command, which checks them and stores them here.
    void addTo(CLI::App &command);

    /// Configures QVLyricService. \throws FileError when the file of authorities cannot be read.
    void apply() const;
};
