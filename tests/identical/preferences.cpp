#include "tests/identical/Script.h"

#include "core/VLMC_XMLNode.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

namespace
{
typedef VLMC_BrowserCommonSetting Common;
typedef VLMC_BrowserUserSetting User;

const char kCommonFile[] = "repostry.xml";
const char kCommonDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<repostry_common docInfo=\"1.0\">\n"
                               "    <cookie>\n"
                               "        <acceptCookie>refuse</acceptCookie>\n"
                               "    </cookie>\n"
                               "    <cache>\n"
                               "        <enableCache>false</enableCache>\n"
                               "        <cacheDeleteTiming>timeout</cacheDeleteTiming>\n"
                               "    </cache>\n"
                               "    <proxy>\n"
                               "        <enableProxy>true</enableProxy>\n"
                               "        <hostName>proxy.example.com \xE3\x81\x82</hostName>\n"
                               "        <portHTTP>3128</portHTTP>\n"
                               "        <enableHTTP11>false</enableHTTP11>\n"
                               "        <unusedDomain>localhost;example.com</unusedDomain>\n"
                               "        <enableProxyAuth>true</enableProxyAuth>\n"
                               "        <proxyUserName><![CDATA[aGFuYWtv]]></proxyUserName>\n"
                               "        <proxyUserPass>c2FtcGxl</proxyUserPass>\n"
                               "    </proxy>\n"
                               "    <security>\n"
                               "        <enableSSL30>true</enableSSL30>\n"
                               "        <enableTLS11>false</enableTLS11>\n"
                               "    </security>\n"
                               "</repostry_common>\n";

const char kUserFile[] = "repostry_private.xml";
const char kUserDocument[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<repostry docInfo=\"1.0\">\n"
    "    <pageInfo>\n"
    "        <home>http://www.example.com/\xE3\x81\x82</home>\n"
    "        <startup>lastpage</startup>\n"
    "        <lastPageURL>http://www.example.com/last?a=1&amp;b=2</lastPageURL>\n"
    "        <Zoom>1.3</Zoom>\n"
    "    </pageInfo>\n"
    "    <cookie>\n"
    "        <cookieDeleteTiming>logout</cookieDeleteTiming>\n"
    "    </cookie>\n"
    "    <authInfo>\n"
    "        <authInfoDeleteTiming>changeUser</authInfoDeleteTiming>\n"
    "    </authInfo>\n"
    "    <font>\n"
    "        <fontName>DejaVu Sans</fontName>\n"
    "    </font>\n"
    "</repostry>\n";

struct CommonSwitch {
    const char *name;
    char (Common::*get)();
    void (Common::*set)(char);
};
const CommonSwitch kCommonSwitches[] = {
    {"keyboard", &Common::getKeyBoardTypeInfo, &Common::setKeyBoardTypeInfo},
    {"cookies", &Common::getRcvCookieInfo, &Common::setRcvCookieInfo},
    {"cache", &Common::getUseCacheInfo, &Common::setUseCacheInfo},
    {"cache timing", &Common::getCacheDeleteTiming, &Common::setCacheDeleteTiming},
    {"soft keyboard", &Common::getSWKeyBoardTypeInfo, &Common::setSWKeyBoardTypeInfo},
    {"scripts", &Common::getUseJavaScriptInfo, &Common::setUseJavaScriptInfo},
    {"plug-in", &Common::getPlayFlashInfo, &Common::setPlayFlashInfo},
    {"proxy", &Common::getUseProxyInfo, &Common::setUseProxyInfo},
    {"HTTP 1.1", &Common::getUseProxyHttpInfo, &Common::setUseProxyHttpInfo},
    {"account", &Common::getUseProxyCertificationInfo, &Common::setUseProxyCertificationInfo},
    {"SSL 3.0", &Common::getUseSSL30, &Common::setUseSSL30},
    {"TLS 1.0", &Common::getUseTLS10, &Common::setUseTLS10},
    {"TLS 1.1", &Common::getUseTLS11, &Common::setUseTLS11},
    {"TLS 1.2", &Common::getUseTLS12, &Common::setUseTLS12},
};

struct CommonText {
    const char *name;
    void (Common::*get)(QString *);
    int (Common::*set)(QString);
};
const CommonText kCommonTexts[] = {
    {"host", &Common::getProxyServerStr, &Common::setProxyServerStr},
    {"HTTP port", &Common::getProxyHttpPortStr, &Common::setProxyHttpPortStr},
    {"HTTPS port", &Common::getProxyHttpsPortStr, &Common::setProxyHttpsPortStr},
    {"domains", &Common::getNoProxyDomainStr, &Common::setNoProxyDomainStr},
};

struct CommonBytes {
    const char *name;
    void (Common::*get)(QByteArray *);
    int (Common::*set)(QByteArray);
};
const CommonBytes kCommonBytes[] = {
    {"account name", &Common::getProxyAccountStr, &Common::setProxyAccountStr},
    {"account word", &Common::getProxyPasswordStr, &Common::setProxyPasswordStr},
};

struct UserSwitch {
    const char *name;
    char (User::*get)();
    void (User::*set)(char);
};
const UserSwitch kUserSwitches[] = {
    {"start", &User::getStartUp, &User::setStartUp},
    {"cookie timing", &User::getCookieDeleteTiming, &User::setCookieDeleteTiming},
    {"credential timing", &User::getCertificationDeleteTiming, &User::setCertificationDeleteTiming},
};

struct UserText {
    const char *name;
    void (User::*get)(QString *);
    int (User::*set)(QString);
};
const UserText kUserTexts[] = {
    {"home", &User::getHomePage, &User::setHomePage},
    {"last", &User::getLastPage, &User::setLastPage},
    {"font", &User::getFontName, &User::setFontName},
};

// Whether char has a sign is up to the processor.
int codeOf(char code) { return static_cast<unsigned char>(code); }

void showCommon(Common &store)
{
    for (const CommonSwitch &preference : kCommonSwitches) {
        line(preference.name, codeOf((store.*preference.get)()));
    }
    for (const CommonText &preference : kCommonTexts) {
        QString text = utf8("kept");
        (store.*preference.get)(&text);
        line(preference.name, text);
    }
    for (const CommonBytes &preference : kCommonBytes) {
        QByteArray bytes = "kept";
        (store.*preference.get)(&bytes);
        line(preference.name, bytes);
    }
}

void showUser(User &store)
{
    for (const UserSwitch &preference : kUserSwitches) {
        line(preference.name, codeOf((store.*preference.get)()));
    }
    for (const UserText &preference : kUserTexts) {
        QString text = utf8("kept");
        (store.*preference.get)(&text);
        line(preference.name, text);
    }
    line("zoom", int(store.getZoomInfo()));
    line("other timings", codeOf(store.IsNotChgUserDeletetiming()));
}

// 200 is below 0 where char has a sign.
char code(Draw &draw)
{
    const int codes[] = {0, 1, 2, 3, 4, 127, 128, 200, 255};
    return char(draw.oneOf(codes));
}

void changeCommon(Common &store, Draw &draw)
{
    const CommonSwitch &preference = kCommonSwitches[draw.below(14)];
    (store.*preference.set)(code(draw));
    line(preference.name, codeOf((store.*preference.get)()));
    const CommonText &text = kCommonTexts[draw.below(4)];
    line(text.name, (store.*text.set)(draw.text()));
    QString stored = utf8("kept");
    (store.*text.get)(&stored);
    line(text.name, stored);
    const CommonBytes &bytes = kCommonBytes[draw.below(2)];
    line(bytes.name, (store.*bytes.set)(draw.bytes()));
    QByteArray storedBytes = "kept";
    (store.*bytes.get)(&storedBytes);
    line(bytes.name, storedBytes);
}

void changeUser(User &store, Draw &draw)
{
    const UserSwitch &preference = kUserSwitches[draw.below(3)];
    (store.*preference.set)(code(draw));
    line(preference.name, codeOf((store.*preference.get)()));
    const UserText &text = kUserTexts[draw.below(3)];
    line(text.name, (store.*text.set)(draw.text()));
    QString stored = utf8("kept");
    (store.*text.get)(&stored);
    line(text.name, stored);
    line("set zoom", store.setZoomInfo(short(draw.below(15) - 1)));
    line("zoom", int(store.getZoomInfo()));
    if (draw.oneIn(5)) {
        store.CnvOldtypeDeletetiming();
    }
    line("other timings", codeOf(store.IsNotChgUserDeletetiming()));
}

void playRefusedCommon()
{
    const Part part("device's preferences, what is refused");
    Common store;
    QString empty;
    QString folder = newFolder();
    Draw draw(4);
    showCommon(store);
    changeCommon(store, draw);
    store.saveSetting(&folder);
    store.loadSetting(nullptr);
    store.loadSetting(&empty);
    store.saveSetting(nullptr);
    store.saveSetting(&empty);
    store.setSecurityAttribute_Version(nullptr);
    store.getProxyServerStr(nullptr);
    store.getProxyAccountStr(nullptr);
    store.loadSetting(&folder);
    showCommon(store);
    store.saveSetting(&folder);
    showFolder(folder);
    showLog();
}

void playRefusedUser()
{
    const Part part("user's preferences, what is refused");
    User store;
    QString empty;
    QString folder = newFolder();
    Draw draw(5);
    showUser(store);
    changeUser(store, draw);
    store.CnvOldtypeDeletetiming();
    store.saveSetting(&folder);
    store.loadSetting(nullptr);
    store.loadSetting(&empty);
    store.saveSetting(nullptr);
    store.saveSetting(&empty);
    store.getHomePage(nullptr);
    store.getLastPage(nullptr);
    store.getFontName(nullptr);
    showFolder(folder);
    showLog();
}

// New files for each type of user, with an administrator's values.
void playAdministrator()
{
    for (int type = 0; type < 6; ++type) {
        const Part part("user's preferences, type " + shown(type));
        User store;
        QString folder = newFolder();
        store.setUserType(ulong(type));
        store.setBrwAdminCookieDeleteTiming(char(type));
        store.setBrwAdminCertificateDeleteTiming(char(200 + type));
        store.setBrwAdminStartup(1);
        store.setBrwAdminHomepage(utf8("http://admin.example.com/").repeated(type + 7));
        store.setBrwAdminSetting(false);
        store.setBrwSettingflag(type % 2 == 0);
        showUser(store);
        store.loadSetting(&folder);
        showUser(store);
        store.saveSetting(&folder);
        showFolder(folder);
        showLog();
    }
}
} // namespace

void playCommonPreferences()
{
    static Common &store = *Common::getInstance();
    playRefusedCommon();
    playDocuments(kCommonFile, kCommonDocument, [](QString &folder) {
        store.loadSetting(&folder);
        showCommon(store);
        store.saveSetting(&folder);
    });
    Draw draw(6);
    playSteps(
        "device's preferences", 12, [&] { changeCommon(store, draw); },
        [](QString &folder) {
            store.saveSetting(&folder);
            store.loadSetting(&folder);
            showCommon(store);
        });
}

void playUserPreferences()
{
    static User &store = *User::getInstance();
    playRefusedUser();
    playAdministrator();
    playDocuments(kUserFile, kUserDocument, [](QString &folder) {
        store.loadSetting(&folder);
        showUser(store);
        store.saveSetting(&folder);
    });
    Draw draw(7);
    playSteps(
        "user's preferences", 12, [&] { changeUser(store, draw); },
        [](QString &folder) {
            store.saveSetting(&folder);
            store.loadSetting(&folder);
            showUser(store);
        });
}
