// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupCommands.h"

#include "Json.h"
#include "lookup/LookupProtocol.h"
#include "programs/common/SongLikeness.h"
#include "programs/common/TextFile.h"

#include <QVSongLrc/QVSongLrcConstants.h>
#include <QVSongLrc/ZTLyricRequestModel.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

#include <csignal>
#include <exception>
#include <filesystem>
#include <unistd.h>

using namespace QVSongLrcPrivate;

namespace {

std::string reasonOf(const QVLyricError &error)
{
    if (error.domain == QVLyricError::ServiceDomain && error.code == QVLyricError::NothingFound)
        return "nothing was found"; // the library's own text is Chinese
    return (error.localizedDescription.isEmpty() ? error.description() : error.localizedDescription)
        .toStdString();
}

ExitStatus reportLookup(const QVLyricError &error, bool json)
{
    if (json) {
        const QByteArray details =
            Json::object({{"domain", Json::value(error.domain)},
                          {"code", Json::value(error.code)},
                          {"localizedDescription", Json::value(error.localizedDescription)}});
        print(Json::object({{"error", details}}) + '\n');
    }
    report(reasonOf(error));
    return error.domain == QVLyricError::TransportDomain ? Failed : NegativeAnswer;
}

// Whether the output is a regular file. Writing to a device or a pipe may block.
bool isRegularFile(const std::string &output)
{
    std::error_code error;
    const auto status = std::filesystem::status(output, error);
    return output != StandardStream && (!std::filesystem::exists(status) || is_regular_file(status));
}

// Calls start(model, finish), which starts a request, and runs an event loop until its completion calls finish(handle).
// handle() processes the result and returns the exit status; its exceptions are passed on.
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
    std::exception_ptr failure;
    start(*model, [&](const std::function<ExitStatus()> &handle) {
        ExitStatus status = Failed;
        try {
            status = handle();
        } catch (...) { // must not pass through the event loop
            failure = std::current_exception();
        }
        application.exit(status);
    });
    const auto status = ExitStatus(application.exec());
    if (failure)
        std::rethrow_exception(failure);
    return status;
}

int likenessOf(const QJsonObject &candidate, const Options &options)
{
    return songLikeness({options.title, options.artist},
                        {candidate[Key_Lyric_Trackname].toString(), candidate[Key_Lyric_Artist].toString()});
}

ExitStatus reportUnlike(const QJsonObject &candidate, int likeness)
{
    report(QStringLiteral("the best match, \"%1\" by %2, is only %3 % like what was asked for; "
                          "\"--least-likeness %3\" would take it")
               .arg(candidate[Key_Lyric_Trackname].toString(), candidate[Key_Lyric_Artist].toString(),
                    QString::number(likeness))
               .toStdString());
    return NegativeAnswer;
}

void printResults(const QList<QJsonObject> &results, qint64 best, bool json)
{
    if (json) {
        QJsonArray array;
        for (const QJsonObject &result : results)
            array.append(result);
        print(Json::object({{"bestIndex", Json::value(best)}, {"results", Json::value(array)}}) + '\n');
        return;
    }
    QByteArray text;
    for (qsizetype i = 0; i < results.size(); ++i) {
        text += i == best ? "* " : "  ";
        text += visible(QStringLiteral("%1 - %2  (%3)")
                            .arg(results[i][Key_Lyric_Artist].toString(),
                                 results[i][Key_Lyric_Trackname].toString(),
                                 results[i][LookupProtocol::Link].toString()));
        text += '\n';
    }
    print(text);
}

} // namespace

ExitStatus LookupCommands::search(const Options &options)
{
    return runLookup(options, [&](ZTLyricRequestModel &model, auto finish) {
        model.requestListWithCompletion(
            [&options, finish](const auto &error, const auto &results, qint64 best) {
                finish([&] {
                    if (error)
                        return reportLookup(*error, options.json);
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
                    return reportLookup(*error, false);
                if (lyric.isNull()) {
                    report("the service's reply contains no lyric");
                    return NegativeAnswer;
                }
                if (isRegularFile(options.output))
                    std::signal(SIGINT, SIG_IGN); // _exit() would leave the temporary file behind
                writeTextFile(options.output, lyric, {});
                return Done;
            });
        };
        if (!options.link.isEmpty()) {
            model.requestDetail(options.link, completion);
            return;
        }
        model.requestListWithCompletion(
            [&, finish, completion](const auto &error, const auto &results, qint64 best) {
                if (error) {
                    finish([&] { return reportLookup(*error, false); });
                    return;
                }
                const QJsonObject &candidate = results[best];
                if (const int likeness = likenessOf(candidate, options); likeness < options.leastLikeness)
                    finish([&] { return reportUnlike(candidate, likeness); });
                else
                    model.requestDetail(candidate[LookupProtocol::Link].toString(), completion);
            });
    });
}
