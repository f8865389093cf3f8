#include "cookies/VLMC_AuthSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SavedDocuments.h"
#include "tests/support/WatchedStore.h"

#include <limits>
#include <type_traits>

static_assert(std::is_same<decltype(VLMS_AuthInfo::authType), unsigned char>::value,
              "published type");

namespace
{
const int kLowest = std::numeric_limits<int>::min();
const int kHighest = std::numeric_limits<int>::max();

VLMS_AuthInfo credentials(const QString &hostName, const QString &portNum = utf8("80"),
                          unsigned char authType = 0, const QByteArray &user = "user",
                          const QByteArray &passwd = "pass")
{
    const VLMS_AuthInfo info = {hostName, portNum, authType, user, passwd};
    return info;
}

// What the caller of getAuthInfo has before the call.
VLMS_AuthInfo untouched()
{
    return credentials(utf8("old host"), utf8("old"), 9, "old user", "old passwd");
}

// A record in one line, for comparison as a whole.
QByteArray described(const VLMS_AuthInfo &info)
{
    return info.hostName.toUtf8() + ':' + info.portNum.toUtf8() + ' '
           + QByteArray::number(int(info.authType)) + ' ' + info.user + '/' + info.passwd;
}

const char kUntouched[] = "old host:old 9 old user/old passwd";

// The hosts in the order of their ids.
QByteArray hosts(VLMC_AuthSetting &store)
{
    QByteArray line;
    VLMS_AuthInfo info = untouched();
    for (int id = 0; store.getAuthInfo(id, &info); ++id) {
        line += (id ? " " : "") + info.hostName.toUtf8();
    }
    return line;
}

void addHosts(VLMC_AuthSetting &store, int count)
{
    for (int i = 0; i < count; ++i) {
        VLMS_AuthInfo info = credentials(QString::fromLatin1("h%1").arg(i));
        QVERIFY(store.setAuthInfo(&info));
    }
    takeLog();
}

// A document of one entry with these children.
QByteArray documentOf(const QByteArray &children)
{
    return "<authentication docInfo=\"1.0\"><authInfo id=\"000\">" + children
           + "</authInfo></authentication>";
}

// What getAuthInfo makes of an entry with these children.
QByteArray readBack(const QByteArray &children)
{
    TestDirectory directory;
    writeFile(directory.file("authinfo.xml"), documentOf(children));
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = untouched();
    if (!store.getAuthInfo(0, &info)) {
        return "none";
    }
    return described(info);
}

QByteArray repeated(const char *text, int times) { return QByteArray(text).repeated(times); }
} // namespace

class tst_VLMC_AuthSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void loadAuthInfo_refusedKeepsTheMax();
    void saveAuthInfo_writesTheDocument();

    void getAuthInfo_logsItsEntry();
    void getAuthInfo_refusesNull();
    void getAuthInfo_findsNothing_data();
    void getAuthInfo_findsNothing();
    void getAuthInfo_findsNothingBeforeLoad();
    void getAuthInfo_limitsWhatItReads_data();
    void getAuthInfo_limitsWhatItReads();
    void getAuthInfo_readsSchemes_data();
    void getAuthInfo_readsSchemes();
    void getAuthInfo_decodesSecrets_data();
    void getAuthInfo_decodesSecrets();
    void getAuthInfo_findsChildrenByName_data();
    void getAuthInfo_findsChildrenByName();
    void getAuthInfo_takesAnyElementWithTheId();

    void setAuthInfo_putsTheNewestFirst();
    void setAuthInfo_limitsFields_data();
    void setAuthInfo_limitsFields();
    void setAuthInfo_refusesNull();
    void setAuthInfo_keepsDuplicates();
    void setAuthInfo_keepsNothingBeforeLoad();
    void setAuthInfo_isTrueWithoutANode();
    void setAuthInfo_copiesTheRecord();

    void addAuthInfo_checksNothing();
    void addAuthInfo_refusesNull();
    void addAuthInfo_writesSchemes_data();
    void addAuthInfo_writesSchemes();
    void addAuthInfo_keepsEveryByte();
    void addAuthInfo_escapesTexts();
    void addAuthInfo_leaksNothingBeforeLoad();
    void addAuthInfo_stopsWithoutANode();

    void updateAuthInfo_dropsTheOldest_data();
    void updateAuthInfo_dropsTheOldest();
    void updateAuthInfo_logsEveryStep();
    void updateAuthInfo_beforeLoadInsertsNothing();
    void updateAuthInfo_beforeLoadDeletesNothing();
    void updateAuthInfo_deletesBeforeItRefuses_data();
    void updateAuthInfo_deletesBeforeItRefuses();
    void updateAuthInfo_countsEveryChild();

    void deleteAuthInfo_renumbersTheOthers();
    void deleteAuthInfo_ignoresUnknownIds_data();
    void deleteAuthInfo_ignoresUnknownIds();
    void deleteAuthInfo_numbersAlsoWithoutDeletion();
    void deleteAuthInfo_doesNothingBeforeLoad();

    void overrides_areHonoured();
    void manyEntries_withTheirIds();
    void manyEntries_withoutIds();
    void log_holdsNoCredentials();
};

