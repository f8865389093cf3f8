#include "tools/velmora-profile/profile/DocumentType.h"

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Entry.h"

namespace
{
using namespace profile;

template <typename Store>
VLMC_XMLSetting *store()
{
    return Store::getInstance();
}

VLMC_BrowserCommonSetting &common() { return *VLMC_BrowserCommonSetting::getInstance(); }
void loadCommon(QString *folder) { common().loadSetting(folder); }
void saveCommon(QString *folder) { common().saveSetting(folder); }

VLMC_BrowserUserSetting &user() { return *VLMC_BrowserUserSetting::getInstance(); }
void loadUser(QString *folder) { user().loadSetting(folder); }
void saveUser(QString *folder) { user().saveSetting(folder); }

VLMC_BookmarksSetting &bookmarks() { return *VLMC_BookmarksSetting::getInstance(); }
void loadBookmarks(QString *folder)
{
    int lastNumber = 0;
    bookmarks().loadBookmark(folder, kMaxEntries, lastNumber);
}
void saveBookmarks(QString *folder) { bookmarks().saveBookmark(folder, kMaxEntries); }
// It leaves the folder in front of every path.
void prepareBookmarks() { bookmarks().removeThumbnailFilePath(); }
QString hrefOf(VLMC_XMLNode *bookmark) { return fieldText(bookmark, "href"); }

VLMC_HistorySetting &history() { return *VLMC_HistorySetting::getInstance(); }
void loadHistory(QString *folder) { history().loadHistory(folder, kMaxEntries); }
void saveHistory(QString *folder) { history().saveHistory(folder, kMaxEntries); }
QString urlOf(VLMC_XMLNode *visit) { return fieldText(visit, "url"); }

VLMC_AuthSetting &credentials() { return *VLMC_AuthSetting::getInstance(); }
void loadCredentials(QString *folder) { credentials().loadAuthInfo(folder, kMaxEntries); }
void saveCredentials(QString *folder) { credentials().saveAuthInfo(folder, kMaxEntries); }
QString hostOf(VLMC_XMLNode *entry) { return fieldText(entry, "hostName"); }
QString hostAndPortOf(VLMC_XMLNode *entry)
{
    return text("%1:%2").arg(hostOf(entry), fieldText(entry, "portNum"));
}

VLMC_FontListSetting &fonts() { return *VLMC_FontListSetting::getInstance(); }
void loadFonts(QString *folder) { fonts().loadFontList(*folder); }
void saveFonts(QString *folder) { fonts().saveFontList(*folder); }
QString ownText(VLMC_XMLNode *font) { return font->getText(); }

void saveCookies(QString *folder)
{
    QString path = *folder + text(documentType(CookieDocument).fileName);
    VLMC_CookieSetting::getInstance()->save(path);
}
QString cookieAndSiteOf(VLMC_XMLNode *cookie)
{
    return text("%1 of %2").arg(fieldText(cookie, "name"), fieldText(cookie, "website"));
}
QString cookieAndPlaceOf(VLMC_XMLNode *cookie)
{
    return cookieAndSiteOf(cookie) + fieldText(cookie, "path");
}
} // namespace

const QList<profile::DocumentType> &profile::documentTypes()
{
    typedef ComparedField Field;
    const QList<Field> none;
    const QList<Field> ofBookmarks = {{"title", "title", Field::Plain, false},
                                      {"thumbnail", "thumbnail", Field::Picture, false}};
    const QList<Field> ofVisits = {{"title", "title", Field::Plain, false},
                                   {"visited", "dateTime", Field::Plain, false}};
    const QList<Field> ofCredentials = {{"scheme", "authType", Field::Plain, false},
                                        {"user", "user", Field::Encoded, false},
                                        {"password", "passwd", Field::Encoded, true}};
    const QList<Field> ofCookies = {{"secure", "secure", Field::Plain, false},
                                    {"expires", "expires", Field::Plain, false},
                                    {"value", "contents", Field::Plain, true}};
    static const QList<DocumentType> types = {
        {CommonPreferences, "repostry.xml", "repostry_common", nullptr,
         store<VLMC_BrowserCommonSetting>, loadCommon, saveCommon, nullptr, nullptr, nullptr, none},
        {UserPreferences, "repostry_private.xml", "repostry", nullptr,
         store<VLMC_BrowserUserSetting>, loadUser, saveUser, nullptr, nullptr, nullptr, none},
        {Bookmarks, "bookmark.xml", "bookmarks", "bookmark", store<VLMC_BookmarksSetting>,
         loadBookmarks, saveBookmarks, prepareBookmarks, titleOf, hrefOf, ofBookmarks},
        {History, "visit.xml", "history", "pageInfo", store<VLMC_HistorySetting>, loadHistory,
         saveHistory, nullptr, urlOf, urlOf, ofVisits},
        {Credentials, "authinfo.xml", "authentication", "authInfo", store<VLMC_AuthSetting>,
         loadCredentials, saveCredentials, nullptr, hostOf, hostAndPortOf, ofCredentials},
        {Fonts, "fontlist.xml", "fontlist", "font", store<VLMC_FontListSetting>, loadFonts,
         saveFonts, nullptr, ownText, ownText, none},
        {CookieDocument, "cookie.xml", "cookie", "webSiteInfo", store<VLMC_CookieSetting>, nullptr,
         saveCookies, nullptr, cookieAndSiteOf, cookieAndPlaceOf, ofCookies},
    };
    return types;
}

const profile::DocumentType &profile::documentType(DocumentKind kind)
{
    return documentTypes().at(kind);
}
