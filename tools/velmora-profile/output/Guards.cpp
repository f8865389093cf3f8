#include "tools/velmora-profile/output/Guards.h"

#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QtGlobal>

#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{
const int kSecondsForReading = 10;

// A handler may call little, and nothing that could wait for the code it interrupts.
void endTool(int)
{
    const char kLine[] = "velmora-profile: reading the file takes too long; nothing was changed, "
                         "look at what it is\n";
    const ssize_t written = write(STDERR_FILENO, kLine, sizeof kLine - 1);
    Q_UNUSED(written)
    _exit(profile::Failed);
}

// The processor's time, not the clock's: a busy machine is no reason to give up. 0 stops it.
void startTimer(int seconds)
{
    itimerval time = {{0, 0}, {seconds, 0}};
    setitimer(ITIMER_VIRTUAL, &time, nullptr);
}
} // namespace

profile::Deadline::Deadline()
{
    signal(SIGVTALRM, endTool);
    startTimer(kSecondsForReading);
}

profile::Deadline::~Deadline() { startTimer(0); }

sigset_t profile::interruptions()
{
    sigset_t signalSet;
    sigemptyset(&signalSet);
    sigaddset(&signalSet, SIGINT);
    sigaddset(&signalSet, SIGTERM);
    sigaddset(&signalSet, SIGHUP);
    return signalSet;
}

profile::Uninterrupted::Uninterrupted() : m_before()
{
    sigset_t waiting = interruptions();
    // What the tool has put aside, sessions among it, is to be gone before it ends.
    sigaddset(&waiting, SIGPIPE);
    sigprocmask(SIG_BLOCK, &waiting, &m_before);
}

profile::Uninterrupted::~Uninterrupted() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }

profile::OwnerOnly::OwnerOnly() : m_before(umask(S_IRWXG | S_IRWXO)) {}

profile::OwnerOnly::~OwnerOnly() { umask(mode_t(m_before)); }
