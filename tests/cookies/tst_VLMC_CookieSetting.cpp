#include "cookies/VLMC_CookieSetting.h"

#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SavedDocuments.h"
#include "tests/support/WatchedStore.h"

#include <QtCore/QElapsedTimer>

class tst_VLMC_CookieSetting : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { runDeferredDeletes(); }

    void addCookieInfo_writesAllTexts();
    void addCookieInfo_stopsWhenThereIsNoEntry();
    void addCookieInfo_keepsNothingWithoutDocument();
    void addCookieInfo_givesNoId();
    void addCookieInfo_hasNoLimit();
    void addCookieInfo_decodesUtf8_data();
    void addCookieInfo_decodesUtf8();
    void addCookieInfo_takesTheCookiesOwnClock();
    void getAllCookieInfo_readsAllTexts_data();
    void getAllCookieInfo_readsAllTexts();
    void getAllCookieInfo_goesById_data();
    void getAllCookieInfo_goesById();
    void getAllCookieInfo_passesOverNullEntries();
    void getAllCookieInfo_takesLinearTime();
    void isMuchCookieInfo_comparesFiveTexts_data();
    void isMuchCookieInfo_comparesFiveTexts();
    void isMuchCookieInfo_decodesLatin1_data();
    void isMuchCookieInfo_decodesLatin1();
    void deleteCookieInfo_renumbers_data();
    void deleteCookieInfo_renumbers();
};

namespace
{
void setZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

QNetworkCookie cookieNamed(const char *name)
{
    QNetworkCookie cookie(name, "v");
    cookie.setDomain(utf8(".example.com"));
    cookie.setPath(utf8("/"));
    return cookie;
}

QNetworkCookie fullCookie()
{
    QNetworkCookie cookie("sid", "value");
    cookie.setDomain(utf8(".example.com"));
    cookie.setPath(utf8("/shop"));
    cookie.setSecure(true);
    cookie.setExpirationDate(QDateTime(QDate(2031, 2, 3), QTime(4, 5, 6), Qt::UTC));
    return cookie;
}

VLMS_CookieInfo fullInfo()
{
    VLMS_CookieInfo info;
    info.website = utf8(".example.com");
    info.name = utf8("sid");
    info.path = utf8("/shop");
    info.secure = utf8("true");
    info.expires = utf8("2031/02/03 04:05:06");
    info.contents = utf8("value");
    return info;
}

// In the order of the file.
QByteArray described(const VLMS_CookieInfo &info)
{
    const QStringList texts = QStringList() << info.website << info.name << info.path << info.secure
                                            << info.expires << info.contents;
    return texts.join(utf8("|")).toUtf8();
}

void add(VLMC_CookieSetting &store, const char *name)
{
    QNetworkCookie cookie = cookieNamed(name);
    store.addCookieInfo(cookie);
}

void number(VLMC_CookieSetting &store)
{
    QString id = utf8("id");
    store.setIDforChildren(id);
}

QByteArray saved(VLMC_CookieSetting &store)
{
    const TestDirectory directory;
    QString path = directory.file("cookies.xml");
    store.save(path);
    return readFile(path);
}

void loadText(VLMC_CookieSetting &store, const QByteArray &document)
{
    const TestDirectory directory;
    QString path = directory.file("cookies.xml");
    writeFile(path, document);
    store.load(path);
    takeLog();
}

QByteArray names(VLMC_CookieSetting &store)
{
    QByteArray text;
    const QList<VLMS_CookieInfo> infos = store.getAllCookieInfo();
    for (const VLMS_CookieInfo &info : infos) {
        text += info.name.toUtf8() + ' ';
    }
    return text;
}

// "<id>=<name> " for each entry, in document order.
QByteArray entries(VLMC_CookieSetting &store)
{
    QByteArray text;
    QString name = utf8("name");
    const QList<VLMC_XMLNode *> children = store.getXMLRootNode()->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        text += child->getAttribute().value(utf8("id")).toString().toUtf8() + '='
                + child->getXMLNodeChildByName(name)->getText().toUtf8() + ' ';
    }
    return text;
}
} // namespace

