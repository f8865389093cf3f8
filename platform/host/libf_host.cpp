#include "platform/libf.h"

#include <syslog.h>

// The device's log is a diagnostics channel without priorities of its own.
int LIBF_WriteSystemLog(int, int, int, const char *text, unsigned short *)
{
    syslog(LOG_USER | LOG_DEBUG, "%s", text);
    return 0;
}

int LIBF_AttachMemory(void) { return 0; }

int LIBF_SetSignalHandler01(int) { return 0; }

int LIBF_SetApiSignalInfoNonSave(int) { return 0; }
