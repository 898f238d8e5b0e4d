// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "LookupCommands.h"
#include "programs/common/CommandLine.h"
#include "programs/common/TextFile.h"

#include <CLI/CLI.hpp>

#include <QFile>

namespace {

using Command = ExitStatus (*)(const Options &);

// Parses the command line.
class ArgumentParser
{
public:
    ArgumentParser()
    {
        m_app.require_subcommand(1);
        CommandLine::addStandardOptions(m_app, SONGLRC_VERSION);

        CLI::App &parse = add("parse", "Print the lines of each lyric.", Commands::parse);
        addFiles(parse, 1, CLI::detail::expected_max_vector_size);
        addJson(parse);

        CLI::App &format = add("format", "Print the lyric's text in normal form.", Commands::format);
        addEditing(format);

        CLI::App &preview = add("preview", "Print the lines in play order.", Commands::preview);
        addFiles(preview, 1, CLI::detail::expected_max_vector_size);
        addJson(preview);
        preview.add_flag("--no-tags", m_options.noTags, "Print the text without time and property tags.");

        CLI::App &shift = add("shift", "Shift all times of the lyric.", Commands::shift);
        shift
            .add_option("--by", m_milliseconds,
                        "The shift in ms. Negative values move lines earlier, but not before 0.")
            ->required()
            ->type_name("MS")
            ->check([](const std::string &number) {
                bool isNumber = false;
                QByteArray::fromStdString(number).toLongLong(&isNumber);
                return isNumber ? "" : "not a 64-bit integer: " + number;
            });
        addEditing(shift);

        CLI::App &mark =
            add("mark", "Add the maker's name and web address, unless the lyric has them.", Commands::mark);
        addEditing(mark);

        CLI::App &compare =
            add("compare", "Compare two lyrics. The exit status is 0 if they are equal, 1 if not.",
                Commands::compare);
        addFiles(compare, 2, 2);

        CLI::App &search = add("search", "Search the lyric service for songs. The best match is starred.",
                               LookupCommands::search);
        addQuery(search);
        search.add_flag("--json", m_options.json, "Print one JSON object.");

        CLI::App &fetch =
            add("fetch", "Download the lyric of the best match or of a link.", LookupCommands::fetch);
        addQuery(fetch);
        fetch.add_option("--link", m_link, "The lyric's link, as printed by search.")->type_name("LINK");
        addOutput(fetch);
    }

    /// Returns the command to run. Returns null, with \p status set, after printing help or an error.
    Command parse(int argc, char **argv, Options &options, ExitStatus &status)
    {
        m_wantsJson = std::find(argv + 1, argv + argc, std::string_view("--json")) != argv + argc;
        try {
            // CLI11 splits "[a,b]" in two where an option takes several values. Here it is a file name.
            std::vector<std::string> arguments(argv + 1, argv + argc);
            if (!arguments.empty() && m_severalFiles.contains(arguments.front())) {
                for (std::string &argument : arguments) {
                    if (argument.starts_with('['))
                        argument.insert(0, "./");
                }
            }
            std::reverse(arguments.begin(), arguments.end()); // CLI11's parse() expects them in reverse
            m_app.parse(std::move(arguments));
        } catch (const CLI::Success &success) { // help or version
            m_app.exit(success);
            status = Done;
            return nullptr;
        } catch (const CLI::ParseError &error) {
            return usageError(QString::fromUtf8(error.what()).simplified(), status);
        }
        options = m_options;
        for (const std::string &file : m_files)
            options.files += QFile::decodeName(file.c_str());
        options.output = QFile::decodeName(m_output.c_str());
        options.milliseconds = QByteArray::fromStdString(m_milliseconds).toLongLong();
        options.encoding = QByteArray::fromStdString(m_encoding);
        options.outputEncoding = QByteArray::fromStdString(m_outputEncoding);
        options.title = QString::fromStdString(m_title);
        options.artist = QString::fromStdString(m_artist);
        options.link = QString::fromStdString(m_link);
        const CLI::App *const chosen = m_app.get_subcommands().front();
        if (m_lookups.contains(chosen) && m_title.empty() && m_artist.empty() && m_link.empty())
            return usageError(QStringLiteral("a title, an artist or a link is required"), status);
        if (options.files.contains(QString()) || options.files.count(StandardStream) > 1)
            return usageError(
                QStringLiteral("FILE: a file name can't be empty, and \"-\" can be given only once"), status);
        if (options.inPlace && options.files.first() == StandardStream)
            return usageError(QStringLiteral("--in-place: standard input is not a file"), status);
        return m_commands.at(chosen);
    }

private:
    Command usageError(const QString &message, ExitStatus &status) const
    {
        reportError(message, WrongUsage, m_wantsJson);
        status = WrongUsage;
        return nullptr;
    }

    CLI::App &add(const char *name, const char *description, Command command)
    {
        CLI::App &subcommand = *m_app.add_subcommand(name, description);
        m_commands[&subcommand] = command;
        return subcommand;
    }

    void addFiles(CLI::App &command, int least, int most)
    {
        if (most > least)
            m_severalFiles.insert(command.get_name());
        command.add_option("FILE", m_files, "The lyric's file. \"-\" means standard input.")
            ->required()
            ->expected(least, most)
            ->allow_extra_args(most > least)
            ->type_name("");
        addEncoding(command, "--encoding", m_encoding,
                    "The encoding of the input. It is detected by default.");
    }

    void addQuery(CLI::App &command)
    {
        m_lookups.insert(&command);
        command.add_option("--title", m_title, "The song's title.")->type_name("TITLE");
        command.add_option("--artist", m_artist, "The song's artist.")->type_name("ARTIST");
        m_options.lookup.addTo(command);
    }

    void addJson(CLI::App &command)
    {
        command.add_flag("--json", m_options.json, "Print one JSON object per file, each on its own line.");
    }

    CLI::Option *addOutput(CLI::App &command)
    {
        return command.add_option("-o,--output", m_output, "Write to this file instead of standard output.")
            ->type_name("FILE");
    }

    void addEditing(CLI::App &command)
    {
        addFiles(command, 1, 1);
        CLI::Option *const output = addOutput(command);
        command.add_flag("--in-place", m_options.inPlace, "Write to the input file.")->excludes(output);
        addEncoding(
            command, "--output-encoding", m_outputEncoding,
            "The encoding of the output. The default is the input's encoding, or UTF-8 on standard output.");
    }

    static void addEncoding(CLI::App &command, const char *name, std::string &value, const char *description)
    {
        command.add_option(name, value, description)
            ->type_name("NAME")
            ->check([](const std::string &encoding) {
                return isTextEncoding(QByteArray::fromStdString(encoding)) ? ""
                                                                           : "unknown encoding: " + encoding;
            });
    }

    CLI::App m_app{"Work with song lyrics in the LRC format.", "songlrc"};
    std::map<const CLI::App *, Command> m_commands;
    std::set<const CLI::App *> m_lookups;
    std::set<std::string> m_severalFiles;
    std::vector<std::string> m_files;
    std::string m_output = StandardStream.data();
    std::string m_milliseconds;
    std::string m_encoding;
    std::string m_title;
    std::string m_artist;
    std::string m_link;
    std::string m_outputEncoding;
    Options m_options;
    bool m_wantsJson = false; // set even when parsing fails
};

} // namespace

int main(int argc, char **argv)
{
    Options options;
    ExitStatus status = Done;
    const Command command = ArgumentParser().parse(argc, argv, options, status);
    if (!command)
        return status;
    try {
        return command(options);
    } catch (const std::exception &error) {
        reportFailure(error, options.json);
        return Failed;
    }
}