void tst_VLMC_CookieSetting::init()
{
    setZone("UTC0");
    takeLog();
}

void tst_VLMC_CookieSetting::addCookieInfo_writesAllTexts()
{
    const ForeignDocuments withoutDocInfo;
    WatchedStore<VLMC_CookieSetting> cookies;
    QCOMPARE(cookies.max(), 0);
    QString rootName = utf8("cookie");
    cookies.createXMLRootNode()->setName(rootName);
    QNetworkCookie cookie = fullCookie();
    cookie.setPath(utf8("/a&b<c>"));
    cookie.setValue("x&<y>\"z\"");
    const QNetworkCookie before = cookie;

    cookies.addCookieInfo(cookie);

    QCOMPARE(cookie, before);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::addCookieInfo]\n");
    COMPARE_BYTES(cookies.takeCalls(),
                  "addXMLChild cookie webSiteInfo '' 0 0 1\n"
                  "addXMLChild webSiteInfo website '.example.com' 0 0 0\n"
                  "addXMLChild webSiteInfo name 'sid' 0 0 0\n"
                  "addXMLChild webSiteInfo path '/a&b<c>' 0 0 0\n"
                  "addXMLChild webSiteInfo secure 'true' 0 0 0\n"
                  "addXMLChild webSiteInfo expires '2031/02/03 04:05:06' 0 0 0\n"
                  "addXMLChild webSiteInfo contents 'x&<y>\"z\"' 1 0 0\n");
    add(cookies, "a");
    COMPARE_BYTES(saved(cookies), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                  "<cookie>\n"
                                  "    <webSiteInfo>\n"
                                  "        <website>.example.com</website>\n"
                                  "        <name>a</name>\n"
                                  "        <path>/</path>\n"
                                  "        <secure>false</secure>\n"
                                  "        <expires/>\n"
                                  "        <contents><![CDATA[v]]></contents>\n"
                                  "    </webSiteInfo>\n"
                                  "    <webSiteInfo>\n"
                                  "        <website>.example.com</website>\n"
                                  "        <name>sid</name>\n"
                                  "        <path>/a&amp;b&lt;c&gt;</path>\n"
                                  "        <secure>true</secure>\n"
                                  "        <expires>2031/02/03 04:05:06</expires>\n"
                                  "        <contents><![CDATA[x&<y>\"z\"]]></contents>\n"
                                  "    </webSiteInfo>\n"
                                  "</cookie>\n");
}

void tst_VLMC_CookieSetting::addCookieInfo_stopsWhenThereIsNoEntry()
{
    WatchedStore<VLMC_CookieSetting> cookies;
    cookies.createXMLRootNode();
    cookies.refusesNodes = true;

    add(cookies, "a");

    COMPARE_BYTES(cookies.takeCalls(), "addXMLChild  webSiteInfo '' 0 0 1\n");
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::addCookieInfo]\n");
    QCOMPARE(cookies.getXMLNodeCnt(), 0);
}

void tst_VLMC_CookieSetting::addCookieInfo_keepsNothingWithoutDocument()
{
    WatchedStore<VLMC_CookieSetting> cookies;

    add(cookies, "a");

    QVERIFY(!cookies.getXMLRootNode());
    QCOMPARE(cookies.takeCalls().count("addXMLChild "), 7);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::addCookieInfo]\n");
}

// At the front, also beside an equal one.
void tst_VLMC_CookieSetting::addCookieInfo_givesNoId()
{
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    add(cookies, "a");
    add(cookies, "b");
    number(cookies);
    add(cookies, "b");
    QCOMPARE(entries(cookies), QByteArray("=b 000=b 001=a "));
    QCOMPARE(names(cookies), QByteArray("b a "));
    number(cookies);
    QCOMPARE(names(cookies), QByteArray("b b a "));
}

