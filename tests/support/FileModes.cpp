#include "tests/support/FileModes.h"

#include "tests/support/Interposed.h"

#include <QtCore/QMap>

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
typedef int (*Open)(const char *, int, ...);

struct Watch {
    QList<FileMode> modes;
    QMap<int, QByteArray> names;
};

Watch &watch()
{
    // Never destroyed: files are written while the process exits.
    static Watch *const instance = new Watch;
    return *instance;
}

thread_local bool watching = false;
int syncError = 0;

void note(FileMode::Moment moment, int file)
{
    const int error = errno;
    struct stat status = {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        watch().modes.append({moment, watch().names.value(file), int(status.st_mode & 07777)});
    }
    errno = error;
}

bool createsFile(const char *name, int flags)
{
    const int error = errno;
    const bool creates = (flags & O_TMPFILE) == O_TMPFILE
                         || ((flags & O_CREAT) && access(name, F_OK) != 0 && errno == ENOENT);
    errno = error;
    return creates;
}

int openNoted(Open open, const char *name, int flags, mode_t mode)
{
    if (!watching) {
        return open(name, flags, mode);
    }
    const bool creates = createsFile(name, flags);
    const int file = open(name, flags, mode);
    if (file >= 0) {
        watch().names[file] = name;
    }
    if (file >= 0 && creates) {
        note(FileMode::Created, file);
    }
    return file;
}

bool takesMode(int flags) { return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE; }
} // namespace

WatchedModes::WatchedModes()
{
    watch().modes.clear();
    watch().names.clear();
    watching = true;
}

WatchedModes::~WatchedModes() { watching = false; }

QList<FileMode> watchedModes() { return watch().modes; }

void setSyncError(int error) { syncError = error; }

INTERPOSED int open(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_t(takesMode(flags) ? va_arg(arguments, int) : 0);
    va_end(arguments);
    // The name under which the headers have the function where files may be large, and Qt always.
    static const Open call = real<Open>("open64");
    return openNoted(call, name, flags, mode);
}

INTERPOSED ssize_t write(int file, const void *data, size_t size)
{
    static const auto call = real<ssize_t (*)(int, const void *, size_t)>("write");
    if (watching && watch().names.contains(file)) {
        note(FileMode::Written, file);
    }
    return call(file, data, size);
}

INTERPOSED int fdatasync(int file)
{
    static const auto call = real<int (*)(int)>("fdatasync");
    if (syncError) {
        errno = syncError;
        return -1;
    }
    return call(file);
}
