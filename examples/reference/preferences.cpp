#include "core/VLMC_XMLNode.h"
#include "examples/reference/Reference.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"

#include <QtCore/QFile>

namespace
{
void loadCommon(QString directory)
{
    //! [common: load]
    VLMC_BrowserCommonSetting *common = VLMC_BrowserCommonSetting::getInstance();
    common->loadSetting(&directory); // what the file lacks takes its default
    //! [common: load]
}

void switches()
{
    //! [common: switches]
    VLMC_BrowserCommonSetting *common = VLMC_BrowserCommonSetting::getInstance();
    common->setUseJavaScriptInfo(0);
    common->setRcvCookieInfo(1);
    common->setUseTLS10(0); // also stamps the SSL and TLS switches with the version
    const bool scripts = common->getUseJavaScriptInfo() == 1;
    //! [common: switches]
    EXPECT(!scripts && common->getRcvCookieInfo() == 1 && common->getUseTLS10() == 0);
}

void proxy()
{
    //! [common: proxy]
    VLMC_BrowserCommonSetting *common = VLMC_BrowserCommonSetting::getInstance();
    common->setUseProxyInfo(1); // only 1 switches it on
    if (common->setProxyServerStr(QString::fromUtf8("proxy.example.com")) == 0) {
        // More than 253 bytes, or nothing is loaded yet: the old host stands.
    }
    common->setProxyHttpPortStr(QString::fromUtf8("3128"));
    common->setUseProxyCertificationInfo(1);
    common->setProxyAccountStr(QByteArray("device"));
    QString host;
    common->getProxyServerStr(&host);
    //! [common: proxy]
    EXPECT(host == utf8("proxy.example.com"));
}

void timing()
{
    //! [common: delete timing]
    VLMC_BrowserCommonSetting *common = VLMC_BrowserCommonSetting::getInstance();
    common->setCacheDeleteTiming(3); // at a change of the user; 0 is never
    //! [common: delete timing]
    EXPECT(common->getCacheDeleteTiming() == 3);
}

void saveCommon(QString directory)
{
    //! [common: save]
    VLMC_BrowserCommonSetting::getInstance()->saveSetting(&directory);
    //! [common: save]
}

void loadUser(QString directory)
{
    //! [user: load]
    VLMC_BrowserUserSetting *user = VLMC_BrowserUserSetting::getInstance();
    user->setUserType(3); // before loading: the two decide what a new file gets
    user->setBrwAdminHomepage(QString::fromUtf8("http://www.example.com/"));
    user->setBrwAdminStartup(0);
    user->setBrwAdminCookieDeleteTiming(3);
    user->loadSetting(&directory);
    //! [user: load]
}

QString startPage()
{
    //! [user: start page]
    VLMC_BrowserUserSetting *user = VLMC_BrowserUserSetting::getInstance();
    QString page;
    if (user->getStartUp() == 1) {
        user->getLastPage(&page);
    } else {
        user->getHomePage(&page);
    }
    //! [user: start page]
    return page;
}

double zoom()
{
    //! [user: zoom and font]
    VLMC_BrowserUserSetting *user = VLMC_BrowserUserSetting::getInstance();
    user->setZoomInfo(8); // 1 to 11 stand for 0.5 to 1.5
    user->setFontName(QString::fromUtf8("DejaVu Sans"));
    const double factor = 0.4 + 0.1 * user->getZoomInfo();
    //! [user: zoom and font]
    return factor;
}

bool userChanges()
{
    //! [user: delete timings]
    VLMC_BrowserUserSetting *user = VLMC_BrowserUserSetting::getInstance();
    const bool deleteCookies = user->getCookieDeleteTiming() == 3;
    const bool deleteCredentials = user->getCertificationDeleteTiming() == 3;
    //! [user: delete timings]
    return deleteCookies && !deleteCredentials;
}

void saveUser(QString directory)
{
    //! [user: save]
    VLMC_BrowserUserSetting *user = VLMC_BrowserUserSetting::getInstance();
    user->setLastPage(QString::fromUtf8("http://www.example.com/news"));
    user->saveSetting(&directory);
    //! [user: save]
}
} // namespace

void exampleOfCommonPreferences(QString directory)
{
    loadCommon(directory);
    EXPECT(VLMC_BrowserCommonSetting::getInstance()->getUseJavaScriptInfo() == 1);
    switches();
    proxy();
    timing();
    saveCommon(directory);
    loadCommon(directory);
    QByteArray account;
    VLMC_BrowserCommonSetting::getInstance()->getProxyAccountStr(&account);
    EXPECT(account == "device");
}

void exampleOfUserPreferences(QString directory)
{
    loadUser(directory);
    EXPECT(startPage() == utf8("http://www.example.com/"));
    EXPECT(qFuzzyCompare(zoom(), 1.2));
    EXPECT(userChanges());
    saveUser(directory);
    loadUser(directory);
    VLMC_BrowserUserSetting::getInstance()->setStartUp(1);
    EXPECT(startPage() == utf8("http://www.example.com/news"));
}
