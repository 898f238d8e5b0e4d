// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Json.h"
#include "programs/common/TextFile.h"

#include <QVSongLrc/QVSongLrc.h>

#include <cstdio>
#include <new>

namespace {

QString description(const QVSongLine &line)
{
    if (line.isProperty())
        return QStringLiteral("property  %1 = %2").arg(line.propertyStr(), line.lineText());
    if (line.aryTimes()->isEmpty())
        return QStringLiteral("plain     %1").arg(line.lineText());
    QString times;
    for (const qint64 time : *line.aryTimes())
        times += QVUtils::getTimeIntervalMMSSMSStr(time) + u' ';
    return QStringLiteral("timed     %1 %2").arg(times, line.lineText());
}

QByteArray listing(const QVSongLineList &lines)
{
    QByteArray text;
    for (qsizetype i = 0; i < lines.size(); ++i)
        text += visible(QStringLiteral("%1  %2").arg(i, 5).arg(description(*lines[i]))) + '\n';
    return text;
}

// Prints the result of format(file, text) for each file, or reports the error and continues.
template <typename Format>
ExitStatus forEachFile(const Options &options, Format format)
{
    ExitStatus status = Done;
    for (const QString &file : options.files) {
        QByteArray printed;
        try {
            printed = format(file, readTextFile(file, options.encoding).text);
        } catch (const std::exception &error) {
            status = Failed;
            reportFailure(error, options.json, file);
            continue;
        }
        if (!options.json && options.files.size() > 1)
            writeStandardOutput(visible(QStringLiteral("==> %1 <==").arg(file)) + '\n');
        writeStandardOutput(printed);
    }
    return status;
}

// Reads the document, calls edit(document), and writes it to the output.
template <typename Edit>
ExitStatus rewrite(const Options &options, Edit edit)
{
    const QString &file = options.files.first();
    const DecodedText read = readTextFile(file, options.encoding);
    QVEditSong song;
    song.buildWithLrcText(read.text);
    edit(song);

    const QString target = options.inPlace ? file : options.output;
    TextEncoding encoding = target == StandardStream ? TextEncoding() : read.encoding;
    if (!options.outputEncoding.isEmpty())
        encoding = outputEncoding(options.outputEncoding);
    writeTextFile(target, song.songText(), encoding);
    return Done;
}

} // namespace

QByteArray visible(QString text)
{
    for (QChar &c : text) {
        if (c < u' ')
            c = QChar(0x2400 + c.unicode());
        else if (c == QChar(0x7F))
            c = QChar(0x2421);
        else if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QChar::ReplacementCharacter;
    }
    return wellFormed(text).toUtf8();
}

void reportError(const QString &message)
{
    std::fprintf(stderr, "songlrc: %s\n", visible(message).constData());
}

void reportError(const QString &message, int code, bool json, const QString &file)
{
    reportError(message);
    if (!json)
        return;
    const QByteArray error = Json::object({{"domain", "\"songlrc\""},
                                           {"code", QByteArray::number(code)},
                                           {"localizedDescription", Json::value(message)}});
    writeStandardOutput((file.isNull() ? Json::object({{"error", error}})
                                       : Json::object({{"file", Json::value(file)}, {"error", error}}))
                        + '\n');
}

void reportFailure(const std::exception &error, bool json, const QString &file)
{
    const bool outOfMemory = dynamic_cast<const std::bad_alloc *>(&error) != nullptr;
    QString message = outOfMemory ? QStringLiteral("out of memory") : QString::fromUtf8(error.what());
    if (outOfMemory && !file.isNull())
        message = file + QStringLiteral(": ") + message;
    reportError(message, Failed, json, file);
}

ExitStatus Commands::parse(const Options &options)
{
    return forEachFile(options, [&](const QString &file, const QString &text) {
        QVEditSong song;
        song.buildWithLrcText(text);
        if (!options.json)
            return listing(*song.aryLines());
        return Json::object({{"file", Json::value(file)},
                             {"songText", Json::value(song.songText())},
                             {"lines", Json::lines(*song.aryLines())}})
            + '\n';
    });
}

ExitStatus Commands::preview(const Options &options)
{
    return forEachFile(options, [&](const QString &file, const QString &text) {
        QVPreviewSong preview;
        preview.buildWithLrcText(text);
        const QString shown = preview.previewSongTextWithHasTag(!options.noTags);
        if (!options.json)
            return wellFormed(shown).toUtf8();
        return Json::object({{"file", Json::value(file)},
                             {"text", Json::value(shown)},
                             {"lines", Json::lines(*preview.aryLines())}})
            + '\n';
    });
}

ExitStatus Commands::format(const Options &options)
{
    return rewrite(options, [](QVEditSong &) {});
}

ExitStatus Commands::shift(const Options &options)
{
    return rewrite(options, [&](QVEditSong &song) {
        for (const auto &line : *song.aryLines())
            line->shiftAllTime(options.milliseconds);
        song.updateSongText();
    });
}

ExitStatus Commands::mark(const Options &options)
{
    return rewrite(options, [](QVEditSong &song) { song.insertCopyrightMark(); });
}

ExitStatus Commands::compare(const Options &options)
{
    QVEditSong songs[2];
    for (int i = 0; i < 2; ++i)
        songs[i].buildWithLrcText(readTextFile(options.files[i], options.encoding).text);
    const bool equal = songs[0].isEqual(&songs[1]);
    writeStandardOutput(equal ? "equal\n" : "different\n");
    return equal ? Done : NegativeAnswer;
}
