#ifndef PROFILE_FAMILIES_H
#define PROFILE_FAMILIES_H

#include <QtCore/QStringList>

namespace profile
{
// The families of fonts that this machine has, as fontconfig knows them, in order.
QStringList installedFamilies();
} // namespace profile

#endif
