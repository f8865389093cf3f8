#ifndef TOOLS_VELMORA_PROFILE_PROFILE_SECRETS_H
#define TOOLS_VELMORA_PROFILE_PROFILE_SECRETS_H

#include <QtCore/QStringList>

// The files of a profile that hold passwords or sessions.
namespace profile
{
// The files in the directory that hold passwords or sessions.
QStringList secretFiles(const QString &directory);
bool isOpenToOthers(const QString &path);
// Whether files of this name are written for their owner alone, whatever is in them now: damage can
// keep a secret from being seen.
bool mayHoldSecrets(const QString &file);
} // namespace profile

#endif
