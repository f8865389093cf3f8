#include "preferences/VLMC_BrowserUserSetting.h"

#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Refused_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "preferences/UserRows_p.h"

using namespace vlm;
using namespace vlm::userPreferences;

namespace
{
const unsigned long kUserWithAdminTimings = 1;
const unsigned long kUserWithAdminValues = 3;
const unsigned long kUserWhoseDataGoes = 4;
} // namespace

VLMC_BrowserUserSetting *VLMC_BrowserUserSetting::getInstance()
{
    static VLMC_BrowserUserSetting instance;
    return &instance;
}

VLMC_BrowserUserSetting::VLMC_BrowserUserSetting()
    : m_userType(0),
      m_adminCookieDeleteTiming(0),
      m_adminCertificateDeleteTiming(0),
      m_adminStartup(0),
      m_adminHomepage(QEXC_TextCodec::fromSJIS(kBlankPage)),
      m_adminSetting(true),
      m_settingFlag(false)
{
}

VLMC_BrowserUserSetting::~VLMC_BrowserUserSetting() {}

void VLMC_BrowserUserSetting::loadSetting(QString *dir)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserUserSetting::loadSetting] start");
    if (refused(isNullOrEmpty(dir),
                "[VLMC_BrowserUserSetting::loadSetting] User Path is NULL or empty.")) {
        return;
    }
    loadFile(*this, *dir, kFileName);
    if (getXMLRootNode()) {
        completeDocument();
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserUserSetting::loadSetting] end");
}

void VLMC_BrowserUserSetting::saveSetting(QString *dir)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserUserSetting::saveSetting] start");
    if (refused(isNullOrEmpty(dir),
                "[VLMC_BrowserUserSetting::saveSetting] User Path is NULL or empty.")) {
        return;
    }
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_BrowserUserSetting::saveSetting] end");
}

// In the order in which a new file lists them. An administrator's home page that is too long is
// refused and leaves the file without one.
void VLMC_BrowserUserSetting::completeDocument()
{
    claimRoot(*this, kRoot);
    const bool imposed = m_userType == kUserWithAdminValues;
    if (!storedElement(*this, kHome.group, kHome.element)) {
        setHomePage(imposed ? m_adminHomepage : QEXC_TextCodec::fromSJIS(kHome.fallback));
    }
    if (!storedElement(*this, kStartup.group, kStartup.element)) {
        setStartUp(imposed ? m_adminStartup : kStartup.fallback);
    }
    complete(*this, kLastPage);
    if (!storedElement(*this, kPageInfo, kZoom)) {
        setZoomInfo(kFullSize);
    }
    completeDeleteTiming(*this, kCookieDeleteTiming, defaultTiming(m_adminCookieDeleteTiming));
    completeDeleteTiming(*this, kAuthInfoDeleteTiming,
                         defaultTiming(m_adminCertificateDeleteTiming));
    complete(*this, kFontName);
}

void VLMC_BrowserUserSetting::getHomePage(QString *url)
{
    if (refused(!url, "[VLMC_BrowserUserSetting::getHomePage] Parameter is NULL.")) {
        return;
    }
    readText(*this, kHome, url);
}

int VLMC_BrowserUserSetting::setHomePage(QString url) { return writeText(*this, kHome, url); }

void VLMC_BrowserUserSetting::getLastPage(QString *url)
{
    if (refused(!url, "[VLMC_BrowserUserSetting::getLastPage] Parameter is NULL.")) {
        return;
    }
    readText(*this, kLastPage, url);
}

int VLMC_BrowserUserSetting::setLastPage(QString url) { return writeText(*this, kLastPage, url); }

char VLMC_BrowserUserSetting::getStartUp() { return readFlag(*this, kStartup); }

void VLMC_BrowserUserSetting::setStartUp(char code) { writeFlag(*this, kStartup, code); }