void tst_VLMC_AuthSetting::loadAuthInfo_refusedKeepsTheMax()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 2);
    addHosts(store, 4);
    QString empty;
    store.loadAuthInfo(directory.pathPointer(), 0);
    store.loadAuthInfo(nullptr, 4);
    store.loadAuthInfo(&empty, 4);

    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));

    QCOMPARE(hosts(store), QByteArray("new h3 h1 h0"));
}

void tst_VLMC_AuthSetting::saveAuthInfo_writesTheDocument()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo first = credentials(utf8("a.example"), utf8("8080"), 1, "user", "pass");
    VLMS_AuthInfo second = credentials(utf8("b\xc3\xbc"
                                            "cher.example"),
                                       utf8("80"), 2, "\xe3\x81\x82", QByteArray());
    VLMS_AuthInfo third = credentials(QString(), QString(), 0, "a", "ab");
    QVERIFY(store.setAuthInfo(&first));
    QVERIFY(store.setAuthInfo(&second));
    QVERIFY(store.setAuthInfo(&third));

    store.saveAuthInfo(directory.pathPointer(), 10);

    COMPARE_BYTES(readFile(directory.file("authinfo.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<authentication docInfo=\"1.0\">\n"
                  "    <authInfo id=\"000\">\n"
                  "        <hostName/>\n"
                  "        <portNum/>\n"
                  "        <authType>basic</authType>\n"
                  "        <user><![CDATA[YQ==]]></user>\n"
                  "        <passwd><![CDATA[YWI=]]></passwd>\n"
                  "    </authInfo>\n"
                  "    <authInfo id=\"001\">\n"
                  "        <hostName>b\xc3\xbc"
                  "cher.example</hostName>\n"
                  "        <portNum>80</portNum>\n"
                  "        <authType>NTLM</authType>\n"
                  "        <user><![CDATA[44GC]]></user>\n"
                  "        <passwd/>\n"
                  "    </authInfo>\n"
                  "    <authInfo id=\"002\">\n"
                  "        <hostName>a.example</hostName>\n"
                  "        <portNum>8080</portNum>\n"
                  "        <authType>digest</authType>\n"
                  "        <user><![CDATA[dXNlcg==]]></user>\n"
                  "        <passwd><![CDATA[cGFzcw==]]></passwd>\n"
                  "    </authInfo>\n"
                  "</authentication>\n");
}

void tst_VLMC_AuthSetting::getAuthInfo_logsItsEntry()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    addHosts(store, 1);
    VLMS_AuthInfo info = untouched();

    QVERIFY(store.getAuthInfo(0, &info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::getAuthInfo]\n");
    QCOMPARE(described(info), QByteArray("h0:80 0 user/pass"));
}

void tst_VLMC_AuthSetting::getAuthInfo_refusesNull()
{
    VLMC_AuthSetting store;
    QVERIFY(!store.getAuthInfo(0, nullptr));
    store.createXMLRootNode();
    addHosts(store, 1);

    QVERIFY(!store.getAuthInfo(0, nullptr));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::getAuthInfo]\n");
}

void tst_VLMC_AuthSetting::getAuthInfo_findsNothing_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("-1") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("lowest") << kLowest;
    QTest::newRow("highest") << kHighest;
}

