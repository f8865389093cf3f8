#ifndef TOOLS_VELMORA_PROFILE_PROFILE_FAMILIES_H
#define TOOLS_VELMORA_PROFILE_PROFILE_FAMILIES_H

#include <QtCore/QStringList>

namespace profile
{
// The families of fonts that this machine has, as fontconfig knows them, in order.
QStringList installedFamilies();
} // namespace profile

#endif
