// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Output.h"
#include "programs/common/LookupOptions.h"

#include <QByteArray>
#include <QString>

#include <string>
#include <vector>

/// The command line. Each command reads only the options that it has.
struct Options
{
    std::vector<std::string> files; ///< some commands take folders, too
    QByteArray encoding;            ///< for reading; empty: detected
    QByteArray outputEncoding;      ///< for writing; empty: that of the input, UTF-8 on standard output
    std::string output;
    bool inPlace = false;
    bool dryRun = false;
    bool strict = false;
    bool verbose = false;
    bool quiet = false;
    bool json = false;
    bool noTags = false;
    bool applyOffset = false; ///< instead of milliseconds
    bool clamp = false;
    qint64 milliseconds = 0;
    QString title;
    QString artist;
    QString link;
    int leastLikeness = 65; ///< from 0 to 100
    LookupOptions lookup;
};

using Command = ExitStatus (*)(const Options &);