void tst_VLMC_AuthSetting::getAuthInfo_findsNothing()
{
    QFETCH(int, id);
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    addHosts(store, 2);
    VLMS_AuthInfo info = untouched();

    QVERIFY(!store.getAuthInfo(id, &info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::getAuthInfo]\n");
    QCOMPARE(described(info), QByteArray(kUntouched));
}

void tst_VLMC_AuthSetting::getAuthInfo_findsNothingBeforeLoad()
{
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = untouched();

    QVERIFY(!store.getAuthInfo(0, &info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::getAuthInfo]\n");
    QCOMPARE(described(info), QByteArray(kUntouched));
}

// Each row has one field at its limit or over it; the others are read all the same.
void tst_VLMC_AuthSetting::getAuthInfo_limitsWhatItReads_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("read");
    const QByteArray oldHost = "old host";
    const QByteArray oldPort = "old";
    const QByteArray fullHost(256, 'h');
    const QByteArray threes = repeated("\xe3\x81\x82", 85) + "x";
    const QByteArray fours = repeated("\xf0\x9f\x98\x80", 64);
    QTest::newRow("host 256") << QByteArray("hostName") << fullHost << fullHost;
    QTest::newRow("host 257") << QByteArray("hostName") << QByteArray(257, 'h') << oldHost;
    QTest::newRow("host 256, 3 a character") << QByteArray("hostName") << threes << threes;
    QTest::newRow("host 257, 3 a character") << QByteArray("hostName") << threes + 'x' << oldHost;
    QTest::newRow("host 256, 4 a character") << QByteArray("hostName") << fours << fours;
    QTest::newRow("host 257, 4 a character") << QByteArray("hostName") << fours + 'x' << oldHost;
    QTest::newRow("host empty") << QByteArray("hostName") << QByteArray() << QByteArray();
    QTest::newRow("port 5") << QByteArray("portNum") << QByteArray("65535") << QByteArray("65535");
    QTest::newRow("port 6") << QByteArray("portNum") << QByteArray("655350") << oldPort;
    QTest::newRow("port 5, 3 and 2") << QByteArray("portNum") << QByteArray("\xe3\x81\x82\xc3\xa9")
                                     << QByteArray("\xe3\x81\x82\xc3\xa9");
    QTest::newRow("port 6, 3 a character")
        << QByteArray("portNum") << QByteArray("\xe3\x81\x82\xe3\x81\x82") << oldPort;
    QTest::newRow("port empty") << QByteArray("portNum") << QByteArray() << QByteArray();
    const char *const names[] = {"user", "passwd"};
    for (const char *const name : names) {
        const QByteArray fullSecret(272, '\xe9');
        const QByteArray old = QByteArray("old ") + name;
        QTest::newRow((QByteArray(name) + " 272").constData())
            << QByteArray(name) << fullSecret.toBase64() << fullSecret;
        QTest::newRow((QByteArray(name) + " 273").constData())
            << QByteArray(name) << QByteArray(273, '\xe9').toBase64() << old;
        QTest::newRow((QByteArray(name) + " of a megabyte").constData())
            << QByteArray(name) << QByteArray(1 << 20, 'x').toBase64() << old;
    }
}

void tst_VLMC_AuthSetting::getAuthInfo_limitsWhatItReads()
{
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, read);
    const char *const names[] = {"hostName", "portNum", "authType", "user", "passwd"};
    const char *const texts[] = {"host", "81", "digest", "dQ==", "cA=="};
    QByteArray values[] = {"host", "81", "1", "u", "p"};
    QByteArray children;
    for (int i = 0; i < 5; ++i) {
        const bool replaced = field == names[i];
        children += QByteArray("<") + names[i] + '>' + (replaced ? text : QByteArray(texts[i]))
                    + "</" + names[i] + '>';
        if (replaced) {
            values[i] = read;
        }
    }

    COMPARE_BYTES(readBack(children), values[0] + ':' + values[1] + ' ' + values[2] + ' '
                                          + values[3] + '/' + values[4]);
}

void tst_VLMC_AuthSetting::getAuthInfo_readsSchemes_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<int>("code");
    QTest::newRow("missing") << QByteArray() << 0;
    QTest::newRow("empty") << QByteArray("<authType/>") << 0;
    QTest::newRow("basic") << QByteArray("<authType>basic</authType>") << 0;
    QTest::newRow("digest") << QByteArray("<authType>digest</authType>") << 1;
    QTest::newRow("NTLM") << QByteArray("<authType>NTLM</authType>") << 2;
    QTest::newRow("ntlm") << QByteArray("<authType>ntlm</authType>") << 0;
    QTest::newRow("Digest") << QByteArray("<authType>Digest</authType>") << 0;
    QTest::newRow("digest and more") << QByteArray("<authType>digest2</authType>") << 0;
    QTest::newRow("digest after a blank") << QByteArray("<authType> digest</authType>") << 0;
    QTest::newRow("a number") << QByteArray("<authType>1</authType>") << 0;
    QTest::newRow("digest as CDATA") << QByteArray("<authType><![CDATA[digest]]></authType>") << 1;
}

void tst_VLMC_AuthSetting::getAuthInfo_readsSchemes()
{
    QFETCH(QByteArray, element);
    QFETCH(int, code);
    QCOMPARE(readBack(element),
             "old host:old " + QByteArray::number(code) + " old user/old passwd");
}

void tst_VLMC_AuthSetting::getAuthInfo_decodesSecrets_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("secret");
    QTest::newRow("CDATA") << QByteArray("<![CDATA[QUJD]]>") << QByteArray("ABC");
    QTest::newRow("plain") << QByteArray("QUJD") << QByteArray("ABC");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("no Base64 at all") << QByteArray("!!!!") << QByteArray();
    QTest::newRow("half a byte") << QByteArray("Q") << QByteArray();
    QTest::newRow("without padding") << QByteArray("QQ") << QByteArray("A");
    QTest::newRow("blanks and stars inside") << QByteArray("QU J*D") << QByteArray("ABC");
    QTest::newRow("non-ASCII inside") << QByteArray("QU\xe3\x81\x82JD") << QByteArray("ABC");
    QTest::newRow("zero bytes") << QByteArray("AABBAA==") << QByteArray("\0\0A\0", 4);
    QTest::newRow("long text, short secret")
        << QByteArray("QUJD" + QByteArray(5000, '*')) << QByteArray("ABC");
}

void tst_VLMC_AuthSetting::getAuthInfo_decodesSecrets()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, secret);
    COMPARE_BYTES(readBack("<user>" + text + "</user>"),
                  "old host:old 0 " + secret + "/old passwd");
    COMPARE_BYTES(readBack("<passwd>" + text + "</passwd>"), "old host:old 0 old user/" + secret);
}

