// The published char parameters: every code means the same whether char has a sign or not.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "core/VLMC_OlpUrl.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLWriter.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/Nodes.h"

#include <QtCore/QBuffer>
#include <QtCore/QUrl>

namespace
{
int numberOf(char code) { return static_cast<unsigned char>(code); }

// What a getter gives for a code that was set.
int anyIsOn(int code) { return code == 0 ? 0 : 1; }
int onlyOneIsOn(int code) { return code == 1 ? 1 : 0; }
int timing(int code) { return code >= 1 && code <= 3 ? 3 : 0; }
int itself(int code) { return code; }

// Sets each code, and looks at what is read.
template <typename Store>
bool meansTheSame(Store &store, void (Store::*set)(char), char (Store::*get)(), int (*meaning)(int))
{
    for (int code = 0; code < 256; ++code) {
        (store.*set)(char(code));
        if (numberOf((store.*get)()) != meaning(code)) {
            qWarning("code %d reads as %d", code, numberOf((store.*get)()));
            return false;
        }
    }
    return true;
}
} // namespace

class tst_CharCodes : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void commonPreferences_readCodes();
    void userPreferences_readCodes();
    void userPreferences_loadAdministratorsCodes();
    void node_keepsTextType();
    void node_takesPlace();
    void writer_writesTwoTextTypes();
    void bookmark_takesPlace();
    void bookmarkChildNode_knowsThree();
    void isOlpContents_looksAtFirstHostInModeOne();
};

void tst_CharCodes::commonPreferences_readCodes()
{
    typedef VLMC_BrowserCommonSetting Store;
    Store store;
    store.createXMLRootNode();
    QVERIFY(meansTheSame(store, &Store::setKeyBoardTypeInfo, &Store::getKeyBoardTypeInfo, itself));
    QVERIFY(meansTheSame(store, &Store::setRcvCookieInfo, &Store::getRcvCookieInfo, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseCacheInfo, &Store::getUseCacheInfo, anyIsOn));
    QVERIFY(
        meansTheSame(store, &Store::setCacheDeleteTiming, &Store::getCacheDeleteTiming, timing));
    QVERIFY(
        meansTheSame(store, &Store::setSWKeyBoardTypeInfo, &Store::getSWKeyBoardTypeInfo, anyIsOn));
    QVERIFY(
        meansTheSame(store, &Store::setUseJavaScriptInfo, &Store::getUseJavaScriptInfo, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setPlayFlashInfo, &Store::getPlayFlashInfo, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseProxyInfo, &Store::getUseProxyInfo, onlyOneIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseProxyHttpInfo, &Store::getUseProxyHttpInfo, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseProxyCertificationInfo,
                         &Store::getUseProxyCertificationInfo, onlyOneIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseSSL30, &Store::getUseSSL30, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseTLS10, &Store::getUseTLS10, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseTLS11, &Store::getUseTLS11, anyIsOn));
    QVERIFY(meansTheSame(store, &Store::setUseTLS12, &Store::getUseTLS12, anyIsOn));
}

void tst_CharCodes::userPreferences_readCodes()
{
    typedef VLMC_BrowserUserSetting Store;
    Store store;
    store.createXMLRootNode();
    QVERIFY(meansTheSame(store, &Store::setStartUp, &Store::getStartUp, onlyOneIsOn));
    QVERIFY(
        meansTheSame(store, &Store::setCookieDeleteTiming, &Store::getCookieDeleteTiming, timing));
    QVERIFY(meansTheSame(store, &Store::setCertificationDeleteTiming,
                         &Store::getCertificationDeleteTiming, timing));
}

void tst_CharCodes::userPreferences_loadAdministratorsCodes()
{
    TestDirectory directory;
    for (int code = 0; code < 256; ++code) {
        VLMC_BrowserUserSetting store;
        store.setUserType(3);
        store.setBrwAdminStartup(char(code));
        store.setBrwAdminCookieDeleteTiming(char(code));
        store.setBrwAdminCertificateDeleteTiming(char(code));
        store.loadSetting(directory.pathPointer());
        QCOMPARE(numberOf(store.getStartUp()), onlyOneIsOn(code));
        QCOMPARE(numberOf(store.getCookieDeleteTiming()), timing(code));
        QCOMPARE(numberOf(store.getCertificationDeleteTiming()), timing(code));
    }
}

void tst_CharCodes::node_keepsTextType()
{
    VLMC_XMLNode node(nullptr, 0);
    QVERIFY(meansTheSame(node, &VLMC_XMLNode::setTextType, &VLMC_XMLNode::getTextType, itself));
}

void tst_CharCodes::node_takesPlace()
{
    for (int code = 0; code < 256; ++code) {
        VLMC_XMLNode parent(nullptr, 0);
        newNode(&parent, "first");
        VLMC_XMLNode *const built = new VLMC_XMLNode(&parent, char(code));
        QCOMPARE(int(parent.getXMLNodeChildren().indexOf(built)), code == 0 ? 1 : 0);
        VLMC_XMLNode *const added = newNode(nullptr, "added");
        char place = char(code);
        parent.addXMLNode(added, place);
        QCOMPARE(int(parent.getXMLNodeChildren().indexOf(added)), code == 0 ? 2 : 0);
    }
}

void tst_CharCodes::writer_writesTwoTextTypes()
{
    for (int code = 0; code < 256; ++code) {
        VLMC_XMLNode node(nullptr, 0);
        QString name = utf8("n");
        QString text = utf8("t");
        node.setName(name);
        node.setText(text);
        node.setTextType(char(code));
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        VLMC_XMLWriter writer;
        QVERIFY(writer.write(device, &node));
        const QByteArray element = code == 0   ? "<n>t</n>"
                                   : code == 1 ? "<n><![CDATA[t]]></n>"
                                               : "<n/>";
        QVERIFY2(device.data().contains(element) || (code > 1 && device.data().contains("<n></n>")),
                 device.data().constData());
    }
}

void tst_CharCodes::bookmark_takesPlace()
{
    for (int code = 0; code < 256; ++code) {
        VLMC_BookmarksSetting store;
        store.createXMLRootNode();
        VLMS_Bookmark bookmark;
        store.setBookmark(&bookmark, 0);
        bookmark.title = utf8("second");
        store.setBookmark(&bookmark, char(code));
        QString title;
        QVERIFY(store.getBookmarkTitle(code == 0 ? 1 : 0, &title));
        QCOMPARE(title, bookmark.title);
    }
}

void tst_CharCodes::bookmarkChildNode_knowsThree()
{
    VLMC_BookmarksSetting store;
    store.createXMLRootNode();
    VLMS_Bookmark bookmark;
    store.setBookmark(&bookmark, 0);
    for (int code = 0; code < 256; ++code) {
        QCOMPARE(store.getBookmarkChildNode(0, char(code)) != nullptr, code < 3);
    }
}

void tst_CharCodes::isOlpContents_looksAtFirstHostInModeOne()
{
    const QUrl url(utf8("http://first/"));
    char host[] = "first";
    for (int code = 0; code < 256; ++code) {
        QCOMPARE(VLMC_OlpUrl::IsOlpContents(url, char(code), host, nullptr), code == 1);
    }
}

QTEST_GUILESS_MAIN(tst_CharCodes)
#include "tst_CharCodes.moc"
