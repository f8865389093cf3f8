// velmora-profile: see, check, repair and convert a profile.

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

namespace
{
// Names of files and arguments are UTF-8 even where the environment names no locale at all.
void speakUtf8()
{
    setlocale(LC_CTYPE, "");
    if (strcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        setenv("LC_ALL", "C.UTF-8", 1);
        setlocale(LC_CTYPE, "C.UTF-8");
    }
}

// A file that is opened must not take the place of a stream that is closed: what is written to the
// stream would go into it. Streams get what can be neither read nor written, for the tool to
// notice.
void fillClosedStreams()
{
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}
} // namespace

int main(int argc, char **argv)
{
    fillClosedStreams();
    speakUtf8();
    const QCoreApplication application(argc, argv);
    const int status = profile::runCommand(QCoreApplication::arguments().mid(1));
    // What the stores have put off is released while there is still an application.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // Also what was refused before, in the middle of a long list.
    if (fflush(stdout) != 0 || ferror(stdout) != 0) {
        return profile::fail(
            profile::text("standard output cannot be written to; look at the space "
                          "of what it goes to"));
    }
    return status;
}
