#include "preferences/VLMC_BrowserCommonSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/preferences/Documents.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SavedDocuments.h"

namespace
{
const char kFile[] = "repostry.xml";
const char kHeader[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

const char kDefaults[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<repostry_common docInfo=\"1.0\">\n"
                         "    <cookie>\n"
                         "        <acceptCookie>accept</acceptCookie>\n"
                         "    </cookie>\n"
                         "    <cache>\n"
                         "        <enableCache>true</enableCache>\n"
                         "        <cacheDeleteTiming>notDelete</cacheDeleteTiming>\n"
                         "    </cache>\n"
                         "    <keyboard>\n"
                         "        <priority>soft</priority>\n"
                         "    </keyboard>\n"
                         "    <javascript>\n"
                         "        <enableJavascript>true</enableJavascript>\n"
                         "    </javascript>\n"
                         "    <plugin>\n"
                         "        <enableFlashPlugin>true</enableFlashPlugin>\n"
                         "    </plugin>\n"
                         "    <proxy>\n"
                         "        <enableProxy>false</enableProxy>\n"
                         "        <hostName/>\n"
                         "        <portHTTP>8080</portHTTP>\n"
                         "        <portHTTPS>8080</portHTTPS>\n"
                         "        <enableHTTP11>true</enableHTTP11>\n"
                         "        <unusedDomain/>\n"
                         "        <enableProxyAuth>false</enableProxyAuth>\n"
                         "        <proxyUserName/>\n"
                         "        <proxyUserPass/>\n"
                         "    </proxy>\n"
                         "    <security version=\"2.0\">\n"
                         "        <enableSSL30>false</enableSSL30>\n"
                         "        <enableTLS10>true</enableTLS10>\n"
                         "        <enableTLS11>true</enableTLS11>\n"
                         "        <enableTLS12>true</enableTLS12>\n"
                         "    </security>\n"
                         "</repostry_common>\n";

typedef VLMC_BrowserCommonSetting Store;
typedef char (Store::*FlagGetter)();
typedef void (Store::*FlagSetter)(char);
typedef void (Store::*TextGetter)(QString *);
typedef int (Store::*TextSetter)(QString);
typedef void (Store::*BytesGetter)(QByteArray *);
typedef int (Store::*BytesSetter)(QByteArray);

enum Codes { AnyIsOn, OneIsOn, OneToThreeIsOn };

struct Flag {
    const char *name;
    FlagGetter get;
    FlagSetter set;
    const char *group;
    const char *element;
    const char *onWord;
    const char *offWord;
    char onCode;
    char byDefault;
    Codes codes;
};

const Flag kFlags[] = {
    {"acceptCookie", &Store::getRcvCookieInfo, &Store::setRcvCookieInfo, "cookie", "acceptCookie",
     "accept", "refuse", 1, 1, AnyIsOn},
    {"enableCache", &Store::getUseCacheInfo, &Store::setUseCacheInfo, "cache", "enableCache",
     "true", "false", 1, 1, AnyIsOn},
    {"cacheDeleteTiming", &Store::getCacheDeleteTiming, &Store::setCacheDeleteTiming, "cache",
     "cacheDeleteTiming", "changeUser", "notDelete", 3, 0, OneToThreeIsOn},
    {"priority", &Store::getSWKeyBoardTypeInfo, &Store::setSWKeyBoardTypeInfo, "keyboard",
     "priority", "soft", "usb", 1, 1, AnyIsOn},
    {"enableJavascript", &Store::getUseJavaScriptInfo, &Store::setUseJavaScriptInfo, "javascript",
     "enableJavascript", "true", "false", 1, 1, AnyIsOn},
    {"enableFlashPlugin", &Store::getPlayFlashInfo, &Store::setPlayFlashInfo, "plugin",
     "enableFlashPlugin", "true", "false", 1, 1, AnyIsOn},
    {"enableProxy", &Store::getUseProxyInfo, &Store::setUseProxyInfo, "proxy", "enableProxy",
     "true", "false", 1, 0, OneIsOn},
    {"enableHTTP11", &Store::getUseProxyHttpInfo, &Store::setUseProxyHttpInfo, "proxy",
     "enableHTTP11", "true", "false", 1, 1, AnyIsOn},
    {"enableProxyAuth", &Store::getUseProxyCertificationInfo, &Store::setUseProxyCertificationInfo,
     "proxy", "enableProxyAuth", "true", "false", 1, 0, OneIsOn},
    {"enableSSL30", &Store::getUseSSL30, &Store::setUseSSL30, "security", "enableSSL30", "true",
     "false", 1, 0, AnyIsOn},
    {"enableTLS10", &Store::getUseTLS10, &Store::setUseTLS10, "security", "enableTLS10", "true",
     "false", 1, 1, AnyIsOn},
    {"enableTLS11", &Store::getUseTLS11, &Store::setUseTLS11, "security", "enableTLS11", "true",
     "false", 1, 1, AnyIsOn},
    {"enableTLS12", &Store::getUseTLS12, &Store::setUseTLS12, "security", "enableTLS12", "true",
     "false", 1, 1, AnyIsOn},
};

struct Text {
    const char *name;
    TextGetter get;
    TextSetter set;
    int maxBytes;
    const char *byDefault;
};

const Text kTexts[] = {
    {"hostName", &Store::getProxyServerStr, &Store::setProxyServerStr, 253, ""},
    {"portHTTP", &Store::getProxyHttpPortStr, &Store::setProxyHttpPortStr, 5, "8080"},
    {"portHTTPS", &Store::getProxyHttpsPortStr, &Store::setProxyHttpsPortStr, 5, "8080"},
    {"unusedDomain", &Store::getNoProxyDomainStr, &Store::setNoProxyDomainStr, 253, ""},
};

struct Bytes {
    const char *name;
    BytesGetter get;
    BytesSetter set;
};

const Bytes kBytes[] = {
    {"proxyUserName", &Store::getProxyAccountStr, &Store::setProxyAccountStr},
    {"proxyUserPass", &Store::getProxyPasswordStr, &Store::setProxyPasswordStr},
};

bool isOn(Codes codes, int code)
{
    switch (codes) {
    case AnyIsOn:
        return code != 0;
    case OneIsOn:
        return code == 1;
    case OneToThreeIsOn:
        return code >= 1 && code <= 3;
    }
    return false;
}

QByteArray saved(Store &store) { return savedAs(kFile, store); }

void load(Store &store, const QByteArray &document) { loadAs(kFile, store, document); }

// What is saved after a load of this document.
QByteArray completed(const QByteArray &document)
{
    Store store;
    load(store, document);
    return saved(store);
}

// The default document with one part replaced.
QByteArray defaultsWith(const QByteArray &part, const QByteArray &replacement)
{
    return with(kDefaults, part, replacement);
}

QByteArray defaultElement(const QByteArray &name)
{
    const QByteArray document(kDefaults);
    const int start = int(document.indexOf("        <" + name)) + 8;
    return document.mid(start, document.indexOf('\n', start) - start);
}

// The default document with another text in one element.
QByteArray defaultsWithText(const QByteArray &name, const QByteArray &text)
{
    return defaultsWith(defaultElement(name), element(name, text));
}
} // namespace

class tst_VLMC_BrowserCommonSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void getKeyBoardTypeInfo_isApartFromTheDocument();

    void loadSetting_writesDefaultsInOrder();
    void loadSetting_completesUnreadableFile();
    void loadSetting_addsNothingWithoutRoot();
    void loadSetting_takesForeignRoot();
    void loadSetting_keepsRootOfItsName();
    void loadSetting_keepsWhatIsThere_data();
    void loadSetting_keepsWhatIsThere();
    void loadSetting_appendsWhatIsMissing_data();
    void loadSetting_appendsWhatIsMissing();
    void loadSetting_keepsOrderOfPartialFile();
    void loadSetting_upgradesSecurity_data();
    void loadSetting_upgradesSecurity();
    void loadSetting_leavesTls10OfOldFileMissing();

    void setSecurityAttribute_Version_stampsOnce();

    void flagGetters_knowOneWord_data();
    void flagGetters_knowOneWord();
    void flagSetters_writeWords_data() { flagGetters_knowOneWord_data(); }
    void flagSetters_writeWords();
    void flagSetters_addGroup_data() { flagGetters_knowOneWord_data(); }
    void flagSetters_addGroup();
    void getCacheDeleteTiming_readsOldWords();
    void securitySetters_keepAnyStamp_data();
    void securitySetters_keepAnyStamp();
    void textAccessors_limitBytes_data();
    void textAccessors_limitBytes();
    void textGetters_readStored_data() { textAccessors_limitBytes_data(); }
    void textGetters_readStored();
    void bytesAccessors_limitBytes_data();
    void bytesAccessors_limitBytes();
    void bytesGetters_readStored_data() { bytesAccessors_limitBytes_data(); }
    void bytesGetters_readStored();
    void setters_emptyTextOfGroup();
    void accessors_beforeLoad();
    void accessors_neverLog();
};

void tst_VLMC_BrowserCommonSetting::getKeyBoardTypeInfo_isApartFromTheDocument()
{
    Store store;
    QCOMPARE(int(store.getKeyBoardTypeInfo()), 0);
    store.setKeyBoardTypeInfo(7);
    QCOMPARE(int(store.getKeyBoardTypeInfo()), 7);
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(loggedText(), QByteArray());

    load(store, kDefaults);
    QCOMPARE(int(store.getKeyBoardTypeInfo()), 7);
    store.setSWKeyBoardTypeInfo(0);
    store.setKeyBoardTypeInfo(1);
    QCOMPARE(int(store.getSWKeyBoardTypeInfo()), 0);
    QCOMPARE(int(store.getKeyBoardTypeInfo()), 1);
    COMPARE_BYTES(saved(store), defaultsWithText("priority", "usb"));
}

void tst_VLMC_BrowserCommonSetting::loadSetting_writesDefaultsInOrder()
{
    TestDirectory directory;
    Store store;
    store.loadSetting(directory.pathPointer());
    COMPARE_BYTES(saved(store), kDefaults);
    COMPARE_BYTES(completed(kDefaults), kDefaults);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_completesUnreadableFile()
{
    COMPARE_BYTES(completed("no document"), kDefaults);
    COMPARE_BYTES(completed(""), kDefaults);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_addsNothingWithoutRoot()
{
    Override<Store> store;
    store.loads = false;
    QString path = utf8("/d/");

    store.loadSetting(&path);

    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.path, utf8("/d/repostry.xml"));
    COMPARE_BYTES(loggedText(), "3 [VLMC_BrowserCommonSetting::loadSetting] start\n"
                                "3 [VLMC_BrowserCommonSetting::loadSetting] end\n");
    store.saveSetting(&path);
    QCOMPARE(store.loadCalls, 1);
    QCOMPARE(store.saveCalls, 1);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_takesForeignRoot()
{
    QByteArray foreign(kDefaults);
    foreign.replace("<repostry_common docInfo=\"1.0\">", "<other a=\"1\" docInfo=\"9\">");
    foreign.replace("</repostry_common>", "</other>");
    COMPARE_BYTES(completed(foreign), kDefaults);
    COMPARE_BYTES(completed("<Repostry_common><mine>x</mine></Repostry_common>"),
                  defaultsWith("    <cookie>", "    <mine>x</mine>\n    <cookie>"));
}

void tst_VLMC_BrowserCommonSetting::loadSetting_keepsRootOfItsName()
{
    COMPARE_BYTES(completed("<repostry_common/>"), defaultsWith(" docInfo=\"1.0\"", ""));
    COMPARE_BYTES(completed("<repostry_common docInfo=\"9\" a=\"b\"/>"),
                  defaultsWith("docInfo=\"1.0\"", "docInfo=\"9\" a=\"b\""));
}

void tst_VLMC_BrowserCommonSetting::loadSetting_keepsWhatIsThere_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const Flag &flag : kFlags) {
        QTest::newRow(flag.name) << QByteArray(flag.element);
    }
    for (const Text &text : kTexts) {
        QTest::newRow(text.name) << QByteArray(text.name);
    }
    for (const Bytes &bytes : kBytes) {
        QTest::newRow(bytes.name) << QByteArray(bytes.name);
    }
}

void tst_VLMC_BrowserCommonSetting::loadSetting_keepsWhatIsThere()
{
    QFETCH(QByteArray, name);
    const QByteArray odd = defaultsWithText(name, "any odd text, however long it is");
    COMPARE_BYTES(completed(odd), odd);
    const QByteArray empty =
        defaultElement(name).endsWith("/>") ? QByteArray(kDefaults) : defaultsWithText(name, "");
    COMPARE_BYTES(completed(empty), empty);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_appendsWhatIsMissing_data()
{
    loadSetting_keepsWhatIsThere_data();
}

// The element comes last in its group, with its default.
void tst_VLMC_BrowserCommonSetting::loadSetting_appendsWhatIsMissing()
{
    QFETCH(QByteArray, name);
    const QByteArray line = "        " + defaultElement(name) + '\n';
    QByteArray expected = defaultsWith(line, "");
    const QByteArray without = expected;
    const int end = int(expected.indexOf("    </", QByteArray(kDefaults).indexOf(line)));
    const bool groupLeft = expected.mid(end, 6) == "    </";
    QVERIFY(groupLeft);
    expected.insert(end, line);
    COMPARE_BYTES(completed(without), expected);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_keepsOrderOfPartialFile()
{
    const QByteArray document = completed("<repostry_common docInfo=\"1.0\"><proxy><portHTTPS>1"
                                          "</portHTTPS></proxy><cache/></repostry_common>");
    QByteArray expected(kHeader);
    expected += "<repostry_common docInfo=\"1.0\">\n"
                "    <proxy>\n"
                "        <portHTTPS>1</portHTTPS>\n"
                "        <enableProxy>false</enableProxy>\n"
                "        <hostName/>\n"
                "        <portHTTP>8080</portHTTP>\n"
                "        <enableHTTP11>true</enableHTTP11>\n"
                "        <unusedDomain/>\n"
                "        <enableProxyAuth>false</enableProxyAuth>\n"
                "        <proxyUserName/>\n"
                "        <proxyUserPass/>\n"
                "    </proxy>\n"
                "    <cache>\n"
                "        <enableCache>true</enableCache>\n"
                "        <cacheDeleteTiming>notDelete</cacheDeleteTiming>\n"
                "    </cache>\n"
                "    <cookie>\n"
                "        <acceptCookie>accept</acceptCookie>\n"
                "    </cookie>\n"
                "    <keyboard>\n"
                "        <priority>soft</priority>\n"
                "    </keyboard>\n"
                "    <javascript>\n"
                "        <enableJavascript>true</enableJavascript>\n"
                "    </javascript>\n"
                "    <plugin>\n"
                "        <enableFlashPlugin>true</enableFlashPlugin>\n"
                "    </plugin>\n"
                "    <security version=\"2.0\">\n"
                "        <enableSSL30>false</enableSSL30>\n"
                "        <enableTLS10>true</enableTLS10>\n"
                "        <enableTLS11>true</enableTLS11>\n"
                "        <enableTLS12>true</enableTLS12>\n"
                "    </security>\n"
                "</repostry_common>\n";
    COMPARE_BYTES(document, expected);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_upgradesSecurity_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const QByteArray ssl = "<enableSSL30>true</enableSSL30>";
    const QByteArray off = "<enableSSL30>false</enableSSL30>";
    const QByteArray tls10 = "<enableTLS10>true</enableTLS10>";
    const QByteArray tls10Off = "<enableTLS10>false</enableTLS10>";
    const QByteArray tls11 = "<enableTLS11>true</enableTLS11>";
    const QByteArray tls12 = "<enableTLS12>true</enableTLS12>";
    const QByteArray tls12Off = "<enableTLS12>false</enableTLS12>";
    const QByteArray open = "<security>";
    const QByteArray stamped = "<security version=\"2.0\">";
    const QByteArray close = "</security>";

    QTest::newRow("no element") << QByteArray() << stamped + off + tls10 + tls11 + tls12 + close;
    QTest::newRow("no stamp, empty") << open + close << stamped + off + tls11 + tls12 + close;
    QTest::newRow("no stamp, SSL 3.0 on")
        << open + ssl + close << stamped + off + tls11 + tls12 + close;
    QTest::newRow("no stamp, SSL 3.0 odd")
        << open + "<enableSSL30>odd</enableSSL30>" + close << stamped + off + tls11 + tls12 + close;
    QTest::newRow("no stamp, TLS 1.0 stays")
        << open + ssl + tls10Off + close << stamped + off + tls10Off + tls11 + tls12 + close;
    QTest::newRow("no stamp, TLS 1.2 stays")
        << open + tls12Off + close << stamped + tls12Off + off + tls11 + close;
    QTest::newRow("no stamp, text and attributes go")
        << "<security a=\"b\" Version=\"1\">text" + ssl + close
        << stamped + off + tls11 + tls12 + close;
    QTest::newRow("stamp, SSL 3.0 stays on")
        << stamped + ssl + close << stamped + ssl + tls10 + tls11 + tls12 + close;
    QTest::newRow("stamp, empty") << stamped + close
                                  << stamped + off + tls10 + tls11 + tls12 + close;
    QTest::newRow("other stamp stays")
        << "<security version=\"1.0\" a=\"b\">" + ssl + close
        << "<security version=\"1.0\" a=\"b\">" + ssl + tls10 + tls11 + tls12 + close;
    QTest::newRow("empty stamp is one")
        << "<security version=\"\">" + ssl + close
        << "<security version=\"\">" + ssl + tls10 + tls11 + tls12 + close;
}

void tst_VLMC_BrowserCommonSetting::loadSetting_upgradesSecurity()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray document(kDefaults);
    const int start = int(document.indexOf("    <security"));
    const QByteArray head = document.left(start);
    const QByteArray tail = "</repostry_common>\n";

    after.replace("><enable", ">\n        <enable");
    after.replace("></security>", ">\n    </security>");
    COMPARE_BYTES(completed(head + before + tail), head + "    " + after + '\n' + tail);
}

void tst_VLMC_BrowserCommonSetting::loadSetting_leavesTls10OfOldFileMissing()
{
    Store store;
    load(store, "<repostry_common><security><enableSSL30>true</enableSSL30></security>"
                "</repostry_common>");
    QVERIFY(!store.getGrandchildNode(utf8("security"), utf8("enableTLS10")));
    QCOMPARE(int(store.getUseTLS10()), 1);
    QCOMPARE(int(store.getUseSSL30()), 0);

    // Once: what is set after the upgrade stays at the next load.
    store.setUseSSL30(1);
    const QByteArray document = saved(store);
    load(store, document);
    QCOMPARE(int(store.getUseSSL30()), 1);
}

void tst_VLMC_BrowserCommonSetting::setSecurityAttribute_Version_stampsOnce()
{
    Store store;
    store.setSecurityAttribute_Version(nullptr);
    VLMC_XMLNode node(nullptr, 0);
    QXmlStreamAttributes attributes;
    attributes.append(utf8("a"), utf8("b"));
    node.setAttribute(attributes);

    store.setSecurityAttribute_Version(&node);

    QCOMPARE(int(node.getAttribute().size()), 1);
    QCOMPARE(node.getAttribute().value(utf8("version")).toString(), utf8("2.0"));

    attributes.append(utf8("version"), utf8("1.5"));
    node.setAttribute(attributes);
    store.setSecurityAttribute_Version(&node);
    QCOMPARE(int(node.getAttribute().size()), 2);
    QCOMPARE(node.getAttribute().value(utf8("version")).toString(), utf8("1.5"));
}

void tst_VLMC_BrowserCommonSetting::flagGetters_knowOneWord_data()
{
    QTest::addColumn<int>("row");
    int row = 0;
    for (const Flag &flag : kFlags) {
        QTest::newRow(flag.name) << row++;
    }
}

void tst_VLMC_BrowserCommonSetting::flagGetters_knowOneWord()
{
    QFETCH(int, row);
    const Flag &flag = kFlags[row];
    Store store;
    QCOMPARE(int((store.*flag.get)()), int(flag.byDefault));
    store.createXMLRootNode();
    QCOMPARE(int((store.*flag.get)()), int(flag.byDefault));
    (store.*flag.set)(0);
    VLMC_XMLNode *const node = store.getGrandchildNode(utf8(flag.group), utf8(flag.element));
    QVERIFY(node);

    QString on = utf8(flag.onWord);
    QString off = utf8(flag.offWord);
    node->setText(on);
    QCOMPARE(int((store.*flag.get)()), int(flag.onCode));
    node->setText(off);
    QCOMPARE(int((store.*flag.get)()), 0);
    const QString others[] = {QString(),     utf8("odd"),           on.toUpper(),
                              off.toUpper(), on + QLatin1Char(' '), QLatin1Char(' ') + off};
    for (QString other : others) {
        node->setText(other);
        QCOMPARE(int((store.*flag.get)()), int(flag.byDefault));
    }
    VLMC_XMLNode *const group = node->getXMLNodeParent();
    group->removeXMLNode(node);
    QCOMPARE(int((store.*flag.get)()), int(flag.byDefault));
    delete node;
}

void tst_VLMC_BrowserCommonSetting::flagSetters_writeWords()
{
    QFETCH(int, row);
    const Flag &flag = kFlags[row];
    Store store;
    load(store, kDefaults);
    for (int code : {-128, -127, -2, -1, 0, 1, 2, 3, 4, 5, 126, 127}) {
        const bool on = isOn(flag.codes, code);
        const char *const word = on ? flag.onWord : flag.offWord;
        (store.*flag.set)(char(code));
        QCOMPARE(int((store.*flag.get)()), on ? int(flag.onCode) : 0);
        COMPARE_BYTES(saved(store), defaultsWithText(flag.element, word));
    }
}

void tst_VLMC_BrowserCommonSetting::flagSetters_addGroup()
{
    QFETCH(int, row);
    const ForeignDocuments underAnotherRoot;
    const Flag &flag = kFlags[row];
    Store store;
    QString name = utf8("r");
    store.createXMLRootNode()->setName(name);

    (store.*flag.set)(1);

    const QByteArray group(flag.group);
    const QByteArray open = group == "security" ? group + " version=\"2.0\"" : group;
    COMPARE_BYTES(saved(store), kHeader + QByteArray("<r>\n    <") + open + ">\n        "
                                    + element(flag.element, flag.onWord) + "\n    </" + group
                                    + ">\n</r>\n");
}

void tst_VLMC_BrowserCommonSetting::getCacheDeleteTiming_readsOldWords()
{
    Store store;
    load(store, defaultsWithText("cacheDeleteTiming", "logout"));
    QCOMPARE(int(store.getCacheDeleteTiming()), 3);
    load(store, defaultsWithText("cacheDeleteTiming", "timeout"));
    QCOMPARE(int(store.getCacheDeleteTiming()), 3);
    load(store, defaultsWithText("cacheDeleteTiming", "Timeout"));
    QCOMPARE(int(store.getCacheDeleteTiming()), 0);
}

void tst_VLMC_BrowserCommonSetting::securitySetters_keepAnyStamp_data()
{
    QTest::addColumn<int>("row");
    for (int row = 9; row < 13; ++row) {
        QTest::newRow(kFlags[row].name) << row;
    }
}

void tst_VLMC_BrowserCommonSetting::securitySetters_keepAnyStamp()
{
    QFETCH(int, row);
    const Flag &flag = kFlags[row];
    Store store;
    load(store, defaultsWith("version=\"2.0\"", "a=\"b\" version=\"x\""));
    (store.*flag.set)(flag.byDefault);
    COMPARE_BYTES(saved(store), defaultsWith("version=\"2.0\"", "a=\"b\" version=\"x\""));

    QXmlStreamAttributes attributes;
    attributes.append(utf8("a"), utf8("b"));
    store.getChildNode(utf8("security"))->setAttribute(attributes);
    (store.*flag.set)(flag.byDefault);
    COMPARE_BYTES(saved(store), kDefaults);
}

void tst_VLMC_BrowserCommonSetting::textAccessors_limitBytes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("fits");
    int row = 0;
    for (const Text &text : kTexts) {
        const int most = text.maxBytes;
        const QString values[] = {QString(),          utf8("a&<"), repeated(most),
                                  repeated(most + 1), wide(most),  wide(most + 1)};
        const char *const names[] = {"empty",    "escaped",    "most",
                                     "one more", "most, wide", "one more, wide"};
        const bool fits[] = {true, true, true, false, true, false};
        for (int i = 0; i < 6; ++i) {
            QTest::newRow(QByteArray(text.name) + ", " + names[i]) << row << values[i] << fits[i];
        }
        ++row;
    }
}

void tst_VLMC_BrowserCommonSetting::textAccessors_limitBytes()
{
    QFETCH(int, row);
    QFETCH(QString, value);
    QFETCH(bool, fits);
    const Text &text = kTexts[row];
    Store store;
    load(store, defaultsWith("    <proxy>", "    <proxy>left"));
    const QByteArray before = saved(store);

    QCOMPARE((store.*text.set)(value), fits ? 1 : 0);

    QString read = utf8("?");
    (store.*text.get)(&read);
    QCOMPARE(read, fits ? value : utf8(text.byDefault));
    (store.*text.get)(nullptr);
    if (fits) {
        COMPARE_BYTES(store.getChildNode(utf8("proxy"))->getText().toUtf8(), "");
        QByteArray escaped = value.toUtf8();
        escaped.replace('&', "&amp;").replace('<', "&lt;");
        QVERIFY(saved(store).contains(element(text.name, escaped)));
    } else {
        COMPARE_BYTES(saved(store), before);
        Store bare;
        bare.createXMLRootNode();
        QCOMPARE((bare.*text.set)(value), 0);
        QCOMPARE(bare.getXMLNodeCnt(), 0);
    }
}

void tst_VLMC_BrowserCommonSetting::textGetters_readStored()
{
    QFETCH(int, row);
    QFETCH(QString, value);
    QFETCH(bool, fits);
    const Text &text = kTexts[row];
    Store store;
    store.createXMLRootNode();
    QString read = utf8("?");
    (store.*text.get)(&read);
    QCOMPARE(read, utf8(text.byDefault));

    QCOMPARE((store.*text.set)(QString()), 1);
    VLMC_XMLNode *const node = store.getGrandchildNode(utf8("proxy"), utf8(text.name));
    node->setText(value);
    node->setTextType(1);
    read = utf8("?");
    (store.*text.get)(&read);
    QCOMPARE(read, fits ? value : utf8(text.byDefault));

    QCOMPARE((store.*text.set)(utf8("1")), 1);
    QCOMPARE(int(node->getTextType()), 0);
    QCOMPARE(int(node->getXMLNodeParent()->getTextType()), 0);
}

void tst_VLMC_BrowserCommonSetting::bytesAccessors_limitBytes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("fits");
    int row = 0;
    for (const Bytes &bytes : kBytes) {
        const QByteArray name(bytes.name);
        QTest::newRow(name + ", none") << row << QByteArray() << true;
        QTest::newRow(name + ", any bytes") << row << QByteArray("\0\xff\n]]>", 6) << true;
        QTest::newRow(name + ", 80 bytes") << row << QByteArray(80, '\xfe') << true;
        QTest::newRow(name + ", 81 bytes") << row << QByteArray(81, '\xfe') << false;
        ++row;
    }
}

