// Run by tst_StaticInit: logs from the start of the process to its end. The log file is the one
// named by the environment, the system log is the standard output.

#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "fonts/VLMC_FontListSetting.h"
#include "platform/libf.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

void useStaticInitLibrary();

// Both may be called before anything of this program is initialised and after all of it is gone.
int LIBF_WriteSystemLog(int, int, int, const char *text, unsigned short *)
{
    char line[256];
    const int size = snprintf(line, sizeof line, "%s\n", text);
    return write(STDOUT_FILENO, line, size_t(size)) == size ? 0 : -1;
}

extern "C" __attribute__((visibility("default"))) FILE *fopen(const char *path, const char *mode)
{
    typedef FILE *(*Open)(const char *, const char *);
    const Open open = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "fopen"));
    if (strcmp(path, "/ata07/Velmora/tmp/brwlog.log") == 0) {
        return open(getenv("STATIC_INIT_LOG"), mode);
    }
    return open(path, mode);
}

namespace
{
struct LoggingObject {
    LoggingObject() { VLMG_DebugPrint(VLMG_LogTrace, "program: initialised"); }
    ~LoggingObject() { VLMG_DebugPrint(VLMG_LogTrace, "program: destroyed"); }
};

const LoggingObject loggingObject;

void atExit() { VLMG_DebugPrint(VLMG_LogTrace, "program: exits"); }
} // namespace

int main()
{
    useStaticInitLibrary();
    VLMG_DebugPrint(VLMG_LogTrace, "program: runs");
    VLMC_FontListSetting::getInstance();
    atexit(atExit);
    return 0;
}
