#ifndef BOOKMARKS_HISTORYELEMENTS_P_H
#define BOOKMARKS_HISTORYELEMENTS_P_H

// The document of the visits.
namespace vlm
{
namespace history
{
const char kFileName[] = "visit.xml";
const char kRoot[] = "history";
const char kEntry[] = "pageInfo";
const char kTitle[] = "title";
const char kUrl[] = "url";
const char kDateTime[] = "dateTime";
} // namespace history
} // namespace vlm

#endif
