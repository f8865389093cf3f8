#include "preferences/VLMC_BrowserUserSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/preferences/Documents.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"

namespace
{
const char kFile[] = "repostry_private.xml";

const char kDefaults[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<repostry docInfo=\"1.0\">\n"
                         "    <pageInfo>\n"
                         "        <home>about:blank</home>\n"
                         "        <startup>homepage</startup>\n"
                         "        <lastPageURL>about:blank</lastPageURL>\n"
                         "        <Zoom>1.0</Zoom>\n"
                         "    </pageInfo>\n"
                         "    <cookie>\n"
                         "        <cookieDeleteTiming>notDelete</cookieDeleteTiming>\n"
                         "    </cookie>\n"
                         "    <authInfo>\n"
                         "        <authInfoDeleteTiming>notDelete</authInfoDeleteTiming>\n"
                         "    </authInfo>\n"
                         "    <font>\n"
                         "        <fontName/>\n"
                         "    </font>\n"
                         "</repostry>\n";

const char kHome[] = "<home>about:blank</home>";
const char kStartup[] = "<startup>homepage</startup>";
const char kLastPage[] = "<lastPageURL>about:blank</lastPageURL>";
const char kZoom[] = "<Zoom>1.0</Zoom>";
const char kCookie[] = "<cookieDeleteTiming>notDelete</cookieDeleteTiming>";
const char kAuthInfo[] = "<authInfoDeleteTiming>notDelete</authInfoDeleteTiming>";
const char kFont[] = "<fontName/>";
const char *const kElements[] = {kHome, kStartup, kLastPage, kZoom, kCookie, kAuthInfo, kFont};

typedef VLMC_BrowserUserSetting Store;

struct Text {
    const char *name;
    void (Store::*get)(QString *);
    int (Store::*set)(QString);
    const char *group;
    const char *element;
    const char *byDefault;
    const char *defaultElement;
};

const Text kTexts[] = {
    {"getHomePage", &Store::getHomePage, &Store::setHomePage, "pageInfo", "home", "about:blank",
     kHome},
    {"getLastPage", &Store::getLastPage, &Store::setLastPage, "pageInfo", "lastPageURL",
     "about:blank", kLastPage},
    {"getFontName", &Store::getFontName, &Store::setFontName, "font", "fontName", "", kFont},
};

struct Timing {
    const char *name;
    char (Store::*get)();
    void (Store::*set)(char);
    const char *group;
    const char *element;
    const char *defaultElement;
};

const Timing kTimings[] = {
    {"cookie", &Store::getCookieDeleteTiming, &Store::setCookieDeleteTiming, "cookie",
     "cookieDeleteTiming", kCookie},
    {"authInfo", &Store::getCertificationDeleteTiming, &Store::setCertificationDeleteTiming,
     "authInfo", "authInfoDeleteTiming", kAuthInfo},
};

QByteArray saved(Store &store) { return savedAs(kFile, store); }

void load(Store &store, const QByteArray &document) { loadAs(kFile, store, document); }

QByteArray completed(const QByteArray &document)
{
    Store store;
    load(store, document);
    return saved(store);
}

QByteArray timings(const QByteArray &cookie, const QByteArray &authInfo)
{
    return with(with(kDefaults, kCookie, element("cookieDeleteTiming", cookie)), kAuthInfo,
                element("authInfoDeleteTiming", authInfo));
}
} // namespace

class tst_VLMC_BrowserUserSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void getInstance_givesOneStore();
    void loadSetting_writesDefaultsInOrder();
    void loadSetting_logsStartAndEnd();
    void loadSetting_refusesBlankDirectory_data();
    void loadSetting_refusesBlankDirectory();
    void loadSetting_addsNothingWithoutRoot();
    void loadSetting_takesForeignRoot();
    void loadSetting_keepsRootOfItsName();
    void loadSetting_keepsWhatIsThere_data();
    void loadSetting_keepsWhatIsThere();
    void loadSetting_appendsWhatIsMissing();
    void loadSetting_joinsPathAsItStands();
    void loadSetting_takesAdministratorValues_data();
    void loadSetting_takesAdministratorValues();
    void loadSetting_keepsStoredOverAdministratorValues();
    void loadSetting_leavesHomeMissingWhenAdministratorsIsTooLong();
    void loadSetting_limitsAdministratorHome();
    void saveSetting_logsStartAndEnd();
    void saveSetting_refusesBlankDirectory_data() { loadSetting_refusesBlankDirectory_data(); }
    void saveSetting_refusesBlankDirectory();
    void saveSetting_writesNothingBeforeLoad();

