// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>

class QObject;

/// Calls \p handler in the event loop of the calling thread for every signal of \p signals that arrives, as long
/// as \p context lives. For once in a program.
void handleUnixSignals(std::initializer_list<int> signals, QObject *context, std::function<void()> handler);
