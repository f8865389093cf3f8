#include "core/Refused_p.h"

#include "core/VLMG_Debug.h"

#include <cstdarg>
#include <cstdio>

namespace
{
// Bytes; more than the longest of the library's refusals with its number.
const size_t kMessageBytes = 160;
} // namespace

bool vlm::refused(bool condition, const char *format, ...)
{
    if (!condition) {
        return false;
    }
    char message[kMessageBytes];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    VLMG_DebugPrint(VLMG_LogWarning, "%s", message);
    return true;
}
