// check: what is wrong, what it means and what to do.

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Findings.h"

namespace
{
using namespace profile;

// What cannot be read cannot be found clean.
bool isReadable()
{
    for (const DocumentType &type : documentTypes()) {
        if (Document(type.kind, text(kProfileFolder)).state() == Document::Unreadable) {
            return false;
        }
    }
    return readCookieFile(text(kProfileFolder)).state != Document::Unreadable;
}

int check(const Call &call)
{
    const QList<Finding> findings = findingsOf(text(kProfileFolder));
    if (call.has("json")) {
        sayJson(toJson(findings));
    } else {
        sayBytes(toText(findings).toUtf8());
        say(findings.isEmpty() ? text("nothing is wrong")
                               : counted(findings.size(), "finding", "findings"));
    }
    if (!isReadable()) {
        return Failed;
    }
    return findings.isEmpty() ? Done : Differs;
}
} // namespace

namespace profile
{
QList<Command> checkCommands()
{
    return {
        {"check", nullptr, "DIR", 0, 0, "json", "what is wrong, what it means and what to do",
         Reads, check},
    };
}
} // namespace profile
