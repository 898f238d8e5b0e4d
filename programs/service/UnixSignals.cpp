// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "UnixSignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

int signalPipe[2];

// A signal handler may only call async-signal-safe functions, so it wakes the event loop through a pipe.
void writeToPipe(int)
{
    const char byte = 0;
    [[maybe_unused]] const auto written = write(signalPipe[1], &byte, 1);
}

} // namespace

void handleUnixSignals(std::initializer_list<int> signals, QObject *context, std::function<void()> handler)
{
    if (pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("can't create a pipe");
    auto *const notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, [handler = std::move(handler)] {
        for (char byte = 0; read(signalPipe[0], &byte, 1) == 1;)
            handler();
    });
    struct sigaction action = {};
    action.sa_handler = writeToPipe;
    action.sa_flags = SA_RESTART;
    for (const int signal : signals)
        sigaction(signal, &action, nullptr);
}
