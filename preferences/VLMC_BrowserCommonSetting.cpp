#include "preferences/VLMC_BrowserCommonSetting.h"

#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Refused_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "files/OwnerOnlyFiles_p.h"
#include "preferences/CommonRows_p.h"

using namespace vlm;
using namespace vlm::commonPreferences;

namespace
{
// Stamps after the group is ensured and before the element is written, so every write leaves the
// group stamped.
void writeSecurityFlag(VLMC_BrowserCommonSetting &store, const FlagEntry &entry, char code)
{
    VLMC_XMLNode *const security = ensureGroup(store, entry.group);
    store.setSecurityAttribute_Version(security);
    writeFlagIn(store, security, entry, code);
}

void completeSecurityFlag(VLMC_BrowserCommonSetting &store, const FlagEntry &entry)
{
    if (!storedElement(store, entry.group, entry.element)) {
        writeSecurityFlag(store, entry, entry.fallback);
    }
}

bool isStamped(VLMC_XMLNode *security)
{
    return security->isAttribute(QEXC_TextCodec::fromSJIS(kVersion));
}

// A "security" without a stamp dates from when SSL 3.0 was on by default: it is switched off once,
// whatever was stored. A missing TLS 1.0 stays missing there.
void completeSecurity(VLMC_BrowserCommonSetting &store)
{
    VLMC_XMLNode *const security = childNamed(store.getXMLRootNode(), kSecurity);
    if (security && !isStamped(security)) {
        store.setUseSSL30(0);
    } else {
        completeSecurityFlag(store, kEnableSsl30);
        completeSecurityFlag(store, kEnableTls10);
    }
    completeSecurityFlag(store, kEnableTls11);
    completeSecurityFlag(store, kEnableTls12);
}

// In the order in which a new file lists them.
void completeDocument(VLMC_BrowserCommonSetting &store)
{
    claimRoot(store, kRoot);
    complete(store, kAcceptCookie);
    complete(store, kEnableCache);
    completeDeleteTiming(store, kCacheDeleteTiming, kNeverDelete);
    complete(store, kKeyboardPriority);
    complete(store, kJavascript);
    complete(store, kFlashPlugin);
    complete(store, kEnableProxy);
    complete(store, kHostName);
    complete(store, kPortHttp);
    complete(store, kPortHttps);
    complete(store, kEnableHttp11);
    complete(store, kUnusedDomain);
    complete(store, kEnableProxyAuth);
    complete(store, kProxyUserName);
    complete(store, kProxyUserPass);
    completeSecurity(store);
}
} // namespace

VLMC_BrowserCommonSetting *VLMC_BrowserCommonSetting::getInstance()
{
    static VLMC_BrowserCommonSetting instance;
    return &instance;
}

VLMC_BrowserCommonSetting::VLMC_BrowserCommonSetting() : m_keyBoardType(0) {}

VLMC_BrowserCommonSetting::~VLMC_BrowserCommonSetting() {}

void VLMC_BrowserCommonSetting::loadSetting(QString *dir)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserCommonSetting::loadSetting] start");
    if (refused(isNullOrEmpty(dir),
                "[VLMC_BrowserCommonSetting::loadSetting] Common Path is NULL or empty.")) {
        return;
    }
    loadFile(*this, *dir, kFileName);
    if (getXMLRootNode()) {
        completeDocument(*this);
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserCommonSetting::loadSetting] end");
}

void VLMC_BrowserCommonSetting::saveSetting(QString *dir)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserCommonSetting::saveSetting] start");
    if (refused(isNullOrEmpty(dir),
                "[VLMC_BrowserCommonSetting::saveSetting] Common Path is NULL or empty.")) {
        return;
    }
    // The proxy's account and password are in there.
    const OwnerOnlyFiles ownerOnly;
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserCommonSetting::saveSetting] end");
}

void VLMC_BrowserCommonSetting::setSecurityAttribute_Version(VLMC_XMLNode *security)
{
    if (!security || isStamped(security)) {
        return;
    }
    QXmlStreamAttributes stamp = oneAttribute(kVersion, QEXC_TextCodec::fromSJIS(kSecurityVersion));
    security->setAttribute(stamp);
}

char VLMC_BrowserCommonSetting::getKeyBoardTypeInfo() { return m_keyBoardType; }

void VLMC_BrowserCommonSetting::setKeyBoardTypeInfo(char type) { m_keyBoardType = type; }

char VLMC_BrowserCommonSetting::getRcvCookieInfo() { return readFlag(*this, kAcceptCookie); }

void VLMC_BrowserCommonSetting::setRcvCookieInfo(char code)
{
    writeFlag(*this, kAcceptCookie, code);
}

char VLMC_BrowserCommonSetting::getUseCacheInfo() { return readFlag(*this, kEnableCache); }

void VLMC_BrowserCommonSetting::setUseCacheInfo(char code) { writeFlag(*this, kEnableCache, code); }

