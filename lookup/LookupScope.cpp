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
class Reading final : public QObject
{
public:
    Reading(LookupScope::Read read, LookupScope::Done done, QObject *parent)
        : QObject(parent)
        , m_done(std::move(done))
        , m_thread([this, read = std::move(read)](const std::stop_token &stop) {
            m_answer = read(stop);
            QMetaObject::invokeMethod(this, &Reading::deliver, Qt::QueuedConnection);
        })
    {
    }

private:
    void deliver()
    {
        m_thread.join();
        const LookupScope::Done done = std::move(m_done);
        const LookupResult answer = std::move(m_answer);
        deleteLater();
        done(answer); // may delete this object
    }

    LookupScope::Done m_done;
    LookupResult m_answer; // belongs to the thread until that is joined
    std::jthread m_thread; // the last member: joined before the others are destroyed
};

} // namespace

LookupScope &LookupScope::instance()
{
    if (!theScope) {
        theScope = new LookupScope;
        // Transfers and threads need the application object; a post routine runs before that is gone.
        qAddPostRoutine([] { delete std::exchange(theScope, nullptr); });
    }
    return *theScope;
}

void LookupScope::compute(Read read, Done done)
{
    new Reading(std::move(read), std::move(done), this);
}

} // namespace QVSongLrcPrivate
