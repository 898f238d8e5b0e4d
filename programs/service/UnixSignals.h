// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>

class QObject;

/// Calls \p handler from the event loop of the calling thread for each arrival of one of \p signals, until \p context
/// is destroyed. Call it once per process.
void handleUnixSignals(std::initializer_list<int> signals, QObject *context, std::function<void()> handler);
