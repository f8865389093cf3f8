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
const char kFile[] = "authinfo.xml";
const int kLowest = std::numeric_limits<int>::min();
const int kHighest = std::numeric_limits<int>::max();

/// Has an empty document from the start.
class EmptyStore : public VLMC_AuthSetting
{
public:
    EmptyStore() { createXMLRootNode(); }
};

VLMS_AuthInfo credentials(const QString &hostName, const QString &portNum = utf8("80"),
                          unsigned char authType = 0, const QByteArray &user = "user",
                          const QByteArray &passwd = "pass")
{
    const VLMS_AuthInfo info = {hostName, portNum, authType, user, passwd};
    return info;
}

// A record in one line, for comparison as a whole.
QByteArray described(const VLMS_AuthInfo &info)
{
    return info.hostName.toUtf8() + ':' + info.portNum.toUtf8() + ' '
           + QByteArray::number(int(info.authType)) + ' ' + info.user + '/' + info.passwd;
}

// What the store gives for the id to a caller who had "old host:old 9 old user/old passwd".
QByteArray given(VLMC_AuthSetting &store, int id)
{
    VLMS_AuthInfo info = credentials(utf8("old host"), utf8("old"), 9, "old user", "old passwd");
    const bool found = store.getAuthInfo(id, &info);
    return (found ? "" : "none: ") + described(info);
}

// The hosts in the order of their ids.
QByteArray hosts(VLMC_AuthSetting &store)
{
    QByteArray line;
    VLMS_AuthInfo info;
    for (int id = 0; store.getAuthInfo(id, &info); ++id) {
        line += (id ? " " : "") + info.hostName.toUtf8();
    }
    return line;
}

// "h0" is the first that is set, and so the last of them; the log then starts anew.
void addHosts(VLMC_AuthSetting &store, int count)
{
    for (int i = 0; i < count; ++i) {
        VLMS_AuthInfo info = credentials(QString::fromLatin1("h%1").arg(i));
        QVERIFY(store.setAuthInfo(&info));
    }
    takeLog();
}

// The lines of these operations, each given by its name and what stands behind it.
QByteArray lines(const QList<QByteArray> &operations)
{
    QByteArray text;
    for (const QByteArray &operation : operations) {
        const QByteArray name = operation.split(' ').first();
        text += "3 [VLMC_AuthSetting::" + name + ']' + operation.mid(name.size()) + '\n';
    }
    return text;
}

QByteArray deletion(int id) { return "deleteAuthInfo si_nodeNum:" + QByteArray::number(id); }

void load(VLMC_AuthSetting &store, const QByteArray &entries, int max = 10)
{
    TestDirectory directory;
    writeFile(directory.file(kFile), "<authentication>" + entries + "</authentication>");
    store.loadAuthInfo(directory.pathPointer(), max);
    takeLog();
}

QByteArray saved(VLMC_AuthSetting &store)
{
    TestDirectory directory;
    store.saveAuthInfo(directory.pathPointer(), 10);
    return readFile(directory.file(kFile));
}

QByteArray element(const QByteArray &name, const QByteArray &content)
{
    return '<' + name + '>' + content + "</" + name + '>';
}

// A row for an entry with this element alone: only its field changes, and the scheme, which is
// basic without one.
void addField(const QByteArray &row, const char *name, const QByteArray &content,
              const QByteArray &read)
{
    const char *const names[] = {"hostName", "portNum", "authType", "user", "passwd"};
    QByteArray values[] = {"old host", "old", "0", "old user", "old passwd"};
    for (int i = 0; i < 5; ++i) {
        if (name == QByteArray(names[i])) {
            values[i] = read;
        }
    }
    QTest::newRow((name + (' ' + row)).constData())
        << element(name, content)
        << values[0] + ':' + values[1] + ' ' + values[2] + ' ' + values[3] + '/' + values[4];
}

