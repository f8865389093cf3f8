// Every store at work, with secrets that cannot be mistaken for anything else and the log at its
// most verbose: no line in either sink may hold one of them, in any form.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/FileModes.h"
#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/PlatformRecorder.h"
#include "tests/support/SavedDocuments.h"

#include <QtCore/QDir>
#include <QtCore/QScopedPointer>

#include <cerrno>
#include <functional>
#include <limits>

namespace
{
// A part in ASCII, which shows a secret even where a log cuts or decodes it wrongly, and two
// characters outside ASCII, which tell encodings apart.
const char kProxyUser[] = "QzProxyAccount\xc3\xb1\xc3\xa9";
const char kProxyPasswd[] = "QzProxyS3cret\xc3\xb1\xc3\xa9";
const char kUser[] = "QzHostUser\xc3\xb1\xc3\xa9";
const char kPasswd[] = "QzHostS3cret\xc3\xb1\xc3\xa9";
const char kCookieName[] = "QzCookieName\xc3\xb1\xc3\xa9";
const char kCookieValue[] = "QzCookieVal\xc3\xb1\xc3\xa9";

const QList<QByteArray> kSecrets = QList<QByteArray>() << kProxyUser << kProxyPasswd << kUser
                                                       << kPasswd << kCookieName << kCookieValue;

const char kLastLine[] = "[tst_Secrets] the last line";

// The characters that stand for the bytes alone, wherever in a longer text they begin.
QByteArray base64Within(const QByteArray &bytes, int offset)
{
    const QByteArray encoded = (QByteArray(offset, 'x') + bytes).toBase64();
    const int from = (offset * 8 + 5) / 6;
    const int to = (offset + int(bytes.size())) * 8 / 6;
    return encoded.mid(from, to - from);
}

QList<QByteArray> encodingsOf(const QByteArray &bytes)
{
    QList<QByteArray> forms;
    forms << bytes << bytes.toHex() << bytes.toHex().toUpper() << bytes.toPercentEncoding();
    for (int offset = 0; offset < 3; ++offset) {
        forms << base64Within(bytes, offset);
    }
    return forms;
}

// The forms in which a secret could turn up: in UTF-8 and Latin-1, as Latin-1 taken for UTF-8, and
// its part in ASCII, each plain and encoded.
QList<QByteArray> formsOf(const QByteArray &secret)
{
    const QString text = QString::fromUtf8(secret.constData());
    QByteArray ascii = secret;
    ascii.chop(4);
    return encodingsOf(secret) + encodingsOf(text.toLatin1())
           + encodingsOf(QString::fromLatin1(secret.constData()).toUtf8()) + encodingsOf(ascii);
}

// The secrets' forms that the text holds.
QList<QByteArray> secretsIn(const QByteArray &text)
{
    QList<QByteArray> found;
    for (const QByteArray &secret : kSecrets) {
        const QList<QByteArray> forms = formsOf(secret);
        for (const QByteArray &form : forms) {
            if (text.contains(form)) {
                found.append(form);
            }
        }
    }
    return found;
}

QByteArray systemLog()
{
    QByteArray lines;
    const QList<QByteArray> texts = takeSystemLog();
    for (const QByteArray &text : texts) {
        lines += text + '\n';
    }
    return lines;
}

QByteArray overLong(const char *secret) { return QByteArray(secret).repeated(20); }

QString credentialsUrl()
{
    return utf8("http://") + utf8(kUser) + utf8(":") + utf8(kPasswd) + utf8("@example.org/");
}

QNetworkCookie cookie()
{
    QNetworkCookie made(kCookieName, kCookieValue);
    made.setDomain(utf8("example.org"));
    made.setPath(utf8("/"));
    made.setExpirationDate(QDateTime(QDate(2030, 1, 2), QTime(3, 4, 5), Qt::UTC));
    return made;
}

typedef std::function<void(QString *)> Operation;

// In the local encoding; empty without a directory.
QByteArray localPath(const QString *directory, const char *name = "")
{
    return !directory || directory->isEmpty() ? QByteArray() : QFile::encodeName(*directory) + name;
}

// What a save can meet: a folder, no folder, nowhere at all, something else in the file's place, a
// disk that takes nothing.
void saveEverywhere(const char *fileName, const Operation &save)
{
    TestDirectory directory;
    save(directory.pathPointer());
    save(directory.pathPointer());

    QString missing = directory.file("missing") + QDir::separator() + utf8("deeper/");
    save(&missing);
    QString none;
    save(&none);
    save(nullptr);

    TestDirectory blocked;
    QVERIFY(QDir(blocked.path()).mkdir(utf8(fileName)));
    save(blocked.pathPointer());

    setSyncError(EIO);
    save(directory.pathPointer());
    setSyncError(0);
}

// What a load can meet: the file, cut or changed at any place, none, another kind of file.
void loadEverything(const QByteArray &document, const char *fileName, const Operation &load)
{
    TestDirectory directory;
    load(directory.pathPointer());
    for (int size = 0; size <= document.size(); size += 9) {
        writeFile(directory.file(fileName), document.left(size));
        load(directory.pathPointer());
    }
    for (int i = 0; i < document.size(); i += 13) {
        QByteArray changed = document;
        changed[i] = '<';
        writeFile(directory.file(fileName), changed);
        load(directory.pathPointer());
    }
    writeFile(directory.file(fileName), QByteArray(document.size(), '\0'));
    load(directory.pathPointer());
    QFile::remove(directory.file(fileName));
    QVERIFY(QDir(directory.path()).mkdir(utf8(fileName)));
    load(directory.pathPointer());
    QString none;
    load(&none);
    load(nullptr);
}

// Null children are what the stores report as errors.
void addNullChild(VLMC_XMLSetting &store)
{
    store.getXMLRootNode()->getXMLNodeChildren().append(nullptr);
}
} // namespace

