#ifndef TOOLS_VELMORA_PROFILE_COMMANDS_REMOVAL_H
#define TOOLS_VELMORA_PROFILE_COMMANDS_REMOVAL_H

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/profile/DocumentType.h"

namespace profile
{
// Removes the entries that the operands name by their ids from the store, which is loaded, and
// saves it. Failed, and said so, when an operand is no id or the save fails.
int removeEntries(const Call &call, DocumentKind kind, void (*remove)(int id));
} // namespace profile

#endif
