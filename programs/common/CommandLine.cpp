// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "Completion.h"
#include "ManualPage.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

CommandLine::Option facts(const CLI::Option &option)
{
    CommandLine::Option facts;
    for (const std::string &name : option.get_snames())
        facts.names.push_back("-" + name);
    for (const std::string &name : option.get_lnames())
        facts.names.push_back("--" + name);
    if (option.get_positional())
        facts.value = option.get_name(true);
    else if (option.get_type_size_max() != 0)
        facts.value = option.get_type_name();
    facts.description = option.get_description();
    facts.isRequired = option.get_required();
    facts.most = option.get_items_expected_max();
    for (const CLI::Option *other : option.get_excludes())
        facts.excludes.push_back(other->get_name());
    std::sort(facts.excludes.begin(), facts.excludes.end()); // they come in the order of their addresses
    return facts;
}

} // namespace

CommandLine::Command CommandLine::read(const CLI::App &program)
{
    Command command{program.get_name(), program.get_description(), {}, {}};
    const auto isShown = [](const CLI::Option *option) { return !option->get_group().empty(); };
    for (const CLI::Option *option : program.get_options(isShown))
        command.options.push_back(facts(*option));
    for (const CLI::App *each : program.get_subcommands({}))
        command.commands.push_back(read(*each));
    return command;
}

void CommandLine::addStandardOptions(CLI::App &program, const std::string &version)
{
    program.set_help_flag("-h,--help", "Print this help and exit.");
    program.set_version_flag("--version", program.get_name() + ' ' + version, "Print the version and exit.");
    const auto generate = [&program](const std::string &part) {
        const Command command = read(program);
        const std::string text = part == "synopsis" ? ManualPage::synopsis(command)
            : part == "options"                     ? ManualPage::options(command)
            : part == "bash"                        ? Completion::bash(command)
                                                    : Completion::zsh(command);
        throw CLI::CallForVersion(text, 0); // what prints a text and ends the program with success
    };
    program.add_option_function<std::string>("--generate", generate)
        ->check(CLI::IsMember({"synopsis", "options", "bash", "zsh"}))
        ->group("");
}
