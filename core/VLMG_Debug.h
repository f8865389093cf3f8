#ifndef VLMG_DEBUG_H
#define VLMG_DEBUG_H

#include "core/VLM_Export.h"

/**
 * @file
 * The diagnostics log. Every class of the library reports to it; the browser may do so too.
 *
 * A message goes to two sinks. The log file /ata07/Velmora/tmp/brwlog.log gets the messages that
 * ul_outputLevel admits, whole, as lines "[Velmora]<message>"; it is opened and closed for each
 * line and its folder is never created. The device's system log gets every message while
 * g_uc_SystemLogLevel is not zero, cut to 127 bytes. If the file cannot be opened for a message,
 * the system log does not get it either.
 *
 * All functions may be called from any thread, from static initialisers that run after the
 * library's own, and during process exit. Nothing is ever reported back and nothing is thrown.
 */

/// Levels as the library uses them: only the comparison with ul_outputLevel gives them meaning.
enum VLMG_LogLevel {
    VLMG_LogError = 1,   ///< null nodes, failed file operations, internal inconsistencies
    VLMG_LogWarning = 2, ///< refused arguments, missing paths, limits
    VLMG_LogTrace = 3    ///< start and end of operations, counts
};

/// File output level. 0 switches the log file off; otherwise levels up to this one are written.
extern VLM_EXPORT unsigned long ul_outputLevel;

/// System log switch. Not zero: every message, whatever its level, goes to the system log.
/// Initially 1; the library never changes it.
extern VLM_EXPORT unsigned char g_uc_SystemLogLevel;

/// Logs one message, formatted as by printf. A null or empty format logs nothing.
VLM_EXPORT void VLMG_DebugPrint(unsigned long level, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

/// Stores level into ul_outputLevel.
VLM_EXPORT void VLMG_DebugSetLogLevel(unsigned long level);

/// Calls the platform's LIBF_AttachMemory and returns its result.
VLM_EXPORT int VLMG_DebugAttachMemory();

/// Calls the platform's LIBF_SetSignalHandler01 with 0xFFFF, then LIBF_SetApiSignalInfoNonSave
/// with 1, and returns the result of the second call.
VLM_EXPORT int VLMG_SetSignalHandler01();

#endif