    void textGetters_refuseNull_data();
    void textGetters_refuseNull();
    void textAccessors_limitBytes_data();
    void textAccessors_limitBytes();
    void textGetters_readStored_data() { textAccessors_limitBytes_data(); }
    void textGetters_readStored();
    void getStartUp_knowsOneWord();
    void setStartUp_testsForOne();
    void getZoomInfo_readsElevenTexts();
    void setZoomInfo_writesElevenTexts();
    void setZoomInfo_refusesOtherCodes_data();
    void setZoomInfo_refusesOtherCodes();
    void setZoomInfo_leavesGroupBehind();
    void timingGetters_foldOldWords();
    void timingGetters_lookAtUserTypeWhenMissing();
    void timingSetters_writeTwoWords();
    void IsNotChgUserDeletetiming_looksAtBoth_data();
    void IsNotChgUserDeletetiming_looksAtBoth();
    void CnvOldtypeDeletetiming_rewritesOneWord_data();
    void CnvOldtypeDeletetiming_rewritesOneWord();
    void setters_emptyTextOfGroup();
    void accessors_beforeLoad();
    void accessors_neverLog();
};

void tst_VLMC_BrowserUserSetting::getInstance_givesOneStore()
{
    Store *const first = Store::getInstance();
    QVERIFY(first);
    QCOMPARE(Store::getInstance(), first);
    QVERIFY(!first->getXMLRootNode());
}

void tst_VLMC_BrowserUserSetting::loadSetting_writesDefaultsInOrder()
{
    TestDirectory directory;
    Store store;
    store.loadSetting(directory.pathPointer());
    QVERIFY(!exists(directory.file(kFile)));
    COMPARE_BYTES(saved(store), kDefaults);
    COMPARE_BYTES(completed(kDefaults), kDefaults);
    COMPARE_BYTES(completed("no document"), kDefaults);
}

void tst_VLMC_BrowserUserSetting::loadSetting_logsStartAndEnd()
{
    TestDirectory directory;
    Store store;
    store.loadSetting(directory.pathPointer());
    COMPARE_BYTES(loggedText(), "3 [VLMC_BrowserUserSetting::loadSetting] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "2 VLMC_XMLReader::read file not exist!\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_BrowserUserSetting::loadSetting] end\n");
}

void tst_VLMC_BrowserUserSetting::loadSetting_refusesBlankDirectory_data()
{
    QTest::addColumn<bool>("null");
    QTest::newRow("null") << true;
    QTest::newRow("empty") << false;
}

void tst_VLMC_BrowserUserSetting::loadSetting_refusesBlankDirectory()
{
    QFETCH(bool, null);
    Store store;
    load(store, timings("logout", "odd"));
    takeLog();

    QString empty;
    store.loadSetting(null ? nullptr : &empty);

    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_BrowserUserSetting::loadSetting] start\n"
                  "2 [VLMC_BrowserUserSetting::loadSetting] User Path is NULL or empty.\n");
    COMPARE_BYTES(saved(store), timings("logout", "odd"));
}

void tst_VLMC_BrowserUserSetting::loadSetting_addsNothingWithoutRoot()
{
    Override<Store> store;
    store.loads = false;
    QString path = utf8("/d/");
    store.loadSetting(&path);
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.path, utf8("/d/repostry_private.xml"));
    COMPARE_BYTES(loggedText(), "3 [VLMC_BrowserUserSetting::loadSetting] start\n"
                                "3 [VLMC_BrowserUserSetting::loadSetting] end\n");
    store.saveSetting(&path);
    QCOMPARE(store.saveCalls, 1);
}

