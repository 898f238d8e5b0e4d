// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "AnswerReader.h"

#include <QObject>

#include <functional>
#include <stop_token>

namespace QVSongLrcPrivate {

/// What the lookup does in the background, which ends with the application object: transfers are its
/// children, and so are the threads that read replies. Use from the main thread.
class LookupScope final : public QObject
{
public:
    static LookupScope &instance();

    using Read = std::function<LyricAnswer(const std::stop_token &)>;
    using Done = std::function<void(const LyricAnswer &)>;

    /// Runs \p read, which holds values only, on another thread, then \p done with its answer from the event
    /// loop. When the application ends before that, \p read is told to stop and \p done dropped.
    void compute(Read read, Done done);

private:
    LookupScope() = default;
};

} // namespace QVSongLrcPrivate
