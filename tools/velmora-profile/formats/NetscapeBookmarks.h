#ifndef TOOLS_VELMORA_PROFILE_FORMATS_NETSCAPEBOOKMARKS_H
#define TOOLS_VELMORA_PROFILE_FORMATS_NETSCAPEBOOKMARKS_H

#include "tools/velmora-profile/formats/Formats.h"

namespace profile
{
bool looksLikeNetscape(const QByteArray &content);
BookmarkImport readNetscape(const QByteArray &content);
} // namespace profile

#endif