void tst_VLMC_AuthSetting::getAuthInfo_findsChildrenByName_data()
{
    QTest::addColumn<QByteArray>("children");
    QTest::addColumn<QByteArray>("read");
    QTest::newRow("none") << QByteArray() << QByteArray("old host:old 0 old user/old passwd");
    QTest::newRow("in another order")
        << QByteArray("<passwd>cA==</passwd><authType>NTLM</authType><user>dQ==</user>"
                      "<portNum>81</portNum><hostName>h</hostName>")
        << QByteArray("h:81 2 u/p");
    QTest::newRow("the first of each")
        << QByteArray("<hostName>h</hostName><hostName>i</hostName><portNum>1</portNum>"
                      "<portNum>2</portNum><authType>digest</authType><authType>NTLM</authType>"
                      "<user>dQ==</user><user>QQ==</user><passwd>cA==</passwd>"
                      "<passwd>QQ==</passwd>")
        << QByteArray("h:1 1 u/p");
    QTest::newRow("the first also where it is over the limit")
        << QByteArray("<portNum>123456</portNum><portNum>2</portNum>")
        << QByteArray("old host:old 0 old user/old passwd");
    QTest::newRow("amid foreign ones")
        << QByteArray("<x/><HostName>no</HostName><hostName>h</hostName><users>QQ==</users>")
        << QByteArray("h:old 0 old user/old passwd");
    QTest::newRow("not in deeper levels") << QByteArray("<x><hostName>no</hostName></x>")
                                          << QByteArray("old host:old 0 old user/old passwd");
}

void tst_VLMC_AuthSetting::getAuthInfo_findsChildrenByName()
{
    QFETCH(QByteArray, children);
    QFETCH(QByteArray, read);
    COMPARE_BYTES(readBack(children), read);
}

void tst_VLMC_AuthSetting::getAuthInfo_takesAnyElementWithTheId()
{
    TestDirectory directory;
    writeFile(directory.file("authinfo.xml"),
              "<authentication><other><hostName>h</hostName></other></authentication>");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = untouched();

    QVERIFY(store.getAuthInfo(0, &info));

    QCOMPARE(info.hostName, utf8("h"));
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

void tst_VLMC_AuthSetting::setAuthInfo_putsTheNewestFirst()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    takeLog();
    VLMS_AuthInfo a = credentials(utf8("A"), utf8("1"), 1, "ua", "pa");
    VLMS_AuthInfo b = credentials(utf8("B"), utf8("2"), 2, "ub", "pb");

    QVERIFY(store.setAuthInfo(&a));
    QVERIFY(store.setAuthInfo(&b));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(store.getAuthInfoCnt(), 2);
    VLMS_AuthInfo info = untouched();
    QVERIFY(store.getAuthInfo(0, &info));
    QCOMPARE(described(info), described(b));
    QVERIFY(store.getAuthInfo(1, &info));
    QCOMPARE(described(info), described(a));
}

void tst_VLMC_AuthSetting::setAuthInfo_limitsFields_data()
{
    QTest::addColumn<QString>("hostName");
    QTest::addColumn<QString>("portNum");
    QTest::addColumn<int>("userBytes");
    QTest::addColumn<int>("passwdBytes");
    QTest::addColumn<bool>("accepted");
    const QString host = utf8("h");
    const QString port = utf8("80");
    const QString fours = QString::fromUtf8(repeated("\xf0\x9f\x98\x80", 64).constData());
    QTest::newRow("all empty") << QString() << QString() << 0 << 0 << true;
    QTest::newRow("host 256") << QString(256, QLatin1Char('h')) << port << 1 << 1 << true;
    QTest::newRow("host 257") << QString(257, QLatin1Char('h')) << port << 1 << 1 << false;
    QTest::newRow("host 256, 2 a character") << QString(128, QChar(0xE9)) << port << 1 << 1 << true;
    QTest::newRow("host 257, 2 a character")
        << QString(128, QChar(0xE9)) + host << port << 1 << 1 << false;
    QTest::newRow("host 256, 3 a character")
        << QString(85, QChar(0x3042)) + host << port << 1 << 1 << true;
    QTest::newRow("host 258, 3 a character")
        << QString(86, QChar(0x3042)) << port << 1 << 1 << false;
    QTest::newRow("host 256, 4 a character") << fours << port << 1 << 1 << true;
    QTest::newRow("host 257, 4 a character") << fours + host << port << 1 << 1 << false;
    QTest::newRow("port 5") << host << utf8("65535") << 1 << 1 << true;
    QTest::newRow("port 6") << host << utf8("655350") << 1 << 1 << false;
    QTest::newRow("port 5, 3 and 2") << host << utf8("\xe3\x81\x82\xc3\xa9") << 1 << 1 << true;
    QTest::newRow("port 6, 3 a character")
        << host << utf8("\xe3\x81\x82\xe3\x81\x82") << 1 << 1 << false;
    QTest::newRow("user 272") << host << port << 272 << 1 << true;
    QTest::newRow("user 273") << host << port << 273 << 1 << false;
    QTest::newRow("passwd 272") << host << port << 1 << 272 << true;
    QTest::newRow("passwd 273") << host << port << 1 << 273 << false;
    QTest::newRow("all at their limits")
        << QString(256, QLatin1Char('h')) << utf8("65535") << 272 << 272 << true;
    QTest::newRow("all over their limits")
        << QString(257, QLatin1Char('h')) << utf8("655350") << 273 << 273 << false;
}