void tst_VLMC_BrowserUserSetting::loadSetting_takesForeignRoot()
{
    COMPARE_BYTES(completed("<repostry_common a=\"b\"><mine>x</mine></repostry_common>"),
                  with(kDefaults, "    <pageInfo>", "    <mine>x</mine>\n    <pageInfo>"));
}

void tst_VLMC_BrowserUserSetting::loadSetting_keepsRootOfItsName()
{
    COMPARE_BYTES(completed("<repostry a=\"b\"/>"), with(kDefaults, "docInfo=\"1.0\"", "a=\"b\""));
}

void tst_VLMC_BrowserUserSetting::loadSetting_keepsWhatIsThere_data()
{
    QTest::addColumn<QByteArray>("part");
    for (const char *part : kElements) {
        QTest::newRow(part) << QByteArray(part);
    }
}

void tst_VLMC_BrowserUserSetting::loadSetting_keepsWhatIsThere()
{
    QFETCH(QByteArray, part);
    const QByteArray name = part.mid(1, part.indexOf(part.endsWith("/>") ? '/' : '>') - 1);
    const QByteArray odd = with(kDefaults, part, element(name, "odd"));
    COMPARE_BYTES(completed(odd), odd);
    const QByteArray empty = with(kDefaults, part, element(name, ""));
    COMPARE_BYTES(completed(empty), empty);
}

void tst_VLMC_BrowserUserSetting::loadSetting_appendsWhatIsMissing()
{
    COMPARE_BYTES(completed("<repostry docInfo=\"1.0\"><font/><pageInfo><Zoom>1.5</Zoom>"
                            "<startup>lastpage</startup></pageInfo></repostry>"),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<repostry docInfo=\"1.0\">\n"
                  "    <font>\n"
                  "        <fontName/>\n"
                  "    </font>\n"
                  "    <pageInfo>\n"
                  "        <Zoom>1.5</Zoom>\n"
                  "        <startup>lastpage</startup>\n"
                  "        <home>about:blank</home>\n"
                  "        <lastPageURL>about:blank</lastPageURL>\n"
                  "    </pageInfo>\n"
                  "    <cookie>\n"
                  "        <cookieDeleteTiming>notDelete</cookieDeleteTiming>\n"
                  "    </cookie>\n"
                  "    <authInfo>\n"
                  "        <authInfoDeleteTiming>notDelete</authInfoDeleteTiming>\n"
                  "    </authInfo>\n"
                  "</repostry>\n");
}

void tst_VLMC_BrowserUserSetting::loadSetting_joinsPathAsItStands()
{
    TestDirectory directory;
    QString path = directory.file("base");
    Store store;
    store.loadSetting(&path);
    store.saveSetting(&path);
    COMPARE_BYTES(readFile(directory.file("baserepostry_private.xml")), kDefaults);
    writeFile(directory.file("baserepostry_private.xml"),
              with(kDefaults, kZoom, "<Zoom>0.5</Zoom>"));
    store.loadSetting(&path);
    QCOMPARE(int(store.getZoomInfo()), 1);
}

void tst_VLMC_BrowserUserSetting::loadSetting_takesAdministratorValues_data()
{
    QTest::addColumn<qulonglong>("userType");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<int>("cookie");
    QTest::addColumn<int>("certificate");
    QTest::addColumn<bool>("pages");
    QTest::addColumn<QByteArray>("expectedCookie");
    QTest::addColumn<QByteArray>("expectedAuthInfo");
    const QByteArray user("changeUser");
    const QByteArray never("notDelete");
    QList<qulonglong> others = QList<qulonglong>() << 0 << 2 << 4 << 5;
    if (sizeof(unsigned long) > 4) {
        // An administrator's type to whom cuts it to 32 bits.
        others << 0x100000003ULL;
    }
    for (const qulonglong type : others) {
        const QByteArray name = "type " + QByteArray::number(type);
        QTest::newRow(name + ", no flag") << type << false << 3 << 3 << false << never << never;
        QTest::newRow(name + ", flag") << type << true << 0 << 0 << false << user << user;
    }
    for (const qulonglong type : {1ULL, 3ULL}) {
        const QByteArray name = "type " + QByteArray::number(type);
        const bool pages = type == 3;
        QTest::newRow(name + ", cookie") << type << false << 2 << 0 << pages << user << never;
        QTest::newRow(name + ", certificate") << type << false << 0 << 1 << pages << never << user;
        QTest::newRow(name + ", over the flag")
            << type << true << 0 << 4 << pages << never << never;
    }
}