void tst_VLMC_BrowserCommonSetting::bytesAccessors_limitBytes()
{
    QFETCH(int, row);
    QFETCH(QByteArray, value);
    QFETCH(bool, fits);
    const Bytes &bytes = kBytes[row];
    Store store;
    load(store, defaultsWith("    <proxy>", "    <proxy>left"));
    const QByteArray before = saved(store);

    QCOMPARE((store.*bytes.set)(value), fits ? 1 : 0);

    if (fits) {
        const QByteArray encoded = value.toBase64();
        QVERIFY(value.size() != 80 || encoded.size() == 108);
        const QByteArray stored = encoded.isEmpty() ? encoded : "<![CDATA[" + encoded + "]]>";
        COMPARE_BYTES(saved(store), encoded.isEmpty() ? QByteArray(kDefaults)
                                                      : defaultsWithText(bytes.name, stored));
    } else {
        COMPARE_BYTES(saved(store), before);
        Store bare;
        bare.createXMLRootNode();
        QCOMPARE((bare.*bytes.set)(value), 0);
        QCOMPARE(bare.getXMLNodeCnt(), 0);
    }
    QByteArray read("?");
    (store.*bytes.get)(&read);
    QCOMPARE(read, fits ? value : QByteArray());
    (store.*bytes.get)(nullptr);
}

