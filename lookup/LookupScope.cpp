// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupScope.h"

#include <QCoreApplication>

#include <thread>
#include <utility>

namespace QVSongLrcPrivate {
namespace {

LookupScope *theScope = nullptr;

/// Reads one reply on a thread of its own. Completions are called and destroyed on the main thread only.
class ReplyJob final : public QObject
{
public:
    ReplyJob(LookupScope::Read read, LookupScope::Done done, QObject *parent)
        : QObject(parent)
        , m_done(std::move(done))
        , m_thread([this, read = std::move(read)](const std::stop_token &stop) {
            m_result = read(stop);
            QMetaObject::invokeMethod(this, &ReplyJob::deliver, Qt::QueuedConnection);
        })
    {
    }

private:
    void deliver()
    {
        m_thread.join();
        const LookupScope::Done done = std::move(m_done);
        const LookupResult result = std::move(m_result);
        deleteLater();
        done(result); // may delete this object
    }

    LookupScope::Done m_done;
    LookupResult m_result; // belongs to the thread until that is joined
    std::jthread m_thread; // the last member: joined before the others are destroyed
};

} // namespace

LookupScope &LookupScope::instance()
{
    if (!theScope) {
        theScope = new LookupScope;
        // Transfers and threads need the application object, which still exists when a post routine runs.
        qAddPostRoutine([] { delete std::exchange(theScope, nullptr); });
    }
    return *theScope;
}

void LookupScope::compute(Read read, Done done)
{
    new ReplyJob(std::move(read), std::move(done), this);
}

} // namespace QVSongLrcPrivate