void tst_VLMC_CookieSetting::addCookieInfo_hasNoLimit()
{
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    for (int i = 0; i < 1200; ++i) {
        add(cookies, "a");
    }
    QCOMPARE(cookies.getXMLNodeCnt(), 1200);
    number(cookies);
    // The numbering ends there.
    QCOMPARE(int(cookies.getAllCookieInfo().size()), 999);
}

void tst_VLMC_CookieSetting::addCookieInfo_decodesUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("ASCII") << QByteArray("abc") << utf8("abc");
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("null") << QByteArray() << QString();
    QTest::newRow("two bytes") << QByteArray("b\xc3\xbc") << utf8("b\xc3\xbc");
    QTest::newRow("three bytes") << QByteArray("\xe3\x81\x82") << QString(QChar(0x3042));
    QTest::newRow("four bytes") << QByteArray("\xf0\x9f\x8d\xaa") << utf8("\xf0\x9f\x8d\xaa");
    QTest::newRow("not UTF-8") << QByteArray("a\xff"
                                             "b")
                               << utf8("a\xef\xbf\xbd"
                                       "b");
    QTest::newRow("zero byte") << QByteArray("ab\0cd", 5) << utf8("ab");
}

void tst_VLMC_CookieSetting::addCookieInfo_decodesUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    QNetworkCookie cookie(bytes, bytes);

    cookies.addCookieInfo(cookie);

    number(cookies);
    const QList<VLMS_CookieInfo> infos = cookies.getAllCookieInfo();
    QCOMPARE(int(infos.size()), 1);
    QCOMPARE(infos.first().name, text);
    QCOMPARE(infos.first().contents, text);
}

// The text has no zone: the same instant reads differently from a cookie that gives it in another.
void tst_VLMC_CookieSetting::addCookieInfo_takesTheCookiesOwnClock()
{
    setZone("JST-9");
    const QDateTime instant(QDate(2031, 2, 3), QTime(4, 5, 6), Qt::UTC);
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    QNetworkCookie cookie = fullCookie();
    cookie.setExpirationDate(instant);
    cookies.addCookieInfo(cookie);
    cookie.setExpirationDate(instant.toLocalTime());
    cookies.addCookieInfo(cookie);
    number(cookies);
    const QList<VLMS_CookieInfo> infos = cookies.getAllCookieInfo();
    QCOMPARE(infos.at(0).expires, utf8("2031/02/03 13:05:06"));
    QCOMPARE(infos.at(1).expires, utf8("2031/02/03 04:05:06"));
}

void tst_VLMC_CookieSetting::getAllCookieInfo_readsAllTexts_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("read");
    const QByteArray sid("<website>.x.com</website><name>sid</name><path>/</path>"
                         "<secure>true</secure><expires>1999/01/01 00:00:00</expires>"
                         "<contents><![CDATA[v]]></contents>");
    QTest::newRow("expired") << "<webSiteInfo id=\"0\">" + sid + "</webSiteInfo>"
                             << QByteArray(".x.com|sid|/|true|1999/01/01 00:00:00|v");
    QTest::newRow("other element") << "<other id=\"0\">" + sid + "</other>"
                                   << QByteArray(".x.com|sid|/|true|1999/01/01 00:00:00|v");
    QTest::newRow("other order") << QByteArray(
        "<webSiteInfo id=\"0\"><contents>v</contents><other>o</other>"
        "<secure>S</secure><path>p</path><name>n</name><expires>e</expires>"
        "<website>w</website></webSiteInfo>")
                                 << QByteArray("w|n|p|S|e|v");
    QTest::newRow("no texts") << QByteArray("<webSiteInfo id=\"0\"/>") << QByteArray("|||||");
    QTest::newRow("equal elements")
        << QByteArray("<c id=\"0\"><name>first</name><name>second</name></c>")
        << QByteArray("|first||||");
}

