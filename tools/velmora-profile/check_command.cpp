// check: what is wrong, what it means and what to do.

#include "tools/velmora-profile/Command.h"
#include "tools/velmora-profile/Console.h"
#include "tools/velmora-profile/Document.h"
#include "tools/velmora-profile/Findings.h"
#include "tools/velmora-profile/Table.h"

int profile::check(const Call &call)
{
    const QList<Finding> findings = findingsOf(text(kHere));
    if (call.has("json")) {
        sayJson(toJson(findings));
    } else {
        sayBytes(toText(findings).toUtf8());
        say(findings.isEmpty() ? text("nothing is wrong")
                               : counted(findings.size(), "finding", "findings"));
    }
    return findings.isEmpty() ? Done : Differs;
}
