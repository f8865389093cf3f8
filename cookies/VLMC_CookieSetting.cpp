#include "cookies/VLMC_CookieSetting.h"

#include "cookies/CookieElements_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/QtCompat_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "text/TimeText_p.h"

using namespace vlm;
using namespace vlm::cookies;

namespace
{
// The elements of an entry, in the order of the file.
struct Field {
    const char *element;
    QString VLMS_CookieInfo::*text;
    char textType;
};

const Field kFields[] = {
    {kWebsite, &VLMS_CookieInfo::website, PlainText},
    {kName, &VLMS_CookieInfo::name, PlainText},
    {kPath, &VLMS_CookieInfo::path, PlainText},
    {kSecure, &VLMS_CookieInfo::secure, PlainText},
    {kExpires, &VLMS_CookieInfo::expires, PlainText},
    {kContents, &VLMS_CookieInfo::contents, CDataText},
};

QString secureText(const QNetworkCookie &cookie)
{
    return QEXC_TextCodec::fromSJIS(cookie.isSecure() ? kTrue : kFalse);
}

// Byte arrays go through constData(), so that with every version of Qt their texts end at a zero
// byte.
VLMS_CookieInfo infoOf(const QNetworkCookie &cookie)
{
    VLMS_CookieInfo info;
    info.website = cookie.domain();
    info.name = QString::fromUtf8(cookie.name().constData());
    info.path = cookie.path();
    info.secure = secureText(cookie);
    info.expires = textOfTime(cookie.expirationDate(), ToSecond);
    info.contents = QString::fromUtf8(cookie.value().constData());
    return info;
}

VLMS_CookieInfo infoOf(VLMC_XMLNode *entry)
{
    VLMS_CookieInfo info;
    for (const Field &field : kFields) {
        VLMC_XMLNode *const element = childNamed(entry, field.element);
        if (element) {
            info.*field.text = element->getText();
        }
    }
    return info;
}
} // namespace

VLMC_CookieSetting *VLMC_CookieSetting::getInstance()
{
    static VLMC_CookieSetting instance;
    return &instance;
}

VLMC_CookieSetting::VLMC_CookieSetting() : loadMax(0) {}

void VLMC_CookieSetting::addCookieInfo(QNetworkCookie &cookie)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::addCookieInfo]");
    VLMC_XMLNode *const entry =
        addElement(*this, getXMLRootNode(), kEntry, QString(), PlainText, AtFront);
    if (!entry) {
        return;
    }
    const VLMS_CookieInfo info = infoOf(cookie);
    for (const Field &field : kFields) {
        addElement(*this, entry, field.element, info.*field.text, field.textType, AtEnd);
    }
    releaseUnattached(entry);
}

QList<VLMS_CookieInfo> VLMC_CookieSetting::getAllCookieInfo()
{
    QList<VLMS_CookieInfo> infos;
    const QList<VLMC_XMLNode *> entries = entriesById(*this, getXMLNodeCnt());
    for (VLMC_XMLNode *const entry : entries) {
        if (entry) {
            infos.append(infoOf(entry));
        }
    }
    return infos;
}

// Name and value are decoded in another way than by addCookieInfo, so a cookie with bytes outside
// ASCII equals no entry and is replaced at every conversion. Files in use depend on that.
bool VLMC_CookieSetting::isMuchCookieInfo(QNetworkCookie &cookie, VLMS_CookieInfo &info)
{
    return cookie.domain() == info.website && fromCString(cookie.name().constData()) == info.name
           && cookie.path() == info.path && secureText(cookie) == info.secure
           && fromCString(cookie.value().constData()) == info.contents;
}

void VLMC_CookieSetting::deleteCookieInfo(int si_XMLNum)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:%d",
                    si_XMLNum);
    removeEntry(*this, si_XMLNum);
}
