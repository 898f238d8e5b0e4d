// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QVSongLrc/QVSongLrcGlobal.h>

/// A request that has been started. Its owner can cancel it; deleting the task leaves the request running.
/// Use from the main thread.
class QVSONGLRC_LOOKUP_EXPORT QVLyricDataTask
{
public:
    QVLyricDataTask() = default;
    QVLyricDataTask(const QVLyricDataTask &) = delete;
    QVLyricDataTask &operator=(const QVLyricDataTask &) = delete;
    virtual ~QVLyricDataTask();

    /// Stops the request, which then fails with QVLyricError::Cancelled, from the event loop. Does nothing
    /// once the whole reply has arrived or the request has failed.
    virtual void cancel() = 0;
};
