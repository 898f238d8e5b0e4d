// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Completion.h"

#include <map>

namespace {

using CommandLine::Command;
using CommandLine::Option;

std::string join(const std::vector<std::string> &words, const char *separator)
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

std::vector<std::string> commandNames(const Command &command)
{
    std::vector<std::string> names;
    for (const Command &each : command.commands)
        names.push_back(each.name);
    return names;
}

// The name of the function that completes a program's command line.
std::string functionName(const std::string &program)
{
    std::string name = '_' + program;
    for (char &c : name)
        c = c == '-' ? '_' : c;
    return name;
}

// The body of one command: the value of the option before the cursor, else options, else arguments.
std::string bashCommand(const Command &command, const std::string &indent)
{
    std::map<std::string, std::vector<std::string>> optionsWith; // by what completes their values
    std::string operands;
    std::vector<std::string> words;
    for (const Option &option : command.options) {
        const std::string values = option.value == "FILE" ? "_filedir"
            : option.value == "DIR"                       ? "_filedir -d"
                                                          : "";
        words.insert(words.end(), option.names.begin(), option.names.end());
        if (option.names.empty())
            operands = indent + values + '\n';
        else if (!option.value.empty())
            optionsWith[values].insert(optionsWith[values].end(), option.names.begin(), option.names.end());
    }
    std::string text;
    for (const auto &[values, names] : optionsWith) {
        text += (text.empty() ? indent + "case $prev in\n" : "") + indent + join(names, " | ") + ") ";
        text += values.empty() ? "return ;;\n" : values + "; return ;;\n";
    }
    text += text.empty() ? "" : indent + "esac\n";
    const auto offer = [](const std::vector<std::string> &offered) {
        return "mapfile -t COMPREPLY < <(compgen -W '" + join(offered, " ") + "' -- \"$cur\")\n";
    };
    text += indent + "$split && return\n" + indent + "if [[ $cur == -* ]]; then\n" + indent + "    "
        + offer(words) + indent + "    return\n" + indent + "fi\n" + operands;
    return command.commands.empty() ? text : text + indent + offer(commandNames(command));
}

// Text in a zsh specification inside single quotes.
std::string zshText(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\'')
            result += "'\\'";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            result += '\\';
        result += c;
    }
    return result;
}

std::string zshValues(const std::string &value)
{
    return ':' + zshText(value) + (value == "FILE" ? ":_files" : value == "DIR" ? ":_files -/" : ": ");
}

std::string zshOption(const Option &option, const std::string &indent)
{
    std::string text;
    if (option.names.empty()) {
        if (option.most > 2)
            return indent + "'*" + zshValues(option.value) + "'";
        for (int i = 1; i <= option.most; ++i) {
            text += (i > 1 ? " \\\n" : "") + indent + '\'' + std::to_string(i)
                + (option.isRequired ? "" : ":") + zshValues(option.value) + '\'';
        }
        return text;
    }
    std::vector<std::string> others = option.names;
    others.insert(others.end(), option.excludes.begin(), option.excludes.end());
    for (const std::string &name : option.names) {
        const char *suffix = option.value.empty() ? "" : name.starts_with("--") ? "=" : "+";
        text += (text.empty() ? "" : " \\\n") + indent + "'(" + join(others, " ") + ')' + name + suffix + '['
            + zshText(option.description) + ']' + (option.value.empty() ? "" : zshValues(option.value))
            + '\'';
    }
    return text;
}

std::string zshArguments(const Command &command, const std::string &indent)
{
    std::string text = indent + "_arguments -s -S";
    for (const Option &option : command.options)
        text += " \\\n" + zshOption(option, indent + "    ");
    return text + '\n';
}

} // namespace

std::string Completion::bash(const Command &program)
{
    const std::string function = functionName(program.name);
    std::string text = "# Completion of " + program.name + " for bash, made by the program itself.\n"
        + function + "()\n{\n    local cur prev words cword split\n    _init_completion -s || return\n";
    if (!program.commands.empty()) {
        text += "    local command\n    for command in \"${words[@]:1:cword-1}\"; do\n"
                "        case $command in\n";
        for (const Command &command : program.commands)
            text += "        " + command.name + ")\n" + bashCommand(command, "            ")
                + "            return\n            ;;\n";
        text += "        esac\n    done\n";
    }
    return text + bashCommand(program, "    ") + "}\ncomplete -F " + function + ' ' + program.name;
}

std::string Completion::zsh(const Command &program)
{
    std::string text = "#compdef " + program.name + "\n# Completion of " + program.name
        + " for zsh, made by the program itself.\n";
    if (program.commands.empty())
        return text + zshArguments(program, "");
    text += "local context state state_descr line\ntypeset -A opt_args\n_arguments -s -S -C";
    for (const Option &option : program.options)
        text += " \\\n" + zshOption(option, "    ");
    text += " \\\n    '1:command:->command' \\\n    '*::argument:->argument'\ncase $state in\ncommand)\n"
            "    local -a offered=(\n";
    for (const Command &command : program.commands)
        text += "        '" + command.name + ':' + zshText(command.description) + "'\n";
    text += "    )\n    _describe command offered\n    ;;\nargument)\n    case $words[1] in\n";
    for (const Command &command : program.commands)
        text += "    " + command.name + ")\n" + zshArguments(command, "        ") + "        ;;\n";
    return text + "    esac\n    ;;\nesac";
}
