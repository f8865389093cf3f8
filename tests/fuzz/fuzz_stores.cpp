// Any bytes as the document of each store: all getters are called, limits hold, and saving and
// loading comes to rest. An input is the store, a change to be made, and the document.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/fuzz/Fuzz.h"

#include <QtNetwork/QNetworkCookie>

#include <memory>

namespace
{
const int kMax = 20;
const int kChanges = 10;

// The ids reach past both ends.
const int kFirstId = -1;
int endOfIds(VLMC_XMLSetting &store) { return store.getXMLNodeCnt() + 2; }

// What the getters of a store return, one value per line.
class Values
{
public:
    void add(qint64 value) { m_lines += QByteArray::number(value) + '\n'; }
    void add(const QByteArray &bytes, int maxBytes)
    {
        require(bytes.size() <= maxBytes, "a getter keeps to its limit");
        m_lines += bytes + '\n';
    }
    void add(const QString &text, int maxBytes) { add(text.toUtf8(), maxBytes); }
    QByteArray lines() const { return m_lines; }

private:
    QByteArray m_lines;
};

const int kNoLimit = 1 << 30;

class Store
{
public:
    Store() {}
    virtual ~Store() {}
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    virtual const char *fileName() const = 0;
    virtual void load(QString directory) = 0;
    virtual void save(QString directory) = 0;
    virtual void read(Values &values) = 0;
    virtual void change(int what, int id, const QString &text) = 0;
};

class Fonts : public Store
{
public:
    const char *fileName() const override { return "fontlist.xml"; }
    void load(QString directory) override { m_fonts.loadFontList(directory); }
    void save(QString directory) override { m_fonts.saveFontList(directory); }
    void read(Values &values) override
    {
        values.add(m_fonts.getCount());
        for (int index = kFirstId; index < endOfIds(m_fonts); ++index) {
            values.add(m_fonts.getFont(index), 256);
        }
    }
    void change(int, int, const QString &text) override { m_fonts.addFont(text); }

private:
    VLMC_FontListSetting m_fonts;
};

class History : public Store
{
public:
    const char *fileName() const override { return "visit.xml"; }
    void load(QString directory) override { m_history.loadHistory(&directory, kMax); }
    void save(QString directory) override { m_history.saveHistory(&directory, kMax); }
    void read(Values &values) override
    {
        values.add(m_history.getHistoryCnt());
        for (int id = kFirstId; id < endOfIds(m_history); ++id) {
            VLMS_History visit;
            values.add(m_history.getHistory(id, &visit));
            values.add(visit.title, kNoLimit);
            values.add(visit.url, kNoLimit);
            values.add(visit.dateTime.toString(QString::fromLatin1("yyyy/MM/dd hh:mm")), kNoLimit);
            values.add(m_history.getHistoryIndex(visit.url));
        }
    }
    void change(int what, int id, const QString &text) override
    {
        VLMS_History visit = {text, text, QDateTime(QDate(2026, 1, 2), QTime(3, 4))};
        QString title = text;
        switch (what % 6) {
        case 0:
            return m_history.setHistory(&visit);
        case 1:
            return m_history.updateHistory(&visit);
        case 2:
            return m_history.changeHistory(id, visit);
        case 3:
            return m_history.changeHistoryTitle(id, title);
        case 4:
            return m_history.deleteHistory(id);
        default:
            return m_history.sortHistory();
        }
    }

private:
    VLMC_HistorySetting m_history;
};

class Bookmarks : public Store
{
public:
    const char *fileName() const override { return "bookmark.xml"; }
    void load(QString directory) override
    {
        int lastNumber = 0;
        m_bookmarks.loadBookmark(&directory, kMax, lastNumber);
        require(m_bookmarks.getLastNumber() == lastNumber, "loading gives the last number");
    }
    void save(QString directory) override { m_bookmarks.saveBookmark(&directory, kMax); }
    void read(Values &values) override
    {
        values.add(m_bookmarks.getBookmarkCnt());
        values.add(m_bookmarks.getLastNumber());
        for (int id = kFirstId; id < endOfIds(m_bookmarks); ++id) {
            readBookmark(id, values);
        }
    }
    void change(int what, int id, const QString &text) override
    {
        VLMS_Bookmark bookmark = {text, text, text};
        QString copy = text;
        switch (what % 6) {
        case 0:
        case 1:
            m_bookmarks.setBookmark(&bookmark, char(what));
            break;
        case 2:
            m_bookmarks.setBookmarkTitle(id, &copy);
            break;
        case 3:
            m_bookmarks.setBookmarkURL(id, &copy);
            break;
        case 4:
            m_bookmarks.setBookmarkThumbnailFilePath(id, &copy);
            break;
        default:
            m_bookmarks.deleteBookmark(id);
        }
    }

private:
    void readBookmark(int id, Values &values)
    {
        VLMS_Bookmark bookmark;
        values.add(m_bookmarks.getBookmark(id, &bookmark));
        values.add(bookmark.title, 100);
        values.add(bookmark.url, 256);
        int index = id;
        values.add(m_bookmarks.getThumbNode(index) != nullptr);
        values.add(index);
        for (char which = -1; which < 4; ++which) {
            values.add(m_bookmarks.getBookmarkChildNode(id, which) != nullptr);
        }
        // The path begins with the directory of the input, another each time.
        QString path;
        values.add(m_bookmarks.getBookmarkThumbnailFilePath(id, &path));
        require(path == bookmark.thumbnailPath, "both getters give the same path");
        require(path.toUtf8().size() <= 256, "a getter keeps to its limit");
    }

