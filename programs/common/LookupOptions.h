// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI {
class App;
}

/// The command-line options that select the lyric service.
struct LookupOptions
{
    std::string service;
    std::string caFile;

    /// Adds --service and --ca-file to \p command. Parsing stores their values here, so this must outlive it.
    void addTo(CLI::App &command);

    /// Applies the options to QVLyricService. \throws FileError when the file of authorities can't be read.
    void apply() const;
};