void tst_VLMC_CookieSetting::getAllCookieInfo_readsAllTexts()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, read);
    WatchedStore<VLMC_CookieSetting> cookies;
    QVERIFY(cookies.getAllCookieInfo().isEmpty());
    QVERIFY(!cookies.getXMLRootNode());
    loadText(cookies, "<c>" + entries + "</c>");
    cookies.takeCalls();
    const QList<VLMS_CookieInfo> infos = cookies.getAllCookieInfo();
    QCOMPARE(int(infos.size()), 1);
    COMPARE_BYTES(described(infos.first()), read);
    QCOMPARE(loggedText(), QByteArray());
    QCOMPARE(cookies.takeCalls(), QByteArray());
}

void tst_VLMC_CookieSetting::getAllCookieInfo_goesById_data()
{
    QTest::addColumn<QList<QByteArray>>("ids");
    QTest::addColumn<QByteArray>("found");
    const auto ids = [](const char *text) { return QByteArray(text).split(' '); };
    QTest::newRow("in order") << ids("000 001 002") << QByteArray("n0 n1 n2 ");
    QTest::newRow("backwards") << ids("002 001 000") << QByteArray("n2 n1 n0 ");
    QTest::newRow("gap") << ids("000 002") << QByteArray("n0 ");
    QTest::newRow("gap before the number of entries") << ids("000 002 003") << QByteArray("n0 n1 ");
    QTest::newRow("twice") << ids("001 001 000") << QByteArray("n2 n0 ");
    QTest::newRow("last id") << ids("2 x x") << QByteArray("n0 ");
    QTest::newRow("behind the last id") << ids("3 x x") << QByteArray();
    QTest::newRow("negative") << ids("-1 -0") << QByteArray("n1 ");
    QTest::newRow("no numbers") << ids("x 0x1 1.0") << QByteArray();
    QTest::newRow("no id") << (QList<QByteArray>() << ""
                                                   << "")
                           << QByteArray();
    QTest::newRow("too large") << ids("4294967296 99999999999") << QByteArray();
}

void tst_VLMC_CookieSetting::getAllCookieInfo_goesById()
{
    QFETCH(QList<QByteArray>, ids);
    QFETCH(QByteArray, found);
    QByteArray document = "<c>";
    for (int i = 0; i < ids.size(); ++i) {
        document += "<webSiteInfo id=\"" + ids.at(i) + "\"><name>n" + QByteArray::number(i)
                    + "</name></webSiteInfo>";
    }
    VLMC_CookieSetting cookies;
    loadText(cookies, document + "</c>");
    QCOMPARE(names(cookies), found);
}

void tst_VLMC_CookieSetting::getAllCookieInfo_passesOverNullEntries()
{
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    add(cookies, "a");
    number(cookies);
    cookies.getXMLRootNode()->getXMLNodeChildren().prepend(nullptr);
    QCOMPARE(names(cookies), QByteArray("a "));
}

// A search per id would need 200 million steps here.
void tst_VLMC_CookieSetting::getAllCookieInfo_takesLinearTime()
{
    const int count = 20000;
    VLMC_CookieSetting cookies;
    cookies.createXMLRootNode();
    for (int i = 0; i < count; ++i) {
        VLMC_XMLNode *const entry = new VLMC_XMLNode(cookies.getXMLRootNode(), 0);
        QXmlStreamAttributes attributes;
        attributes.append(utf8("id"), QString::number(i));
        entry->setAttribute(attributes);
    }
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(int(cookies.getAllCookieInfo().size()), count);
    QVERIFY2(timer.elapsed() < 3000, QByteArray::number(timer.elapsed()).constData());
}

void tst_VLMC_CookieSetting::isMuchCookieInfo_comparesFiveTexts_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("equal");
    QTest::newRow("all equal") << 1 << utf8("sid") << true;
    QTest::newRow("other domain") << 0 << utf8("example.com") << false;
    QTest::newRow("domain in capitals") << 0 << utf8(".EXAMPLE.com") << false;
    QTest::newRow("no domain") << 0 << QString() << false;
    QTest::newRow("other name") << 1 << utf8("sid2") << false;
    QTest::newRow("name in capitals") << 1 << utf8("SID") << false;
    QTest::newRow("other path") << 2 << utf8("/") << false;
    QTest::newRow("path in capitals") << 2 << utf8("/Shop") << false;
    QTest::newRow("not secure") << 3 << utf8("false") << false;
    QTest::newRow("secure in capitals") << 3 << utf8("TRUE") << false;
    QTest::newRow("secure without text") << 3 << QString() << false;
    QTest::newRow("other expiry") << 4 << utf8("1999/01/01 00:00:00") << true;
    QTest::newRow("no expiry") << 4 << QString() << true;
    QTest::newRow("other value") << 5 << utf8("value2") << false;
    QTest::newRow("value in capitals") << 5 << utf8("Value") << false;
    QTest::newRow("no value") << 5 << QString() << false;
}

