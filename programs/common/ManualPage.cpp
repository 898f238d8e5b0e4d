// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ManualPage.h"

#include <cctype>
#include <sstream>

namespace {

using CommandLine::Command;
using CommandLine::Option;

std::string escaped(const std::string &text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-"; // else it is printed as a hyphen, which nobody can type
        else
            result += c;
    }
    return result.starts_with('.') || result.starts_with('\'') ? "\\&" + result : result;
}

// Lines of at most 78 characters, as readers of the source and its checkers want them.
std::string paragraph(const std::string &text)
{
    std::istringstream words(escaped(text));
    std::string result;
    std::string word;
    for (size_t column = 0; words >> word; column += word.size() + 1) {
        if (column + word.size() > 78) {
            result += '\n';
            column = 0;
        } else if (!result.empty()) {
            result += ' ';
        }
        result += word;
    }
    return result + '\n';
}

std::string bold(const std::string &text)
{
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(const std::string &text)
{
    return "\\fI" + escaped(text) + "\\fR";
}

// "FILE", "[FILE]", "FILE..." or "FILE FILE".
std::string operand(const Option &argument)
{
    std::string text = italic(argument.value);
    if (argument.most == 2)
        text += ' ' + italic(argument.value);
    else if (argument.most > 2)
        text += "...";
    return argument.isRequired ? text : '[' + text + ']';
}

std::string usage(const Command &command, const std::string &name)
{
    std::string text;
    if (command.commands.empty()) {
        text = bold(name);
        std::string operands;
        for (const Option &option : command.options) {
            if (option.names.empty())
                operands += ' ' + operand(option);
            else if (option.isRequired)
                text += ' ' + bold(option.names.back()) + ' ' + italic(option.value);
        }
        text += " [" + italic("option") + "...]" + operands + '\n';
    }
    for (const Command &each : command.commands)
        text += (text.empty() ? "" : ".br\n") + usage(each, name + ' ' + each.name);
    return text;
}

std::string entry(const Option &option)
{
    std::string text = ".TP\n";
    for (const std::string &name : option.names)
        text += (name == option.names.front() ? "" : ", ") + bold(name);
    if (!option.value.empty())
        text += option.names.empty() ? italic(option.value) : ' ' + italic(option.value);
    text += '\n' + paragraph(option.description);
    for (const std::string &other : option.excludes)
        text += "Not together with " + bold(other) + ".\n";
    return text;
}

std::string entries(const Command &command)
{
    std::string operands;
    std::string text;
    for (const Option &option : command.options)
        (option.names.empty() ? operands : text) += entry(option);
    return operands + text;
}

} // namespace

std::string ManualPage::synopsis(const Command &program)
{
    std::string purpose = program.description;
    purpose.front() = char(std::tolower(static_cast<unsigned char>(purpose.front())));
    if (purpose.ends_with('.'))
        purpose.pop_back();
    return ".SH NAME\n" + program.name + " \\- " + paragraph(purpose) + ".SH SYNOPSIS\n.nh\n"
        + usage(program, program.name) + ".hy\n";
}

std::string ManualPage::options(const Command &program)
{
    std::string text = ".SH OPTIONS\n" + entries(program);
    if (!program.commands.empty())
        text += ".SH COMMANDS\nEach takes " + bold("--help") + ", too.\n";
    for (const Command &command : program.commands) {
        text += ".SS " + escaped(command.name) + '\n' + paragraph(command.description);
        Command own = command; // each command has --help, which has been told
        std::erase_if(own.options, [](const Option &option) {
            return !option.names.empty() && option.names.back() == "--help";
        });
        text += entries(own);
    }
    return text;
}