void addSecrets(const char *name)
{
    const QByteArray old = QByteArray("old ") + name;
    const QByteArray full(272, '\xe9');
    addField("272", name, full.toBase64(), full);
    addField("273", name, QByteArray(273, '\xe9').toBase64(), old);
    addField("of a megabyte", name, QByteArray(1 << 20, 'x').toBase64(), old);
    addField("in CDATA", name, "<![CDATA[QUJD]]>", "ABC");
    addField("plain", name, "QUJD", "ABC");
    addField("empty", name, "", "");
    addField("no Base64 at all", name, "!!!!", "");
    addField("half a byte", name, "Q", "");
    addField("without padding", name, "QQ", "A");
    addField("blanks and stars inside", name, "QU J*D", "ABC");
    addField("non-ASCII inside", name, "QU\xe3\x81\x82JD", "ABC");
    addField("zero bytes", name, "AABBAA==", QByteArray("\0\0A\0", 4));
    addField("long text, short secret", name, "QUJD" + QByteArray(5000, '*'), "ABC");
}
} // namespace

class tst_VLMC_AuthSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void loadAuthInfo_refusedKeepsTheMax();
    void saveAuthInfo_writesTheDocument();

    void getAuthInfo_findsNothing();
    void getAuthInfo_reads_data();
    void getAuthInfo_reads();
    void getAuthInfo_takesAnyElementWithTheId();

    void setAuthInfo_putsTheNewestFirst();
    void setAuthInfo_limitsFields_data();
    void setAuthInfo_limitsFields();
    void setAuthInfo_keepsNothingBeforeLoad();

    void addAuthInfo_checksNothing();
    void addAuthInfo_writesSchemes();
    void addAuthInfo_keepsEveryByte();
    void addAuthInfo_leaksNothingBeforeLoad();
    void addAuthInfo_stopsWithoutANode();

    void updateAuthInfo_dropsTheOldest_data();
    void updateAuthInfo_dropsTheOldest();
    void updateAuthInfo_beforeLoadDeletesNothing();
    void updateAuthInfo_deletesBeforeItRefuses();
    void updateAuthInfo_countsEveryChild();

    void deleteAuthInfo_renumbersTheOthers_data();
    void deleteAuthInfo_renumbersTheOthers();
    void deleteAuthInfo_doesNothingBeforeLoad();

    void overrides_areHonoured();
    void manyEntries_withTheirIds();
};

void tst_VLMC_AuthSetting::loadAuthInfo_refusedKeepsTheMax()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    load(store, "", 2);
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
    VLMC_AuthSetting store;
    load(store, "");
    VLMS_AuthInfo infos[] = {
        credentials(utf8("<h> & ]]>"), utf8("<&>"), 1),
        credentials(utf8("b\xc3\xbc.example"), utf8("80"), 2, "\xe3\x81\x82", QByteArray()),
        credentials(QString(), QString(), 0, "a", "ab")};
    for (VLMS_AuthInfo &info : infos) {
        QVERIFY(store.setAuthInfo(&info));
    }
    COMPARE_BYTES(saved(store), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<authentication docInfo=\"1.0\">\n"
                                "    <authInfo id=\"000\">\n"
                                "        <hostName/>\n"
                                "        <portNum/>\n"
                                "        <authType>basic</authType>\n"
                                "        <user><![CDATA[YQ==]]></user>\n"
                                "        <passwd><![CDATA[YWI=]]></passwd>\n"
                                "    </authInfo>\n"
                                "    <authInfo id=\"001\">\n"
                                "        <hostName>b\xc3\xbc.example</hostName>\n"
                                "        <portNum>80</portNum>\n"
                                "        <authType>NTLM</authType>\n"
                                "        <user><![CDATA[44GC]]></user>\n"
                                "        <passwd/>\n"
                                "    </authInfo>\n"
                                "    <authInfo id=\"002\">\n"
                                "        <hostName>&lt;h&gt; &amp; ]]&gt;</hostName>\n"
                                "        <portNum>&lt;&amp;&gt;</portNum>\n"
                                "        <authType>digest</authType>\n"
                                "        <user><![CDATA[dXNlcg==]]></user>\n"
                                "        <passwd><![CDATA[cGFzcw==]]></passwd>\n"
                                "    </authInfo>\n"
                                "</authentication>\n");
}

void tst_VLMC_AuthSetting::getAuthInfo_findsNothing()
{
    VLMC_AuthSetting unloaded;
    EmptyStore store;
    addHosts(store, 2);
    const QByteArray none = "none: old host:old 9 old user/old passwd";
    COMPARE_BYTES(given(unloaded, 0), none);
    for (const int id : {-1, 2, kLowest, kHighest}) {
        COMPARE_BYTES(given(store, id), none);
    }
    QVERIFY(!store.getAuthInfo(0, nullptr));
    COMPARE_BYTES(loggedText(), lines({"getAuthInfo"}).repeated(6));
}

