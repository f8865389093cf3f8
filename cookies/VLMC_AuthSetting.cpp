#include "cookies/VLMC_AuthSetting.h"

#include "cookies/AuthElements_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/Refused_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "files/OwnerOnlyFiles_p.h"
#include "text/Utf8_p.h"

using namespace vlm;
using namespace vlm::auth;

namespace
{
QString wordOf(unsigned char authType)
{
    return authType < kAuthTypeCount ? QEXC_TextCodec::fromSJIS(kAuthTypes[authType]) : QString();
}

// Basic for every text that names no scheme.
unsigned char codeOf(const QString &word)
{
    for (unsigned char code = 0; code < kAuthTypeCount; ++code) {
        if (word == QLatin1String(kAuthTypes[code])) {
            return code;
        }
    }
    return 0;
}

QString base64Of(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64().constData());
}

void readText(VLMC_XMLNode *element, int maxBytes, QString *text)
{
    if (element && fitsUtf8(element->getText(), maxBytes)) {
        *text = element->getText();
    }
}

void readSecret(VLMC_XMLNode *element, QByteArray *secret)
{
    if (!element) {
        return;
    }
    // What Latin-1 cannot represent is not Base64 either, and skipped as such.
    const QByteArray bytes = QByteArray::fromBase64(element->getText().toLatin1());
    if (bytes.size() <= kMaxSecretBytes) {
        *secret = bytes;
    }
}

bool isWithinLimits(const VLMS_AuthInfo &info)
{
    return fitsUtf8(info.hostName, kMaxHostBytes) && fitsUtf8(info.portNum, kMaxPortBytes)
           && info.user.size() <= kMaxSecretBytes && info.passwd.size() <= kMaxSecretBytes;
}
} // namespace

VLMC_AuthSetting *VLMC_AuthSetting::getInstance()
{
    static VLMC_AuthSetting instance;
    return &instance;
}

VLMC_AuthSetting::VLMC_AuthSetting() : loadMax(0) {}

void VLMC_AuthSetting::loadAuthInfo(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::loadAuthInfo] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_AuthSetting::loadAuthInfo] Path is empty.")
        || refused(max < 1, "[VLMC_AuthSetting::loadAuthInfo] Error load_max:%d", max)) {
        return;
    }
    loadMax = max;
    loadEntries(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::loadAuthInfo] end");
}

void VLMC_AuthSetting::saveAuthInfo(QString *dir, int max)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::saveAuthInfo] start");
    if (refused(isNullOrEmpty(dir), "[VLMC_AuthSetting::saveAuthInfo] Path is empty.")
        || refused(max < 1, "[VLMC_AuthSetting::saveAuthInfo] Error save_max:%d", max)) {
        return;
    }
    nameRoot(*this, kRoot);
    const OwnerOnlyFiles passwordsInside;
    saveFile(*this, *dir, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::saveAuthInfo] end");
}

int VLMC_AuthSetting::getAuthInfoCnt() { return countEntries(*this, kEntry); }

bool VLMC_AuthSetting::getAuthInfo(int id, VLMS_AuthInfo *out)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::getAuthInfo]");
    VLMC_XMLNode *const entry = out ? entryById(*this, id) : nullptr;
    if (!entry) {
        return false;
    }
    readText(childNamed(entry, kHostName), kMaxHostBytes, &out->hostName);
    readText(childNamed(entry, kPortNum), kMaxPortBytes, &out->portNum);
    VLMC_XMLNode *const authType = childNamed(entry, kAuthType);
    out->authType = authType ? codeOf(authType->getText()) : 0;
    readSecret(childNamed(entry, kUser), &out->user);
    readSecret(childNamed(entry, kPasswd), &out->passwd);
    return true;
}

bool VLMC_AuthSetting::setAuthInfo(VLMS_AuthInfo *info)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::setAuthInfo]");
    if (!info || !isWithinLimits(*info)) {
        return false;
    }
    addAuthInfo(info);
    return true;
}

bool VLMC_AuthSetting::updateAuthInfo(VLMS_AuthInfo *info)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::updateAuthInfo]");
    deleteAuthInfo(qMin(loadMax, getXMLNodeCnt()) - 1);
    return setAuthInfo(info);
}

void VLMC_AuthSetting::addAuthInfo(VLMS_AuthInfo *info)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::addAuthInfo]");
    if (!info) {
        return;
    }
    VLMC_XMLNode *const entry =
        addElement(*this, getXMLRootNode(), kEntry, QString(), PlainText, AtFront);
    if (!entry) {
        return;
    }
    addElement(*this, entry, kHostName, info->hostName, PlainText, AtEnd);
    addElement(*this, entry, kPortNum, info->portNum, PlainText, AtEnd);
    addElement(*this, entry, kAuthType, wordOf(info->authType), PlainText, AtEnd);
    addElement(*this, entry, kUser, base64Of(info->user), CDataText, AtEnd);
    addElement(*this, entry, kPasswd, base64Of(info->passwd), CDataText, AtEnd);
    numberEntries(*this);
    releaseUnattached(entry);
}

void VLMC_AuthSetting::deleteAuthInfo(int si_nodeNum)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:%d", si_nodeNum);
    removeEntry(*this, si_nodeNum);
}