void tst_VLMC_BrowserUserSetting::loadSetting_takesAdministratorValues()
{
    QFETCH(qulonglong, userType);
    QFETCH(bool, flag);
    QFETCH(int, cookie);
    QFETCH(int, certificate);
    QFETCH(bool, pages);
    QFETCH(QByteArray, expectedCookie);
    QFETCH(QByteArray, expectedAuthInfo);
    Store store;
    store.setUserType(static_cast<unsigned long>(userType));
    store.setBrwSettingflag(flag);
    store.setBrwAdminSetting(false);
    store.setBrwAdminCookieDeleteTiming(char(cookie));
    store.setBrwAdminCertificateDeleteTiming(char(certificate));
    store.setBrwAdminStartup(1);
    store.setBrwAdminHomepage(utf8("http://admin/"));
    QVERIFY(!store.getXMLRootNode());
    TestDirectory directory;

    store.loadSetting(directory.pathPointer());

    QByteArray expected = timings(expectedCookie, expectedAuthInfo);
    if (pages) {
        expected = with(expected, kHome, "<home>http://admin/</home>");
        expected = with(expected, kStartup, "<startup>lastpage</startup>");
    }
    COMPARE_BYTES(saved(store), expected);
    QCOMPARE(int(store.getCookieDeleteTiming()), expectedCookie == "changeUser" ? 3 : 0);
}

void tst_VLMC_BrowserUserSetting::loadSetting_keepsStoredOverAdministratorValues()
{
    Store store;
    store.setUserType(3);
    TestDirectory directory;
    store.loadSetting(directory.pathPointer());
    // The administrator's values at first.
    COMPARE_BYTES(saved(store), kDefaults);
    store.setBrwAdminCookieDeleteTiming(3);
    store.setBrwAdminCertificateDeleteTiming(3);
    store.setBrwAdminStartup(1);
    store.setBrwAdminHomepage(utf8("http://admin/"));
    load(store, kDefaults);
    COMPARE_BYTES(saved(store), kDefaults);
}

void tst_VLMC_BrowserUserSetting::loadSetting_leavesHomeMissingWhenAdministratorsIsTooLong()
{
    Store store;
    store.setUserType(3);
    store.setBrwAdminHomepage(repeated(257));
    TestDirectory directory;
    store.loadSetting(directory.pathPointer());
    COMPARE_BYTES(saved(store), with(kDefaults, QByteArray("        ") + kHome + '\n', ""));
    QString url;
    store.getHomePage(&url);
    QCOMPARE(url, utf8("about:blank"));
}

void tst_VLMC_BrowserUserSetting::loadSetting_limitsAdministratorHome()
{
    Store store;
    store.setUserType(3);
    store.setBrwAdminHomepage(wide(256));
    TestDirectory directory;
    store.loadSetting(directory.pathPointer());
    COMPARE_BYTES(saved(store), with(kDefaults, kHome, element("home", wide(256).toUtf8())));
}

void tst_VLMC_BrowserUserSetting::saveSetting_logsStartAndEnd()
{
    TestDirectory directory;
    Store store;
    store.loadSetting(directory.pathPointer());
    takeLog();
    store.saveSetting(directory.pathPointer());
    COMPARE_BYTES(loggedText(), "3 [VLMC_BrowserUserSetting::saveSetting] start\n"
                                "3 [VLMC_XMLSetting::save] start\n"
                                "3 [VLMC_XMLSetting::saveBookmark] end\n"
                                "3 [VLMC_BrowserUserSetting::saveSetting] end\n");
    COMPARE_BYTES(readFile(directory.file(kFile)), kDefaults);
}

