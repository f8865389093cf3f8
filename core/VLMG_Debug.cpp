#include "core/VLMG_Debug.h"

#include "core/StaticInit_p.h"
#include "platform/libf.h"

#include <QtCore/QSemaphore>

#include <cstdarg>
#include <cstdio>

unsigned long ul_outputLevel;
unsigned char g_uc_SystemLogLevel = 1;

namespace
{
const char kLogFile[] = "/ata07/Velmora/tmp/brwlog.log";
const char kTag[] = "[Velmora]";

// Bytes of the system log's text, its terminating zero included; the buffer has one more.
const size_t kSystemLogBytes = 128;

QSemaphore logSemaphore VLM_INIT_PRIORITY(VLM_INIT_LOG)(1);

// Serialises opening, appending and closing between threads.
class LogFileTurn
{
public:
    LogFileTurn() { logSemaphore.acquire(); }
    ~LogFileTurn() { logSemaphore.release(); }
    LogFileTurn(const LogFileTurn &) = delete;
    LogFileTurn &operator=(const LogFileTurn &) = delete;
};

bool appendToLogFile(const char *format, va_list arguments)
{
    const LogFileTurn turn;
    FILE *const file = fopen(kLogFile, "a");
    if (!file) {
        return false;
    }
    fwrite(kTag, 1, sizeof kTag - 1, file);
    vfprintf(file, format, arguments);
    fputc('\n', file);
    fclose(file);
    return true;
}

void writeToSystemLog(const char *format, va_list arguments)
{
    char text[kSystemLogBytes + 1] = {};
    vsnprintf(text, kSystemLogBytes, format, arguments);
    unsigned short value = 0xFFFF;
    LIBF_WriteSystemLog(1, 1, 255, text, &value);
}
} // namespace

void VLMG_DebugPrint(unsigned long level, const char *format, ...)
{
    if (!format || !*format) {
        return;
    }
    if (ul_outputLevel != 0 && ul_outputLevel >= level) {
        va_list arguments;
        va_start(arguments, format);
        const bool written = appendToLogFile(format, arguments);
        va_end(arguments);
        // A message that the file refuses does not reach the system log either.
        if (!written) {
            return;
        }
    }
    if (g_uc_SystemLogLevel != 0) {
        va_list arguments;
        va_start(arguments, format);
        writeToSystemLog(format, arguments);
        va_end(arguments);
    }
}

void VLMG_DebugSetLogLevel(unsigned long level) { ul_outputLevel = level; }

int VLMG_DebugAttachMemory() { return LIBF_AttachMemory(); }

int VLMG_SetSignalHandler01()
{
    LIBF_SetSignalHandler01(0xFFFF);
    return LIBF_SetApiSignalInfoNonSave(1);
}
