// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Certificates.h"
#include "HttpsListener.h"
#include "LibraryScan.h"
#include "LyricApi.h"
#include "ServiceError.h"
#include "SongIndex.h"
#include "UnixSignals.h"
#include "programs/common/CommandLine.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum ExitStatus { Done = 0, WrongUsage = 2, CannotStart = 3 };

constexpr auto MostTimeToFinish = 10s;

struct Options
{
    QString library;
    QString data;
    QHostAddress address;
    quint16 port = 0;
    bool jsonLog = false;
};

Options prepared(const std::string &library, const std::string &data)
{
    Options options;
    const QFileInfo folder(QFile::decodeName(library.c_str()));
    options.library = folder.canonicalFilePath();
    if (!folder.isDir() || !folder.isReadable())
        throw ServiceError("no library folder "_L1 + folder.filePath());
    options.data = data.empty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                                : QFile::decodeName(data.c_str());
    options.data = QDir(options.data).absolutePath();
    if (!QDir().mkpath(options.data) || access(QFile::encodeName(options.data).constData(), W_OK | X_OK) != 0)
        throw ServiceError("can't write to the data folder "_L1 + options.data);
    return options;
}

// Keeps other services out of the data folder until this process has ended, however it does: the kernel holds the lock,
// which goes with the file that stays open here. A lock that told its holder's number would be held against whatever
// process has that number next.
void lock(const QString &data)
{
    const int file = open(QFile::encodeName(data + "/lock"_L1).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
    if (file == -1)
        throw ServiceError("can't write to the data folder "_L1 + data);
    if (flock(file, LOCK_EX | LOCK_NB) != 0) {
        throw ServiceError((errno == EWOULDBLOCK ? "another service uses the data folder "_L1
                                                 : "can't lock the data folder "_L1)
                           + data);
    }
}

// What run() connects it also outlives: its event loop is the only one.
// clazy:excludeall=lambda-in-connect
int run(QCoreApplication &application, const Options &options)
{
    lock(options.data);
    const Certificates certificates(options.data, options.address);
    auto *listener = new HttpsListener(certificates.prepare());
    listener->setParent(&application); // until the server takes it
    if (!listener->listen(options.address, options.port)) {
        throw ServiceError("can't listen on "_L1 + options.address.toString() + " port "_L1
                           + QString::number(options.port) + ": "_L1 + listener->errorString());
    }
    listener->pauseAccepting(); // clients wait until the index is there

    const QString indexFile = options.data + "/index.sqlite"_L1;
    std::unique_ptr<SongIndex> index;
    std::unique_ptr<LyricApi> api;
    QThread scanThread;
    auto *scan = new LibraryScan(options.library, indexFile);
    scan->moveToThread(&scanThread);
    QObject::connect(&scanThread, &QThread::started, scan, &LibraryScan::start);
    QObject::connect(&scanThread, &QThread::finished, scan, &QObject::deleteLater);
    const auto fail = [&application](const QString &why) {
        qCritical("%s", qPrintable(why));
        application.exit(CannotStart);
    };
    QObject::connect(scan, &LibraryScan::failed, &application, fail);
    QObject::connect(scan, &LibraryScan::ready, &application, [&] {
        try {
            index = std::make_unique<SongIndex>(indexFile);
        } catch (const ServiceError &error) {
            fail(QString::fromUtf8(error.what()));
            return;
        }
        api = std::make_unique<LyricApi>(*index, options.library, options.jsonLog);
        QObject::connect(listener, &HttpsListener::refused, api.get(), &LyricApi::logRefused);
        api->bind(listener);
        listener->resumeAccepting();
        QUrl url;
        url.setScheme("https"_L1);
        url.setHost(options.address.toString());
        url.setPort(listener->serverPort());
        std::printf("authority: %s\nurl: %s\n", QFile::encodeName(certificates.authorityFile()).constData(),
                    url.toEncoded().constData());
        std::fflush(stdout);
    });

    QTimer renewal;
    QObject::connect(&renewal, &QTimer::timeout, &application, [&] {
        try {
            listener->setConfiguration(certificates.prepare());
        } catch (const ServiceError &error) {
            qWarning("can't renew the certificate: %s", error.what());
        }
    });
    renewal.start(24h);

    QObject::connect(listener, &HttpsListener::finished, &application, &QCoreApplication::quit);
    signal(SIGPIPE, SIG_IGN); // a reader of standard output may go away
    handleUnixSignals({SIGTERM, SIGINT}, &application, [&] {
        scanThread.requestInterruption();
        listener->finish();
        QTimer::singleShot(MostTimeToFinish, &application, &QCoreApplication::quit);
    });
    scanThread.start();
    const int status = QCoreApplication::exec();
    scanThread.requestInterruption();
    scanThread.quit();
    scanThread.wait();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    umask(S_IRWXG | S_IRWXO); // what lies in the data folder is its owner's
    qSetMessagePattern("songlrc-service: %{message}"_L1);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("songlrc-service"_L1);

    std::string library;
    std::string data;
    std::string address = "127.0.0.1";
    quint16 port = 0;
    bool jsonLog = false;
    CLI::App cli("Serve the lyrics in a folder of .lrc files over HTTPS.", "songlrc-service");
    CommandLine::addStandardOptions(cli, SONGLRC_VERSION);
    cli.add_option("--library", library, "The folder of .lrc files.")->required()->type_name("DIR");
    cli.add_option("--port", port, "The port to listen on; 0, the default, is any free one.")->type_name("N");
    cli.add_option("--data", data, "The folder for index and certificates.")->type_name("DIR");
    cli.add_option("--address", address, "The address to listen on; 127.0.0.1 by default.")
        ->type_name("A")
        ->check([](const std::string &text) {
            return QHostAddress(QString::fromStdString(text)).isNull() ? "not an IP address: " + text
                                                                       : std::string();
        });
    cli.add_flag("--json-log", jsonLog, "Write one line of JSON a request to standard output.");
    try {
        cli.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return cli.exit(error) == 0 ? Done : WrongUsage;
    }

    try {
        Options options = prepared(library, data);
        options.address = QHostAddress(QString::fromStdString(address));
        options.port = port;
        options.jsonLog = jsonLog;
        return run(application, options);
    } catch (const std::exception &error) {
        qCritical("%s", error.what());
        return CannotStart;
    }
}
