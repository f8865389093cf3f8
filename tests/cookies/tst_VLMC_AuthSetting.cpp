#include "cookies/VLMC_AuthSetting.h"

#include "core/VLMC_XMLNode.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/WatchedStore.h"

#include <QtCore/QPointer>

#include <sys/stat.h>

namespace
{
const char kFile[] = "authinfo.xml";

typedef WatchedStore<VLMC_AuthSetting> WatchedAuth;

// Keeps an eye on every node that the store makes.
class NodeKeeper : public VLMC_AuthSetting
{
public:
    VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text, char &textType,
                              QXmlStreamAttributes &attributes, char prepend) override
    {
        VLMC_XMLNode *const node =
            VLMC_AuthSetting::addXMLChild(parent, name, text, textType, attributes, prepend);
        nodes.append(QPointer<VLMC_XMLNode>(node));
        return node;
    }

    QList<QPointer<VLMC_XMLNode>> nodes;
};

VLMS_AuthInfo infoOf(const char *host, const char *port = "80", unsigned char authType = 0,
                     const QByteArray &user = "u", const QByteArray &passwd = "p")
{
    VLMS_AuthInfo info;
    info.hostName = utf8(host);
    info.portNum = utf8(port);
    info.authType = authType;
    info.user = user;
    info.passwd = passwd;
    return info;
}

void add(VLMC_AuthSetting &store, const char *host)
{
    VLMS_AuthInfo info = infoOf(host);
    store.addAuthInfo(&info);
}

QByteArray described(const VLMS_AuthInfo &info)
{
    return info.hostName.toUtf8() + '|' + info.portNum.toUtf8() + '|'
           + QByteArray::number(int(info.authType)) + '|' + info.user + '|' + info.passwd;
}

// What getAuthInfo leaves of a record that was full of other things.
QByteArray got(VLMC_AuthSetting &store, int id)
{
    VLMS_AuthInfo info = infoOf("oldHost", "old", 9, "oldUser", "oldPasswd");
    const bool found = store.getAuthInfo(id, &info);
    return (found ? "" : "none ") + described(info);
}

const char kNone[] = "none oldHost|old|9|oldUser|oldPasswd";

QByteArray hosts(VLMC_AuthSetting &store)
{
    QByteArray all;
    for (int id = 0; id < store.getAuthInfoCnt(); ++id) {
        VLMS_AuthInfo info;
        store.getAuthInfo(id, &info);
        all += info.hostName.toUtf8() + ' ';
    }
    return all.trimmed();
}

QByteArray inDocument(const QByteArray &entries)
{
    return "<authentication docInfo=\"1.0\">" + entries + "</authentication>";
}

int modeOf(const QString &path)
{
    struct stat status;
    return stat(path.toLocal8Bit().constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

QByteArray allBytes()
{
    QByteArray bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += char(i);
    }
    return bytes;
}
} // namespace

class tst_VLMC_AuthSetting : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void getInstance_givesOneStore();
    void loadAuthInfo_logsStartAndEnd();
    void loadAuthInfo_replacesTheEntries();
    void loadAuthInfo_refuses_data();
    void loadAuthInfo_refuses();
    void loadAuthInfo_callsInOrder();
    void loadAuthInfo_readsMoreThanMax();
    void saveAuthInfo_writesDocument();
    void saveAuthInfo_refuses_data();
    void saveAuthInfo_refuses();
    void saveAuthInfo_writesAllWhateverMax();
    void saveAuthInfo_renamesForeignRoot();
    void saveAuthInfo_writesNothingBeforeLoad();
    void saveAuthInfo_callsInOrder();
    void saveAuthInfo_keepsNewFilesToTheOwner();
    void saveAuthInfo_keepsModeOfExistingFile();
    void getAuthInfoCnt_countsEntriesAlone();
    void getAuthInfo_leavesOutUntouched();
    void getAuthInfo_skipsFields_data();
    void getAuthInfo_skipsFields();
    void setAuthInfo_putsNewestFirst();
    void setAuthInfo_limits_data();
    void setAuthInfo_limits();
    void setAuthInfo_refusesNull();
    void setAuthInfo_keepsDuplicates();
    void authType_roundTrip_data();
    void authType_roundTrip();
    void secrets_surviveTheRoundTrip();
    void addAuthInfo_checksNothing();
    void addAuthInfo_ignoresNull();
    void addAuthInfo_callsInOrder();
    void addAuthInfo_stopsWithoutNode();
    void addAuthInfo_keepsNothingBeforeLoad();
    void updateAuthInfo_deletesLastWithinMax_data();
    void updateAuthInfo_deletesLastWithinMax();
    void updateAuthInfo_deletesBeforeItChecks_data();
    void updateAuthInfo_deletesBeforeItChecks();
    void updateAuthInfo_beforeLoad();
    void updateAuthInfo_usesMaxOfLastGoodLoad();
    void updateAuthInfo_callsInOrder();
    void deleteAuthInfo_renumbers();
    void deleteAuthInfo_callsInOrder();
    void log_holdsNoSecrets();
};

