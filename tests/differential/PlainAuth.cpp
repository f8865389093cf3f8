#include "tests/differential/PlainAuth.h"

#include "cookies/VLMC_AuthSetting.h"

namespace
{
QString base64(const QByteArray &bytes) { return QString::fromLatin1(bytes.toBase64()); }

QByteArray bytesOf(const ElementPointer &element)
{
    return QByteArray::fromBase64(element->text.toUtf8());
}
} // namespace

void PlainAuth::loadAuthInfo(const QString *dir, int max)
{
    print(3, "[VLMC_AuthSetting::loadAuthInfo] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_AuthSetting::loadAuthInfo] Path is empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_AuthSetting::loadAuthInfo] Error load_max:" + QByteArray::number(max));
        return;
    }
    m_loadMax = max;
    deleteAllSetting();
    load(*dir + textOf("authinfo.xml"));
    setIds();
    print(3, "[VLMC_AuthSetting::loadAuthInfo] end");
}

void PlainAuth::saveAuthInfo(const QString *dir, int max)
{
    print(3, "[VLMC_AuthSetting::saveAuthInfo] start");
    if (!dir || dir->isEmpty()) {
        print(2, "[VLMC_AuthSetting::saveAuthInfo] Path is empty.");
        return;
    }
    if (max < 1) {
        print(2, "[VLMC_AuthSetting::saveAuthInfo] Error save_max:" + QByteArray::number(max));
        return;
    }
    nameRoot("authentication");
    save(*dir + textOf("authinfo.xml"));
    print(3, "[VLMC_AuthSetting::saveAuthInfo] end");
}

int PlainAuth::getAuthInfoCnt() { return count("authInfo"); }

bool PlainAuth::getAuthInfo(int id, VLMS_AuthInfo *out)
{
    print(3, "[VLMC_AuthSetting::getAuthInfo]");
    const ElementPointer entry = byId(id);
    if (!out || !entry) {
        return false;
    }
    const ElementPointer hostName = childOf(entry, "hostName");
    if (hostName && utf8Bytes(hostName->text) <= 256) {
        out->hostName = hostName->text;
    }
    const ElementPointer portNum = childOf(entry, "portNum");
    if (portNum && utf8Bytes(portNum->text) <= 5) {
        out->portNum = portNum->text;
    }
    const ElementPointer authType = childOf(entry, "authType");
    out->authType = 0;
    if (authType && authType->text == textOf("digest")) {
        out->authType = 1;
    }
    if (authType && authType->text == textOf("NTLM")) {
        out->authType = 2;
    }
    const ElementPointer user = childOf(entry, "user");
    if (user && bytesOf(user).size() <= 272) {
        out->user = bytesOf(user);
    }
    const ElementPointer passwd = childOf(entry, "passwd");
    if (passwd && bytesOf(passwd).size() <= 272) {
        out->passwd = bytesOf(passwd);
    }
    return true;
}

bool PlainAuth::setAuthInfo(const VLMS_AuthInfo *info)
{
    print(3, "[VLMC_AuthSetting::setAuthInfo]");
    if (!info || utf8Bytes(info->hostName) > 256 || utf8Bytes(info->portNum) > 5
        || info->user.size() > 272 || info->passwd.size() > 272) {
        return false;
    }
    addAuthInfo(info);
    return true;
}

bool PlainAuth::updateAuthInfo(const VLMS_AuthInfo *info)
{
    print(3, "[VLMC_AuthSetting::updateAuthInfo]");
    deleteAuthInfo(qMin(m_loadMax, childCount()) - 1);
    return setAuthInfo(info);
}

void PlainAuth::addAuthInfo(const VLMS_AuthInfo *info)
{
    print(3, "[VLMC_AuthSetting::addAuthInfo]");
    if (!info) {
        return;
    }
    const ElementPointer entry = add(root, "authInfo", QString(), 0, true);
    add(entry, "hostName", info->hostName);
    add(entry, "portNum", info->portNum);
    QString scheme;
    if (info->authType == 0) {
        scheme = textOf("basic");
    }
    if (info->authType == 1) {
        scheme = textOf("digest");
    }
    if (info->authType == 2) {
        scheme = textOf("NTLM");
    }
    add(entry, "authType", scheme);
    add(entry, "user", base64(info->user), 1);
    add(entry, "passwd", base64(info->passwd), 1);
    setIds();
}

void PlainAuth::deleteAuthInfo(int id)
{
    print(3, "[VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:" + QByteArray::number(id));
    deleteById(id);
    setIds();
}