void tst_VLMC_AuthSetting::setAuthInfo_limitsFields()
{
    QFETCH(QString, hostName);
    QFETCH(QString, portNum);
    QFETCH(int, userBytes);
    QFETCH(int, passwdBytes);
    QFETCH(bool, accepted);
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = credentials(hostName, portNum, 1, QByteArray(userBytes, '\xfe'),
                                     QByteArray(passwdBytes, '\0'));

    QCOMPARE(store.setAuthInfo(&info), accepted);

    COMPARE_BYTES(loggedText(), QByteArray("3 [VLMC_AuthSetting::setAuthInfo]\n")
                                    + (accepted ? "3 [VLMC_AuthSetting::addAuthInfo]\n" : ""));
    QCOMPARE(store.getXMLNodeCnt(), accepted ? 1 : 0);
    VLMS_AuthInfo read = untouched();
    QCOMPARE(store.getAuthInfo(0, &read), accepted);
    QCOMPARE(described(read), accepted ? described(info) : QByteArray(kUntouched));
}

void tst_VLMC_AuthSetting::setAuthInfo_refusesNull()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();

    QVERIFY(!store.setAuthInfo(nullptr));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::setAuthInfo]\n");
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_VLMC_AuthSetting::setAuthInfo_keepsDuplicates()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = credentials(utf8("same"));
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(store.setAuthInfo(&info));
    QCOMPARE(hosts(store), QByteArray("same same"));
}

// The entry belongs to no document, and the caller is told nothing of it.
void tst_VLMC_AuthSetting::setAuthInfo_keepsNothingBeforeLoad()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = credentials(utf8("h"));

    QVERIFY(store.setAuthInfo(&info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.getAuthInfoCnt(), 0);
    VLMS_AuthInfo read = untouched();
    QVERIFY(!store.getAuthInfo(0, &read));
    store.saveAuthInfo(directory.pathPointer(), 1);
    QVERIFY(!exists(directory.file("authinfo.xml")));
    store.loadAuthInfo(directory.pathPointer(), 1);
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

void tst_VLMC_AuthSetting::setAuthInfo_isTrueWithoutANode()
{
    WatchedStore<VLMC_AuthSetting> store;
    store.createXMLRootNode();
    store.refusesNodes = true;
    VLMS_AuthInfo info = credentials(utf8("h"));
    QVERIFY(store.setAuthInfo(&info));
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_VLMC_AuthSetting::setAuthInfo_copiesTheRecord()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = credentials(utf8("h"), utf8("80"), 1, "u", "p");
    QVERIFY(store.setAuthInfo(&info));
    QCOMPARE(described(info), QByteArray("h:80 1 u/p"));

    info = untouched();

    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(0, &read));
    QCOMPARE(described(read), QByteArray("h:80 1 u/p"));
}

// What is over its limit is stored whole and skipped by whoever reads it.
void tst_VLMC_AuthSetting::addAuthInfo_checksNothing()
{
    const ForeignDocuments overTheLimits;
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    takeLog();
    VLMS_AuthInfo info = credentials(QString(257, QLatin1Char('h')), utf8("123456"), 1,
                                     QByteArray(273, 'u'), QByteArray(273, 'p'));

    store.addAuthInfo(&info);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::addAuthInfo]\n");
    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(0, &read));
    QCOMPARE(described(read), QByteArray("old host:old 1 old user/old passwd"));
    store.saveAuthInfo(directory.pathPointer(), 10);
    COMPARE_BYTES(readFile(directory.file("authinfo.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<authentication docInfo=\"1.0\">\n"
                  "    <authInfo id=\"000\">\n"
                  "        <hostName>"
                      + QByteArray(257, 'h')
                      + "</hostName>\n"
                        "        <portNum>123456</portNum>\n"
                        "        <authType>digest</authType>\n"
                        "        <user><![CDATA["
                      + QByteArray(273, 'u').toBase64()
                      + "]]></user>\n"
                        "        <passwd><![CDATA["
                      + QByteArray(273, 'p').toBase64()
                      + "]]></passwd>\n"
                        "    </authInfo>\n"
                        "</authentication>\n");
}

void tst_VLMC_AuthSetting::addAuthInfo_refusesNull()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();

    store.addAuthInfo(nullptr);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_VLMC_AuthSetting::addAuthInfo_writesSchemes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<int>("read");
    QTest::newRow("0") << 0 << QByteArray("<authType>basic</authType>") << 0;
    QTest::newRow("1") << 1 << QByteArray("<authType>digest</authType>") << 1;
    QTest::newRow("2") << 2 << QByteArray("<authType>NTLM</authType>") << 2;
    QTest::newRow("3") << 3 << QByteArray("<authType/>") << 0;
    QTest::newRow("7") << 7 << QByteArray("<authType/>") << 0;
    QTest::newRow("255") << 255 << QByteArray("<authType/>") << 0;
}

