#ifndef TOOLS_VELMORA_PROFILE_PROFILE_REFUSALS_H
#define TOOLS_VELMORA_PROFILE_PROFILE_REFUSALS_H

#include "tools/velmora-profile/profile/Document.h"

// What a command says of a document that it cannot take as it is.
namespace profile
{
// Refuses to write over a document that a store cannot hold whole: says so and gives the exit
// status for it, Done when it can be written.
int refuseToRewrite(const Document &document);

// Refuses to take a document for all of it that has more in its file: Failed for one that is
// damaged or cannot be read, and said so.
int refuseToRead(const Document &document);

// Says that a file of the profile cannot be read, and gives the exit status for it.
int failUnreadable(const QString &path);

// Says that a document is damaged, if it is, so that nobody takes what stands before the damage for
// all. Failed for one that cannot be read, and said so: that is not an empty one.
int warnOfDamage(const Document &document);
} // namespace profile

#endif