    VLMC_BookmarksSetting m_bookmarks;
};

class Credentials : public Store
{
public:
    const char *fileName() const override { return "authinfo.xml"; }
    void load(QString directory) override { m_auth.loadAuthInfo(&directory, kMax); }
    void save(QString directory) override { m_auth.saveAuthInfo(&directory, kMax); }
    void read(Values &values) override
    {
        values.add(m_auth.getAuthInfoCnt());
        for (int id = kFirstId; id < endOfIds(m_auth); ++id) {
            VLMS_AuthInfo info = {QString(), QString(), 0, QByteArray(), QByteArray()};
            values.add(m_auth.getAuthInfo(id, &info));
            values.add(info.hostName, 256);
            values.add(info.portNum, 5);
            require(info.authType < 3, "an unknown scheme reads as basic");
            values.add(info.authType);
            values.add(info.user, 272);
            values.add(info.passwd, 272);
        }
    }
    void change(int what, int id, const QString &text) override
    {
        VLMS_AuthInfo info = {text, text.left(5), uchar(what), text.toUtf8(), text.toUtf8()};
        switch (what % 4) {
        case 0:
            m_auth.setAuthInfo(&info);
            break;
        case 1:
            m_auth.updateAuthInfo(&info);
            break;
        case 2:
            m_auth.addAuthInfo(&info);
            break;
        default:
            m_auth.deleteAuthInfo(id);
        }
    }

private:
    VLMC_AuthSetting m_auth;
};

class Cookies : public Store
{
public:
    const char *fileName() const override { return "cookie.xml"; }
    void load(QString directory) override
    {
        QString path = directory + QString::fromLatin1(fileName());
        m_cookies.load(path);
    }
    void save(QString directory) override
    {
        QString path = directory + QString::fromLatin1(fileName());
        m_cookies.save(path);
    }
    void read(Values &values) override
    {
        const QList<VLMS_CookieInfo> infos = m_cookies.getAllCookieInfo();
        require(infos.size() <= m_cookies.getXMLNodeCnt(), "there is one cookie per entry at most");
        for (VLMS_CookieInfo info : infos) {
            values.add(info.website, kNoLimit);
            values.add(info.name, kNoLimit);
            values.add(info.path, kNoLimit);
            values.add(info.secure, kNoLimit);
            values.add(info.expires, kNoLimit);
            values.add(info.contents, kNoLimit);
            QNetworkCookie cookie(info.name.toUtf8(), info.contents.toUtf8());
            values.add(m_cookies.isMuchCookieInfo(cookie, info));
        }
    }
    void change(int what, int id, const QString &text) override
    {
        QNetworkCookie cookie(text.toUtf8(), text.toUtf8());
        if (what % 2) {
            m_cookies.addCookieInfo(cookie);
        } else {
            m_cookies.deleteCookieInfo(id);
        }
    }

private:
    VLMC_CookieSetting m_cookies;
};

class CommonPreferences : public Store
{
public:
    const char *fileName() const override { return "repostry.xml"; }
    void load(QString directory) override { m_common.loadSetting(&directory); }
    void save(QString directory) override { m_common.saveSetting(&directory); }
    void read(Values &values) override
    {
        typedef char (VLMC_BrowserCommonSetting::*Code)();
        static const Code codes[] = {&VLMC_BrowserCommonSetting::getRcvCookieInfo,
                                     &VLMC_BrowserCommonSetting::getUseCacheInfo,
                                     &VLMC_BrowserCommonSetting::getSWKeyBoardTypeInfo,
                                     &VLMC_BrowserCommonSetting::getUseJavaScriptInfo,
                                     &VLMC_BrowserCommonSetting::getPlayFlashInfo,
                                     &VLMC_BrowserCommonSetting::getUseProxyInfo,
                                     &VLMC_BrowserCommonSetting::getUseProxyHttpInfo,
                                     &VLMC_BrowserCommonSetting::getUseProxyCertificationInfo,
                                     &VLMC_BrowserCommonSetting::getUseSSL30,
                                     &VLMC_BrowserCommonSetting::getUseTLS10,
                                     &VLMC_BrowserCommonSetting::getUseTLS11,
                                     &VLMC_BrowserCommonSetting::getUseTLS12};
        for (const Code code : codes) {
            const int value = (m_common.*code)();
            require(value == 0 || value == 1, "a switch is off or on");
            values.add(value);
        }
        values.add(m_common.getCacheDeleteTiming());
        readTexts(values);
    }
    void change(int what, int id, const QString &text) override
    {
        m_common.setUseSSL30(char(what));
        m_common.setUseProxyInfo(char(id));
        m_common.setCacheDeleteTiming(char(id));
        m_common.setProxyServerStr(text);
        m_common.setProxyHttpPortStr(text);
        m_common.setNoProxyDomainStr(text);
        const QByteArray account = text.toUtf8();
        const int stored = m_common.setProxyAccountStr(account);
        QByteArray read;
        m_common.getProxyAccountStr(&read);
        require(!stored || read == account, "an account that was stored can be read");
    }

private:
    void readTexts(Values &values)
    {
        typedef void (VLMC_BrowserCommonSetting::*Text)(QString *);
        static const Text texts[] = {&VLMC_BrowserCommonSetting::getProxyServerStr,
                                     &VLMC_BrowserCommonSetting::getNoProxyDomainStr,
                                     &VLMC_BrowserCommonSetting::getProxyHttpPortStr,
                                     &VLMC_BrowserCommonSetting::getProxyHttpsPortStr};
        for (const Text text : texts) {
            QString value;
            (m_common.*text)(&value);
            values.add(value, 253);
        }
        QByteArray account;
        m_common.getProxyAccountStr(&account);
        values.add(account, 80);
        QByteArray password;
        m_common.getProxyPasswordStr(&password);
        values.add(password, 80);
    }