void tst_VLMC_AuthSetting::getInstance_givesOneStore()
{
    VLMC_AuthSetting *const first = VLMC_AuthSetting::getInstance();
    QVERIFY(first);
    QCOMPARE(VLMC_AuthSetting::getInstance(), first);
    QVERIFY(!first->getXMLRootNode());
    QCOMPARE(first->getAuthInfoCnt(), 0);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_AuthSetting::loadAuthInfo_logsStartAndEnd()
{
    TestDirectory directory;
    VLMC_AuthSetting store;

    store.loadAuthInfo(directory.pathPointer(), 1);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::loadAuthInfo] start\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n"
                                "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "2 VLMC_XMLReader::read file not exist!\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_AuthSetting::loadAuthInfo] end\n");
    QVERIFY(store.getXMLRootNode());
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

void tst_VLMC_AuthSetting::loadAuthInfo_replacesTheEntries()
{
    TestDirectory directory;
    TestDirectory other;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    add(store, "a");
    writeFile(other.file(kFile),
              inDocument("<authInfo id=\"9\" x=\"y\"><hostName>b</hostName></authInfo>"
                         "<authInfo><hostName>c</hostName></authInfo>"));

    store.loadAuthInfo(other.pathPointer(), 5);

    QCOMPARE(hosts(store), QByteArray("b c"));
    store.loadAuthInfo(directory.pathPointer(), 5);
    QCOMPARE(store.getAuthInfoCnt(), 0);
}

void tst_VLMC_AuthSetting::loadAuthInfo_refuses_data()
{
    QTest::addColumn<int>("directoryKind");
    QTest::addColumn<int>("max");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("null") << 0 << 1 << QByteArray("Path is empty.");
    QTest::newRow("empty") << 1 << 1 << QByteArray("Path is empty.");
    QTest::newRow("null before max") << 0 << 0 << QByteArray("Path is empty.");
    QTest::newRow("max 0") << 2 << 0 << QByteArray("Error load_max:0");
    QTest::newRow("max -1") << 2 << -1 << QByteArray("Error load_max:-1");
}

void tst_VLMC_AuthSetting::loadAuthInfo_refuses()
{
    QFETCH(int, directoryKind);
    QFETCH(int, max);
    QFETCH(QByteArray, message);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 3);
    add(store, "kept");
    takeLog();
    QString empty;
    QString *const dirs[] = {nullptr, &empty, directory.pathPointer()};

    store.loadAuthInfo(dirs[directoryKind], max);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::loadAuthInfo] start\n"
                                "2 [VLMC_AuthSetting::loadAuthInfo] "
                                    + message + '\n');
    QCOMPARE(hosts(store), QByteArray("kept"));
}

void tst_VLMC_AuthSetting::loadAuthInfo_callsInOrder()
{
    TestDirectory directory;
    WatchedAuth store;
    store.loadAuthInfo(directory.pathPointer(), 3);
    COMPARE_BYTES(store.takeCalls(), "deleteAllSetting\nload " + directory.file(kFile).toUtf8()
                                         + "\nsetIDforChildren id\n");
}