void tst_VLMC_BrowserUserSetting::saveSetting_refusesBlankDirectory()
{
    QFETCH(bool, null);
    Override<Store> store;
    QString empty;
    store.saveSetting(null ? nullptr : &empty);
    QCOMPARE(store.saveCalls, 0);
    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_BrowserUserSetting::saveSetting] start\n"
                  "2 [VLMC_BrowserUserSetting::saveSetting] User Path is NULL or empty.\n");
}

void tst_VLMC_BrowserUserSetting::saveSetting_writesNothingBeforeLoad()
{
    TestDirectory directory;
    Store store;
    store.saveSetting(directory.pathPointer());
    QVERIFY(!exists(directory.file(kFile)));
}

void tst_VLMC_BrowserUserSetting::textGetters_refuseNull_data()
{
    QTest::addColumn<int>("row");
    int row = 0;
    for (const Text &text : kTexts) {
        QTest::newRow(text.name) << row++;
    }
}

void tst_VLMC_BrowserUserSetting::textGetters_refuseNull()
{
    QFETCH(int, row);
    const QByteArray line =
        "2 [VLMC_BrowserUserSetting::" + QByteArray(kTexts[row].name) + "] Parameter is NULL.\n";
    Store store;
    (store.*kTexts[row].get)(nullptr);
    COMPARE_BYTES(loggedText(), line);
    load(store, kDefaults);
    takeLog();
    (store.*kTexts[row].get)(nullptr);
    COMPARE_BYTES(loggedText(), line);
}

void tst_VLMC_BrowserUserSetting::textAccessors_limitBytes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("fits");
    int row = 0;
    for (const Text &text : kTexts) {
        const QByteArray name(text.name);
        QTest::newRow(name + ", empty") << row << QString() << true;
        QTest::newRow(name + ", short") << row << utf8("x") << true;
        QTest::newRow(name + ", 256 bytes") << row << repeated(256) << true;
        QTest::newRow(name + ", 257 bytes") << row << repeated(257) << false;
        QTest::newRow(name + ", 256 bytes, wide") << row << wide(256) << true;
        QTest::newRow(name + ", 257 bytes, wide") << row << wide(257) << false;
        ++row;
    }
}

void tst_VLMC_BrowserUserSetting::textAccessors_limitBytes()
{
    QFETCH(int, row);
    QFETCH(QString, value);
    QFETCH(bool, fits);
    const Text &text = kTexts[row];
    Store store;
    load(store, kDefaults);

    QCOMPARE((store.*text.set)(value), fits ? 1 : 0);

    COMPARE_BYTES(saved(store),
                  fits ? with(kDefaults, text.defaultElement, element(text.element, value.toUtf8()))
                       : QByteArray(kDefaults));
    Store bare;
    bare.createXMLRootNode();
    QCOMPARE((bare.*text.set)(value), fits ? 1 : 0);
    QCOMPARE(bare.getXMLNodeCnt(), fits ? 1 : 0);
}

void tst_VLMC_BrowserUserSetting::textGetters_readStored()
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

    QCOMPARE((store.*text.set)(utf8("x")), 1);
    store.getGrandchildNode(utf8(text.group), utf8(text.element))->setText(value);
    read = utf8("?");
    (store.*text.get)(&read);
    QCOMPARE(read, fits && !value.isEmpty() ? value : utf8(text.byDefault));
}

void tst_VLMC_BrowserUserSetting::getStartUp_knowsOneWord()
{
    Store store;
    store.createXMLRootNode();
    QCOMPARE(int(store.getStartUp()), 0);
    for (const char *word : {"homepage", "", "Lastpage", "lastpage ", "1"}) {
        load(store, with(kDefaults, kStartup, element("startup", word)));
        QCOMPARE(int(store.getStartUp()), 0);
    }
    load(store, with(kDefaults, kStartup, "<startup>lastpage</startup>"));
    QCOMPARE(int(store.getStartUp()), 1);
}

