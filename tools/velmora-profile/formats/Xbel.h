#ifndef TOOLS_VELMORA_PROFILE_FORMATS_XBEL_H
#define TOOLS_VELMORA_PROFILE_FORMATS_XBEL_H

#include "tools/velmora-profile/formats/Formats.h"

namespace profile
{
// The root element decides, so that only a document that begins well is taken for one.
bool looksLikeXbel(const QString &document);
BookmarkImport readXbel(const QString &document);
} // namespace profile

#endif