void tst_VLMC_CookieSetting::isMuchCookieInfo_comparesFiveTexts()
{
    QFETCH(int, field);
    QFETCH(QString, text);
    QFETCH(bool, equal);
    VLMC_CookieSetting cookies;
    QNetworkCookie cookie = fullCookie();
    VLMS_CookieInfo info = fullInfo();
    QString *const texts[] = {&info.website, &info.name,    &info.path,
                              &info.secure,  &info.expires, &info.contents};
    *texts[field] = text;
    QCOMPARE(cookies.isMuchCookieInfo(cookie, info), equal);
    QCOMPARE(loggedText(), QByteArray());
}

// The bytes are read as Latin-1, so that they miss the text that addCookieInfo has made of them,
// and end at a zero byte.
void tst_VLMC_CookieSetting::isMuchCookieInfo_decodesLatin1_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("equal");
    QTest::newRow("UTF-8") << QByteArray("b\xc3\xbc") << utf8("b\xc3\xbc") << false;
    QTest::newRow("Latin-1") << QByteArray("b\xc3\xbc") << utf8("b\xc3\x83\xc2\xbc") << true;
    QTest::newRow("zero byte") << QByteArray("b\0c", 3) << utf8("b") << true;
}

void tst_VLMC_CookieSetting::isMuchCookieInfo_decodesLatin1()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(bool, equal);
    VLMC_CookieSetting cookies;
    QNetworkCookie named = fullCookie();
    QNetworkCookie valued = fullCookie();
    VLMS_CookieInfo name = fullInfo();
    VLMS_CookieInfo value = fullInfo();
    named.setName(bytes);
    valued.setValue(bytes);
    name.name = value.contents = text;
    QCOMPARE(cookies.isMuchCookieInfo(named, name), equal);
    QCOMPARE(cookies.isMuchCookieInfo(valued, value), equal);
}

void tst_VLMC_CookieSetting::deleteCookieInfo_renumbers_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("left");
    QTest::newRow("first") << 0 << QByteArray("000=n 001=b 002=a ");
    QTest::newRow("first of two") << 1 << QByteArray("000=n 001=c 002=a ");
    QTest::newRow("-1") << -1 << QByteArray("000=n 001=c 002=b 003=a ");
    QTest::newRow("beyond the last") << 2 << QByteArray("000=n 001=c 002=b 003=a ");
}

void tst_VLMC_CookieSetting::deleteCookieInfo_renumbers()
{
    QFETCH(int, id);
    QFETCH(QByteArray, left);
    WatchedStore<VLMC_CookieSetting> cookies;
    const QByteArray number = QByteArray::number(id);
    cookies.deleteCookieInfo(id);
    COMPARE_BYTES(loggedText(),
                  "3 [VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:" + number + '\n');
    QVERIFY(!cookies.getXMLRootNode());
    loadText(cookies, "<c><w><name>n</name></w><w id=\"0\"><name>c</name></w>"
                      "<w id=\"1\"><name>b</name></w><w id=\"1\"><name>a</name></w></c>");
    cookies.takeCalls();

    cookies.deleteCookieInfo(id);

    COMPARE_BYTES(cookies.takeCalls(),
                  "deleteXMLNodeByID " + number + " id\nsetIDforChildren id\n");
    QCOMPARE(entries(cookies), left);
}

QTEST_GUILESS_MAIN(tst_VLMC_CookieSetting)
#include "tst_VLMC_CookieSetting.moc"