// Numbers end at 998: what stands behind is in the document, and out of reach.
void tst_VLMC_AuthSetting::loadAuthInfo_readsMoreThanMax()
{
    TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 1500; ++i) {
        entries += "<authInfo><hostName>h" + QByteArray::number(i) + "</hostName></authInfo>";
    }
    writeFile(directory.file(kFile), inDocument(entries));
    VLMC_AuthSetting store;

    store.loadAuthInfo(directory.pathPointer(), 10);

    QCOMPARE(store.getXMLNodeCnt(), 1500);
    QCOMPARE(store.getAuthInfoCnt(), 999);
    QCOMPARE(got(store, 998), QByteArray("h998|old|0|oldUser|oldPasswd"));
    QCOMPARE(got(store, 999), QByteArray(kNone));
    store.saveAuthInfo(directory.pathPointer(), 10);
    QCOMPARE(readFile(directory.file(kFile)).count("<authInfo"), 1500);
}

void tst_VLMC_AuthSetting::saveAuthInfo_writesDocument()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 3);
    VLMS_AuthInfo first = infoOf("a & \xe3\x81\x82", "8080", 2, QByteArray("n\0l", 3), "");
    VLMS_AuthInfo second = infoOf("b", "", 7);
    QVERIFY(store.setAuthInfo(&first));
    QVERIFY(store.setAuthInfo(&second));
    takeLog();

    store.saveAuthInfo(directory.pathPointer(), 1);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::saveAuthInfo] start\n"
                                "3 [VLMC_XMLSetting::save] start\n"
                                "3 [VLMC_XMLSetting::saveBookmark] end\n"
                                "3 [VLMC_AuthSetting::saveAuthInfo] end\n");
    COMPARE_BYTES(readFile(directory.file(kFile)),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<authentication docInfo=\"1.0\">\n"
                  "    <authInfo id=\"000\">\n"
                  "        <hostName>b</hostName>\n"
                  "        <portNum/>\n"
                  "        <authType/>\n"
                  "        <user><![CDATA[dQ==]]></user>\n"
                  "        <passwd><![CDATA[cA==]]></passwd>\n"
                  "    </authInfo>\n"
                  "    <authInfo id=\"001\">\n"
                  "        <hostName>a &amp; \xe3\x81\x82</hostName>\n"
                  "        <portNum>8080</portNum>\n"
                  "        <authType>NTLM</authType>\n"
                  "        <user><![CDATA[bgBs]]></user>\n"
                  "        <passwd/>\n"
                  "    </authInfo>\n"
                  "</authentication>\n");
    QCOMPARE(hosts(store), QByteArray("b a & \xe3\x81\x82"));
}

void tst_VLMC_AuthSetting::saveAuthInfo_refuses_data()
{
    QTest::addColumn<int>("directoryKind");
    QTest::addColumn<int>("max");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("null") << 0 << 1 << QByteArray("Path is empty.");
    QTest::newRow("empty") << 1 << 1 << QByteArray("Path is empty.");
    QTest::newRow("empty before max") << 1 << 0 << QByteArray("Path is empty.");
    QTest::newRow("max 0") << 2 << 0 << QByteArray("Error save_max:0");
    QTest::newRow("max -7") << 2 << -7 << QByteArray("Error save_max:-7");
}

void tst_VLMC_AuthSetting::saveAuthInfo_refuses()
{
    QFETCH(int, directoryKind);
    QFETCH(int, max);
    QFETCH(QByteArray, message);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    takeLog();
    QString empty;
    QString *const dirs[] = {nullptr, &empty, directory.pathPointer()};

    store.saveAuthInfo(dirs[directoryKind], max);

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::saveAuthInfo] start\n"
                                "2 [VLMC_AuthSetting::saveAuthInfo] "
                                    + message + '\n');
    QVERIFY(!exists(directory.file(kFile)));
    QVERIFY(store.getXMLRootNode()->getName().isEmpty());
}

void tst_VLMC_AuthSetting::saveAuthInfo_writesAllWhateverMax()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    add(store, "a");
    add(store, "b");
    add(store, "c");
    store.saveAuthInfo(directory.pathPointer(), 1);
    VLMC_AuthSetting reader;
    reader.loadAuthInfo(directory.pathPointer(), 1);
    QCOMPARE(hosts(reader), QByteArray("c b a"));
}

