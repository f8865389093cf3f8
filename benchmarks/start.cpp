// Prints how long it takes to load the settings library, in nanoseconds, into a process that has
// loaded Qt already: start <library>. Each measurement takes a new process.

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtGui/QImage>
#include <QtNetwork/QNetworkCookie>

#include <cstdio>
#include <dlfcn.h>

int main(int argc, char **argv)
{
    const QCoreApplication browser(argc, argv);
    // Makes the linker keep the two libraries, and the loader bind what a browser has already used.
    const QImage image;
    const QNetworkCookie cookie;
    if (argc != 2 || !image.isNull() || !cookie.name().isEmpty()) {
        return 2;
    }
    QElapsedTimer timer;
    timer.start();
    void *const library = dlopen(argv[1], RTLD_NOW);
    const qint64 elapsed = timer.nsecsElapsed();
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
    printf("%lld\n", (long long)elapsed);
    return 0;
}
