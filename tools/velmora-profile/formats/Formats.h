#ifndef TOOLS_VELMORA_PROFILE_FORMATS_FORMATS_H
#define TOOLS_VELMORA_PROFILE_FORMATS_FORMATS_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtNetwork/QNetworkCookie>

// The formats of other programs. Nothing here touches a file or a profile. What is read may be
// hostile: its memory is bounded by the limits here, its time by whoever calls.
namespace profile
{
// A hundred times what a profile takes; a file with more entries, or losses, is refused.
const int kMaxImported = 100000;

// Folders one in the other; a file with more is refused.
const int kMaxFolderDepth = 256;

// What an import or export could not carry.
struct Loss {
    QString entry;
    QString reason;
};

struct BookmarkRecord {
    QString title;
    QString url;
    QStringList folders;
};

struct BookmarkImport {
    QString error;  // empty: the content was recognised
    QString format; // "Netscape HTML" or "XBEL"
    QList<BookmarkRecord> bookmarks;
    QList<Loss> losses;
};

// The format is told by the content.
BookmarkImport readBookmarks(const QByteArray &content);
QByteArray writeNetscapeBookmarks(const QList<BookmarkRecord> &bookmarks, QList<Loss> *losses);
QByteArray writeXbel(const QList<BookmarkRecord> &bookmarks, QList<Loss> *losses);

struct VisitRecord {
    QString title;
    QString url;
    QString dateTime; // as in the file
};

QByteArray writeHistoryCsv(const QList<VisitRecord> &visits);
QByteArray writeHistoryJson(const QList<VisitRecord> &visits);

struct CookieImport {
    QString error;
    QList<QNetworkCookie> cookies;
    QList<Loss> losses;
};

// Netscape cookies.txt, lines with the prefix #HttpOnly_ included.
CookieImport readCookiesTxt(const QByteArray &content);
QByteArray writeCookiesTxt(const QList<QNetworkCookie> &cookies, QList<Loss> *losses);
} // namespace profile

#endif