void tst_VLMC_AuthSetting::saveAuthInfo_renamesForeignRoot()
{
    TestDirectory directory;
    writeFile(directory.file(kFile), "<foreign a=\"b\" docInfo=\"7\"/>");
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    QCOMPARE(store.getXMLRootNode()->getName(), utf8("foreign"));
    store.saveAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(readFile(directory.file(kFile)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                   "<authentication docInfo=\"1.0\"/>\n");
}

void tst_VLMC_AuthSetting::saveAuthInfo_writesNothingBeforeLoad()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    add(store, "a");
    store.saveAuthInfo(directory.pathPointer(), 1);
    QVERIFY(!exists(directory.file(kFile)));
    QVERIFY(loggedText().endsWith("3 [VLMC_AuthSetting::saveAuthInfo] end\n"));
}

void tst_VLMC_AuthSetting::saveAuthInfo_callsInOrder()
{
    TestDirectory directory;
    WatchedAuth store;
    store.createXMLRootNode();
    store.saveAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(store.takeCalls(), "save " + directory.file(kFile).toUtf8() + '\n');
}

void tst_VLMC_AuthSetting::saveAuthInfo_keepsNewFilesToTheOwner()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    const mode_t before = umask(0);
    store.saveAuthInfo(directory.pathPointer(), 1);
    umask(before);
    QCOMPARE(modeOf(directory.file(kFile)), 0600);
}

void tst_VLMC_AuthSetting::saveAuthInfo_keepsModeOfExistingFile()
{
    TestDirectory directory;
    writeFile(directory.file(kFile), "<a/>");
    QCOMPARE(chmod(directory.localFile(kFile), 0664), 0);
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    store.saveAuthInfo(directory.pathPointer(), 1);
    QCOMPARE(modeOf(directory.file(kFile)), 0664);
}

void tst_VLMC_AuthSetting::getAuthInfoCnt_countsEntriesAlone()
{
    TestDirectory directory;
    writeFile(directory.file(kFile), inDocument("<authInfo/><other/><authinfo/><authInfo/>"));
    WatchedAuth store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    store.takeCalls();
    takeLog();
    QCOMPARE(store.getAuthInfoCnt(), 2);
    COMPARE_BYTES(store.takeCalls(), "getXMLRootNodeChildCntByName\n");
    QCOMPARE(loggedText(), QByteArray());
}

void tst_VLMC_AuthSetting::getAuthInfo_leavesOutUntouched()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    QCOMPARE(got(store, 0), QByteArray(kNone));
    store.loadAuthInfo(directory.pathPointer(), 1);
    add(store, "a");
    takeLog();
    QCOMPARE(got(store, 1), QByteArray(kNone));
    QCOMPARE(got(store, -1), QByteArray(kNone));
    QVERIFY(!store.getAuthInfo(0, nullptr));
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::getAuthInfo]\n"
                                "3 [VLMC_AuthSetting::getAuthInfo]\n"
                                "3 [VLMC_AuthSetting::getAuthInfo]\n");
}

