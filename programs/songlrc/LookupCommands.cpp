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

// Whether writing makes a new file, as opposed to a device or a pipe that may keep one waiting.
bool isReplaced(const QString &output)
{
    const QFileInfo target(output);
    return output != StandardStream && (!target.exists() || target.isFile());
}

// Runs an event loop until the request that start(model, finish) starts has been answered. The answer calls
// finish with a function that makes something of it and gives the exit status.
template <typename Start>
ExitStatus ask(const Options &options, Start start)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
        // Qt's and the library's log lines are no business of someone who runs a command.
    });
    // Nothing is left behind by a request: it ends at once, whatever it waits for.
    std::signal(SIGINT, [](int) { _exit(Interrupted); });
    char name[] = "songlrc";
    char *arguments[] = {name, nullptr};
    int count = 1;
    QCoreApplication application(count, arguments);
    options.lookup.apply();

    const auto model = ZTLyricRequestModel::initWithReqParams(
        {{Key_Lyric_Trackname, options.title}, {Key_Lyric_Artist, options.artist}});
    start(*model, [&](const std::function<ExitStatus()> &answer) {
        ExitStatus status = Failed;
        try {
            status = answer();
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
    return ask(options, [&](ZTLyricRequestModel &model, auto finish) {
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
    return ask(options, [&](ZTLyricRequestModel &model, auto finish) {
        const auto completion = [&options, finish](const auto &error, const QString &lyric) {
            finish([&] {
                if (error)
                    return report(*error, false);
                if (lyric.isNull()) {
                    reportError(QStringLiteral("the service's answer holds no lyric"));
                    return NegativeAnswer;
                }
                if (isReplaced(options.output))
                    std::signal(SIGINT, SIG_IGN); // it will be all there in a moment
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
