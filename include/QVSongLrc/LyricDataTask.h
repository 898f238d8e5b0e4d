// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

/// One request that was started. Whoever holds it can cancel it; letting go of it changes nothing.
class LyricDataTask
{
public:
    LyricDataTask() = default;
    LyricDataTask(const LyricDataTask &) = delete;
    LyricDataTask &operator=(const LyricDataTask &) = delete;
    virtual ~LyricDataTask() = default;

    /// Stops the request, which then answers from the event loop with an error that says so. Does nothing
    /// once the reply has arrived in full or the request has failed.
    virtual void cancel() = 0;
};
