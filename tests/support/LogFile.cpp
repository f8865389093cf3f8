#include "tests/support/LogFile.h"

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>

namespace
{
struct Redirection {
    QMutex mutex;
    QByteArray path;
    QList<QByteArray> modes;
};

Redirection &redirection()
{
    // Never destroyed: stores log while the process exits.
    static Redirection *const instance = new Redirection;
    return *instance;
}

FILE *realOpen(const char *path, const char *mode)
{
    typedef FILE *(*Open)(const char *, const char *);
    static const Open open = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "fopen"));
    return open(path, mode);
}
} // namespace

extern "C" __attribute__((visibility("default"))) FILE *fopen(const char *path, const char *mode)
{
    if (strcmp(path, "/ata07/Velmora/tmp/brwlog.log") != 0) {
        return realOpen(path, mode);
    }
    const QMutexLocker locker(&redirection().mutex);
    redirection().modes.append(mode);
    if (redirection().path.isEmpty()) {
        errno = ENOENT;
        return nullptr;
    }
    return realOpen(redirection().path.constData(), mode);
}

void setLogFile(const QByteArray &path)
{
    const QMutexLocker locker(&redirection().mutex);
    redirection().path = path;
}

QList<QByteArray> takeLogFileModes()
{
    const QMutexLocker locker(&redirection().mutex);
    QList<QByteArray> modes;
    modes.swap(redirection().modes);
    return modes;
}