class tst_Secrets : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void search_findsEveryForm();
    void search_findsNothingElse();
    void commonPreferences_areSilent();
    void userPreferences_areSilent();
    void bookmarks_areSilent();
    void history_isSilent();
    void fonts_areSilent();
    void thumbnails_areSilent();
    void credentials_areSilent();
    void cookies_areSilent();
    void cookieConversions_areSilent();

private:
    QByteArray logFile() const { return readFile(m_directory->file("log")); }

    QScopedPointer<TestDirectory> m_directory;
};

void tst_Secrets::init()
{
    m_directory.reset(new TestDirectory);
    takePlatformCalls();
    setLogFile(m_directory->localFile("log"));
    VLMG_DebugSetLogLevel(std::numeric_limits<unsigned long>::max());
    g_uc_SystemLogLevel = 255;
}

// The search itself: whatever a test function made the stores log, it holds no secret.
void tst_Secrets::cleanup()
{
    runDeferredDeletes();
    VLMG_DebugPrint(VLMG_LogError, kLastLine);
    VLMG_DebugSetLogLevel(0);
    const QByteArray sinks[] = {logFile(), systemLog()};
    setLogFile(QByteArray());
    for (const QByteArray &sink : sinks) {
        QVERIFY(sink.contains(kLastLine));
        QCOMPARE(secretsIn(sink), QList<QByteArray>());
    }
}

void tst_Secrets::search_findsEveryForm()
{
    for (const QByteArray &secret : kSecrets) {
        QCOMPARE(int(secret.count('Q')), 1);
        const QList<QByteArray> forms = formsOf(secret);
        for (const QByteArray &form : forms) {
            QVERIFY(form.size() >= 10);
            VLMG_DebugPrint(VLMG_LogTrace, "before %s behind", form.constData());
            QVERIFY(secretsIn(systemLog()).contains(form));
            QVERIFY(secretsIn(logFile()).contains(form));
            QVERIFY(QFile::remove(m_directory->file("log")));
        }
        for (int offset = 0; offset < 3; ++offset) {
            const QByteArray within = QByteArray(offset, '-') + secret + "---";
            QVERIFY(!secretsIn(within.toBase64()).isEmpty());
        }
    }
}

void tst_Secrets::search_findsNothingElse()
{
    QCOMPARE(secretsIn("QzProxy S3cret HostUser Cookie"), QList<QByteArray>());
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::addAuthInfo]");
}

