// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ArgumentParser.h"

#include "Commands.h"
#include "LookupCommands.h"
#include "programs/common/CommandLine.h"
#include "programs/common/TextFile.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace {

constexpr int AnyNumber = CLI::detail::expected_max_vector_size;
constexpr auto FileDescription = "The lyric's file. \"-\" means standard input.";
constexpr auto FileOrFolderDescription =
    "The lyric's file, or a folder of .lrc files. \"-\" means standard input.";

} // namespace

ArgumentParser::ArgumentParser()
{
    m_app.require_subcommand(1);
    CommandLine::addStandardOptions(m_app, SONGLRC_VERSION);
    m_options.output = StandardStream;

    CLI::App &check =
        add("check",
            "List the places that parse, preview and other strict readers read otherwise than a person "
            "would. The exit status is 1 if words, times or properties are concerned.",
            Commands::check);
    addFiles(check, FileOrFolderDescription, 1, AnyNumber);
    addJson(check);

    CLI::App &parse = add("parse", "Print the lines of each lyric.", Commands::parse);
    addFiles(parse, FileDescription, 1, AnyNumber);
    addJson(parse);
    addQuiet(parse);

    addEditing(add("format", "Write the lyric in normal form.", Commands::format));

    CLI::App &preview = add("preview", "Print the lines in play order.", Commands::preview);
    addFiles(preview, FileDescription, 1, AnyNumber);
    addJson(preview);
    addQuiet(preview);
    preview.add_flag("--no-tags", m_options.noTags, "Print the text without time and property tags.");

    CLI::App &shift = add("shift", "Shift all times of the lyric.", Commands::shift);
    addShift(shift);
    addEditing(shift);

    addEditing(
        add("mark", "Add the maker's name and web address, unless the lyric has them.", Commands::mark));

    CLI::App &compare =
        add("compare", "Compare two lyrics. The exit status is 0 if they are equal, 1 if not.",
            Commands::compare);
    addFiles(compare, FileDescription, 2, 2);
    addQuiet(compare);

    CLI::App &search = add("search", "Search the lyric service for songs. The best match is starred.",
                           LookupCommands::search);
    addQuery(search);
    search.add_flag("--json", m_options.json, "Print one JSON object.");

    CLI::App &fetch =
        add("fetch", "Download the lyric of the best match or of a link.", LookupCommands::fetch);
    addQuery(fetch);
    fetch.add_option("--link", m_link, "The lyric's link, as printed by search.")->type_name("LINK");
    fetch
        .add_option("--least-likeness", m_options.leastLikeness,
                    "Download nothing if title and artist of the best match are less like those asked for "
                    "than this, from 0 to 100. The default is "
                        + std::to_string(m_options.leastLikeness) + '.')
        ->type_name("N")
        ->check(CLI::Range(0, 100).description(""));
    addOutput(fetch);
}

Command ArgumentParser::parse(int argc, char **argv, Options &options, ExitStatus &status)
{
    // CLI11 splits "[a,b]" in two where an option takes several values. Here it is a file name.
    std::set<std::string> bracketed;
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    m_wantsJson = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
    if (!arguments.empty() && m_severalFiles.contains(arguments.front())) {
        for (std::string &argument : arguments) {
            if (argument.starts_with('[')) {
                argument.insert(0, "./");
                bracketed.insert(argument);
            }
        }
    }
    std::reverse(arguments.begin(), arguments.end()); // CLI11's parse() expects them in reverse
    try {
        m_app.parse(std::move(arguments));
    } catch (const CLI::Success &success) { // help or version
        std::ostringstream text;
        m_app.exit(success, text);
        print(QByteArray::fromStdString(text.str()));
        status = Done;
        return nullptr;
    } catch (const CLI::ParseError &error) {
        return usageError(textOfName(error.what()).simplified().toStdString(), status);
    }
    for (std::string &file : m_options.files) {
        if (bracketed.contains(file))
            file.erase(0, 2);
    }
    const CLI::App *const chosen = m_app.get_subcommands().front();
    if (const std::string message = usageErrorOf(chosen); !message.empty())
        return usageError(message, status);
    options = m_options;
    options.milliseconds = QByteArray::fromStdString(m_milliseconds).toLongLong();
    options.encoding = QByteArray::fromStdString(m_encoding);
    options.outputEncoding = QByteArray::fromStdString(m_outputEncoding);
    options.title = QString::fromStdString(m_title);
    options.artist = QString::fromStdString(m_artist);
    options.link = QString::fromStdString(m_link);
    return m_commands.at(chosen);
}

