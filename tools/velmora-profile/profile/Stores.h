#ifndef TOOLS_VELMORA_PROFILE_PROFILE_STORES_H
#define TOOLS_VELMORA_PROFILE_PROFILE_STORES_H

#include "tools/velmora-profile/profile/DocumentType.h"

namespace profile
{
// Done when the store holds the document of the running command's folder and may write over it;
// otherwise Failed, and said so.
int loadStore(DocumentKind kind);

// Has the store write its document. Failed, and said so, unless the file holds it then and nothing
// else: the library's saves report nothing.
int saveStore(DocumentKind kind);
} // namespace profile

#endif
