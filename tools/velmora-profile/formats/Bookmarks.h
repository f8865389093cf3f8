#ifndef BOOKMARKS_H
#define BOOKMARKS_H

#include "tools/velmora-profile/formats/Formats.h"

// Between the sources of the two bookmark formats.
namespace profile
{
QString text(const char *utf8);

// How a bookmark is called where its losses are listed.
QString nameOf(const BookmarkRecord &bookmark);

// A text as XML and HTML can carry it: no control characters, no half surrogates, blanks at the
// ends and runs of blanks as the readers of these formats fold them.
QString writable(const QString &text);

// Lists a bookmark whose title or address writable() changes.
void loseUnwritable(const BookmarkRecord &bookmark, QList<Loss> *losses);

bool looksLikeNetscape(const QByteArray &content);
BookmarkImport readNetscape(const QByteArray &content);

bool looksLikeXbel(const QByteArray &content);
BookmarkImport readXbel(const QByteArray &content);
} // namespace profile

#endif
