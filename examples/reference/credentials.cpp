#include "cookies/VLMC_AuthSetting.h"
#include "examples/reference/Reference.h"

#include <QtCore/QFile>

namespace
{
void keepCredentials(QString directory)
{
    //! [credentials: keep]
    VLMC_AuthSetting *store = VLMC_AuthSetting::getInstance();
    store->loadAuthInfo(&directory, 10);
    const unsigned char digest = 1;
    VLMS_AuthInfo info = {QString::fromUtf8("archive.example.com"), QString::fromUtf8("8080"),
                          digest, QByteArray("hanako"), QByteArray("sample")};
    if (!store->setAuthInfo(&info)) {
        // A field is over its limit, and nothing was added.
    }
    store->saveAuthInfo(&directory, 10); // directory + "authinfo.xml", for its owner alone
    //! [credentials: keep]
    EXPECT(QFile::permissions(directory + utf8("authinfo.xml"))
           == (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser));
}

bool find(const QString &host, const QString &port, VLMS_AuthInfo *found)
{
    //! [credentials: find]
    // The newest is first, so the first match is the one entered last.
    VLMC_AuthSetting *store = VLMC_AuthSetting::getInstance();
    const int count = store->getAuthInfoCnt();
    for (int id = 0; id < count; ++id) {
        // A fresh one each time: fields over their limit are left as they are.
        VLMS_AuthInfo info = {QString(), QString(), 0, QByteArray(), QByteArray()};
        if (store->getAuthInfo(id, &info) && info.hostName == host && info.portNum == port) {
            *found = info;
            return true;
        }
    }
    return false;
    //! [credentials: find]
}

void replace(int id, VLMS_AuthInfo info)
{
    //! [credentials: replace]
    VLMC_AuthSetting *store = VLMC_AuthSetting::getInstance();
    store->deleteAuthInfo(id); // the others get new ids
    store->setAuthInfo(&info); // becomes id 0
    //! [credentials: replace]
}

void addWithinLimit(VLMS_AuthInfo info)
{
    //! [credentials: update]
    // First drops the last entry within the max of the load, even if there is room.
    VLMC_AuthSetting::getInstance()->updateAuthInfo(&info);
    //! [credentials: update]
}
} // namespace

void exampleOfCredentials(QString directory)
{
    VLMC_AuthSetting *store = VLMC_AuthSetting::getInstance();
    keepCredentials(directory);
    VLMS_AuthInfo info = {QString(), QString(), 0, QByteArray(), QByteArray()};
    EXPECT(find(utf8("archive.example.com"), utf8("8080"), &info));
    EXPECT(info.user == "hanako" && info.passwd == "sample" && info.authType == 1);
    EXPECT(!find(utf8("archive.example.com"), utf8("80"), &info));
    info.passwd = "changed";
    replace(0, info);
    EXPECT(store->getAuthInfoCnt() == 1);
    EXPECT(find(utf8("archive.example.com"), utf8("8080"), &info) && info.passwd == "changed");
    info.hostName = utf8("www.example.com");
    addWithinLimit(info);
    EXPECT(store->getAuthInfoCnt() == 1);
    EXPECT(!find(utf8("archive.example.com"), utf8("8080"), &info));
}