char VLMC_BrowserCommonSetting::getCacheDeleteTiming()
{
    return readDeleteTiming(*this, kCacheDeleteTiming, kNeverDelete);
}

void VLMC_BrowserCommonSetting::setCacheDeleteTiming(char code)
{
    writeDeleteTiming(*this, kCacheDeleteTiming, code);
}

char VLMC_BrowserCommonSetting::getSWKeyBoardTypeInfo()
{
    return readFlag(*this, kKeyboardPriority);
}

void VLMC_BrowserCommonSetting::setSWKeyBoardTypeInfo(char code)
{
    writeFlag(*this, kKeyboardPriority, code);
}

char VLMC_BrowserCommonSetting::getUseJavaScriptInfo() { return readFlag(*this, kJavascript); }

void VLMC_BrowserCommonSetting::setUseJavaScriptInfo(char code)
{
    writeFlag(*this, kJavascript, code);
}

char VLMC_BrowserCommonSetting::getPlayFlashInfo() { return readFlag(*this, kFlashPlugin); }

void VLMC_BrowserCommonSetting::setPlayFlashInfo(char code)
{
    writeFlag(*this, kFlashPlugin, code);
}

char VLMC_BrowserCommonSetting::getUseProxyInfo() { return readFlag(*this, kEnableProxy); }

void VLMC_BrowserCommonSetting::setUseProxyInfo(char code) { writeFlag(*this, kEnableProxy, code); }

void VLMC_BrowserCommonSetting::getProxyServerStr(QString *host)
{
    readText(*this, kHostName, host);
}

int VLMC_BrowserCommonSetting::setProxyServerStr(QString host)
{
    return writeText(*this, kHostName, host);
}

void VLMC_BrowserCommonSetting::getProxyHttpPortStr(QString *port)
{
    readText(*this, kPortHttp, port);
}

int VLMC_BrowserCommonSetting::setProxyHttpPortStr(QString port)
{
    return writeText(*this, kPortHttp, port);
}

void VLMC_BrowserCommonSetting::getProxyHttpsPortStr(QString *port)
{
    readText(*this, kPortHttps, port);
}

int VLMC_BrowserCommonSetting::setProxyHttpsPortStr(QString port)
{
    return writeText(*this, kPortHttps, port);
}

char VLMC_BrowserCommonSetting::getUseProxyHttpInfo() { return readFlag(*this, kEnableHttp11); }

void VLMC_BrowserCommonSetting::setUseProxyHttpInfo(char code)
{
    writeFlag(*this, kEnableHttp11, code);
}

void VLMC_BrowserCommonSetting::getNoProxyDomainStr(QString *domains)
{
    readText(*this, kUnusedDomain, domains);
}

int VLMC_BrowserCommonSetting::setNoProxyDomainStr(QString domains)
{
    return writeText(*this, kUnusedDomain, domains);
}

char VLMC_BrowserCommonSetting::getUseProxyCertificationInfo()
{
    return readFlag(*this, kEnableProxyAuth);
}

void VLMC_BrowserCommonSetting::setUseProxyCertificationInfo(char code)
{
    writeFlag(*this, kEnableProxyAuth, code);
}

void VLMC_BrowserCommonSetting::getProxyAccountStr(QByteArray *account)
{
    readBytes(*this, kProxyUserName, account);
}

int VLMC_BrowserCommonSetting::setProxyAccountStr(QByteArray account)
{
    return writeBytes(*this, kProxyUserName, account);
}

void VLMC_BrowserCommonSetting::getProxyPasswordStr(QByteArray *password)
{
    readBytes(*this, kProxyUserPass, password);
}

int VLMC_BrowserCommonSetting::setProxyPasswordStr(QByteArray password)
{
    return writeBytes(*this, kProxyUserPass, password);
}

char VLMC_BrowserCommonSetting::getUseSSL30() { return readFlag(*this, kEnableSsl30); }

void VLMC_BrowserCommonSetting::setUseSSL30(char code)
{
    writeSecurityFlag(*this, kEnableSsl30, code);
}

char VLMC_BrowserCommonSetting::getUseTLS10() { return readFlag(*this, kEnableTls10); }

void VLMC_BrowserCommonSetting::setUseTLS10(char code)
{
    writeSecurityFlag(*this, kEnableTls10, code);
}

char VLMC_BrowserCommonSetting::getUseTLS11() { return readFlag(*this, kEnableTls11); }

void VLMC_BrowserCommonSetting::setUseTLS11(char code)
{
    writeSecurityFlag(*this, kEnableTls11, code);
}

char VLMC_BrowserCommonSetting::getUseTLS12() { return readFlag(*this, kEnableTls12); }

void VLMC_BrowserCommonSetting::setUseTLS12(char code)
{
    writeSecurityFlag(*this, kEnableTls12, code);
}