void tst_VLMC_AuthSetting::getAuthInfo_skipsFields_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray h256(256, 'h');
    const QByteArray wide256 = QByteArray("\xe3\x81\x82").repeated(85) + 'h';
    const QByteArray wide257 = QByteArray("\xe3\x81\x82").repeated(85) + "hh";
    const QByteArray s272(272, 's');
    const QByteArray s273(273, 's');
    QTest::newRow("none") << QByteArray() << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("empty") << QByteArray("<hostName/><portNum/><authType/><user/><passwd/>")
                           << QByteArray("||0||");
    QTest::newRow("other order") << QByteArray(
        "<passwd>cA==</passwd><user>dQ==</user><authType>NTLM"
        "</authType><portNum>1</portNum><hostName>h</hostName>")
                                 << QByteArray("h|1|2|u|p");
    QTest::newRow("first of two") << QByteArray(
        "<hostName>1</hostName><hostName>2</hostName><user>dQ==</user><user/>")
                                  << QByteArray("1|old|0|u|oldPasswd");
    QTest::newRow("host 256") << "<hostName>" + h256 + "</hostName>"
                              << h256 + "|old|0|oldUser|oldPasswd";
    QTest::newRow("host 257") << "<hostName>" + h256 + "h</hostName>"
                              << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("host 256, wide")
        << "<hostName>" + wide256 + "</hostName>" << wide256 + "|old|0|oldUser|oldPasswd";
    QTest::newRow("host 257, wide")
        << "<hostName>" + wide257 + "</hostName>" << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("port 5") << QByteArray("<portNum>12345</portNum>")
                            << QByteArray("oldHost|12345|0|oldUser|oldPasswd");
    QTest::newRow("port 6") << QByteArray("<portNum>123456</portNum>")
                            << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("port 6, wide") << QByteArray("<portNum>\xe3\x81\x82\xe3\x81\x82</portNum>")
                                  << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("secrets 272") << "<user>" + s272.toBase64() + "</user><passwd>" + s272.toBase64()
                                        + "</passwd>"
                                 << "oldHost|old|0|" + s272 + '|' + s272;
    QTest::newRow("user 273") << "<user>" + s273.toBase64() + "</user><passwd>cA==</passwd>"
                              << QByteArray("oldHost|old|0|oldUser|p");
    QTest::newRow("passwd 273") << "<user>dQ==</user><passwd>" + s273.toBase64() + "</passwd>"
                                << QByteArray("oldHost|old|0|u|oldPasswd");
    QTest::newRow("invalid Base64")
        << QByteArray("<user>d*Q=\xe3\x81\x82=</user><passwd>***</passwd>")
        << QByteArray("oldHost|old|0|u|");
    QTest::newRow("basic") << QByteArray("<authType>basic</authType>")
                           << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("digest") << QByteArray("<authType>digest</authType>")
                            << QByteArray("oldHost|old|1|oldUser|oldPasswd");
    QTest::newRow("other case") << QByteArray("<authType>Digest</authType>")
                                << QByteArray("oldHost|old|0|oldUser|oldPasswd");
    QTest::newRow("ntlm") << QByteArray("<authType>ntlm</authType>")
                          << QByteArray("oldHost|old|0|oldUser|oldPasswd");
}

void tst_VLMC_AuthSetting::getAuthInfo_skipsFields()
{
    QFETCH(QByteArray, fields);
    QFETCH(QByteArray, expected);
    TestDirectory directory;
    writeFile(directory.file(kFile), inDocument("<authInfo>" + fields + "</authInfo>"));
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(got(store, 0), expected);
}

void tst_VLMC_AuthSetting::setAuthInfo_putsNewestFirst()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    VLMS_AuthInfo a = infoOf("a", "1", 1, "ua", "pa");
    VLMS_AuthInfo b = infoOf("b", "2", 2, "ub", "pb");
    takeLog();
    QVERIFY(store.setAuthInfo(&a));
    QVERIFY(store.setAuthInfo(&b));
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(got(store, 0), QByteArray("b|2|2|ub|pb"));
    QCOMPARE(got(store, 1), QByteArray("a|1|1|ua|pa"));
}

void tst_VLMC_AuthSetting::setAuthInfo_limits_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<QByteArray>("passwd");
    QTest::addColumn<bool>("taken");
    const QString h = utf8("h");
    const QString wide(85, QChar(0x3042));
    const QByteArray s272(272, '\0');
    const QByteArray s273(273, '\0');
    const QByteArray none;
    QTest::newRow("empty") << QString() << QString() << none << none << true;
    QTest::newRow("host 256") << h.repeated(256) << h << none << none << true;
    QTest::newRow("host 257") << h.repeated(257) << h << none << none << false;
    QTest::newRow("host 256, wide") << wide + h << h << none << none << true;
    QTest::newRow("host 257, wide") << wide + h + h << h << none << none << false;
    QTest::newRow("port 5") << h << utf8("65535") << none << none << true;
    QTest::newRow("port 6") << h << utf8("655350") << none << none << false;
    QTest::newRow("port 5, wide") << h << utf8("\xe3\x81\x82\xc3\xa4") << none << none << true;
    QTest::newRow("port 6, wide") << h << utf8("\xe3\x81\x82\xe3\x81\x82") << none << none << false;
    QTest::newRow("user 272") << h << h << s272 << none << true;
    QTest::newRow("user 273") << h << h << s273 << none << false;
    QTest::newRow("passwd 272") << h << h << none << s272 << true;
    QTest::newRow("passwd 273") << h << h << none << s273 << false;
}

