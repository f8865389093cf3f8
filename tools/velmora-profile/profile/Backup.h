#ifndef TOOLS_VELMORA_PROFILE_PROFILE_BACKUP_H
#define TOOLS_VELMORA_PROFILE_PROFILE_BACKUP_H

#include <QtCore/QString>

namespace profile
{
// Copies a file of the running command's folder to one with the time in its name, which is the
// result; empty, and said so, when there can be none.
QString keepCopy(const QString &file);
} // namespace profile

#endif
