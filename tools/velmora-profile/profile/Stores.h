#ifndef PROFILE_STORES_H
#define PROFILE_STORES_H

#include "tools/velmora-profile/profile/DocumentType.h"

namespace profile
{
// Done when the store holds the document of the running command's folder and may write over it;
// otherwise Failed, and said so.
int loadStore(DocumentKind kind);

// Names the root of the document's store, with the attribute that all roots get.
void nameRoot(const DocumentType &type);

// Has the store write its document. Failed, and said so, unless the file holds it then and nothing
// else: the library's saves report nothing.
int saveStore(DocumentKind kind);
} // namespace profile

#endif