void tst_VLMC_BrowserUserSetting::setStartUp_testsForOne()
{
    Store store;
    load(store, kDefaults);
    for (int code : {-128, -1, 1, 0, 1, 2, 3, 127}) {
        store.setStartUp(char(code));
        COMPARE_BYTES(saved(store), with(kDefaults, kStartup,
                                         element("startup", code == 1 ? "lastpage" : "homepage")));
    }
}

void tst_VLMC_BrowserUserSetting::getZoomInfo_readsElevenTexts()
{
    Store store;
    store.createXMLRootNode();
    QCOMPARE(int(store.getZoomInfo()), 6);
    for (int code = 1; code <= 11; ++code) {
        const int tenths = code + 4;
        const QByteArray text =
            QByteArray::number(tenths / 10) + '.' + QByteArray::number(tenths % 10);
        load(store, with(kDefaults, kZoom, element("Zoom", text)));
        QCOMPARE(int(store.getZoomInfo()), code);
    }
    for (const char *text : {"", "0.4", "1.6", "0.50", "1", " 0.5", "odd"}) {
        load(store, with(kDefaults, kZoom, element("Zoom", text)));
        QCOMPARE(int(store.getZoomInfo()), 6);
    }
}

void tst_VLMC_BrowserUserSetting::setZoomInfo_writesElevenTexts()
{
    Store store;
    load(store, kDefaults);
    const char *const texts[] = {"0.5", "0.6", "0.7", "0.8", "0.9", "1.0",
                                 "1.1", "1.2", "1.3", "1.4", "1.5"};
    for (short code = 1; code <= 11; ++code) {
        QCOMPARE(store.setZoomInfo(code), 1);
        COMPARE_BYTES(saved(store), with(kDefaults, kZoom, element("Zoom", texts[code - 1])));
    }
}

void tst_VLMC_BrowserUserSetting::setZoomInfo_refusesOtherCodes_data()
{
    QTest::addColumn<int>("code");
    for (int code : {0, -1, 12, 13, 256 + 6, 32767, -32768, -32767}) {
        QTest::newRow(QByteArray::number(code)) << code;
    }
}

void tst_VLMC_BrowserUserSetting::setZoomInfo_refusesOtherCodes()
{
    QFETCH(int, code);
    Store store;
    load(store, with(kDefaults, kZoom, "<Zoom>0.7</Zoom>"));
    QCOMPARE(store.setZoomInfo(short(code)), 0);
    COMPARE_BYTES(saved(store), with(kDefaults, kZoom, "<Zoom>0.7</Zoom>"));
}

void tst_VLMC_BrowserUserSetting::setZoomInfo_leavesGroupBehind()
{
    Store store;
    QCOMPARE(store.setZoomInfo(12), 0);
    QVERIFY(!store.getXMLRootNode());
    store.createXMLRootNode();
    QCOMPARE(store.setZoomInfo(12), 0);
    QCOMPARE(store.getXMLNodeCnt(), 1);
    VLMC_XMLNode *const pageInfo = store.getChildNode(utf8("pageInfo"));
    QVERIFY(pageInfo);
    QVERIFY(pageInfo->getXMLNodeChildren().isEmpty());

    QString text = utf8("text");
    pageInfo->setText(text);
    QCOMPARE(store.setZoomInfo(0), 0);
    QCOMPARE(pageInfo->getText(), QString());
    QCOMPARE(store.setZoomInfo(11), 1);
    QCOMPARE(int(store.getZoomInfo()), 11);
}

