#ifndef TOOLS_VELMORA_PROFILE_COMMANDS_LOSSES_H
#define TOOLS_VELMORA_PROFILE_COMMANDS_LOSSES_H

#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/formats/Formats.h"

#include <QtCore/QJsonArray>

// What a command could not carry, and what it says of that.
namespace profile
{
// Says what could not be carried, each on a line of standard error.
void sayLosses(const QList<Loss> &losses);
QJsonArray toJson(const QList<Loss> &losses);

// Says them too, unless the command prints JSON, which has them. With --strict any loss is an
// error: says so and gives Failed, otherwise Done.
int tellLosses(const Call &call, const QList<Loss> &losses);

// "was", "were" or, on a dry run, "would be".
QString imported(const Call &call, int added);
} // namespace profile

#endif
