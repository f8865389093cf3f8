// velmora-profile: see, check, repair and convert a profile.

#include "tools/velmora-profile/Command.h"
#include "tools/velmora-profile/Console.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

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
} // namespace

int main(int argc, char **argv)
{
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