void tst_Secrets::commonPreferences_areSilent()
{
    VLMC_BrowserCommonSetting store;
    const auto set = [&] {
        store.setUseProxyInfo(1);
        store.setUseProxyCertificationInfo(1);
        store.setProxyServerStr(credentialsUrl());
        store.setProxyAccountStr(kProxyUser);
        store.setProxyPasswordStr(kProxyPasswd);
        store.setProxyAccountStr(overLong(kProxyUser));
        store.setProxyPasswordStr(overLong(kProxyPasswd));
    };
    const auto read = [&] {
        QString host;
        QByteArray account;
        QByteArray passwd;
        store.getProxyServerStr(&host);
        store.getProxyAccountStr(&account);
        store.getProxyPasswordStr(&passwd);
        store.getProxyPasswordStr(nullptr);
    };
    set();
    read();
    store.loadSetting(m_directory->pathPointer());
    set();
    set();
    QByteArray passwd;
    store.getProxyPasswordStr(&passwd);
    QCOMPARE(passwd, QByteArray(kProxyPasswd));
    saveEverywhere("repostry.xml", [&](QString *directory) { store.saveSetting(directory); });

    store.saveSetting(m_directory->pathPointer());
    QByteArray document = readFile(m_directory->file("repostry.xml"));
    QVERIFY(!secretsIn(document).isEmpty());
    const auto load = [&](QString *directory) {
        store.loadSetting(directory);
        read();
    };
    loadEverything(document, "repostry.xml", load);
    document.replace(QByteArray(kProxyPasswd).toBase64(), overLong(kProxyPasswd).toBase64());
    document.replace(QByteArray(kProxyUser).toBase64(), kProxyUser);
    loadEverything(document, "repostry.xml", load);

    store.loadSetting(m_directory->pathPointer());
    addNullChild(store);
    QString id = utf8("id");
    store.setIDforChildren(id);
    store.saveSetting(m_directory->pathPointer());
    store.deleteAllSetting();
    store.deleteAllXMLNode();
    QVERIFY(systemLog().contains("[VLMC_BrowserCommonSetting::saveSetting] end"));
}

void tst_Secrets::userPreferences_areSilent()
{
    VLMC_BrowserUserSetting store;
    store.setUserType(3);
    store.setBrwAdminHomepage(credentialsUrl());
    store.loadSetting(m_directory->pathPointer());
    store.setHomePage(credentialsUrl());
    store.setLastPage(utf8(overLong(kPasswd)));
    store.setFontName(utf8(kUser));
    saveEverywhere("repostry_private.xml",
                   [&](QString *directory) { store.saveSetting(directory); });
    store.saveSetting(m_directory->pathPointer());
    loadEverything(readFile(m_directory->file("repostry_private.xml")), "repostry_private.xml",
                   [&](QString *directory) {
                       store.loadSetting(directory);
                       QString page;
                       store.getHomePage(&page);
                       store.getHomePage(nullptr);
                   });
    QVERIFY(systemLog().contains("[VLMC_BrowserUserSetting::saveSetting] end"));
}

void tst_Secrets::bookmarks_areSilent()
{
    const ForeignDocuments overLongTitles;
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    VLMS_Bookmark bookmark = {utf8(overLong(kUser)), credentialsUrl(), utf8(kPasswd)};
    store.setBookmark(&bookmark, 0);
    store.loadBookmark(m_directory->pathPointer(), 10, lastNumber);
    QVERIFY(store.setBookmark(&bookmark, 0));
    QVERIFY(store.setBookmark(&bookmark, 1));
    bookmark.url = utf8(overLong(kPasswd));
    QVERIFY(!store.setBookmark(&bookmark, 1));
    store.setBookmarkURL(0, &bookmark.url);
    store.setBookmarkTitle(0, &bookmark.url);
    saveEverywhere("bookmark.xml", [&](QString *directory) {
        store.saveBookmark(directory, 10);
        store.saveBookmark(directory, 0);
    });
    store.saveBookmark(m_directory->pathPointer(), 10);
    loadEverything(readFile(m_directory->file("bookmark.xml")), "bookmark.xml",
                   [&](QString *directory) {
                       store.loadBookmark(directory, 10, lastNumber);
                       store.getBookmark(0, &bookmark);
                       store.deleteBookmark(0);
                   });
    QVERIFY(systemLog().contains("[VLMC_BookmarksSetting::saveBookmark] end"));
}

