#ifndef BOOKMARKS_BOOKMARKELEMENTS_P_H
#define BOOKMARKS_BOOKMARKELEMENTS_P_H

// The document of the bookmarks.
namespace vlm
{
namespace bookmarks
{
const char kFileName[] = "bookmark.xml";
const char kRoot[] = "bookmarks";
const char kEntry[] = "bookmark";
const char kUrl[] = "href";
const char kTitle[] = "title";
const char kThumbnail[] = "thumbnail";

// Bytes of UTF-8.
const int kMaxTitleBytes = 100;
const int kMaxUrlBytes = 256;
const int kMaxThumbnailPathBytes = 256;

// Beside the document, with the images.
const char kThumbnailFolder[] = "thumbnail/";
} // namespace bookmarks
} // namespace vlm

#endif