std::string ArgumentParser::usageErrorOf(const CLI::App *command) const
{
    const auto given = [&](const char *option) {
        const CLI::Option *const found = command->get_option_no_throw(option);
        return found && found->count() > 0;
    };
    const auto &files = m_options.files;
    if (command->get_option_no_throw("--title") && !given("--title") && !given("--artist") && m_link.empty())
        return "a title, an artist or a link is required";
    if (command->get_option_no_throw("--by") && !given("--by") && !given("--apply-offset"))
        return "--by or --apply-offset is required";
    if (std::count(files.begin(), files.end(), "") > 0
        || std::count(files.begin(), files.end(), StandardStream) > 1)
        return "FILE: a file name can't be empty, and \"-\" can be given only once";
    if (!command->get_option_no_throw("--in-place"))
        return {};
    if (m_options.inPlace || m_options.dryRun) {
        if (std::count(files.begin(), files.end(), StandardStream) > 0)
            return "--in-place, --dry-run: standard input is not a file";
    } else if (std::error_code error;
               files.size() > 1 || std::filesystem::is_directory(files.front(), error)) {
        return "several files or a folder need --in-place or --dry-run";
    }
    return {};
}

Command ArgumentParser::usageError(const std::string &message, ExitStatus &status) const
{
    reportError(message, WrongUsage, m_wantsJson);
    status = WrongUsage;
    return nullptr;
}

CLI::App &ArgumentParser::add(const char *name, const char *description, Command command)
{
    CLI::App &subcommand = *m_app.add_subcommand(name, description);
    m_commands[&subcommand] = command;
    return subcommand;
}

void ArgumentParser::addFiles(CLI::App &command, const char *description, int least, int most)
{
    if (most > least)
        m_severalFiles.insert(command.get_name());
    command.add_option("FILE", m_options.files, description)
        ->required()
        ->expected(least, most)
        ->allow_extra_args(most > least)
        ->type_name("");
    addEncoding(command, "--encoding", m_encoding, "The encoding of the input. It is detected by default.");
}

void ArgumentParser::addJson(CLI::App &command)
{
    command.add_flag("--json", m_options.json, "Print one JSON object per file, each on its own line.");
}

void ArgumentParser::addQuiet(CLI::App &command)
{
    command.add_flag("--quiet", m_options.quiet, "Do not say how many places check would name.");
}

void ArgumentParser::addQuery(CLI::App &command)
{
    command.add_option("--title", m_title, "The song's title.")->type_name("TITLE");
    command.add_option("--artist", m_artist, "The song's artist.")->type_name("ARTIST");
    m_options.lookup.addTo(command);
}

CLI::Option *ArgumentParser::addOutput(CLI::App &command)
{
    return command
        .add_option("-o,--output", m_options.output, "Write to this file instead of standard output.")
        ->type_name("FILE");
}

void ArgumentParser::addEditing(CLI::App &command)
{
    addFiles(command, FileOrFolderDescription, 1, AnyNumber);
    CLI::Option *const output = addOutput(command);
    CLI::Option *const inPlace =
        command.add_flag("--in-place", m_options.inPlace, "Write to the input files.")->excludes(output);
    command
        .add_flag("--dry-run", m_options.dryRun,
                  "Only print the files that --in-place would change. The exit status is 1 if there are any.")
        ->excludes(output)
        ->excludes(inPlace);
    command.add_flag("--verbose", m_options.verbose, "Print each file that --in-place changes.");
    command.add_flag("--strict", m_options.strict,
                     "Read and write as the library's documents do, which may lose text.");
    addEncoding(
        command, "--output-encoding", m_outputEncoding,
        "The encoding of the output. The default is the input's encoding, or UTF-8 on standard output.");
}

void ArgumentParser::addShift(CLI::App &command)
{
    CLI::Option *const by =
        command.add_option("--by", m_milliseconds, "The shift in ms. Negative values move lines earlier.")
            ->type_name("MS")
            ->check([](const std::string &number) {
                bool isNumber = false;
                QByteArray::fromStdString(number).toLongLong(&isNumber);
                return isNumber ? "" : "not a 64-bit integer: " + number;
            });
    command
        .add_flag("--apply-offset", m_options.applyOffset,
                  "Shift each lyric by its own header [offset:MS], and remove that.")
        ->excludes(by);
    command.add_flag("--clamp", m_options.clamp, "Move times that would be below 0 to 0.");
}

void ArgumentParser::addEncoding(CLI::App &command, const char *name, std::string &value,
                                 const char *description)
{
    command.add_option(name, value, description)->type_name("NAME")->check([](const std::string &encoding) {
        return isTextEncoding(QByteArray::fromStdString(encoding)) ? "" : "unknown encoding: " + encoding;
    });
}
