// A library that uses the settings library from its own static initialisers and destructors.

#include "core/QEXC_TextCodec.h"
#include "core/VLMG_Debug.h"

namespace
{
struct LoggingObject {
    LoggingObject()
    {
        VLMG_DebugSetLogLevel(VLMG_LogTrace);
        const bool converted =
            QEXC_TextCodec::fromSJIS("\x82\xa0") == QString::fromUtf8("\xe3\x81\x82");
        VLMG_DebugPrint(VLMG_LogTrace, "library: initialised, %s",
                        converted ? "text converted" : "no text codec");
    }
    ~LoggingObject() { VLMG_DebugPrint(VLMG_LogTrace, "library: destroyed"); }
};

const LoggingObject loggingObject;
} // namespace

// Called by the program only to be linked.
__attribute__((visibility("default"))) void useStaticInitLibrary() {}