void tst_VLMC_AuthSetting::setAuthInfo_limits()
{
    QFETCH(QString, host);
    QFETCH(QString, port);
    QFETCH(QByteArray, user);
    QFETCH(QByteArray, passwd);
    QFETCH(bool, taken);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    VLMS_AuthInfo info = {host, port, 1, user, passwd};
    takeLog();

    QCOMPARE(store.setAuthInfo(&info), taken);

    COMPARE_BYTES(loggedText(), QByteArray("3 [VLMC_AuthSetting::setAuthInfo]\n")
                                    + (taken ? "3 [VLMC_AuthSetting::addAuthInfo]\n" : ""));
    COMPARE_BYTES(got(store, 0), taken ? described(info) : QByteArray(kNone));
}

void tst_VLMC_AuthSetting::setAuthInfo_refusesNull()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    takeLog();
    QVERIFY(!store.setAuthInfo(nullptr));
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::setAuthInfo]\n");
    QCOMPARE(store.getXMLNodeCnt(), 0);
}

void tst_VLMC_AuthSetting::setAuthInfo_keepsDuplicates()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    VLMS_AuthInfo info = infoOf("a");
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(store.setAuthInfo(&info));
    QCOMPARE(hosts(store), QByteArray("a a"));
}

void tst_VLMC_AuthSetting::authType_roundTrip_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<int>("readBack");
    QTest::newRow("0") << 0 << QByteArray("<authType>basic</authType>") << 0;
    QTest::newRow("1") << 1 << QByteArray("<authType>digest</authType>") << 1;
    QTest::newRow("2") << 2 << QByteArray("<authType>NTLM</authType>") << 2;
    QTest::newRow("3") << 3 << QByteArray("<authType/>") << 0;
    QTest::newRow("7") << 7 << QByteArray("<authType/>") << 0;
    QTest::newRow("255") << 255 << QByteArray("<authType/>") << 0;
}

void tst_VLMC_AuthSetting::authType_roundTrip()
{
    QFETCH(int, code);
    QFETCH(QByteArray, element);
    QFETCH(int, readBack);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    VLMS_AuthInfo info = infoOf("h", "1", static_cast<unsigned char>(code));
    QVERIFY(store.setAuthInfo(&info));
    store.saveAuthInfo(directory.pathPointer(), 1);
    QVERIFY(readFile(directory.file(kFile)).contains("        " + element + '\n'));
    store.loadAuthInfo(directory.pathPointer(), 1);
    QCOMPARE(got(store, 0), "h|1|" + QByteArray::number(readBack) + "|u|p");
}

void tst_VLMC_AuthSetting::secrets_surviveTheRoundTrip()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    VLMS_AuthInfo info = infoOf("h", "1", 1, allBytes(), QByteArray("\0\0]]>\0", 6));
    QVERIFY(store.setAuthInfo(&info));
    store.saveAuthInfo(directory.pathPointer(), 1);
    const QByteArray document = readFile(directory.file(kFile));
    QVERIFY(document.contains("<user><![CDATA[" + allBytes().toBase64() + "]]></user>\n"));
    VLMC_AuthSetting reader;
    reader.loadAuthInfo(directory.pathPointer(), 1);
    COMPARE_BYTES(got(reader, 0), described(info));
}

void tst_VLMC_AuthSetting::addAuthInfo_checksNothing()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 1);
    VLMS_AuthInfo info =
        infoOf(QByteArray(300, 'h').constData(), "123456", 1, QByteArray(273, 'u'), "p");
    takeLog();
    store.addAuthInfo(&info);
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(got(store, 0), QByteArray("oldHost|old|1|oldUser|p"));
    store.saveAuthInfo(directory.pathPointer(), 1);
    QVERIFY(readFile(directory.file(kFile)).contains(QByteArray(300, 'h')));
}

