#include "tools/velmora-profile/profile/DocumentType.h"

#include "bookmarks/HistoryElements_p.h"
#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/AuthElements_p.h"
#include "cookies/CookieElements_p.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/FontElements_p.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/CommonRows_p.h"
#include "preferences/UserRows_p.h"
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
QString hrefOf(VLMC_XMLNode *bookmark) { return fieldText(bookmark, vlm::bookmarks::kUrl); }

VLMC_HistorySetting &history() { return *VLMC_HistorySetting::getInstance(); }
void loadHistory(QString *folder) { history().loadHistory(folder, kMaxEntries); }
void saveHistory(QString *folder) { history().saveHistory(folder, kMaxEntries); }
QString urlOf(VLMC_XMLNode *visit) { return fieldText(visit, vlm::history::kUrl); }

VLMC_AuthSetting &credentials() { return *VLMC_AuthSetting::getInstance(); }
void loadCredentials(QString *folder) { credentials().loadAuthInfo(folder, kMaxEntries); }
void saveCredentials(QString *folder) { credentials().saveAuthInfo(folder, kMaxEntries); }
QString hostOf(VLMC_XMLNode *entry) { return fieldText(entry, vlm::auth::kHostName); }
QString hostAndPortOf(VLMC_XMLNode *entry)
{
    return text("%1:%2").arg(hostOf(entry), fieldText(entry, vlm::auth::kPortNum));
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
    return text("%1 of %2")
        .arg(fieldText(cookie, vlm::cookies::kName), fieldText(cookie, vlm::cookies::kWebsite));
}
QString cookieAndPlaceOf(VLMC_XMLNode *cookie)
{
    return cookieAndSiteOf(cookie) + fieldText(cookie, vlm::cookies::kPath);
}
} // namespace

const QList<profile::DocumentType> &profile::documentTypes()
{
    typedef ComparedField Field;
    const QList<Field> ofBookmarks = {
        {"title", vlm::bookmarks::kTitle, Field::Plain, false},
        {"thumbnail", vlm::bookmarks::kThumbnail, Field::Picture, false}};
    const QList<Field> ofVisits = {{"title", vlm::history::kTitle, Field::Plain, false},
                                   {"visited", vlm::history::kDateTime, Field::Plain, false}};
    const QList<Field> ofCredentials = {{"scheme", vlm::auth::kAuthType, Field::Plain, false},
                                        {"user", vlm::auth::kUser, Field::Encoded, false},
                                        {"password", vlm::auth::kPasswd, Field::Encoded, true}};
    const QList<Field> ofCookies = {{"secure", vlm::cookies::kSecure, Field::Plain, false},
                                    {"expires", vlm::cookies::kExpires, Field::Plain, false},
                                    {"value", vlm::cookies::kContents, Field::Plain, true}};
    static const QList<DocumentType> types = {
        {CommonPreferences, vlm::commonPreferences::kFileName, vlm::commonPreferences::kRoot,
         nullptr, store<VLMC_BrowserCommonSetting>, loadCommon, saveCommon, nullptr, nullptr,
         nullptr, QList<Field>()},
        {UserPreferences, vlm::userPreferences::kFileName, vlm::userPreferences::kRoot, nullptr,
         store<VLMC_BrowserUserSetting>, loadUser, saveUser, nullptr, nullptr, nullptr,
         QList<Field>()},
        {Bookmarks, vlm::bookmarks::kFileName, vlm::bookmarks::kRoot, vlm::bookmarks::kEntry,
         store<VLMC_BookmarksSetting>, loadBookmarks, saveBookmarks, prepareBookmarks, titleOf,
         hrefOf, ofBookmarks},
        {History, vlm::history::kFileName, vlm::history::kRoot, vlm::history::kEntry,
         store<VLMC_HistorySetting>, loadHistory, saveHistory, nullptr, urlOf, urlOf, ofVisits},
        {Credentials, vlm::auth::kFileName, vlm::auth::kRoot, vlm::auth::kEntry,
         store<VLMC_AuthSetting>, loadCredentials, saveCredentials, nullptr, hostOf, hostAndPortOf,
         ofCredentials},
        {Fonts, vlm::fonts::kFileName, vlm::fonts::kRoot, vlm::fonts::kEntry,
         store<VLMC_FontListSetting>, loadFonts, saveFonts, nullptr, ownText, ownText,
         QList<Field>()},
        {CookieDocument, kCookieXml, vlm::cookies::kRoot, vlm::cookies::kEntry,
         store<VLMC_CookieSetting>, nullptr, saveCookies, nullptr, cookieAndSiteOf,
         cookieAndPlaceOf, ofCookies},
    };
    return types;
}

const profile::DocumentType &profile::documentType(DocumentKind kind)
{
    return documentTypes().at(kind);
}