void tst_VLMC_BrowserUserSetting::timingGetters_foldOldWords()
{
    for (const Timing &timing : kTimings) {
        Store store;
        store.setUserType(4);
        for (const char *word : {"logout", "timeout", "changeUser"}) {
            load(store, with(kDefaults, timing.defaultElement, element(timing.element, word)));
            QCOMPARE(int((store.*timing.get)()), 3);
        }
        for (const char *word : {"notDelete", "", "Logout", "changeuser", "timeout ", "3"}) {
            load(store, with(kDefaults, timing.defaultElement, element(timing.element, word)));
            QCOMPARE(int((store.*timing.get)()), 0);
        }
    }
}

void tst_VLMC_BrowserUserSetting::timingGetters_lookAtUserTypeWhenMissing()
{
    for (const Timing &timing : kTimings) {
        Store store;
        for (int round = 0; round < 2; ++round) {
            for (unsigned long type : {0UL, 1UL, 2UL, 3UL, 4UL, 5UL}) {
                store.setUserType(type);
                QCOMPARE(int((store.*timing.get)()), type == 4 ? 3 : 0);
            }
            store.createXMLRootNode();
        }
    }
}

void tst_VLMC_BrowserUserSetting::timingSetters_writeTwoWords()
{
    for (const Timing &timing : kTimings) {
        Store store;
        load(store, kDefaults);
        for (int code : {-128, -1, 1, 0, 2, 4, 3, 5, 127}) {
            const bool on = code >= 1 && code <= 3;
            (store.*timing.set)(char(code));
            QCOMPARE(int((store.*timing.get)()), on ? 3 : 0);
            COMPARE_BYTES(saved(store),
                          with(kDefaults, timing.defaultElement,
                               element(timing.element, on ? "changeUser" : "notDelete")));
        }
        Store bare;
        bare.createXMLRootNode();
        (bare.*timing.set)(1);
        QVERIFY(bare.getGrandchildNode(utf8(timing.group), utf8(timing.element)));
    }
}

void tst_VLMC_BrowserUserSetting::IsNotChgUserDeletetiming_looksAtBoth_data()
{
    QTest::addColumn<QByteArray>("cookie");
    QTest::addColumn<QByteArray>("authInfo");
    QTest::addColumn<int>("result");
    // A null array: no such element.
    QTest::newRow("both missing") << QByteArray() << QByteArray() << 0;
    QTest::newRow("both changeUser") << QByteArray("changeUser") << QByteArray("changeUser") << 0;
    QTest::newRow("cookie other") << QByteArray("notDelete") << QByteArray("changeUser") << 1;
    QTest::newRow("authInfo other") << QByteArray("changeUser") << QByteArray("logout") << 1;
    QTest::newRow("cookie missing") << QByteArray() << QByteArray("changeUser") << 0;
    QTest::newRow("cookie missing, authInfo other") << QByteArray() << QByteArray("timeout") << 1;
    QTest::newRow("authInfo missing") << QByteArray("changeUser") << QByteArray() << 0;
    QTest::newRow("authInfo missing, cookie other") << QByteArray("logout") << QByteArray() << 1;
    QTest::newRow("cookie empty") << QByteArray("") << QByteArray() << 1;
}

void tst_VLMC_BrowserUserSetting::IsNotChgUserDeletetiming_looksAtBoth()
{
    QFETCH(QByteArray, cookie);
    QFETCH(QByteArray, authInfo);
    QFETCH(int, result);
    Store store;
    QCOMPARE(int(store.IsNotChgUserDeletetiming()), 0);
    store.createXMLRootNode();
    const QByteArray *const texts[] = {&cookie, &authInfo};
    for (int i = 0; i < 2; ++i) {
        if (!texts[i]->isNull()) {
            (store.*kTimings[i].set)(0);
            QString text = QString::fromLatin1(texts[i]->constData());
            store.getGrandchildNode(utf8(kTimings[i].group), utf8(kTimings[i].element))
                ->setText(text);
        }
    }
    QCOMPARE(int(store.IsNotChgUserDeletetiming()), result);
}

void tst_VLMC_BrowserUserSetting::CnvOldtypeDeletetiming_rewritesOneWord_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("changeUser") << QByteArray("changeUser") << QByteArray("logout");
    for (const char *word : {"notDelete", "logout", "timeout", "changeuser", "", "odd"}) {
        QTest::newRow(word) << QByteArray(word) << QByteArray(word);
    }
}

