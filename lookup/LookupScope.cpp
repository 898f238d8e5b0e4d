// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "LookupScope.h"

#include <QCoreApplication>

#include <thread>
#include <utility>

namespace QVSongLrcPrivate {
namespace {

LookupScope *theScope = nullptr;

/// Reads one reply on a thread of its own and hands what it says to the main thread, where what is to be done
/// with that lives and dies.
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
        const LyricAnswer answer = std::move(m_answer);
        deleteLater();
        done(answer); // in which this may go, so nothing here is touched afterwards
    }

    LookupScope::Done m_done;
    LyricAnswer m_answer;  // the thread's, until that has been joined
    std::jthread m_thread; // the last, so that it is stopped and joined before the others go
};

} // namespace

LookupScope &LookupScope::instance()
{
    if (!theScope) {
        theScope = new LookupScope;
        // Still before the application object goes, which replies and threads cannot do without.
        qAddPostRoutine([] { delete std::exchange(theScope, nullptr); });
    }
    return *theScope;
}

void LookupScope::compute(Read read, Done done)
{
    new Reading(std::move(read), std::move(done), this);
}

} // namespace QVSongLrcPrivate
