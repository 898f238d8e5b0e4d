// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "FileList.h"
#include "Json.h"
#include "programs/common/TextFile.h"

#include <QVSongLrc/QVLyricImport.h>
#include <QVSongLrc/QVSongLrc.h>

#include <algorithm>

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

QByteArray fileJson(const std::string &file)
{
    return Json::value(textOfName(file));
}

QByteArray encodingJson(const DecodedText &read)
{
    return Json::value(QString::fromLatin1(read.encoding.name));
}

// Reads a file whose documents are shown, and reports how much of it they read otherwise than an import.
DecodedText readForDocuments(const std::string &file, const Options &options)
{
    DecodedText read = readTextFile(file, options.encoding);
    const qsizetype places = options.quiet ? 0 : QVLyricImport(read.text).remarks().size();
    if (places > 0) {
        report(shownName(file) + ": " + std::to_string(places)
               + (places == 1 ? " place that \"songlrc check\" would name"
                              : " places that \"songlrc check\" would name"));
    }
    return read;
}

// Prints the result of describe(file, read) for each file.
template <typename Describe>
ExitStatus show(const Options &options, Describe describe)
{
    return forEachFile(options.files, options.json, [&](const std::string &file) {
        const QByteArray description = describe(file, readForDocuments(file, options));
        if (!options.json && options.files.size() > 1)
            print(visible("==> " + file + " <==") + '\n');
        print(description);
        return Done;
    });
}

QByteArray remarkLine(const std::string &file, const QVLyricRemark &remark)
{
    return visible(shownName(file)) + ':' + QByteArray::number(remark.line) + ':'
        + QByteArray::number(remark.column) + ": " + visible(QVLyricRemark::name(remark.kind)) + ": "
        + visible(remark.message) + '\n';
}

QByteArray remarkJson(const QVLyricRemark &remark)
{
    return Json::object({{"line", QByteArray::number(remark.line)},
                         {"column", QByteArray::number(remark.column)},
                         {"length", QByteArray::number(remark.range.length)},
                         {"kind", Json::value(QVLyricRemark::name(remark.kind))},
                         {"message", Json::value(remark.message)}});
}

} // namespace

ExitStatus Commands::check(const Options &options)
{
    return forEachLyricFile(options, [&](const std::string &file) {
        const DecodedText read = readTextFile(file, options.encoding);
        const QList<QVLyricRemark> remarks = QVLyricImport(read.text).remarks();
        QByteArray lines;
        QByteArray objects;
        for (const QVLyricRemark &remark : remarks) {
            lines += remarkLine(file, remark);
            objects += (objects.isEmpty() ? "" : ",") + remarkJson(remark);
        }
        print(options.json ? Json::object({{"file", fileJson(file)},
                                           {"encoding", encodingJson(read)},
                                           {"guessed", read.guess ? "true" : "false"},
                                           {"remarks", '[' + objects + ']'}})
                      + '\n'
                           : lines);
        reportGuess(file, read);
        return std::any_of(remarks.begin(), remarks.end(), std::mem_fn(&QVLyricRemark::isWarning))
            ? NegativeAnswer
            : Done;
    });
}

ExitStatus Commands::parse(const Options &options)
{
    return show(options, [&](const std::string &file, const DecodedText &read) {
        QVEditSong song;
        song.buildWithLrcText(read.text);
        if (!options.json)
            return listing(*song.aryLines());
        return Json::object({{"file", fileJson(file)},
                             {"encoding", encodingJson(read)},
                             {"songText", Json::value(song.songText())},
                             {"lines", Json::lines(*song.aryLines())}})
            + '\n';
    });
}

ExitStatus Commands::preview(const Options &options)
{
    return show(options, [&](const std::string &file, const DecodedText &read) {
        QVPreviewSong preview;
        preview.buildWithLrcText(read.text);
        const QString shown = preview.previewSongTextWithHasTag(!options.noTags);
        if (!options.json)
            return wellFormed(shown).toUtf8();
        return Json::object({{"file", fileJson(file)},
                             {"encoding", encodingJson(read)},
                             {"text", Json::value(shown)},
                             {"lines", Json::lines(*preview.aryLines())}})
            + '\n';
    });
}

ExitStatus Commands::compare(const Options &options)
{
    QVEditSong songs[2];
    for (size_t i = 0; i < 2; ++i)
        songs[i].buildWithLrcText(readForDocuments(options.files[i], options).text);
    const bool equal = songs[0].isEqual(&songs[1]);
    print(equal ? "equal\n" : "different\n");
    return equal ? Done : NegativeAnswer;
}