void tst_VLMC_AuthSetting::getAuthInfo_reads_data()
{
    QTest::addColumn<QByteArray>("children");
    QTest::addColumn<QByteArray>("read");
    const QByteArray host(256, 'h');
    const QByteArray threes = QByteArray("\xe3\x81\x82").repeated(85) + "x";
    const QByteArray fours = QByteArray("\xf0\x9f\x98\x80").repeated(64);
    addField("256", "hostName", host, host);
    addField("257", "hostName", host + 'h', "old host");
    addField("256, 3 a character", "hostName", threes, threes);
    addField("257, 3 a character", "hostName", threes + 'x', "old host");
    addField("256, 4 a character", "hostName", fours, fours);
    addField("257, 4 a character", "hostName", fours + 'x', "old host");
    addField("empty", "hostName", "", "");
    addField("5", "portNum", "65535", "65535");
    addField("6", "portNum", "655350", "old");
    addField("5, 3 and 2", "portNum", "\xe3\x81\x82\xc3\xa9", "\xe3\x81\x82\xc3\xa9");
    addField("6, 3 a character", "portNum", "\xe3\x81\x82\xe3\x81\x82", "old");
    addField("empty", "portNum", "", "");
    addField("empty", "authType", "", "0");
    addField("basic", "authType", "basic", "0");
    addField("digest", "authType", "digest", "1");
    addField("NTLM", "authType", "NTLM", "2");
    addField("ntlm", "authType", "ntlm", "0");
    addField("Digest", "authType", "Digest", "0");
    addField("digest and more", "authType", "digest2", "0");
    addField("digest after a blank", "authType", " digest", "0");
    addField("a number", "authType", "1", "0");
    addField("digest as CDATA", "authType", "<![CDATA[digest]]>", "1");
    addSecrets("user");
    addSecrets("passwd");
    const QByteArray old("old host:old 0 old user/old passwd");
    QTest::newRow("none") << QByteArray() << old;
    QTest::newRow("in another order")
        << QByteArray("<passwd>cA==</passwd><authType>NTLM</authType><user>dQ==</user>"
                      "<portNum>81</portNum><hostName>h</hostName>")
        << QByteArray("h:81 2 u/p");
    QTest::newRow("all but the one over its limit")
        << "<hostName>" + host
               + "h</hostName><portNum>81</portNum><authType>NTLM</authType>"
                 "<user>dQ==</user><passwd>cA==</passwd>"
        << QByteArray("old host:81 2 u/p");
    QTest::newRow("the first of each")
        << QByteArray("<hostName>h</hostName><hostName>i</hostName><portNum>1</portNum>"
                      "<portNum>2</portNum><authType>digest</authType><authType>NTLM</authType>"
                      "<user>dQ==</user><user>QQ==</user><passwd>cA==</passwd>"
                      "<passwd>QQ==</passwd>")
        << QByteArray("h:1 1 u/p");
    QTest::newRow("the first also where it is over the limit")
        << QByteArray("<portNum>123456</portNum><portNum>2</portNum>") << old;
    QTest::newRow("amid foreign ones")
        << QByteArray("<x/><HostName>no</HostName><hostName>h</hostName><users>QQ==</users>")
        << QByteArray("h:old 0 old user/old passwd");
    QTest::newRow("not in deeper levels") << QByteArray("<x><hostName>no</hostName></x>") << old;
}

void tst_VLMC_AuthSetting::getAuthInfo_reads()
{
    QFETCH(QByteArray, children);
    QFETCH(QByteArray, read);
    VLMC_AuthSetting store;
    load(store, element("authInfo", children));
    COMPARE_BYTES(given(store, 0), read);
    COMPARE_BYTES(loggedText(), lines({"getAuthInfo"}));
}

