#ifndef VLMC_BROWSERCOMMONSETTING_H
#define VLMC_BROWSERCOMMONSETTING_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QByteArray>

/**
 * The preferences of the device, the same for all its users, kept in "repostry.xml" in a directory
 * that the caller names: cookies, cache, keyboard, JavaScript, plug-in, proxy, SSL and TLS. Changes
 * stay in memory until saveSetting. Directories end with "/": the file name is appended as it
 * stands. Used from one thread, which runs an event loop.
 *
 * Before the first load getters give their defaults, text and byte outputs stay as they are, and
 * setters change nothing and return 0. A damaged value reads as the default. No accessor logs:
 * what is set here, the proxy's password among it, never reaches the log.
 *
 * Text limits count bytes of UTF-8. Output pointers may be null. Setters that return a result give
 * 1 when the value was stored, and 0 when it was refused, which changes nothing.
 */
class VLM_EXPORT VLMC_BrowserCommonSetting : public VLMC_XMLSetting
{
public:
    /// The one store of the process, created on the first call and destroyed at exit.
    static VLMC_BrowserCommonSetting *getInstance();

    VLMC_BrowserCommonSetting();
    ~VLMC_BrowserCommonSetting();

    /// Replaces the preferences by those in the directory; what the file lacks takes its default,
    /// so a missing file gives the defaults of all. A file from before the version stamp on the
    /// SSL and TLS switches has SSL 3.0 switched off. A null or empty directory is refused with a
    /// warning in the log and changes nothing.
    void loadSetting(QString *dir);
    /// Writes the preferences into the directory; before the first load no file is touched. A file
    /// created anew is for its owner alone, since it may hold the proxy's account and password. A
    /// null or empty directory is refused with a warning in the log.
    void saveSetting(QString *dir);

    /// Gives a "security" element without version stamp the attribute version="2.0" alone. A stamp
    /// of any value stays. Null is ignored.
    void setSecurityAttribute_Version(VLMC_XMLNode *security);

    /// The keyboard in use, any code: kept in memory only, 0 at first, and independent of
    /// getSWKeyBoardTypeInfo.
    char getKeyBoardTypeInfo();
    void setKeyBoardTypeInfo(char type);

    /// Whether cookies are accepted; 1 by default. Any non-zero code accepts.
    char getRcvCookieInfo();
    void setRcvCookieInfo(char code);
    /// Whether the cache is used; 1 by default. Any non-zero code switches it on.
    char getUseCacheInfo();
    void setUseCacheInfo(char code);
    /// When the cache is deleted: 0 never, the default, or 3 at a change of the user. The codes 1
    /// to 3 mean a change of the user, all others never.
    char getCacheDeleteTiming();
    void setCacheDeleteTiming(char code);
    /// Which keyboard has priority: 1 the one on the screen, the default, or 0 the one at USB. Any
    /// non-zero code means the screen.
    char getSWKeyBoardTypeInfo();
    void setSWKeyBoardTypeInfo(char code);
    /// Whether scripts run; 1 by default. Any non-zero code switches them on.
    char getUseJavaScriptInfo();
    void setUseJavaScriptInfo(char code);
    /// Whether the plug-in plays; 1 by default. Any non-zero code switches it on.
    char getPlayFlashInfo();
    void setPlayFlashInfo(char code);

    /// Whether the proxy is used; 0 by default. Only 1 switches it on.
    char getUseProxyInfo();
    void setUseProxyInfo(char code);
    /// The proxy's host, at most 253 bytes; empty by default and when the stored one is longer.
    void getProxyServerStr(QString *host);
    int setProxyServerStr(QString host);
    /// The proxy's ports for HTTP and HTTPS, at most 5 bytes, which need not be digits; "8080" by
    /// default and when the stored one is longer.
    void getProxyHttpPortStr(QString *port);
    int setProxyHttpPortStr(QString port);
    void getProxyHttpsPortStr(QString *port);
    int setProxyHttpsPortStr(QString port);
    /// Whether the proxy is spoken to in HTTP 1.1; 1 by default. Any non-zero code switches it on.
    char getUseProxyHttpInfo();
    void setUseProxyHttpInfo(char code);
    /// The domains that bypass the proxy, at most 253 bytes; empty by default and when the stored
    /// text is longer.
    void getNoProxyDomainStr(QString *domains);
    int setNoProxyDomainStr(QString domains);
    /// Whether the proxy asks for an account; 0 by default. Only 1 switches it on.
    char getUseProxyCertificationInfo();
    void setUseProxyCertificationInfo(char code);
    /// The account and the password at the proxy, at most 80 bytes of any kind; empty by default
    /// and when the stored ones are longer. The file has them in Base64, not encrypted.
    void getProxyAccountStr(QByteArray *account);
    int setProxyAccountStr(QByteArray account);
    void getProxyPasswordStr(QByteArray *password);
    int setProxyPasswordStr(QByteArray password);

    /// Whether SSL 3.0 is used; 0 by default. Any non-zero code switches it on. This setter and the
    /// three below stamp the "security" element as setSecurityAttribute_Version does.
    char getUseSSL30();
    void setUseSSL30(char code);
    /// Whether TLS 1.0, 1.1 and 1.2 are used; 1 by default. Any non-zero code switches them on.
    char getUseTLS10();
    void setUseTLS10(char code);
    char getUseTLS11();
    void setUseTLS11(char code);
    char getUseTLS12();
    void setUseTLS12(char code);

private:
    char m_keyBoardType;
};

#endif
