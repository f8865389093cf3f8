#ifndef FAMILIES_H
#define FAMILIES_H

#include <QtCore/QStringList>

namespace profile
{
// The families of fonts that this machine has, as fontconfig knows them, in order.
QStringList installedFamilies();
} // namespace profile

#endif
