// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupCommands.h"

#include "Json.h"
#include "lookup/LookupProtocol.h"
#include "programs/common/TextFile.h"

#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <csignal>
#include <unistd.h>

namespace {

ExitStatus report(const QVLyricError &error, bool json)
{
    reportError(error.localizedDescription.isEmpty() ? error.description() : error.localizedDescription);
    if (json) {
        const QByteArray details =
            Json::object({{"domain", Json::value(error.domain)},
                          {"code", Json::value(error.code)},
                          {"localizedDescription", Json::value(error.localizedDescription)}});
        writeStandardOutput(Json::object({{"error", details}}) + '\n');
    }
    return error.domain == QVLyricError::TransportDomain ? Failed : NegativeAnswer;
}

// Whether the output is a regular file. Writing to a device or a pipe may block.
bool isRegularFile(const QString &output)
{
    const QFileInfo target(output);
    return output != StandardStream && (!target.exists() || target.isFile());
}

// Calls start(model, finish), which starts a request, and runs an event loop until its completion calls finish(handle).
// handle() processes the result and returns the exit status; its exceptions are reported.
template <typename Start>
ExitStatus runLookup(const Options &options, Start start)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
        // Do not print the log messages of Qt and the library.
    });
    // A request leaves nothing to clean up, so end at once.
    std::signal(SIGINT, [](int) { _exit(Interrupted); });
    char name[] = "songlrc";
    char *arguments[] = {name, nullptr};
    int count = 1;
    QCoreApplication application(count, arguments);
    options.lookup.apply();

    const auto model = ZTLyricRequestModel::initWithReqParams(
        {{Key_Lyric_Trackname, options.title}, {Key_Lyric_Artist, options.artist}});
    start(*model, [&](const std::function<ExitStatus()> &handle) {
        ExitStatus status = Failed;
        try {
            status = handle();
        } catch (const std::exception &error) {
            reportFailure(error, options.json);
        }
        application.exit(status);
    });
    return ExitStatus(application.exec());
}

void printResults(const QList<QJsonObject> &results, qint64 best, bool json)
{
    if (json) {
        QJsonArray array;
        for (const QJsonObject &result : results)
            array.append(result);
        writeStandardOutput(Json::object({{"bestIndex", Json::value(best)}, {"results", Json::value(array)}})
                            + '\n');
        return;
    }
    QByteArray text;
    for (qsizetype i = 0; i < results.size(); ++i) {
        text += i == best ? "* " : "  ";
        text += visible(QStringLiteral("%1 - %2  (%3)")
                            .arg(results[i][Key_Lyric_Artist].toString(),
                                 results[i][Key_Lyric_Trackname].toString(),
                                 results[i][QVSongLrcPrivate::LookupProtocol::Link].toString()));
        text += '\n';
    }
    writeStandardOutput(text);
}

} // namespace

ExitStatus LookupCommands::search(const Options &options)
{
    return runLookup(options, [&](ZTLyricRequestModel &model, auto finish) {
        model.requestListWithCompletion(
            [&options, finish](const auto &error, const auto &results, qint64 best) {
                finish([&] {
                    if (error)
                        return report(*error, options.json);
                    printResults(results, best, options.json);
                    return Done;
                });
            });
    });
}

ExitStatus LookupCommands::fetch(const Options &options)
{
    return runLookup(options, [&](ZTLyricRequestModel &model, auto finish) {
        const auto completion = [&options, finish](const auto &error, const QString &lyric) {
            finish([&] {
                if (error)
                    return report(*error, false);
                if (lyric.isNull()) {
                    reportError(QStringLiteral("the service's reply contains no lyric"));
                    return NegativeAnswer;
                }
                if (isRegularFile(options.output))
                    std::signal(SIGINT, SIG_IGN); // _exit() would leave the temporary file behind
                writeTextFile(options.output, lyric, {});
                return Done;
            });
        };
        if (options.link.isEmpty())
            model.requestWithCompletion(completion);
        else
            model.requestDetail(options.link, completion);
    });
}