void tst_VLMC_AuthSetting::addAuthInfo_ignoresNull()
{
    WatchedAuth store;
    store.createXMLRootNode();
    store.addAuthInfo(nullptr);
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::addAuthInfo]\n");
    COMPARE_BYTES(store.takeCalls(), "");
}

void tst_VLMC_AuthSetting::addAuthInfo_callsInOrder()
{
    WatchedAuth store;
    store.createXMLRootNode();
    QString name = utf8("r");
    store.getXMLRootNode()->setName(name);
    VLMS_AuthInfo info = infoOf("h", "1", 1);
    store.addAuthInfo(&info);
    COMPARE_BYTES(store.takeCalls(), "addXMLChild r authInfo '' 0 0 1\n"
                                     "addXMLChild authInfo hostName 'h' 0 0 0\n"
                                     "addXMLChild authInfo portNum '1' 0 0 0\n"
                                     "addXMLChild authInfo authType 'digest' 0 0 0\n"
                                     "addXMLChild authInfo user 'dQ==' 1 0 0\n"
                                     "addXMLChild authInfo passwd 'cA==' 1 0 0\n"
                                     "setIDforChildren id\n");
}

void tst_VLMC_AuthSetting::addAuthInfo_stopsWithoutNode()
{
    WatchedAuth store;
    store.createXMLRootNode();
    store.refusesNodes = true;
    VLMS_AuthInfo info = infoOf("h");
    QVERIFY(store.setAuthInfo(&info));
    COMPARE_BYTES(store.takeCalls(), "addXMLChild  authInfo '' 0 0 1\n");
}

void tst_VLMC_AuthSetting::addAuthInfo_keepsNothingBeforeLoad()
{
    NodeKeeper store;
    VLMS_AuthInfo info = infoOf("h");
    QVERIFY(store.setAuthInfo(&info));
    QVERIFY(!store.getXMLRootNode());
    QCOMPARE(store.getAuthInfoCnt(), 0);
    QCOMPARE(int(store.nodes.size()), 6);
    runDeferredDeletes();
    for (const QPointer<VLMC_XMLNode> &node : store.nodes) {
        QVERIFY(node.isNull());
    }
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesLastWithinMax_data()
{
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("deleted");
    QTest::newRow("empty") << 10 << 0 << -1;
    QTest::newRow("one") << 10 << 1 << 0;
    QTest::newRow("not full") << 10 << 4 << 3;
    QTest::newRow("one short") << 10 << 9 << 8;
    QTest::newRow("full") << 10 << 10 << 9;
    QTest::newRow("over-full") << 10 << 12 << 9;
    QTest::newRow("max 1") << 1 << 3 << 0;
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesLastWithinMax()
{
    QFETCH(int, max);
    QFETCH(int, count);
    QFETCH(int, deleted);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), max);
    QList<QByteArray> expected;
    for (int i = count - 1; i >= 0; --i) {
        const QByteArray host = "h" + QByteArray::number(i);
        add(store, host.constData());
        expected.prepend(host);
    }
    if (deleted >= 0) {
        expected.removeAt(deleted);
    }
    expected.prepend("new");
    takeLog();
    VLMS_AuthInfo info = infoOf("new");

    QVERIFY(store.updateAuthInfo(&info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:"
                                    + QByteArray::number(deleted)
                                    + "\n3 [VLMC_AuthSetting::setAuthInfo]\n"
                                      "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QByteArray all;
    for (const QByteArray &host : expected) {
        all += host + ' ';
    }
    QCOMPARE(hosts(store), all.trimmed());
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesBeforeItChecks_data()
{
    QTest::addColumn<bool>("null");
    QTest::newRow("null") << true;
    QTest::newRow("over the limit") << false;
}

void tst_VLMC_AuthSetting::updateAuthInfo_deletesBeforeItChecks()
{
    QFETCH(bool, null);
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 5);
    add(store, "b");
    add(store, "a");
    VLMS_AuthInfo info = infoOf("new", "123456");
    takeLog();

    QVERIFY(!store.updateAuthInfo(null ? nullptr : &info));

    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:1\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n");
    QCOMPARE(hosts(store), QByteArray("a"));
}

void tst_VLMC_AuthSetting::updateAuthInfo_beforeLoad()
{
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = infoOf("new");
    QVERIFY(store.updateAuthInfo(&info));
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::updateAuthInfo]\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:-1\n"
                                "3 [VLMC_AuthSetting::setAuthInfo]\n"
                                "3 [VLMC_AuthSetting::addAuthInfo]\n");
    QCOMPARE(store.getAuthInfoCnt(), 0);

    store.createXMLRootNode();
    add(store, "a");
    QVERIFY(store.updateAuthInfo(&info));
    QCOMPARE(hosts(store), QByteArray("new a"));
}