void tst_VLMC_AuthSetting::getAuthInfo_takesAnyElementWithTheId()
{
    VLMC_AuthSetting store;
    load(store, "<other><hostName>h</hostName></other>");
    QCOMPARE(hosts(store), QByteArray("h"));
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

// Also twice the same.
void tst_VLMC_AuthSetting::setAuthInfo_putsTheNewestFirst()
{
    EmptyStore store;
    VLMS_AuthInfo a = credentials(utf8("A"), utf8("1"), 1, "ua", "pa");
    VLMS_AuthInfo b = credentials(utf8("B"), utf8("2"), 2, "ub", "pb");
    for (VLMS_AuthInfo *const info : {&a, &b, &b}) {
        QVERIFY(store.setAuthInfo(info));
        COMPARE_BYTES(loggedText(), lines({"setAuthInfo", "addAuthInfo"}));
    }
    // The store has a copy.
    b.hostName.clear();
    QCOMPARE(store.getAuthInfoCnt(), 3);
    COMPARE_BYTES(given(store, 0), "B:2 2 ub/pb");
    COMPARE_BYTES(given(store, 1), "B:2 2 ub/pb");
    COMPARE_BYTES(given(store, 2), "A:1 1 ua/pa");
}

void tst_VLMC_AuthSetting::setAuthInfo_limitsFields_data()
{
    QTest::addColumn<QString>("hostName");
    QTest::addColumn<QString>("portNum");
    QTest::addColumn<int>("userBytes");
    QTest::addColumn<int>("passwdBytes");
    QTest::addColumn<bool>("accepted");
    const QString h = utf8("h");
    const QString port = utf8("80");
    const QString twos(128, QChar(0xE9));
    const QString threes(85, QChar(0x3042));
    const QString fours = utf8("\xf0\x9f\x98\x80").repeated(64);
    QTest::newRow("all empty") << QString() << QString() << 0 << 0 << true;
    QTest::newRow("host 256") << h.repeated(256) << port << 1 << 1 << true;
    QTest::newRow("host 257") << h.repeated(257) << port << 1 << 1 << false;
    QTest::newRow("host 256, 2 a character") << twos << port << 1 << 1 << true;
    QTest::newRow("host 257, 2 a character") << twos + h << port << 1 << 1 << false;
    QTest::newRow("host 256, 3 a character") << threes + h << port << 1 << 1 << true;
    QTest::newRow("host 257, 3 a character") << threes + h + h << port << 1 << 1 << false;
    QTest::newRow("host 256, 4 a character") << fours << port << 1 << 1 << true;
    QTest::newRow("host 257, 4 a character") << fours + h << port << 1 << 1 << false;
    QTest::newRow("port 5") << h << utf8("65535") << 1 << 1 << true;
    QTest::newRow("port 6") << h << utf8("655350") << 1 << 1 << false;
    QTest::newRow("port 5, 3 and 2") << h << utf8("\xe3\x81\x82\xc3\xa9") << 1 << 1 << true;
    QTest::newRow("port 6, 3 each") << h << utf8("\xe3\x81\x82\xe3\x81\x82") << 1 << 1 << false;
    QTest::newRow("user 272") << h << port << 272 << 1 << true;
    QTest::newRow("user 273") << h << port << 273 << 1 << false;
    QTest::newRow("passwd 272") << h << port << 1 << 272 << true;
    QTest::newRow("passwd 273") << h << port << 1 << 273 << false;
}

void tst_VLMC_AuthSetting::setAuthInfo_limitsFields()
{
    QFETCH(QString, hostName);
    QFETCH(QString, portNum);
    QFETCH(int, userBytes);
    QFETCH(int, passwdBytes);
    QFETCH(bool, accepted);
    EmptyStore store;
    VLMS_AuthInfo info = credentials(hostName, portNum, 1, QByteArray(userBytes, '\xfe'),
                                     QByteArray(passwdBytes, '\0'));

    QVERIFY(!store.setAuthInfo(nullptr));
    COMPARE_BYTES(loggedText(), lines({"setAuthInfo"}));
    QCOMPARE(store.setAuthInfo(&info), accepted);

    COMPARE_BYTES(loggedText(),
                  lines({"setAuthInfo"}) + (accepted ? lines({"addAuthInfo"}) : QByteArray()));
    QCOMPARE(store.getXMLNodeCnt(), accepted ? 1 : 0);
    COMPARE_BYTES(given(store, 0),
                  accepted ? described(info) : "none: old host:old 9 old user/old passwd");
}

// The entry belongs to no document, and the caller is told nothing of it.
void tst_VLMC_AuthSetting::setAuthInfo_keepsNothingBeforeLoad()
{
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = credentials(utf8("h"));
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(store.updateAuthInfo(&info));
    QVERIFY(!store.updateAuthInfo(nullptr));
    COMPARE_BYTES(loggedText(), lines({"setAuthInfo", "addAuthInfo", "updateAuthInfo", deletion(-1),
                                       "setAuthInfo", "addAuthInfo", "updateAuthInfo", deletion(-1),
                                       "setAuthInfo"}));
    QVERIFY(!store.getXMLRootNode());
    load(store, "");
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

// What is over its limit is stored whole and skipped by whoever reads it.
void tst_VLMC_AuthSetting::addAuthInfo_checksNothing()
{
    const ForeignDocuments overTheLimits;
    EmptyStore store;
    const QByteArray host(257, 'h');
    const QByteArray secret(273, 'u');
    VLMS_AuthInfo info = credentials(utf8(host.constData()), utf8("123456"), 1, secret, secret);

    store.addAuthInfo(nullptr);
    QCOMPARE(store.getXMLNodeCnt(), 0);
    store.addAuthInfo(&info);

    COMPARE_BYTES(loggedText(), lines({"addAuthInfo", "addAuthInfo"}));
    COMPARE_BYTES(given(store, 0), "old host:old 1 old user/old passwd");
    const QByteArray coded = "<![CDATA[" + secret.toBase64() + "]]>";
    COMPARE_BYTES(saved(store).simplified().replace("> <", "><"),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?><authentication docInfo=\"1.0\">"
                  "<authInfo id=\"000\">"
                      + element("hostName", host) + element("portNum", "123456")
                      + element("authType", "digest") + element("user", coded)
                      + element("passwd", coded) + "</authInfo></authentication>");
}

void tst_VLMC_AuthSetting::addAuthInfo_writesSchemes()
{
    const char *const words[] = {"basic", "digest", "NTLM"};
    for (const int code : {0, 1, 2, 3, 7, 255}) {
        VLMC_AuthSetting store;
        load(store, "");
        VLMS_AuthInfo info = credentials(utf8("h"), utf8("1"), static_cast<unsigned char>(code));
        store.addAuthInfo(&info);
        COMPARE_BYTES(given(store, 0),
                      "h:1 " + QByteArray::number(code < 3 ? code : 0) + " user/pass");
        QVERIFY(saved(store).contains(code < 3 ? element("authType", words[code])
                                               : QByteArray("<authType/>")));
    }
}

void tst_VLMC_AuthSetting::addAuthInfo_keepsEveryByte()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i) {
        bytes.append(static_cast<char>(i));
    }
    EmptyStore store;
    VLMS_AuthInfo info = credentials(utf8("h"), utf8("1"), 0, bytes, QByteArray("\0zero\0", 6));
    store.addAuthInfo(&info);
    COMPARE_BYTES(given(store, 0), described(info));
    QVERIFY(saved(store).contains("<user><![CDATA[" + bytes.toBase64() + "]]></user>"));
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
    // True all the same.
    QVERIFY(store.setAuthInfo(&info));
    COMPARE_BYTES(store.takeCalls(), "addXMLChild  authInfo '' 0 0 1\n");
    QCOMPARE(store.getXMLNodeCnt(), 0);
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
    VLMC_AuthSetting store;
    load(store, "", max);
    addHosts(store, count);
    VLMS_AuthInfo info = credentials(utf8("new"));

    QVERIFY(store.updateAuthInfo(&info));

    COMPARE_BYTES(loggedText(),
                  lines({"updateAuthInfo", deletion(deleted), "setAuthInfo", "addAuthInfo"}));
    QByteArray expected = "new";
    for (int id = 0; id < count; ++id) {
        if (id != deleted) {
            expected += " h" + QByteArray::number(count - 1 - id);
        }
    }
    QCOMPARE(hosts(store), expected);
}