void tst_Secrets::history_isSilent()
{
    VLMC_HistorySetting store;
    VLMS_History visit = {utf8(kUser), credentialsUrl(), QDateTime(QDate(2024, 1, 2), QTime(3, 4))};
    store.setHistory(&visit);
    store.loadHistory(m_directory->pathPointer(), 2);
    for (int i = 0; i < 4; ++i) {
        store.updateHistory(&visit);
    }
    store.changeHistory(0, visit);
    store.changeHistoryTitle(1, visit.url);
    saveEverywhere("visit.xml", [&](QString *directory) {
        store.saveHistory(directory, 2);
        store.saveHistory(directory, 0);
    });
    store.saveHistory(m_directory->pathPointer(), 2);
    loadEverything(readFile(m_directory->file("visit.xml")), "visit.xml", [&](QString *directory) {
        store.loadHistory(directory, 2);
        QString url = credentialsUrl();
        store.getHistory(store.getHistoryIndex(url), &visit);
        store.deleteHistory(0);
    });
    addNullChild(store);
    store.sortHistory();
    QVERIFY(systemLog().contains("[VLMC_HistorySetting::saveHistory] end"));
}

void tst_Secrets::fonts_areSilent()
{
    const ForeignDocuments overLongNames;
    VLMC_FontListSetting store;
    store.loadFontList(m_directory->path());
    store.addFont(utf8(kUser));
    store.addFont(utf8(overLong(kPasswd)));
    saveEverywhere("fontlist.xml", [&](QString *directory) {
        store.saveFontList(directory ? *directory : QString());
    });
    store.saveFontList(m_directory->path());
    loadEverything(readFile(m_directory->file("fontlist.xml")), "fontlist.xml",
                   [&](QString *directory) {
                       store.loadFontList(directory ? *directory : QString());
                       store.getFont(0);
                   });
    QVERIFY(systemLog().contains("[VLMC_FontListSetting::saveFontList] end"));
}

void tst_Secrets::thumbnails_areSilent()
{
    VLMC_ThumbnailConverter converter;
    const QByteArray packed = QByteArray("<thumbnail><image src=\"") + kUser + ".PNG\"><![CDATA["
                              + QByteArray(kPasswd).toBase64() + "]]></image><image src=\"../"
                              + kUser + "\"><![CDATA[" + kPasswd
                              + "]]></image><image src=\"empty\"/></thumbnail>";
    loadEverything(packed, "packed.xml", [&](QString *directory) {
        QByteArray path = localPath(directory);
        QByteArray file = localPath(directory, "packed.xml");
        converter.convertThumbnailXMLToPng(directory ? file.data() : nullptr, path.data());
        converter.convertThumbnailPngToXML(path.data(), directory ? file.data() : nullptr);
    });
    QVERIFY(systemLog().contains("Couldn't open thumbnail for writing."));
}

void tst_Secrets::credentials_areSilent()
{
    VLMC_AuthSetting store;
    const VLMS_AuthInfo wanted = {utf8("example.org"), utf8("8080"), 1, kUser, kPasswd};
    VLMS_AuthInfo info = wanted;
    VLMS_AuthInfo longUser = wanted;
    longUser.user = overLong(kUser);
    VLMS_AuthInfo longPasswd = wanted;
    longPasswd.passwd = overLong(kPasswd);
    VLMS_AuthInfo longHost = wanted;
    longHost.hostName = utf8(overLong(kUser));
    QVERIFY(store.setAuthInfo(&info));

    store.loadAuthInfo(m_directory->pathPointer(), 2);
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(!store.setAuthInfo(&longUser));
    QVERIFY(!store.setAuthInfo(&longPasswd));
    QVERIFY(!store.setAuthInfo(&longHost));
    QVERIFY(!store.setAuthInfo(nullptr));
    store.addAuthInfo(&longUser);
    store.addAuthInfo(&longPasswd);
    QVERIFY(store.updateAuthInfo(&info));
    QVERIFY(!store.updateAuthInfo(&longPasswd));
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(store.getAuthInfo(0, &info));
    QCOMPARE(info.passwd, wanted.passwd);
    saveEverywhere("authinfo.xml", [&](QString *directory) {
        store.saveAuthInfo(directory, 2);
        store.saveAuthInfo(directory, 0);
    });

    store.saveAuthInfo(m_directory->pathPointer(), 2);
    const auto load = [&](QString *directory) {
        store.loadAuthInfo(directory, 2);
        store.loadAuthInfo(directory, 0);
        for (int id = 0; id < store.getAuthInfoCnt(); ++id) {
            store.getAuthInfo(id, &info);
        }
        store.deleteAuthInfo(0);
    };
    QByteArray document = readFile(m_directory->file("authinfo.xml"));
    QVERIFY(!secretsIn(document).isEmpty());
    loadEverything(document, "authinfo.xml", load);
    document.replace(QByteArray(kPasswd).toBase64(), kPasswd);
    loadEverything(document, "authinfo.xml", load);

    store.loadAuthInfo(m_directory->pathPointer(), 2);
    addNullChild(store);
    info = wanted;
    QVERIFY(store.setAuthInfo(&info));
    store.saveAuthInfo(m_directory->pathPointer(), 2);
    store.deleteAllSetting();
    store.deleteAllXMLNode();
    QVERIFY(systemLog().contains("[VLMC_AuthSetting::saveAuthInfo] end"));
}

