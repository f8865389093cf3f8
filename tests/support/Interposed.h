#ifndef INTERPOSED_H
#define INTERPOSED_H

#include <dlfcn.h>

/// A definition that takes the place of the system library's.
#define INTERPOSED extern "C" __attribute__((visibility("default")))

/// The next symbol of this name behind the one in the program.
template <typename Function>
Function real(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// The function that one of ours stands before, by the name under which the headers have it: where
/// files may be large, that is another one.
template <typename Function>
Function *behind(Function *own)
{
    Dl_info info = {};
    dladdr(reinterpret_cast<void *>(own), &info);
    return real<Function *>(info.dli_sname);
}

#endif
