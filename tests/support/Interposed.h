#ifndef INTERPOSED_H
#define INTERPOSED_H

#include <dlfcn.h>

/// A definition that takes the place of the system library's.
#define INTERPOSED extern "C" __attribute__((visibility("default")))

/// The name in the system's library of a function that takes offsets or numbers of files. On 32-bit
/// systems there are two, and who asks for 64 bits gets the second under the name of the first.
#if defined(_FILE_OFFSET_BITS) && _FILE_OFFSET_BITS == 64
#define FILE_FUNCTION(name) name "64"
#define IS_FILE_FUNCTION_64
#else
#define FILE_FUNCTION(name) name
#endif

/// The next symbol of this name behind the one in the program.
template <typename Function>
Function real(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

#endif