void tst_Secrets::cookies_areSilent()
{
    VLMC_CookieSetting store;
    QNetworkCookie added = cookie();
    store.addCookieInfo(added);
    store.createXMLRootNode();
    store.addCookieInfo(added);
    store.addCookieInfo(added);
    QString id = utf8("id");
    store.setIDforChildren(id);
    QList<VLMS_CookieInfo> stored = store.getAllCookieInfo();
    QCOMPARE(int(stored.size()), 2);
    QCOMPARE(stored.first().contents, utf8(kCookieValue));
    store.isMuchCookieInfo(added, stored.first());
    store.deleteCookieInfo(0);
    store.deleteCookieInfo(9);

    const QList<QNetworkCookie> cookies = QList<QNetworkCookie>() << added << added;
    saveEverywhere("cookie.ini", [&](QString *directory) {
        store.saveCookieInfo(cookies, directory, 20);
        store.saveCookieInfo(cookies, directory, 0);
    });
    store.saveCookieInfo(cookies, m_directory->pathPointer(), 20);
    const QByteArray file = readFile(m_directory->file("cookie.ini"));
    QVERIFY(!secretsIn(file).isEmpty());
    loadEverything(file, "cookie.ini", [&](QString *directory) {
        store.loadCookieInfo(directory, 20);
        store.loadCookieInfo(directory, 0);
    });
    QVERIFY(systemLog().contains("[VLMC_CookieSetting::saveCookieInfo] end"));
}

void tst_Secrets::cookieConversions_areSilent()
{
    VLMC_CookieSetting store;
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < 22; ++i) {
        cookies.append(cookie());
        cookies.last().setPath(utf8("/") + QString::number(i));
    }
    QVERIFY(QDir(m_directory->path()).mkdir(utf8("back")));
    store.saveCookieInfo(cookies, m_directory->pathPointer(), 20);
    char *const xml = m_directory->localFile("cookies.xml");
    store.convertCookieIniToXML(m_directory->localFile(), xml);
    store.convertCookieIniToXML(m_directory->localFile(), xml);
    store.convertCookieIniToXML(nullptr, xml);
    store.convertCookieXMLToIni(xml, m_directory->localFile("back/"));
    store.convertCookieXMLToIni(xml, nullptr);
    const QByteArray document = readFile(m_directory->file("cookies.xml"));
    QVERIFY(!secretsIn(document).isEmpty());
    QVERIFY(!secretsIn(readFile(m_directory->file("back/cookie.ini"))).isEmpty());

    saveEverywhere("cookies.xml", [&](QString *directory) {
        QByteArray path = localPath(directory, "cookies.xml");
        store.convertCookieIniToXML(m_directory->localFile(), path.data());
    });
    saveEverywhere("cookie.ini", [&](QString *directory) {
        QByteArray path = localPath(directory);
        store.convertCookieXMLToIni(xml, path.data());
    });
    loadEverything(document.left(2000), "cookies.xml", [&](QString *directory) {
        QByteArray damaged = localPath(directory, "cookies.xml");
        store.convertCookieXMLToIni(damaged.data(), m_directory->localFile("back/"));
        store.convertCookieIniToXML(m_directory->localFile(), damaged.data());
    });
    QVERIFY(systemLog().contains("[VLMC_XMLSetting::saveBookmark] end"));
}

QTEST_GUILESS_MAIN(tst_Secrets)
#include "tst_Secrets.moc"