void tst_VLMC_AuthSetting::addAuthInfo_writesSchemes()
{
    QFETCH(int, code);
    QFETCH(QByteArray, element);
    QFETCH(int, read);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = credentials(utf8("h"), utf8("1"), static_cast<unsigned char>(code));
    store.addAuthInfo(&info);

    store.saveAuthInfo(directory.pathPointer(), 10);

    QVERIFY(readFile(directory.file("authinfo.xml")).contains("        " + element + "\n"));
    VLMS_AuthInfo out = untouched();
    QVERIFY(store.getAuthInfo(0, &out));
    QCOMPARE(int(out.authType), read);
    store.loadAuthInfo(directory.pathPointer(), 10);
    out.authType = 9;
    QVERIFY(store.getAuthInfo(0, &out));
    QCOMPARE(int(out.authType), read);
}

void tst_VLMC_AuthSetting::addAuthInfo_keepsEveryByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i) {
        bytes.append(static_cast<char>(i));
    }
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = credentials(utf8("h"), utf8("1"), 0, bytes, QByteArray("\0zero\0", 6));
    store.addAuthInfo(&info);
    store.saveAuthInfo(directory.pathPointer(), 10);
    store.loadAuthInfo(directory.pathPointer(), 10);

    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(0, &read));

    QCOMPARE(read.user, bytes);
    QCOMPARE(read.passwd, QByteArray("\0zero\0", 6));
    QVERIFY(readFile(directory.file("authinfo.xml"))
                .contains("<user><![CDATA[" + bytes.toBase64() + "]]></user>"));
}

void tst_VLMC_AuthSetting::addAuthInfo_escapesTexts()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = credentials(utf8("<h> & ]]>"), utf8("<&>"));
    store.addAuthInfo(&info);

    store.saveAuthInfo(directory.pathPointer(), 10);

    const QByteArray document = readFile(directory.file("authinfo.xml"));
    QVERIFY(document.contains("<hostName>&lt;h&gt; &amp; ]]&gt;</hostName>"));
    QVERIFY(document.contains("<portNum>&lt;&amp;&gt;</portNum>"));
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(0, &read));
    QCOMPARE(described(read), described(info));
}

void tst_VLMC_AuthSetting::addAuthInfo_leaksNothingBeforeLoad()
{
    WatchedStore<VLMC_AuthSetting> store;
    VLMS_AuthInfo info = credentials(utf8("h"));
    store.addAuthInfo(&info);
    QCOMPARE(store.livingNodes(), 6);

    runDeferredDeletes();

    QCOMPARE(store.livingNodes(), 0);
    store.createXMLRootNode();
    store.addAuthInfo(&info);
    runDeferredDeletes();
    QCOMPARE(store.livingNodes(), 6);
}

void tst_VLMC_AuthSetting::addAuthInfo_stopsWithoutANode()
{
    WatchedStore<VLMC_AuthSetting> store;
    store.createXMLRootNode();
    store.refusesNodes = true;
    VLMS_AuthInfo info = credentials(utf8("h"));

    store.addAuthInfo(&info);

    COMPARE_BYTES(store.takeCalls(), "addXMLChild  authInfo '' 0 0 1\n");
}

void tst_VLMC_AuthSetting::updateAuthInfo_dropsTheOldest_data()
{
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("deleted");
    QTest::newRow("full") << 10 << 10 << 9;
    QTest::newRow("not full") << 10 << 4 << 3;
    QTest::newRow("overfull") << 3 << 5 << 2;
    QTest::newRow("empty") << 10 << 0 << -1;
    QTest::newRow("one") << 10 << 1 << 0;
    QTest::newRow("max 1") << 1 << 3 << 0;
    QTest::newRow("highest max") << kHighest << 3 << 2;
}

void tst_VLMC_AuthSetting::updateAuthInfo_dropsTheOldest()
{
    QFETCH(int, max);
    QFETCH(int, count);
    QFETCH(int, deleted);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), max);
    addHosts(store, count);
    VLMS_AuthInfo info = credentials(utf8("new"));

    QVERIFY(store.updateAuthInfo(&info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:"
                                    + QByteArray::number(deleted)
                                    + "\n"
                                      "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                      "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QByteArray expected = "new";
    for (int id = 0; id < count; ++id) {
        if (id != deleted) {
            expected += " h" + QByteArray::number(count - 1 - id);
        }
    }
    QCOMPARE(hosts(store), expected);
    QCOMPARE(store.getAuthInfoCnt(), deleted < 0 ? count + 1 : count);
}

void tst_VLMC_AuthSetting::updateAuthInfo_logsEveryStep()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 2);
    addHosts(store, 2);

    QVERIFY(!store.updateAuthInfo(nullptr));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:1\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n");
}

