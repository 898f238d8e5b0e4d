// SPDX-License-Identifier: MIT
#include "LookupScope.h"

#include <QCoreApplication>
#include <QPointer>

namespace QVSongLrcPrivate {
namespace {

QPointer<LookupScope> theScope;

/// Takes an answer to the main thread, where what is to be done with it lives and dies.
class Handover final : public QObject
{
public:
    Handover(LookupScope::Done done, QObject *parent)
        : QObject(parent)
        , m_done(std::move(done))
    {
    }

    void deliver(const LyricAnswer &answer)
    {
        const LookupScope::Done done = std::move(m_done);
        deleteLater();
        done(answer); // in which this may go, so nothing here is touched afterwards
    }

private:
    LookupScope::Done m_done;
};

} // namespace

LookupScope &LookupScope::instance()
{
    if (!theScope) {
        theScope = new LookupScope;
        // Still before the application object goes, which replies and threads cannot do without.
        qAddPostRoutine([] { delete theScope; });
    }
    return *theScope;
}

LookupScope::~LookupScope()
{
    m_stop.request_stop();
    m_threads.waitForDone();
}

void LookupScope::compute(Read read, Done done)
{
    auto *const handover = new Handover(std::move(done), this); // outlives the thread, which the scope awaits
    m_threads.start([read = std::move(read), stop = m_stop.get_token(), handover] {
        QMetaObject::invokeMethod(
            handover, [handover, answer = read(stop)] { handover->deliver(answer); }, Qt::QueuedConnection);
    });
}

} // namespace QVSongLrcPrivate
