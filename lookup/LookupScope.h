// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ReplyReader.h"

#include <QObject>

#include <functional>
#include <stop_token>

namespace QVSongLrcPrivate {

/// The parent of everything that the lookup does in the background: transfers, and threads that read replies.
/// Destroyed with the application object. Use from the main thread.
class LookupScope final : public QObject
{
public:
    static LookupScope &instance();

    using Read = std::function<LookupResult(const std::stop_token &)>;
    using Done = std::function<void(const LookupResult &)>;

    /// Calls \p read on another thread, then \p done with its result from the event loop. When the application
    /// object is destroyed before that, \p read gets a stop request and \p done is not called. \p read must not
    /// hold references to objects of the main thread.
    void compute(Read read, Done done);

private:
    LookupScope() = default;
};

} // namespace QVSongLrcPrivate