// No load has set a maximum, but there is a document to insert into.
void tst_VLMC_AuthSetting::updateAuthInfo_beforeLoadDeletesNothing()
{
    EmptyStore store;
    addHosts(store, 2);
    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));
    COMPARE_BYTES(loggedText(),
                  lines({"updateAuthInfo", deletion(-1), "setAuthInfo", "addAuthInfo"}));
    QCOMPARE(hosts(store), QByteArray("new h1 h0"));
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesBeforeItRefuses()
{
    VLMC_AuthSetting store;
    load(store, "", 3);
    addHosts(store, 3);
    VLMS_AuthInfo info = credentials(utf8("h"), utf8("123456"));
    QVERIFY(!store.updateAuthInfo(&info));
    COMPARE_BYTES(loggedText(), lines({"updateAuthInfo", deletion(2), "setAuthInfo"}));
    QVERIFY(!store.updateAuthInfo(nullptr));
    COMPARE_BYTES(loggedText(), lines({"updateAuthInfo", deletion(1), "setAuthInfo"}));
    QCOMPARE(hosts(store), QByteArray("h2"));
}

// The position counts all children of the root, so that a foreign element may be what goes.
void tst_VLMC_AuthSetting::updateAuthInfo_countsEveryChild()
{
    VLMC_AuthSetting store;
    load(store, "<authInfo/><authInfo/><other/>");
    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));
    QCOMPARE(store.getXMLNodeCnt(), 3);
    QCOMPARE(store.getAuthInfoCnt(), 3);
}