void tst_VLMC_BrowserCommonSetting::bytesGetters_readStored()
{
    QFETCH(int, row);
    QFETCH(QByteArray, value);
    QFETCH(bool, fits);
    const Bytes &bytes = kBytes[row];
    Store store;
    store.createXMLRootNode();
    QByteArray read("?");
    (store.*bytes.get)(&read);
    QCOMPARE(read, QByteArray());

    QCOMPARE((store.*bytes.set)(QByteArray()), 1);
    VLMC_XMLNode *const node = store.getGrandchildNode(utf8("proxy"), utf8(bytes.name));
    QCOMPARE(int(node->getTextType()), 1);
    QString text = QString::fromLatin1(value.toBase64().constData());
    node->setText(text);
    read = "?";
    (store.*bytes.get)(&read);
    QCOMPARE(read, fits ? value : QByteArray());

    // Foreign characters are skipped.
    QString lenient = utf8(" Y\n3!\xe3\x81\x82V=i\tZQ");
    node->setText(lenient);
    (store.*bytes.get)(&read);
    QCOMPARE(read, QByteArray("cube"));
    QString lone = utf8("Q");
    node->setText(lone);
    (store.*bytes.get)(&read);
    QCOMPARE(read, QByteArray());
}

void tst_VLMC_BrowserCommonSetting::setters_emptyTextOfGroup()
{
    for (const Flag &flag : kFlags) {
        Store store;
        load(store, kDefaults);
        VLMC_XMLNode *const group = store.getChildNode(utf8(flag.group));
        QString text = utf8("text");
        group->setText(text);
        group->setTextType(1);
        (store.*flag.set)(flag.byDefault);
        QCOMPARE(group->getText(), QString());
        QCOMPARE(int(group->getTextType()), 0);
        COMPARE_BYTES(saved(store), kDefaults);
    }
}