void tst_VLMC_BrowserUserSetting::CnvOldtypeDeletetiming_rewritesOneWord()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    Store store;
    store.CnvOldtypeDeletetiming();
    QVERIFY(!store.getXMLRootNode());
    store.createXMLRootNode();
    store.CnvOldtypeDeletetiming();
    QCOMPARE(store.getXMLNodeCnt(), 0);

    load(store, timings(before, "odd"));
    store.CnvOldtypeDeletetiming();
    COMPARE_BYTES(saved(store), timings(after, "odd"));
    load(store, timings("odd", before));
    QString text = utf8("text");
    VLMC_XMLNode *const group = store.getChildNode(utf8("authInfo"));
    group->setText(text);
    const char timing = store.getCertificationDeleteTiming();
    store.CnvOldtypeDeletetiming();
    QCOMPARE(group->getText(), before == after ? text : QString());
    QCOMPARE(store.getCertificationDeleteTiming(), timing);
    text.clear();
    group->setText(text);
    COMPARE_BYTES(saved(store), timings("odd", after));
}

void tst_VLMC_BrowserUserSetting::setters_emptyTextOfGroup()
{
    Store store;
    load(store, kDefaults);
    const char *const groups[] = {"pageInfo", "cookie", "authInfo", "font"};
    const auto fill = [&store, &groups]() {
        for (const char *group : groups) {
            QString text = utf8("text");
            store.getChildNode(utf8(group))->setText(text);
        }
    };
    fill();
    store.setHomePage(utf8("about:blank"));
    store.setCookieDeleteTiming(0);
    store.setCertificationDeleteTiming(0);
    store.setFontName(QString());
    COMPARE_BYTES(saved(store), kDefaults);
    fill();
    store.setLastPage(utf8("about:blank"));
    QCOMPARE(store.getChildNode(utf8("pageInfo"))->getText(), QString());
    fill();
    store.setStartUp(0);
    QCOMPARE(store.getChildNode(utf8("pageInfo"))->getText(), QString());
    fill();
    // A refused text changes nothing.
    QCOMPARE(store.setHomePage(repeated(257)), 0);
    QCOMPARE(store.getChildNode(utf8("pageInfo"))->getText(), utf8("text"));
}

void tst_VLMC_BrowserUserSetting::accessors_beforeLoad()
{
    Store store;
    for (const Text &text : kTexts) {
        QString value = utf8("mine");
        QCOMPARE((store.*text.set)(utf8("1")), 0);
        (store.*text.get)(&value);
        QCOMPARE(value, utf8("mine"));
        value.clear();
        (store.*text.get)(&value);
        QCOMPARE(value, QString());
    }
    store.setStartUp(1);
    QCOMPARE(int(store.getStartUp()), 0);
    QCOMPARE(store.setZoomInfo(1), 0);
    QCOMPARE(int(store.getZoomInfo()), 6);
    store.setCookieDeleteTiming(1);
    store.setCertificationDeleteTiming(1);
    QCOMPARE(int(store.getCookieDeleteTiming()), 0);
    QCOMPARE(int(store.getCertificationDeleteTiming()), 0);
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_BrowserUserSetting::accessors_neverLog()
{
    Store store;
    load(store, kDefaults);
    takeLog();
    for (const Text &text : kTexts) {
        QString value;
        (store.*text.set)(repeated(300));
        (store.*text.set)(utf8("1"));
        (store.*text.get)(&value);
    }
    store.setStartUp(1);
    store.getStartUp();
    store.setZoomInfo(0);
    store.setZoomInfo(1);
    store.getZoomInfo();
    store.setCookieDeleteTiming(1);
    store.getCookieDeleteTiming();
    store.IsNotChgUserDeletetiming();
    store.CnvOldtypeDeletetiming();
    QCOMPARE(loggedText(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_VLMC_BrowserUserSetting)
#include "tst_VLMC_BrowserUserSetting.moc"
