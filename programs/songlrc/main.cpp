// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "ArgumentParser.h"
#include "programs/common/FileError.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A file that is opened must not get the number of a standard stream that the caller closed. A read or write of the
// replacement fails like one of the closed stream.
void occupyClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1)
            (void)!open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char **argv)
{
    occupyClosedStreams();
    std::signal(SIGPIPE, SIG_IGN); // a pipe that is closed is an error like a full disk
    Options options;
    try {
        ExitStatus status = Done;
        const Command command = ArgumentParser().parse(argc, argv, options, status);
        return command ? command(options) : status;
    } catch (const StandardOutputError &error) {
        report(error.what());
    } catch (const std::exception &error) {
        try {
            reportFailure(error, options.json);
        } catch (const StandardOutputError &outputError) {
            report(outputError.what());
        }
    }
    return Failed;
}
