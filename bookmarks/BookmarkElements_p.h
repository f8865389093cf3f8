#ifndef BOOKMARKELEMENTS_P_H
#define BOOKMARKELEMENTS_P_H

namespace vlm
{
// What both sources of the bookmark store know of a bookmark's elements.
const char kBookmark[] = "bookmark";
const char kThumbnail[] = "thumbnail";

// The children of a bookmark, as getBookmarkChildNode() takes them.
const char TitleChild = 0;
const char UrlChild = 1;
const char ThumbnailChild = 2;

const int kMaxThumbnailPathBytes = 256;
} // namespace vlm

#endif
