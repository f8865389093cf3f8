#ifndef BOOKMARKELEMENTS_P_H
#define BOOKMARKELEMENTS_P_H

namespace vlm
{
// What both sources of the bookmark store know of a bookmark's elements.
const char kBookmark[] = "bookmark";
const char kThumbnail[] = "thumbnail";

const int kMaxThumbnailPathBytes = 256;
} // namespace vlm

#endif
