#ifndef FORMATS_H
#define FORMATS_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtNetwork/QNetworkCookie>

// The formats of other programs. Nothing here touches a file or a profile.
namespace profile
{
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