void tst_VLMC_AuthSetting::updateAuthInfo_usesMaxOfLastGoodLoad()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.loadAuthInfo(directory.pathPointer(), 2);
    store.loadAuthInfo(directory.pathPointer(), 0);
    store.loadAuthInfo(nullptr, 9);
    store.saveAuthInfo(directory.pathPointer(), 9);
    add(store, "c");
    add(store, "b");
    add(store, "a");
    VLMS_AuthInfo info = infoOf("new");
    QVERIFY(store.updateAuthInfo(&info));
    QCOMPARE(hosts(store), QByteArray("new a c"));
    store.saveAuthInfo(directory.pathPointer(), 1);
    store.loadAuthInfo(directory.pathPointer(), 3);
    QVERIFY(store.updateAuthInfo(&info));
    QCOMPARE(hosts(store), QByteArray("new new a"));
}

void tst_VLMC_AuthSetting::updateAuthInfo_callsInOrder()
{
    WatchedAuth store;
    store.createXMLRootNode();
    QVERIFY(!store.updateAuthInfo(nullptr));
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID -1 id\nsetIDforChildren id\n");
}

void tst_VLMC_AuthSetting::deleteAuthInfo_renumbers()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    store.deleteAuthInfo(0);
    store.loadAuthInfo(directory.pathPointer(), 5);
    add(store, "c");
    add(store, "b");
    add(store, "a");
    takeLog();
    store.deleteAuthInfo(1);
    store.deleteAuthInfo(2);
    COMPARE_BYTES(loggedText(), "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:1\n"
                                "3 [VLMC_AuthSetting::deleteAuthInfo] si_nodeNum:2\n");
    QCOMPARE(hosts(store), QByteArray("a c"));
}

void tst_VLMC_AuthSetting::deleteAuthInfo_callsInOrder()
{
    WatchedAuth store;
    store.createXMLRootNode();
    store.deleteAuthInfo(-5);
    COMPARE_BYTES(store.takeCalls(), "deleteXMLNodeByID -5 id\nsetIDforChildren id\n");
}

void tst_VLMC_AuthSetting::log_holdsNoSecrets()
{
    TestDirectory directory;
    VLMC_AuthSetting store;
    VLMS_AuthInfo info = infoOf("h", "1", 1, "canaryUser", "canaryPasswd");
    VLMS_AuthInfo refused = infoOf("h", "123456", 1, "canaryUser", "canaryPasswd");
    store.setAuthInfo(&info);
    store.loadAuthInfo(directory.pathPointer(), 2);
    store.setAuthInfo(&info);
    store.setAuthInfo(&refused);
    store.updateAuthInfo(&info);
    store.updateAuthInfo(&refused);
    store.addAuthInfo(&refused);
    store.saveAuthInfo(directory.pathPointer(), 2);
    store.loadAuthInfo(directory.pathPointer(), 2);
    store.getAuthInfo(0, &info);
    store.deleteAuthInfo(0);
    const QByteArray log = loggedText();
    QVERIFY(log.contains("deleteAuthInfo"));
    QVERIFY(!log.contains("canary"));
    QVERIFY(!log.contains(QByteArray("canaryUser").toBase64()));
    QVERIFY(!log.contains(QByteArray("canaryPasswd").toBase64()));
}

QTEST_GUILESS_MAIN(tst_VLMC_AuthSetting)
#include "tst_VLMC_AuthSetting.moc"
