#include "tests/support/SystemCalls.h"

#include "tests/support/Interposed.h"

#include <QtCore/QMap>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
struct Watch {
    FaultPlan plan;
    CallProbe probe;
    QList<SystemCall> calls;
    QMap<int, QByteArray> names;
};

Watch &watch()
{
    // Never destroyed: files are closed while the process exits.
    static Watch *const instance = new Watch{{FaultPlan::None, 0, 0}, {}, {}, {}};
    return *instance;
}

thread_local bool watching = false;

void die() { kill(getpid(), SIGKILL); }

// One watched call: records it, and says what is to happen to it.
class Step
{
public:
    Step(const char *name, const QByteArray &file, const QByteArray &data = QByteArray(),
         int flags = 0, int mode = 0)
        : m_watched(watching), m_index(int(watch().calls.size()))
    {
        if (m_watched) {
            // What recording itself calls is not watched.
            watching = false;
            const SystemCall call = {name, file, data, flags, mode};
            watch().calls.append(call);
            if (watch().probe) {
                watch().probe(call);
            }
            watching = true;
        }
        if (isDue(FaultPlan::KillBefore)) {
            die();
        }
    }
    ~Step()
    {
        const int error = errno;
        if (isDue(FaultPlan::KillAfter)) {
            die();
        }
        errno = error;
    }
    Step(const Step &) = delete;
    Step &operator=(const Step &) = delete;

    bool fails() const
    {
        const FaultPlan &plan = watch().plan;
        const bool failing =
            isDue(FaultPlan::Fail)
            || (m_watched && plan.kind == FaultPlan::FailFromHere && m_index >= plan.index);
        if (failing) {
            errno = plan.error;
        }
        return failing;
    }
    bool isDue(FaultPlan::Kind kind) const
    {
        return m_watched && watch().plan.kind == kind && watch().plan.index == m_index;
    }

private:
    bool m_watched;
    int m_index;
};

QByteArray nameOf(int file) { return watching ? watch().names.value(file) : QByteArray(); }

bool takesMode(int flags) { return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE; }

int opened(const char *name, int flags, mode_t mode)
{
    static const auto call = behind(&open);
    if (!watching) {
        return call(name, flags, mode);
    }
    const Step step(takesMode(flags) ? "create" : "open", name, QByteArray(), flags, int(mode));
    if (step.fails()) {
        return -1;
    }
    const int file = call(name, flags, mode);
    if (file >= 0) {
        watch().names[file] = name;
    }
    return file;
}
} // namespace

WatchedCalls::WatchedCalls()
{
    watch().calls.clear();
    watch().names.clear();
    watching = true;
}

WatchedCalls::~WatchedCalls() { watching = false; }

void setFaultPlan(const FaultPlan &plan) { watch().plan = plan; }

void setCallProbe(const CallProbe &probe) { watch().probe = probe; }

QList<SystemCall> watchedCalls() { return watch().calls; }

INTERPOSED int open(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_t(takesMode(flags) ? va_arg(arguments, int) : 0);
    va_end(arguments);
    return opened(name, flags, mode);
}

INTERPOSED ssize_t write(int file, const void *data, size_t size)
{
    static const auto call = real<ssize_t (*)(int, const void *, size_t)>("write");
    if (!watching) {
        return call(file, data, size);
    }
    const Step step("write", nameOf(file), QByteArray(static_cast<const char *>(data), int(size)));
    if (step.fails()) {
        return -1;
    }
    const bool dies = step.isDue(FaultPlan::KillAmid);
    const bool halved = dies || step.isDue(FaultPlan::ShortWrite);
    const ssize_t written = call(file, data, halved ? (size + 1) / 2 : size);
    if (dies) {
        die();
    }
    return written;
}

// The descriptor is gone whatever close() says.
INTERPOSED int close(int file)
{
    static const auto call = real<int (*)(int)>("close");
    if (!watching) {
        return call(file);
    }
    const Step step("close", nameOf(file));
    const int result = call(file);
    return step.fails() ? -1 : result;
}

INTERPOSED int rename(const char *from, const char *to) noexcept
{
    static const auto call = real<int (*)(const char *, const char *)>("rename");
    const Step step("rename", from, to);
    return step.fails() ? -1 : call(from, to);
}

