#ifndef FORMATS_NETSCAPEBOOKMARKS_H
#define FORMATS_NETSCAPEBOOKMARKS_H

#include "tools/velmora-profile/formats/Formats.h"

namespace profile
{
bool looksLikeNetscape(const QByteArray &content);
BookmarkImport readNetscape(const QByteArray &content);
} // namespace profile

#endif
