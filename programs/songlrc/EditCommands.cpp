// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "FileList.h"
#include "programs/common/LineEdits.h"
#include "programs/common/LineEnds.h"
#include "programs/common/TextFile.h"

#include <QVSongLrc/QVEditSong.h>
#include <QVSongLrc/QVLyricImport.h>

#include <limits>
#include <optional>

namespace {

void refuseUnlikelyGuess(const std::string &file, const DecodedText &read)
{
    if (read.guess && *read.guess < LeastGuess) {
        throw FileError(
            shownName(file),
            "its encoding is not certain enough to write it; name it with --encoding (the guess is "
                + read.encoding.name.toStdString() + ')');
    }
}

// The text after edit(song, text), which returns false when the text is to stay as it is.
template <typename Edit>
QString edited(const QString &text, bool strict, Edit edit, qsizetype &timesCut)
{
    QVEditSong song;
    if (strict)
        song.buildWithLrcText(text);
    else
        song.setAryLines(QVLyricImport(text).lines());
    if ((!strict && song.aryLines()->isEmpty()) || !edit(song, text))
        return text;
    song.updateSongText();
    timesCut = LineEdits::timesWithThousandths(*song.aryLines());
    return strict ? song.songText() : LineEnds::of(text).applied(song.songText());
}

template <typename Edit, typename PrintName>
ExitStatus rewriteFile(const std::string &file, const Options &options, Edit edit, PrintName printName)
{
    const DecodedText read = readTextFile(file, options.encoding);
    qsizetype timesCut = 0;
    QString text;
    try {
        text = edited(read.text, options.strict, edit, timesCut);
    } catch (const LineEdits::Error &error) {
        throw FileError(shownName(file), error.what());
    }

    const bool isOwnFile = options.inPlace || options.dryRun;
    const std::string &target = isOwnFile ? file : options.output;
    TextEncoding encoding = target == StandardStream ? TextEncoding() : read.encoding;
    if (!options.outputEncoding.isEmpty())
        encoding = outputEncoding(options.outputEncoding);
    // An equal text is not written: its encoding may have several bytes for one character.
    const bool isSame = isOwnFile && options.outputEncoding.isEmpty() && text == read.text;
    if (isSame)
        return Done;
    refuseUnlikelyGuess(file, read);
    if (!writeTextFile(target, text, encoding, options.dryRun ? Writing::DryRun : Writing::Replace))
        return Done;
    if (options.dryRun || (options.inPlace && options.verbose))
        printName(file);
    if (!options.dryRun)
        reportGuess(file, read);
    if (timesCut > 0) {
        report(shownName(file) + ": " + std::to_string(timesCut) + (timesCut == 1 ? " time is" : " times are")
               + " cut to hundredths of a second");
    }
    return options.dryRun ? NegativeAnswer : Done;
}

template <typename Edit>
ExitStatus rewrite(const Options &options, Edit edit)
{
    std::optional<StandardOutputError> outputError;
    const auto printName = [&](const std::string &file) {
        try {
            if (!outputError)
                print(visible(file) + '\n');
        } catch (const StandardOutputError &error) {
            if (options.dryRun)
                throw;
            outputError = error; // the other files are still to be changed
        }
    };
    const ExitStatus status = forEachLyricFile(options, [&](const std::string &file) {
        try {
            return rewriteFile(file, options, edit, printName);
        } catch (const FileRefused &refused) {
            throw std::runtime_error(std::string(refused.what()) + "; write to another file with -o");
        }
    });
    if (outputError)
        throw *outputError;
    return status;
}

} // namespace

ExitStatus Commands::format(const Options &options)
{
    return rewrite(options, [](QVEditSong &, const QString &) { return true; });
}

ExitStatus Commands::shift(const Options &options)
{
    using namespace LineEdits;
    return rewrite(options, [&](QVEditSong &song, const QString &text) {
        qint64 milliseconds = options.milliseconds;
        if (options.applyOffset) {
            const auto offset = takeOffset(*song.aryLines(), text);
            if (!offset)
                return false;
            milliseconds =
                -std::max(*offset, -std::numeric_limits<qint64>::max()); // a positive one means earlier
        }
        LineEdits::shift(*song.aryLines(), milliseconds,
                         options.clamp ? BelowZero::BecomesZero : BelowZero::Fails,
                         options.strict ? Words::Stay : Words::Move);
        return true;
    });
}

ExitStatus Commands::mark(const Options &options)
{
    return rewrite(options, [&](QVEditSong &song, const QString &) {
        if (options.strict)
            song.insertCopyrightMark();
        else
            LineEdits::mark(song);
        return true;
    });
}
