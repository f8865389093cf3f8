#include "tests/identical/Script.h"

#include "cookies/VLMC_AuthSetting.h"

namespace
{
const char kFile[] = "authinfo.xml";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<authentication docInfo=\"1.0\">\n"
                         "    <authInfo id=\"000\">\n"
                         "        <hostName>archive.example.com</hostName>\n"
                         "        <portNum>8080</portNum>\n"
                         "        <authType>digest</authType>\n"
                         "        <user><![CDATA[aGFuYWtv]]></user>\n"
                         "        <passwd><![CDATA[c2FtcGxl]]></passwd>\n"
                         "    </authInfo>\n"
                         "    <authInfo id=\"001\">\n"
                         "        <hostName>\xE3\x81\x82</hostName>\n"
                         "        <portNum>80</portNum>\n"
                         "        <authType>NTLM</authType>\n"
                         "        <user><![CDATA[4 4G*C]]></user>\n"
                         "        <passwd><![CDATA[AP+/]]></passwd>\n"
                         "    </authInfo>\n"
                         "</authentication>\n";
const int kMax = 8;

VLMC_AuthSetting &store() { return *VLMC_AuthSetting::getInstance(); }

void showEntry(int id)
{
    VLMS_AuthInfo info = {utf8("kept"), utf8("kept"), 9, "kept", "kept"};
    const bool found = store().getAuthInfo(id, &info);
    line("entry " + shown(id) + ": " + shown(found) + ' ' + shown(info.hostName) + ' '
         + shown(info.portNum) + ' ' + shown(int(info.authType)) + ' ' + shown(info.user) + ' '
         + shown(info.passwd));
}

void showEntries()
{
    line("entries", store().getAuthInfoCnt());
    for (int id = -1; id <= store().getAuthInfoCnt(); ++id) {
        showEntry(id);
    }
}

void takeStep(Draw &draw)
{
    VLMS_AuthInfo info = {draw.text(), draw.text(), static_cast<unsigned char>(draw.below(5)),
                          draw.bytes(), draw.bytes()};
    if (draw.oneIn(2)) {
        info.hostName = utf8("www.example.com");
        info.portNum = QString::number(draw.below(200000));
    }
    const int kind = draw.below(6);
    if (kind == 0) {
        store().deleteAuthInfo(draw.id(kMax));
    } else if (kind == 1) {
        store().addAuthInfo(&info);
    } else if (kind == 2) {
        line("set", store().setAuthInfo(&info));
    } else {
        line("updated", store().updateAuthInfo(&info));
    }
    line("entries", store().getAuthInfoCnt());
    showEntry(draw.id(kMax));
}

void playRefused()
{
    const Part part("credentials, what is refused");
    QString empty;
    QString folder = newFolder();
    VLMC_AuthSetting unloaded;
    VLMS_AuthInfo info = {empty, empty, 0, QByteArray(), QByteArray()};
    line("entries", unloaded.getAuthInfoCnt());
    line("found", unloaded.getAuthInfo(0, &info));
    line("set", unloaded.setAuthInfo(&info));
    line("updated", unloaded.updateAuthInfo(&info));
    unloaded.saveAuthInfo(&folder, kMax);
    unloaded.loadAuthInfo(nullptr, kMax);
    unloaded.loadAuthInfo(&empty, kMax);
    unloaded.loadAuthInfo(&folder, 0);
    unloaded.saveAuthInfo(nullptr, kMax);
    unloaded.saveAuthInfo(&empty, kMax);
    unloaded.saveAuthInfo(&folder, -1);
    unloaded.loadAuthInfo(&folder, kMax);
    line("found", unloaded.getAuthInfo(0, nullptr));
    line("set", unloaded.setAuthInfo(nullptr));
    line("updated", unloaded.updateAuthInfo(nullptr));
    unloaded.addAuthInfo(nullptr);
    showFolder(folder);
    showLog();
}
} // namespace

void playCredentials()
{
    playRefused();
    playDocuments(kFile, kDocument, [](QString &folder) {
        store().loadAuthInfo(&folder, kMax);
        showEntries();
        store().saveAuthInfo(&folder, kMax);
    });
    Draw draw(3);
    playSteps(
        "credentials", 20, [&] { takeStep(draw); },
        [](QString &folder) {
            store().saveAuthInfo(&folder, kMax);
            store().loadAuthInfo(&folder, kMax);
            showEntries();
        });
}
