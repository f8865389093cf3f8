// Loaded before the libraries of the browser: its log file is the one that VELMORA_LOG_FILE names,
// and the host's system log is left alone.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

extern "C" __attribute__((visibility("default"))) FILE *fopen(const char *path, const char *mode)
{
    typedef FILE *(*Open)(const char *, const char *);
    static const Open open = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "fopen"));
    const bool isLog = strcmp(path, "/ata07/Velmora/tmp/brwlog.log") == 0;
    return open(isLog ? getenv("VELMORA_LOG_FILE") : path, mode);
}

extern "C" __attribute__((visibility("default"))) int
LIBF_WriteSystemLog(int, int, int, const char *, unsigned short *)
{
    return 0;
}