void tst_VLMC_BrowserCommonSetting::accessors_beforeLoad()
{
    Store store;
    for (const Flag &flag : kFlags) {
        (store.*flag.set)(1);
        QCOMPARE(int((store.*flag.get)()), int(flag.byDefault));
    }
    for (const Text &text : kTexts) {
        QString value = utf8("mine");
        QCOMPARE((store.*text.set)(utf8("1")), 0);
        (store.*text.get)(&value);
        (store.*text.get)(nullptr);
        QCOMPARE(value, utf8("mine"));
    }
    for (const Bytes &bytes : kBytes) {
        QByteArray value("mine");
        QCOMPARE((store.*bytes.set)("1"), 0);
        (store.*bytes.get)(&value);
        (store.*bytes.get)(nullptr);
        QCOMPARE(value, QByteArray("mine"));
    }
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BrowserCommonSetting::accessors_neverLog()
{
    Store store;
    load(store, kDefaults);
    takeLog();
    for (const Flag &flag : kFlags) {
        (store.*flag.set)(1);
        (store.*flag.get)();
    }
    for (const Text &text : kTexts) {
        QString value;
        (store.*text.set)(repeated(300));
        (store.*text.set)(utf8("1"));
        (store.*text.get)(&value);
        (store.*text.get)(nullptr);
    }
    for (const Bytes &bytes : kBytes) {
        QByteArray value;
        (store.*bytes.set)(QByteArray(300, 'x'));
        (store.*bytes.set)("secret");
        (store.*bytes.get)(&value);
        (store.*bytes.get)(nullptr);
    }
    QCOMPARE(loggedText(), QByteArray());

    TestDirectory directory;
    store.saveSetting(directory.pathPointer());
    store.loadSetting(directory.pathPointer());
    const QByteArray log = loggedText();
    QVERIFY(!log.contains("secret"));
    QVERIFY(!log.contains(QByteArray("secret").toBase64()));
}

QTEST_GUILESS_MAIN(tst_VLMC_BrowserCommonSetting)
#include "tst_VLMC_BrowserCommonSetting.moc"