void tst_VLMC_AuthSetting::deleteAuthInfo_renumbersTheOthers_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("left");
    QTest::newRow("first") << 0 << QByteArray("h1 h0");
    QTest::newRow("middle") << 1 << QByteArray("h2 h0");
    QTest::newRow("last") << 2 << QByteArray("h2 h1");
    QTest::newRow("behind the last") << 3 << QByteArray("h2 h1 h0");
    QTest::newRow("-1") << -1 << QByteArray("h2 h1 h0");
    QTest::newRow("lowest") << kLowest << QByteArray("h2 h1 h0");
    QTest::newRow("highest") << kHighest << QByteArray("h2 h1 h0");
}

void tst_VLMC_AuthSetting::deleteAuthInfo_renumbersTheOthers()
{
    QFETCH(int, id);
    QFETCH(QByteArray, left);
    EmptyStore store;
    addHosts(store, 3);
    // Numbered also where nothing is deleted.
    VLMC_XMLNode *const entry = new VLMC_XMLNode(store.getXMLRootNode(), 0);

    store.deleteAuthInfo(id);

    COMPARE_BYTES(loggedText(), lines({deletion(id)}));
    QVERIFY(hosts(store).startsWith(left));
    QCOMPARE(entry->getAttribute().value(utf8("id")).toString(),
             QString::fromLatin1("00%1").arg(left.count('h')));
}

void tst_VLMC_AuthSetting::deleteAuthInfo_doesNothingBeforeLoad()
{
    VLMC_AuthSetting store;
    store.deleteAuthInfo(0);
    COMPARE_BYTES(loggedText(), lines({deletion(0)}));
    QVERIFY(!store.getXMLRootNode());
}

void tst_VLMC_AuthSetting::overrides_areHonoured()
{
    TestDirectory directory;
    WatchedStore<VLMC_AuthSetting> store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    store.takeCalls();
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
    store.deleteAuthInfo(7);
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID 7 id\nsetIDforChildren id\n");
    COMPARE_BYTES(given(store, 0), "h:1 1 u/p");
    COMPARE_BYTES(store.takeCalls(), "");
}

// Numbers end at 998: entries behind it go by what the file gave them.
void tst_VLMC_AuthSetting::manyEntries_withTheirIds()
{
    QByteArray entries;
    for (int i = 0; i < 1500; ++i) {
        const QByteArray number = QByteArray::number(i);
        entries +=
            "<authInfo id=\"" + number + "\">" + element("hostName", 'h' + number) + "</authInfo>";
    }
    VLMC_AuthSetting store;
    load(store, entries, 2000);
    QCOMPARE(store.getAuthInfoCnt(), 1500);
    for (const int id : {0, 998, 999, 1499}) {
        QVERIFY(given(store, id).startsWith('h' + QByteArray::number(id) + ':'));
    }
    takeLog();

    VLMS_AuthInfo info = credentials(utf8("new"));
    QVERIFY(store.updateAuthInfo(&info));

    QVERIFY(loggedText().contains(lines({deletion(1499)})));
    QCOMPARE(store.getXMLNodeCnt(), 1500);
    // The entry that moved from 998 to 999 keeps the number 998, which the one before it has too.
    QCOMPARE(store.getAuthInfoCnt(), 1499);
    QVERIFY(given(store, 998).startsWith("h997:"));
    QVERIFY(given(store, 999).startsWith("h999:"));
    QVERIFY(given(store, 1499).startsWith("none: "));
}

QTEST_GUILESS_MAIN(tst_VLMC_AuthSetting)
#include "tst_VLMC_AuthSetting.moc"