INTERPOSED int linkat(int fromFolder, const char *from, int toFolder, const char *to,
                      int flags) noexcept
{
    static const auto call = real<int (*)(int, const char *, int, const char *, int)>("linkat");
    const Step step("linkat", from, to);
    return step.fails() ? -1 : call(fromFolder, from, toFolder, to, flags);
}

INTERPOSED int unlink(const char *name) noexcept
{
    static const auto call = real<int (*)(const char *)>("unlink");
    const Step step("unlink", name);
    return step.fails() ? -1 : call(name);
}

INTERPOSED int fdatasync(int file)
{
    static const auto call = real<int (*)(int)>("fdatasync");
    const Step step("fdatasync", nameOf(file));
    return step.fails() ? -1 : call(file);
}

INTERPOSED int fsync(int file)
{
    static const auto call = real<int (*)(int)>("fsync");
    const Step step("fsync", nameOf(file));
    return step.fails() ? -1 : call(file);
}

INTERPOSED int fchmod(int file, mode_t mode) noexcept
{
    static const auto call = real<int (*)(int, mode_t)>("fchmod");
    const Step step("fchmod", nameOf(file));
    return step.fails() ? -1 : call(file, mode);
}

INTERPOSED int fchown(int file, uid_t user, gid_t group) noexcept
{
    static const auto call = real<int (*)(int, uid_t, gid_t)>("fchown");
    const Step step("fchown", nameOf(file));
    return step.fails() ? -1 : call(file, user, group);
}

INTERPOSED int flock(int file, int operation) noexcept
{
    static const auto call = real<int (*)(int, int)>("flock");
    const Step step("flock", nameOf(file));
    return step.fails() ? -1 : call(file, operation);
}

INTERPOSED DIR *opendir(const char *name)
{
    static const auto call = real<DIR *(*)(const char *)>("opendir");
    const Step step("opendir", name);
    return step.fails() ? nullptr : call(name);
}

INTERPOSED dirent *readdir(DIR *entries)
{
    static const auto call = behind(&readdir);
    const Step step("readdir", QByteArray());
    return step.fails() ? nullptr : call(entries);
}

INTERPOSED int lstat(const char *name, struct stat *status) noexcept
{
    static const auto call = behind(&lstat);
    const Step step("lstat", name);
    return step.fails() ? -1 : call(name, status);
}

INTERPOSED ssize_t readlink(const char *name, char *target, size_t size) noexcept
{
    static const auto call = real<ssize_t (*)(const char *, char *, size_t)>("readlink");
    const Step step("readlink", name);
    return step.fails() ? -1 : call(name, target, size);
}

INTERPOSED int fstat(int file, struct stat *status) noexcept
{
    static const auto call = behind(&fstat);
    const Step step("fstat", nameOf(file));
    return step.fails() ? -1 : call(file, status);
}

// Every command in use takes a number or nothing.
INTERPOSED int fcntl(int file, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    const long argument = va_arg(arguments, long);
    va_end(arguments);
    static const auto call = behind(&fcntl);
    if (!watching) {
        return call(file, command, argument);
    }
    const Step step("fcntl", nameOf(file));
    const int result = step.fails() ? -1 : call(file, command, argument);
    if (result >= 0 && command == F_DUPFD_CLOEXEC) {
        watch().names[result] = watch().names.value(file);
    }
    return result;
}

INTERPOSED int ftruncate(int file, off_t size) noexcept
{
    static const auto call = behind(&ftruncate);
    const Step step("ftruncate", nameOf(file));
    return step.fails() ? -1 : call(file, size);
}

INTERPOSED ssize_t flistxattr(int file, char *names, size_t size) noexcept
{
    static const auto call = real<ssize_t (*)(int, char *, size_t)>("flistxattr");
    const Step step("flistxattr", nameOf(file));
    return step.fails() ? -1 : call(file, names, size);
}

INTERPOSED ssize_t fgetxattr(int file, const char *name, void *value, size_t size) noexcept
{
    static const auto call = real<ssize_t (*)(int, const char *, void *, size_t)>("fgetxattr");
    const Step step("fgetxattr", nameOf(file));
    return step.fails() ? -1 : call(file, name, value, size);
}

INTERPOSED int fsetxattr(int file, const char *name, const void *value, size_t size,
                         int flags) noexcept
{
    static const auto call =
        real<int (*)(int, const char *, const void *, size_t, int)>("fsetxattr");
    const Step step("fsetxattr", nameOf(file));
    return step.fails() ? -1 : call(file, name, value, size, flags);
}
