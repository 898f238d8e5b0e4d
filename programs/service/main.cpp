// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "Certificates.h"
#include "HttpsListener.h"
#include "LibraryScanner.h"
#include "LyricApi.h"
#include "SongIndex.h"
#include "StorageError.h"
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

constexpr auto ShutdownTimeout = 10s;

struct Options
{
    QString library;
    QString data;
    QHostAddress address;
    quint16 port = 0;
    bool jsonLog = false;
};

Options openFolders(const std::string &library, const std::string &data)
{
    Options options;
    const QFileInfo folder(QFile::decodeName(library.c_str()));
    options.library = folder.canonicalFilePath();
    if (!folder.isDir() || !folder.isReadable())
        throw StorageError("can't read the library folder "_L1 + folder.filePath());
    options.data = data.empty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                                : QFile::decodeName(data.c_str());
    options.data = QDir(options.data).absolutePath();
    if (!QDir().mkpath(options.data) || access(QFile::encodeName(options.data).constData(), W_OK | X_OK) != 0)
        throw StorageError("can't write to the data folder "_L1 + options.data);
    return options;
}

// Locks the data folder for this process. The file stays open, so that the kernel releases the lock when the process
// ends. flock(), not QLockFile: after a crash another process may have the stored pid.
void lock(const QString &data)
{
    const int file = open(QFile::encodeName(data + "/lock"_L1).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
    if (file == -1)
        throw StorageError("can't write to the data folder "_L1 + data);
    if (flock(file, LOCK_EX | LOCK_NB) != 0) {
        throw StorageError((errno == EWOULDBLOCK ? "another service is using the data folder "_L1
                                                 : "can't lock the data folder "_L1)
                           + data);
    }
}

// The lambdas in run() capture its locals by reference: no event loop runs after it returns.
// clazy:excludeall=lambda-in-connect
int run(QCoreApplication &application, const Options &options)
{
    lock(options.data);
    const Certificates certificates(options.data, options.address);
    auto *listener = new HttpsListener(certificates.prepare());
    listener->setParent(&application); // until LyricApi::bind() takes ownership
    if (!listener->listen(options.address, options.port)) {
        throw std::runtime_error(("can't listen on "_L1 + options.address.toString() + " port "_L1
                                  + QString::number(options.port) + ": "_L1 + listener->errorString())
                                     .toStdString());
    }
    listener->pauseAccepting(); // clients wait until the first scan is complete

    const QString indexFile = options.data + "/index.sqlite"_L1;
    std::unique_ptr<SongIndex> index;
    std::unique_ptr<LyricApi> api;
    QThread scannerThread;
    auto *scanner = new LibraryScanner(options.library, indexFile);
    scanner->moveToThread(&scannerThread);
    QObject::connect(&scannerThread, &QThread::started, scanner, &LibraryScanner::start);
    QObject::connect(&scannerThread, &QThread::finished, scanner, &QObject::deleteLater);
    const auto fail = [&application](const QString &reason) {
        qCritical("%s", qPrintable(reason));
        application.exit(CannotStart);
    };
    QObject::connect(scanner, &LibraryScanner::failed, &application, fail);
    QObject::connect(scanner, &LibraryScanner::ready, &application, [&] {
        try {
            index = std::make_unique<SongIndex>(indexFile);
        } catch (const StorageError &error) {
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
        } catch (const StorageError &error) {
            qWarning("can't renew the certificate: %s", error.what());
        }
    });
    renewal.start(24h);

    QObject::connect(listener, &HttpsListener::finished, &application, &QCoreApplication::quit);
    signal(SIGPIPE, SIG_IGN); // the reader of standard output may exit first
    handleUnixSignals({SIGTERM, SIGINT}, &application, [&] {
        scannerThread.requestInterruption();
        listener->finish();
        QTimer::singleShot(ShutdownTimeout, &application, &QCoreApplication::quit);
    });
    scannerThread.start();
    const int status = QCoreApplication::exec();
    scannerThread.requestInterruption();
    scannerThread.quit();
    scannerThread.wait();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    umask(S_IRWXG | S_IRWXO); // only the owner may read the data folder
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
    cli.add_option("--port", port, "The port to listen on. 0 selects a free one.")
        ->type_name("N")
        ->capture_default_str();
    cli.add_option("--data", data, "The folder for the song index and certificates.")->type_name("DIR");
    cli.add_option("--address", address, "The IP address to listen on.")
        ->type_name("A")
        ->capture_default_str()
        ->check([](const std::string &text) {
            return QHostAddress(QString::fromStdString(text)).isNull() ? "not an IP address: " + text
                                                                       : std::string();
        });
    cli.add_flag("--json-log", jsonLog, "Log each request to standard output as one line of JSON.");
    try {
        cli.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return cli.exit(error) == 0 ? Done : WrongUsage;
    }

    try {
        Options options = openFolders(library, data);
        options.address = QHostAddress(QString::fromStdString(address));
        options.port = port;
        options.jsonLog = jsonLog;
        return run(application, options);
    } catch (const std::exception &error) {
        qCritical("%s", error.what());
        return CannotStart;
    }
}
