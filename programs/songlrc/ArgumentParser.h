// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Options.h"

#include <CLI/CLI.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

/// Parses the command line.
class ArgumentParser
{
public:
    ArgumentParser();

    /// Returns the command to run. Returns null, with \p status set, after printing help or an error.
    Command parse(int argc, char **argv, Options &options, ExitStatus &status);

private:
    CLI::App &add(const char *name, const char *description, Command command);
    void addFiles(CLI::App &command, const char *description, int least, int most);
    void addJson(CLI::App &command);
    void addQuiet(CLI::App &command);
    void addQuery(CLI::App &command);
    CLI::Option *addOutput(CLI::App &command);
    void addEditing(CLI::App &command);
    void addShift(CLI::App &command);
    static void addEncoding(CLI::App &command, const char *name, std::string &value, const char *description);

    /// What is wrong with the options of \p command together; empty when nothing is.
    std::string usageErrorOf(const CLI::App *command) const;
    Command usageError(const std::string &message, ExitStatus &status) const;

    CLI::App m_app{"Work with song lyrics in the LRC format.", "songlrc"};
    std::map<const CLI::App *, Command> m_commands;
    std::set<std::string> m_severalFiles; // names of commands
    Options m_options;
    std::string m_milliseconds;
    std::string m_encoding;
    std::string m_outputEncoding;
    std::string m_title;
    std::string m_artist;
    std::string m_link;
    bool m_wantsJson = false; // set even when parsing fails
};
