// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Options.h"

#include <functional>
#include <string>
#include <vector>

/// The files that \p names stand for. A folder stands for the files in it and below whose names end in ".lrc", in any
/// case, in alphabetical order; hidden ones and symbolic links are left out. A file that is named twice is listed once.
/// Calls \p onFailure for each folder that can't be read.
std::vector<std::string>
lyricFiles(const std::vector<std::string> &names,
           const std::function<void(const std::string &folder, const std::exception &error)> &onFailure);

/// Calls \p process for each file. Reports a file for which it throws, and goes on. Returns the highest status.
ExitStatus forEachFile(const std::vector<std::string> &files, bool json,
                       const std::function<ExitStatus(const std::string &file)> &process);

/// The same for all files that options.files stand for.
ExitStatus forEachLyricFile(const Options &options,
                            const std::function<ExitStatus(const std::string &file)> &process);