void tst_VLMC_AuthSetting::updateAuthInfo_beforeLoadInsertsNothing()
{
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = credentials(utf8("new"));

    QVERIFY(store.updateAuthInfo(&info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:-1\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.getAuthInfoCnt(), 0);
    QVERIFY(!store.updateAuthInfo(nullptr));
}

// No load has set a maximum, but there is a document to insert into.
void tst_VLMC_AuthSetting::updateAuthInfo_beforeLoadDeletesNothing()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    addHosts(store, 2);
    VLMS_AuthInfo info = credentials(utf8("new"));

    QVERIFY(store.updateAuthInfo(&info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:-1\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(hosts(store), QByteArray("new h1 h0"));
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesBeforeItRefuses_data()
{
    QTest::addColumn<int>("hostBytes");
    QTest::addColumn<int>("portBytes");
    QTest::addColumn<int>("userBytes");
    QTest::addColumn<int>("passwdBytes");
    QTest::newRow("host") << 257 << 1 << 1 << 1;
    QTest::newRow("port") << 1 << 6 << 1 << 1;
    QTest::newRow("user") << 1 << 1 << 273 << 1;
    QTest::newRow("passwd") << 1 << 1 << 1 << 273;
    QTest::newRow("null") << -1 << 0 << 0 << 0;
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesBeforeItRefuses()
{
    QFETCH(int, hostBytes);
    QFETCH(int, portBytes);
    QFETCH(int, userBytes);
    QFETCH(int, passwdBytes);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 3);
    addHosts(store, 3);
    const bool isNull = hostBytes < 0;
    VLMS_AuthInfo info = credentials(QString(isNull ? 0 : hostBytes, QLatin1Char('h')),
                                     QString(portBytes, QLatin1Char('1')), 0,
                                     QByteArray(userBytes, 'u'), QByteArray(passwdBytes, 'p'));

    QVERIFY(!store.updateAuthInfo(isNull ? nullptr : &info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:2\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n");
    QCOMPARE(hosts(store), QByteArray("h2 h1"));
}

// The position counts all children of the root, so that a foreign element may be what goes.
void tst_VLMC_AuthSetting::updateAuthInfo_countsEveryChild()
{
    TestDirectory directory;
    writeFile(directory.file("authinfo.xml"),
              "<authentication><authInfo/><authInfo/><other/></authentication>");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 10);
    VLMS_AuthInfo info = credentials(utf8("new"));

    QVERIFY(store.updateAuthInfo(&info));

    QCOMPARE(store.getXMLNodeCnt(), 3);
    QCOMPARE(store.getAuthInfoCnt(), 3);
}

void tst_VLMC_AuthSetting::deleteAuthInfo_renumbersTheOthers()
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    addHosts(store, 4);

    store.deleteAuthInfo(1);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:1\n");
    QCOMPARE(hosts(store), QByteArray("h3 h1 h0"));
    store.deleteAuthInfo(0);
    QCOMPARE(hosts(store), QByteArray("h1 h0"));
    store.deleteAuthInfo(1);
    QCOMPARE(hosts(store), QByteArray("h1"));
    store.deleteAuthInfo(0);
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

void tst_VLMC_AuthSetting::deleteAuthInfo_ignoresUnknownIds_data()
{
    getAuthInfo_findsNothing_data();
}

void tst_VLMC_AuthSetting::deleteAuthInfo_ignoresUnknownIds()
{
    QFETCH(int, id);
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    addHosts(store, 2);

    store.deleteAuthInfo(id);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:"
                                    + QByteArray::number(id) + "\n");
    QCOMPARE(hosts(store), QByteArray("h1 h0"));
}

void tst_VLMC_AuthSetting::deleteAuthInfo_numbersAlsoWithoutDeletion()
{
    VLMC_AuthSetting store;
    VLMC_XMLNode *const entry = new VLMC_XMLNode(store.createXMLRootNode(), 0);
    QVERIFY(!entry->isAttribute(utf8("id")));

    store.deleteAuthInfo(5);

    QCOMPARE(entry->getAttribute().value(utf8("id")).toString(), utf8("000"));
}

void tst_VLMC_AuthSetting::deleteAuthInfo_doesNothingBeforeLoad()
{
    VLMC_AuthSetting store;

    store.deleteAuthInfo(0);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:0\n");
    QVERIFY(!store.getXMLRootNode());
}

void tst_VLMC_AuthSetting::overrides_areHonoured()
{
    TestDirectory directory;
    WatchedStore<VLMC_AuthSetting> store;
    const QByteArray path = directory.file("authinfo.xml").toUtf8();

    store.loadAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(store.takeCalls(), "deleteAllSetting\nload " + path + "\nsetIDforChildren id\n");

    VLMS_AuthInfo info = credentials(utf8("h"), utf8("1"), 1, "u", "p");
    const QByteArray additions = "addXMLChild  authInfo '' 0 0 1\n"
                                 "addXMLChild authInfo hostName 'h' 0 0 0\n"
                                 "addXMLChild authInfo portNum '1' 0 0 0\n"
                                 "addXMLChild authInfo authType 'digest' 0 0 0\n"
                                 "addXMLChild authInfo user 'dQ==' 1 0 0\n"
                                 "addXMLChild authInfo passwd 'cA==' 1 0 0\n"
                                 "setIDforChildren id\n";
    QVERIFY(store.setAuthInfo(&info));
    COMPARE_BYTES(store.takeCalls(), additions);
    QVERIFY(store.updateAuthInfo(&info));
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID 0 id\nsetIDforChildren id\n" + additions);
    QCOMPARE(store.getAuthInfoCnt(), 1);
    COMPARE_BYTES(store.takeCalls(), "getXMLRootNodeChildCntByName id authInfo\n");
    store.deleteAuthInfo(7);
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID 7 id\nsetIDforChildren id\n");
    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(0, &read));
    COMPARE_BYTES(store.takeCalls(), "");
    store.saveAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(store.takeCalls(), "save " + path + "\n");
}

// Numbers end at 998: entries behind it go by what the file gave them.
void tst_VLMC_AuthSetting::manyEntries_withTheirIds()
{
    TestDirectory directory;
    QByteArray document = "<authentication>";
    for (int i = 0; i < 1500; ++i) {
        const QByteArray number = QByteArray::number(i);
        document +=
            "<authInfo id=\"" + number + "\"><hostName>h" + number + "</hostName></authInfo>";
    }
    writeFile(directory.file("authinfo.xml"), document + "</authentication>");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 2000);
    QCOMPARE(store.getAuthInfoCnt(), 1500);
    VLMS_AuthInfo read = untouched();
    const int ids[] = {0, 998, 999, 1499};
    for (const int id : ids) {
        QVERIFY(store.getAuthInfo(id, &read));
        QCOMPARE(read.hostName, QString::fromLatin1("h%1").arg(id));
    }
    takeLog();

    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));

    QVERIFY(loggedText().contains("3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:1499\n"));
    QCOMPARE(store.getXMLNodeCnt(), 1500);
    // The entry that moved from 998 to 999 keeps the number 998, which the one before it has too.
    QCOMPARE(store.getAuthInfoCnt(), 1499);
    QVERIFY(store.getAuthInfo(998, &read));
    QCOMPARE(read.hostName, utf8("h997"));
    QVERIFY(store.getAuthInfo(999, &read));
    QCOMPARE(read.hostName, utf8("h999"));
    QVERIFY(!store.getAuthInfo(1499, &read));
}

