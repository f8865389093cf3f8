#include "tests/durability/SavedStores.h"

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/CookieIni.h"
#include "tests/support/Files.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QDir>

namespace
{
const int kMax = 20;

// A store whose saves are watched, and nothing else that it does.
template <typename Store>
class Watched : public Store
{
public:
    void save(QString &path) override
    {
        const WatchedCalls watched;
        Store::save(path);
    }
};

// A folder without documents: what is loaded from there is empty, or has its defaults.
QString nowhere(const QString &directory) { return directory + utf8("none/"); }

// A folder for the files that a document is made from.
QString sourcesIn(const QString &directory)
{
    QDir(directory).mkpath(utf8("sources"));
    return directory + utf8("sources/");
}

// How each store comes to save one given text.
void saveFontList(QString directory, const QString &text)
{
    Watched<VLMC_FontListSetting> fonts;
    fonts.loadFontList(nowhere(directory));
    fonts.addFont(text);
    fonts.saveFontList(directory);
}

QString loadFontList(QString directory)
{
    VLMC_FontListSetting fonts;
    fonts.loadFontList(directory);
    return fonts.getFont(0);
}

void saveCommonPreferences(QString directory, const QString &text)
{
    Watched<VLMC_BrowserCommonSetting> preferences;
    QString empty = nowhere(directory);
    preferences.loadSetting(&empty);
    preferences.setProxyServerStr(text);
    preferences.saveSetting(&directory);
}

QString loadCommonPreferences(QString directory)
{
    VLMC_BrowserCommonSetting preferences;
    preferences.loadSetting(&directory);
    QString text;
    preferences.getProxyServerStr(&text);
    return text;
}

void saveUserPreferences(QString directory, const QString &text)
{
    Watched<VLMC_BrowserUserSetting> preferences;
    QString empty = nowhere(directory);
    preferences.loadSetting(&empty);
    preferences.setHomePage(text);
    preferences.saveSetting(&directory);
}

QString loadUserPreferences(QString directory)
{
    VLMC_BrowserUserSetting preferences;
    preferences.loadSetting(&directory);
    QString text;
    preferences.getHomePage(&text);
    return text;
}

void saveBookmarks(QString directory, const QString &text)
{
    Watched<VLMC_BookmarksSetting> bookmarks;
    QString empty = nowhere(directory);
    int lastNumber = 0;
    bookmarks.loadBookmark(&empty, kMax, lastNumber);
    VLMS_Bookmark bookmark = {utf8("title"), text, utf8("000001.PNG")};
    bookmarks.setBookmark(&bookmark, 0);
    bookmarks.saveBookmark(&directory, kMax);
}

QString loadBookmarks(QString directory)
{
    VLMC_BookmarksSetting bookmarks;
    int lastNumber = 0;
    bookmarks.loadBookmark(&directory, kMax, lastNumber);
    QString text;
    bookmarks.getBookmarkURL(0, &text);
    return text;
}

void saveHistory(QString directory, const QString &text)
{
    Watched<VLMC_HistorySetting> history;
    QString empty = nowhere(directory);
    history.loadHistory(&empty, kMax);
    VLMS_History visit;
    visit.title = text;
    visit.url = utf8("http://x.com/");
    visit.dateTime = QDateTime(QDate(2015, 1, 2), QTime(3, 4));
    history.setHistory(&visit);
    history.saveHistory(&directory, kMax);
}

QString loadHistory(QString directory)
{
    VLMC_HistorySetting history;
    history.loadHistory(&directory, kMax);
    VLMS_History visit;
    history.getHistory(0, &visit);
    return visit.title;
}

void saveCredentials(QString directory, const QString &text)
{
    Watched<VLMC_AuthSetting> credentials;
    QString empty = nowhere(directory);
    credentials.loadAuthInfo(&empty, kMax);
    VLMS_AuthInfo info = {utf8("x.com"), utf8("80"), 0, text.toUtf8(), text.toUtf8()};
    credentials.setAuthInfo(&info);
    credentials.saveAuthInfo(&directory, kMax);
}

QString loadCredentials(QString directory)
{
    VLMC_AuthSetting credentials;
    credentials.loadAuthInfo(&directory, kMax);
    VLMS_AuthInfo info = {QString(), QString(), 0, QByteArray(), QByteArray()};
    credentials.getAuthInfo(0, &info);
    return info.user == info.passwd ? QString::fromLatin1(info.user) : QString();
}

void saveCookies(QString directory, const QString &text)
{
    const QString sources = sourcesIn(directory);
    writeFile(sources + utf8("cookie.ini"),
              cookieIniOf(QList<QByteArray>() << "n=" + text.toUtf8() + "; domain=x.com; path=/"));
    QByteArray from = QFile::encodeName(sources);
    QByteArray to = QFile::encodeName(directory) + "cookies.xml";
    Watched<VLMC_CookieSetting> cookies;
    cookies.convertCookieIniToXML(from.data(), to.data());
}

QString loadCookies(QString directory)
{
    VLMC_CookieSetting cookies;
    QString path = directory + utf8("cookies.xml");
    cookies.load(path);
    const QList<VLMS_CookieInfo> infos = cookies.getAllCookieInfo();
    const QString text = infos.isEmpty() ? QString() : infos.first().contents;
    cookies.deleteAllSetting();
    return text;
}

void saveThumbnails(QString directory, const QString &text)
{
    const QString sources = sourcesIn(directory);
    writeFile(sources + utf8("000001.PNG"), text.toUtf8());
    QByteArray from = QFile::encodeName(sources);
    QByteArray to = QFile::encodeName(directory) + "thumbnails.xml";
    Watched<VLMC_ThumbnailConverter> thumbnails;
    thumbnails.convertThumbnailPngToXML(from.data(), to.data());
}

QString loadThumbnails(QString directory)
{
    TestDirectory images;
    QByteArray from = QFile::encodeName(directory) + "thumbnails.xml";
    VLMC_ThumbnailConverter thumbnails;
    thumbnails.convertThumbnailXMLToPng(from.data(), images.localFile());
    const QString image = images.file("000001.PNG");
    return exists(image) ? QString::fromLatin1(readFile(image)) : QString();
}
} // namespace

const SavedStore kStores[kStoreCount] = {
    {"common preferences", "repostry.xml", 0600, saveCommonPreferences, loadCommonPreferences},
    {"user preferences", "repostry_private.xml", 0666, saveUserPreferences, loadUserPreferences},
    {"bookmarks", "bookmark.xml", 0666, saveBookmarks, loadBookmarks},
    {"packed thumbnails", "thumbnails.xml", 0666, saveThumbnails, loadThumbnails},
    {"history", "visit.xml", 0666, saveHistory, loadHistory},
    {"cookies", "cookies.xml", 0600, saveCookies, loadCookies},
    {"credentials", "authinfo.xml", 0600, saveCredentials, loadCredentials},
    {"font list", "fontlist.xml", 0666, saveFontList, loadFontList},
};
