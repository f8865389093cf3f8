// Run by derived-stores.sh: loads, changes, sorts and saves each store in the current folder
// through a class that is derived from it, and prints which virtual operations were called. A
// browser may be compiled without RTTI, without exceptions, or with both.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/WatchedStore.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QFile>

#include <cstdio>

namespace
{
QString text(const char *latin1) { return QString::fromLatin1(latin1); }

QString folder() { return text("./"); }

template <typename Store>
void report(const char *name, WatchedStore<Store> &store)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    printf("%s, %d nodes:\n%s", name, store.livingNodes(), store.takeCalls().constData());
}

VLMS_History visit(const char *title, int minute)
{
    VLMS_History visit;
    visit.title = text(title);
    visit.url = text("http://") + visit.title;
    visit.dateTime = QDateTime(QDate(2026, 1, 2), QTime(3, minute));
    return visit;
}

template <typename Store>
void visitPages(Store &store)
{
    QString dir = folder();
    VLMS_History first = visit("a", 30);
    VLMS_History second = visit("b", 10);
    VLMS_History third = visit("c", 20);
    store.loadHistory(&dir, 3);
    store.setHistory(&first);
    store.setHistory(&second);
    store.updateHistory(&third);
    store.sortHistory();
    store.changeHistory(store.getHistoryIndex(second.url), third);
    store.updateHistory(&second);
    store.saveHistory(&dir, 3);
    store.loadHistory(&dir, 3);
    store.deleteHistory(0);
    store.sortHistory();
}

void visitPages()
{
    WatchedStore<VLMC_HistorySetting> store;
    visitPages(store);
    report("history", store);
    VLMC_HistorySetting plain;
    visitPages(plain);
    printf("%d\n", plain.getHistoryCnt());
}

void keepBookmarks()
{
    WatchedStore<VLMC_BookmarksSetting> store;
    QString dir = folder();
    int lastNumber = 0;
    store.loadBookmark(&dir, 5, lastNumber);
    VLMS_Bookmark bookmark;
    bookmark.title = text("title");
    bookmark.url = text("http://url");
    store.setBookmark(&bookmark, 0);
    store.setBookmark(&bookmark, 1);
    store.deleteBookmark(0);
    store.saveBookmark(&dir, 5);
    store.loadBookmark(&dir, 5, lastNumber);
    report("bookmarks", store);
}

void packThumbnails()
{
    QFile image(text("000001.png"));
    image.open(QIODevice::WriteOnly);
    image.write("image");
    image.close();
    WatchedStore<VLMC_ThumbnailConverter> store;
    char directory[] = "./";
    char pack[] = "thumbnail.xml";
    store.convertThumbnailPngToXML(directory, pack);
    store.convertThumbnailXMLToPng(pack, directory);
    report("thumbnails", store);
}

void convertCookies()
{
    WatchedStore<VLMC_CookieSetting> store;
    QString dir = folder();
    char directory[] = "./";
    char document[] = "cookie.xml";
    store.saveCookieInfo(
        QNetworkCookie::parseCookies("a=1; domain=d; expires=Fri, 02-Jan-2099 03:04:05 GMT"), &dir,
        20);
    store.convertCookieIniToXML(directory, document);
    store.convertCookieXMLToIni(document, directory);
    report("cookies", store);
}

void keepCredentials()
{
    WatchedStore<VLMC_AuthSetting> store;
    QString dir = folder();
    store.loadAuthInfo(&dir, 2);
    VLMS_AuthInfo info;
    info.authType = 1;
    info.hostName = text("host");
    info.portNum = text("80");
    info.user = "user";
    info.passwd = "password";
    store.updateAuthInfo(&info);
    store.updateAuthInfo(&info);
    store.updateAuthInfo(&info);
    store.saveAuthInfo(&dir, 2);
    report("credentials", store);
}

void listFonts()
{
    WatchedStore<VLMC_FontListSetting> store;
    store.loadFontList(folder());
    store.addFont(text("Sans"));
    store.saveFontList(folder());
    report("fonts", store);
}

void keepPreferences()
{
    WatchedStore<VLMC_BrowserCommonSetting> common;
    QString dir = folder();
    common.loadSetting(&dir);
    common.setUseProxyInfo(1);
    common.saveSetting(&dir);
    report("common preferences", common);
    WatchedStore<VLMC_BrowserUserSetting> user;
    user.loadSetting(&dir);
    user.setStartUp(1);
    user.saveSetting(&dir);
    report("user preferences", user);
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    visitPages();
    keepBookmarks();
    packThumbnails();
    convertCookies();
    keepCredentials();
    listFonts();
    keepPreferences();
    return 0;
}
