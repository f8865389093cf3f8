// The functions are meant under their plain names, which the headers of a build for large files
// give to others.
#undef _FILE_OFFSET_BITS
#undef _TIME_BITS

#include "tests/support/NarrowCalls.h"

#include "tests/support/Interposed.h"

#include <cerrno>
#include <cstdarg>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
thread_local bool failing = false;

template <typename Result>
Result overflow(Result result)
{
    errno = EOVERFLOW;
    return result;
}
} // namespace

NarrowCalls::NarrowCalls() { failing = true; }

NarrowCalls::~NarrowCalls() { failing = false; }

INTERPOSED int open(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = mode_t(flags & O_CREAT ? va_arg(arguments, int) : 0);
    va_end(arguments);
    return failing ? overflow(-1) : real<decltype(&open)>("open")(name, flags, mode);
}

INTERPOSED int lstat(const char *name, struct stat *status) noexcept
{
    return failing ? overflow(-1) : real<decltype(&lstat)>("lstat")(name, status);
}

INTERPOSED int fstat(int file, struct stat *status) noexcept
{
    return failing ? overflow(-1) : real<decltype(&fstat)>("fstat")(file, status);
}

INTERPOSED dirent *readdir(DIR *entries)
{
    return failing ? overflow<dirent *>(nullptr) : real<decltype(&readdir)>("readdir")(entries);
}