short VLMC_BrowserUserSetting::getZoomInfo()
{
    VLMC_XMLNode *const stored = storedElement(*this, kPageInfo, kZoom);
    if (!stored) {
        return kFullSize;
    }
    for (int i = 0; i < kZoomCount; ++i) {
        if (stored->getText() == QEXC_TextCodec::fromSJIS(kZoomTexts[i])) {
            return short(i + 1);
        }
    }
    return kFullSize;
}

// The one setter that ensures its group before it looks at the value: a refused code leaves an
// empty "pageInfo" behind.
int VLMC_BrowserUserSetting::setZoomInfo(short zoom)
{
    VLMC_XMLNode *const pageInfo = ensureGroup(*this, kPageInfo);
    const quint16 index = quint16(zoom - 1);
    if (!pageInfo || index >= kZoomCount) {
        return 0;
    }
    writeWord(*this, pageInfo, kZoom, kZoomTexts[index]);
    return 1;
}

void VLMC_BrowserUserSetting::getFontName(QString *name)
{
    if (refused(!name, "[VLMC_BrowserUserSetting::getFontName] Parameter is NULL.")) {
        return;
    }
    readText(*this, kFontName, name);
}

int VLMC_BrowserUserSetting::setFontName(QString name) { return writeText(*this, kFontName, name); }

char VLMC_BrowserUserSetting::getCookieDeleteTiming()
{
    return readDeleteTiming(*this, kCookieDeleteTiming, missingTiming());
}

void VLMC_BrowserUserSetting::setCookieDeleteTiming(char code)
{
    writeDeleteTiming(*this, kCookieDeleteTiming, code);
}

char VLMC_BrowserUserSetting::getCertificationDeleteTiming()
{
    return readDeleteTiming(*this, kAuthInfoDeleteTiming, missingTiming());
}

void VLMC_BrowserUserSetting::setCertificationDeleteTiming(char code)
{
    writeDeleteTiming(*this, kAuthInfoDeleteTiming, code);
}

char VLMC_BrowserUserSetting::IsNotChgUserDeletetiming()
{
    const bool found = isOtherThanChangeUser(*this, kCookieDeleteTiming)
                       || isOtherThanChangeUser(*this, kAuthInfoDeleteTiming);
    return found ? 1 : 0;
}

void VLMC_BrowserUserSetting::CnvOldtypeDeletetiming()
{
    convertToOldWord(*this, kCookieDeleteTiming);
    convertToOldWord(*this, kAuthInfoDeleteTiming);
}

void VLMC_BrowserUserSetting::setUserType(unsigned long type) { m_userType = type; }

void VLMC_BrowserUserSetting::setBrwAdminCookieDeleteTiming(char code)
{
    m_adminCookieDeleteTiming = code;
}

void VLMC_BrowserUserSetting::setBrwAdminCertificateDeleteTiming(char code)
{
    m_adminCertificateDeleteTiming = code;
}

void VLMC_BrowserUserSetting::setBrwAdminStartup(char code) { m_adminStartup = code; }

void VLMC_BrowserUserSetting::setBrwAdminHomepage(QString url) { m_adminHomepage = url; }

void VLMC_BrowserUserSetting::setBrwAdminSetting(bool setting) { m_adminSetting = setting; }

void VLMC_BrowserUserSetting::setBrwSettingflag(bool flag) { m_settingFlag = flag; }

// What loading writes for a missing delete timing.
char VLMC_BrowserUserSetting::defaultTiming(char adminTiming) const
{
    if (m_userType == kUserWithAdminTimings || m_userType == kUserWithAdminValues) {
        return adminTiming;
    }
    return m_settingFlag ? kDeleteAtUserChange : kNeverDelete;
}

// What a missing delete timing reads as; not what loading writes for it.
char VLMC_BrowserUserSetting::missingTiming() const
{
    return m_userType == kUserWhoseDataGoes ? kDeleteAtUserChange : kNeverDelete;
}
