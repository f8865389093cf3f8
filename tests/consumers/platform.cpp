// A platform library as a device brings it: every message of the system log goes to the output.

#include "platform/libf.h"

#include <stdio.h>

int LIBF_WriteSystemLog(int, int, int, const char *text, unsigned short *)
{
    puts(text);
    return 0;
}

int LIBF_AttachMemory(void) { return 7; }

int LIBF_SetSignalHandler01(int) { return 8; }

int LIBF_SetApiSignalInfoNonSave(int) { return 9; }