    VLMC_BrowserCommonSetting m_common;
};

class UserPreferences : public Store
{
public:
    const char *fileName() const override { return "repostry_private.xml"; }
    void load(QString directory) override { m_user.loadSetting(&directory); }
    void save(QString directory) override { m_user.saveSetting(&directory); }
    void read(Values &values) override
    {
        QString text;
        m_user.getHomePage(&text);
        values.add(text, 256);
        m_user.getLastPage(&text);
        values.add(text, 256);
        m_user.getFontName(&text);
        values.add(text, 256);
        require(m_user.getZoomInfo() >= 1 && m_user.getZoomInfo() <= 11, "a zoom is one of eleven");
        values.add(m_user.getZoomInfo());
        values.add(m_user.getStartUp());
        values.add(m_user.getCookieDeleteTiming());
        values.add(m_user.getCertificationDeleteTiming());
        values.add(m_user.IsNotChgUserDeletetiming());
    }
    void change(int what, int id, const QString &text) override
    {
        m_user.setHomePage(text);
        m_user.setLastPage(text);
        m_user.setFontName(text);
        m_user.setZoomInfo(short(what + id));
        m_user.setStartUp(char(id));
        m_user.setCookieDeleteTiming(char(what));
        if (what % 2) {
            m_user.CnvOldtypeDeletetiming();
        }
    }

private:
    VLMC_BrowserUserSetting m_user;
};

typedef std::unique_ptr<Store> StorePointer;

const int kStores = 7;
StorePointer newStore(int which)
{
    switch (which) {
    case 0:
        return StorePointer(new Fonts);
    case 1:
        return StorePointer(new History);
    case 2:
        return StorePointer(new Bookmarks);
    case 3:
        return StorePointer(new Credentials);
    case 4:
        return StorePointer(new Cookies);
    case 5:
        return StorePointer(new CommonPreferences);
    default:
        return StorePointer(new UserPreferences);
    }
}

StorePointer loaded(int which, const QString &directory)
{
    StorePointer store = newStore(which);
    store->load(directory);
    return store;
}

QByteArray valuesOf(Store &store)
{
    Values values;
    store.read(values);
    return values.lines();
}

QByteArray saved(Store &store, const InputDirectory &directory)
{
    store.save(directory.path());
    return bytesOfFile(directory.file(store.fileName()));
}

// What the first save leaves out or cannot carry is gone with it; from then on nothing changes.
StorePointer cameToRest(int which, Store &store, const InputDirectory &directory)
{
    require(!saved(store, directory).isEmpty(), "a store that was loaded is saved");
    const StorePointer second = loaded(which, directory.path());
    const QByteArray values = valuesOf(*second);
    const QByteArray document = saved(*second, directory);
    StorePointer third = loaded(which, directory.path());
    require(valuesOf(*third) == values, "what is saved is what is loaded");
    require(saved(*third, directory) == document, "saving and loading comes to rest");
    return third;
}
} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const int which = input.choice(kStores);
    const int change = input.choice(kChanges);
    const int id = input.choice(10);
    const QByteArray document = input.rest();
    const InputDirectory directory;
    const DeferredDeletes deferred;

    const StorePointer store = newStore(which);
    valuesOf(*store);
    writeToFile(directory.file(store->fileName()), document);
    store->load(directory.path());
    valuesOf(*store);
    const StorePointer atRest = cameToRest(which, *store, directory);
    atRest->change(change, id, QString::fromUtf8(document.right(document.size() % 300)));
    valuesOf(*atRest);
    cameToRest(which, *atRest, directory);
    return 0;
}
