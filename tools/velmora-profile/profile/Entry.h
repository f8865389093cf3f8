#ifndef TOOLS_VELMORA_PROFILE_PROFILE_ENTRY_H
#define TOOLS_VELMORA_PROFILE_PROFILE_ENTRY_H

#include "core/VLMC_XMLNode.h"

// What an entry of a document holds.
namespace profile
{
// The element of this name in an entry, or null, and its text.
VLMC_XMLNode *fieldOf(VLMC_XMLNode *entry, const char *name);
QString fieldText(VLMC_XMLNode *entry, const char *name);

// Its text out of Base64.
QString decodedText(VLMC_XMLNode *entry, const char *name);
QString idOf(VLMC_XMLNode *entry);

// What a bookmark is called in messages: its title, else its URL.
QString titleOf(VLMC_XMLNode *bookmark);

// Whether a field of an entry can be said aloud: it has a text that is neither encoded nor secret.
bool isLabel(VLMC_XMLNode *field);

// The file name at the end of a thumbnail path; empty when the path names none.
QString thumbnailName(const QString &path);
} // namespace profile

#endif