void tst_VLMC_AuthSetting::manyEntries_withoutIds()
{
    TestDirectory directory;
    writeFile(directory.file("authinfo.xml"),
              "<authentication>" + repeated("<authInfo/>", 1500) + "</authentication>");
    VLMC_AuthSetting store;

    store.loadAuthInfo(directory.pathPointer(), 2000);

    QCOMPARE(store.getXMLNodeCnt(), 1500);
    QCOMPARE(store.getAuthInfoCnt(), 999);
    VLMS_AuthInfo read = untouched();
    QVERIFY(store.getAuthInfo(998, &read));
    QVERIFY(!store.getAuthInfo(999, &read));
    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));
    QCOMPARE(store.getXMLNodeCnt(), 1501);
    store.saveAuthInfo(directory.pathPointer(), 1);
    const QByteArray document = readFile(directory.file("authinfo.xml"));
    QCOMPARE(int(document.count("<authInfo id=")), 1000);
    QCOMPARE(int(document.count("<authInfo/>")), 501);
}

void tst_VLMC_AuthSetting::log_holdsNoCredentials()
{
    TestDirectory directory;
    QString missing = directory.file("missing/");
    {
        VLMC_AuthSetting store;
        VLMS_AuthInfo kept =
            credentials(utf8("canaryhost"), utf8("61234"), 0, "canaryuser", "canarypasswd");
        VLMS_AuthInfo refusedInfo = kept;
        refusedInfo.passwd = "canarypasswd" + QByteArray(300, 'x');
        for (int round = 0; round < 2; ++round) {
            store.setAuthInfo(&kept);
            store.addAuthInfo(&kept);
            store.updateAuthInfo(&kept);
            store.setAuthInfo(&refusedInfo);
            store.addAuthInfo(&refusedInfo);
            store.updateAuthInfo(&refusedInfo);
            store.setAuthInfo(&kept);
            VLMS_AuthInfo read = untouched();
            store.getAuthInfo(0, &read);
            store.getAuthInfo(99, &read);
            store.getAuthInfoCnt();
            store.deleteAuthInfo(1);
            store.deleteAuthInfo(99);
            store.saveAuthInfo(directory.pathPointer(), 0);
            store.saveAuthInfo(&missing, 1);
            store.saveAuthInfo(directory.pathPointer(), 1);
            store.loadAuthInfo(directory.pathPointer(), 0);
            store.loadAuthInfo(&missing, 1);
            store.loadAuthInfo(directory.pathPointer(), 1);
        }
        writeFile(directory.file("authinfo.xml"), "<a><hostName>canaryhost</canaryuser>");
        store.loadAuthInfo(directory.pathPointer(), 1);
    }

    const QByteArray log = loggedText();
    QVERIFY(log.contains("[VLMC_AuthSetting::updateAuthInfo]"));
    QVERIFY(!log.contains("canary"));
    QVERIFY(!log.contains("61234"));
    // The Base64 of the secrets, but for where padding makes a difference.
    QVERIFY(!log.contains(QByteArray("canaryuse").toBase64()));
    QVERIFY(!log.contains(QByteArray("canarypasswd").toBase64()));
}

QTEST_GUILESS_MAIN(tst_VLMC_AuthSetting)
#include "tst_VLMC_AuthSetting.moc"
