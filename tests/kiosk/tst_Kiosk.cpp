#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/kiosk/Kiosk.h"
#include "tests/kiosk/WebServer.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QImage>
#include <QtNetwork/QTcpSocket>

#include <random>

namespace
{
typedef QStringList Commands;

const char kAtUserChange = 3;
const int kMany = 999;
const quint16 kTls10 = 0x0301;
const quint16 kTls11 = 0x0302;
const quint16 kTls12 = 0x0303;

Commands visit(const QString &url) { return Commands{utf8("open ") + url, utf8("wait")}; }

QList<VLMS_History> visitsIn(TestDirectory &profile)
{
    VLMC_HistorySetting store;
    store.loadHistory(profile.pathPointer(), kMany);
    QList<VLMS_History> visits;
    for (int id = 0; id < store.getHistoryCnt(); ++id) {
        VLMS_History visit;
        store.getHistory(id, &visit);
        visits.append(visit);
    }
    return visits;
}

QStringList titlesIn(TestDirectory &profile)
{
    QStringList titles;
    const QList<VLMS_History> visits = visitsIn(profile);
    for (const VLMS_History &visit : visits) {
        titles.append(visit.title);
    }
    return titles;
}

QList<VLMS_Bookmark> bookmarksIn(TestDirectory &profile)
{
    VLMC_BookmarksSetting store;
    int lastNumber = 0;
    store.loadBookmark(profile.pathPointer(), kMany, lastNumber);
    QList<VLMS_Bookmark> bookmarks;
    for (int id = 0; id < store.getBookmarkCnt(); ++id) {
        VLMS_Bookmark bookmark;
        store.getBookmark(id, &bookmark);
        bookmarks.append(bookmark);
    }
    return bookmarks;
}

// "name=value" of each cookie of the document.
QStringList cookiesIn(TestDirectory &profile)
{
    VLMC_CookieSetting store;
    QString path = profile.file("cookie.xml");
    store.load(path);
    QStringList cookies;
    const QList<VLMS_CookieInfo> all = store.getAllCookieInfo();
    for (const VLMS_CookieInfo &cookie : all) {
        cookies.append(cookie.name + QLatin1Char('=') + cookie.contents);
    }
    return cookies;
}

QList<VLMS_AuthInfo> credentialsIn(TestDirectory &profile)
{
    VLMC_AuthSetting store;
    store.loadAuthInfo(profile.pathPointer(), kMany);
    QList<VLMS_AuthInfo> credentials;
    for (int id = 0; id < store.getAuthInfoCnt(); ++id) {
        VLMS_AuthInfo info = VLMS_AuthInfo();
        store.getAuthInfo(id, &info);
        credentials.append(info);
    }
    return credentials;
}

template <typename Store, typename Change>
void changePreferences(TestDirectory &profile, const Change &change)
{
    Store store;
    store.loadSetting(profile.pathPointer());
    change(store);
    store.saveSetting(profile.pathPointer());
}

template <typename Change>
void changeDevice(TestDirectory &profile, const Change &change)
{
    changePreferences<VLMC_BrowserCommonSetting>(profile, change);
}

template <typename Change>
void changeUser(TestDirectory &profile, const Change &change)
{
    changePreferences<VLMC_BrowserUserSetting>(profile, change);
}

void useProxy(TestDirectory &profile, const WebServer &proxy)
{
    changeDevice(profile, [&proxy](VLMC_BrowserCommonSetting &device) {
        device.setUseProxyInfo(1);
        device.setProxyServerStr(utf8("127.0.0.1"));
        device.setProxyHttpPortStr(QString::number(proxy.serverPort()));
    });
}

// The first bytes of each connection.
class Listener : public QTcpServer
{
public:
    Listener()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                greetings.append(socket->readAll());
                socket->abort();
            });
        });
        if (!listen(QHostAddress::LocalHost)) {
            qFatal("no server on the loopback interface");
        }
    }

    QList<QByteArray> greetings;
};

quint16 numberAt(const QByteArray &bytes, int position)
{
    return quint16(quint8(bytes.at(position)) << 8 | quint8(bytes.at(position + 1)));
}

// The versions that a TLS greeting offers: those of its list, or else the one in its head.
QList<quint16> offeredVersions(const QByteArray &greeting)
{
    const int kHead = 9;
    const QByteArray list = QByteArray::fromHex("002b00");
    QList<quint16> versions;
    const int start = int(greeting.indexOf(list));
    if (start < 0) {
        return QList<quint16>() << numberAt(greeting, kHead);
    }
    const int bytes = greeting.at(start + 4);
    for (int i = 0; i < bytes; i += 2) {
        versions.append(numberAt(greeting, start + 5 + i));
    }
    return versions;
}

#ifdef VELMORA_PROFILE_TOOL
// What velmora-profile finds wrong, as "<file>: <what>".
QStringList findingsIn(const TestDirectory &profile)
{
    QProcess tool;
    tool.start(utf8(VELMORA_PROFILE_TOOL),
               QStringList{utf8("check"), profile.path(), utf8("--json")});
    if (!tool.waitForFinished()) {
        return QStringList(utf8("velmora-profile does not end"));
    }
    QStringList findings;
    const QJsonArray all = QJsonDocument::fromJson(tool.readAllStandardOutput()).array();
    for (const QJsonValue &finding : all) {
        findings.append(finding.toObject().value(utf8("file")).toString() + utf8(": ")
                        + finding.toObject().value(utf8("what")).toString());
    }
    if ((tool.exitCode() == 0) != findings.isEmpty()) {
        findings.append(utf8("exit status %1").arg(tool.exitCode()));
    }
    return findings;
}
#else
QStringList findingsIn(const TestDirectory &) { return QStringList(); }
#endif

// What a killed process may leave: files that nobody reads. The next start removes them.
bool isLeftover(const QString &finding)
{
    return finding.endsWith(utf8("a temporary file that was left behind"))
           || finding.endsWith(utf8("a lock that was left behind"))
           || (finding.startsWith(utf8("thumbnail/"))
               && finding.endsWith(utf8("no bookmark names it")));
}
} // namespace

class tst_Kiosk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void commandLine_isChecked_data();
    void commandLine_isChecked();
    void commands_endAtAFailure_data();
    void commands_endAtAFailure();
    void profile_isCompletedAtTheFirstStart();
    void profile_mayHaveAnyPath();
    void logLevel_isTakenFromTheCommandLine_data();
    void logLevel_isTakenFromTheCommandLine();

    void startPage_isTheHomePageOrTheLastOne_data();
    void startPage_isTheHomePageOrTheLastOne();
    void zoomAndFont_areKeptAndApplied();
    void font_isOneOfTheList();
    void scripts_runAsSwitched_data();
    void scripts_runAsSwitched();
    void plugins_playAsSwitched_data();
    void plugins_playAsSwitched();
    void cache_servesAsSwitched_data();
    void cache_servesAsSwitched();
    void proxy_isAskedAsSwitched_data();
    void proxy_isAskedAsSwitched();
    void proxy_hasAPortOfItsOwnForHttps();
    void proxy_isGivenTheAccount();
    void security_offersWhatIsSwitchedOn_data();
    void security_offersWhatIsSwitchedOn();
    void localContent_isMarked_data();
    void localContent_isMarked();

    void visits_keepAnyTitle();
    void visits_surviveATitleThatXmlCannotCarry();
    void visits_followRedirections();
    void visits_renewAKnownPage();
    void visits_leaveOutPagesThatFail();
    void bookmark_hasAPictureOfThePage();
    void bookmark_isAddedOnce();
    void bookmark_isRemovedWithItsPicture();
    void bookmarks_areShown();

    void cookies_outliveTheBrowser();
    void cookies_areRefusedAsSwitched();
    void cookies_areHeldToTheLimit();
    void cookies_ofAKilledRunAreTakenOver();
    void credentials_areKeptOnceAccepted_data();
    void credentials_areKeptOnceAccepted();
    void credentials_areNotKeptWhenRefused();
    void credentials_areReplacedWhenOutdated();
    void userChange_obeysTheTimings_data();
    void userChange_obeysTheTimings();
    void userChange_showsTheHomePageWithoutAWayBack();

    void restart_knowsEverything();
    void kill_leavesTheProfileWhole();

private:
    void lookIntoKilledProfile(TestDirectory &profile, int &leftovers);
};

void tst_Kiosk::initTestCase() { qputenv("QT_QPA_PLATFORM", "offscreen"); }

void tst_Kiosk::cleanup()
{
    runDeferredDeletes();
    takeLog();
}

void tst_Kiosk::commandLine_isChecked_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("no folder") << QStringList()
                               << QByteArray("name one folder for the profile: "
                                             "velmora-kiosk FOLDER");
    QTest::newRow("two folders") << (QStringList() << utf8("/tmp") << utf8("/tmp"))
                                 << QByteArray("name one folder for the profile: "
                                               "velmora-kiosk FOLDER");
    QTest::newRow("missing folder")
        << QStringList(utf8("/no/such/folder"))
        << QByteArray("'/no/such/folder' is not a folder that can be written to");
    QTest::newRow("log level") << (QStringList()
                                   << utf8("--log-level") << utf8("4") << utf8("/tmp"))
                               << QByteArray("the log level is 0, 1, 2 or 3");
    QTest::newRow("log level in words")
        << (QStringList() << utf8("--log-level") << utf8("all") << utf8("/tmp"))
        << QByteArray("the log level is 0, 1, 2 or 3");
    QTest::newRow("missing commands")
        << (QStringList() << utf8("--commands") << utf8("/no/such/file") << utf8("/tmp"))
        << QByteArray("'/no/such/file' cannot be read");
}

void tst_Kiosk::commandLine_isChecked()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, complaint);
    QProcess process;
    process.start(utf8(VELMORA_KIOSK), arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().endsWith("velmora-kiosk: " + complaint + '\n'));
}

void tst_Kiosk::commands_endAtAFailure_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("unknown") << Commands{utf8("dance")} << QByteArray("no such command: dance");
    QTest::newRow("page") << visit(utf8("http://127.0.0.1:1/"))
                          << QByteArray("the page could not be loaded");
    QTest::newRow("picture") << Commands{utf8("screenshot /no/such/folder/a.png")}
                             << QByteArray("the picture cannot be written: "
                                           "/no/such/folder/a.png");
}

void tst_Kiosk::commands_endAtAFailure()
{
    QFETCH(QStringList, commands);
    QFETCH(QByteArray, complaint);
    const TestDirectory profile;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(commands), 1);
    QVERIFY(kiosk.errors().endsWith("velmora-kiosk: " + complaint + '\n'));
}

void tst_Kiosk::profile_isCompletedAtTheFirstStart()
{
    TestDirectory profile;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands()), 0);
    QVERIFY(readFile(profile.file("repostry.xml")).contains("<enableTLS12>true</enableTLS12>"));
    QVERIFY(readFile(profile.file("repostry_private.xml")).contains("<Zoom>1.0</Zoom>"));
    VLMC_FontListSetting fonts;
    fonts.loadFontList(profile.path());
    QVERIFY(fonts.getCount() > 0);
    QCOMPARE(findingsIn(profile), QStringList());
}

// Thumbnail paths have a limit, and conversions of cookies take Latin-1.
void tst_Kiosk::profile_mayHaveAnyPath()
{
    const TestDirectory parent;
    const WebServer server;
    const QString path = parent.path() + QString(80, QChar(0x56f3)) + utf8("/");
    QVERIFY(QDir().mkpath(path));
    Kiosk kiosk(path);
    QCOMPARE(kiosk.play(visit(server.url("/cookies")) << utf8("bookmark")), 0);
    QVERIFY(exists(path + utf8("thumbnail/000001.PNG")));
    QVERIFY(readFile(path + utf8("bookmark.xml")).contains("000001.PNG"));
    QVERIFY(readFile(path + utf8("cookie.xml")).contains("taro"));
}

void tst_Kiosk::logLevel_isTakenFromTheCommandLine_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<bool>("hasWarning");
    QTest::addColumn<bool>("hasTrace");
    QTest::newRow("0") << utf8("0") << false << false;
    QTest::newRow("1") << utf8("1") << false << false;
    QTest::newRow("2") << utf8("2") << true << false;
    QTest::newRow("3") << utf8("3") << true << true;
}

void tst_Kiosk::logLevel_isTakenFromTheCommandLine()
{
    QFETCH(QString, level);
    QFETCH(bool, hasWarning);
    QFETCH(bool, hasTrace);
    const TestDirectory profile;
    const TestDirectory files;
    // A history that is a folder: the save at the first visit is refused with a warning.
    QVERIFY(QDir(profile.path()).mkdir(utf8("visit.xml")));
    const WebServer server;
    Kiosk kiosk(profile.path());
    kiosk.setOptions(QStringList() << utf8("--log-level") << level);
    kiosk.setEnvironment("LD_PRELOAD", utf8(LOG_FILE_PROBE));
    kiosk.setEnvironment("VELMORA_LOG_FILE", files.file("log"));
    QCOMPARE(kiosk.play(visit(server.url("/page?1"))), 0);
    const QByteArray log = exists(files.file("log")) ? readFile(files.file("log")) : QByteArray();
    QCOMPARE(log.contains("write file open error!"), hasWarning);
    QCOMPARE(log.contains("[Velmora][VLMC_BrowserCommonSetting::loadSetting] start"), hasTrace);
}

void tst_Kiosk::startPage_isTheHomePageOrTheLastOne_data()
{
    QTest::addColumn<char>("choice");
    QTest::addColumn<QString>("title");
    QTest::newRow("home page") << char(0) << utf8("Page home");
    QTest::newRow("last page") << char(1) << utf8("Page last");
}

void tst_Kiosk::startPage_isTheHomePageOrTheLastOne()
{
    QFETCH(char, choice);
    QFETCH(QString, title);
    TestDirectory profile;
    const WebServer server;
    changeUser(profile, [&](VLMC_BrowserUserSetting &user) {
        user.setHomePage(server.url("/page?home"));
        user.setStartUp(choice);
    });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/page?last"))), 0);
    QCOMPARE(kiosk.play(Commands{utf8("wait"), utf8("state")}), 0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), title);
}

void tst_Kiosk::zoomAndFont_areKeptAndApplied()
{
    TestDirectory profile;
    VLMC_FontListSetting fonts;
    fonts.loadFontList(profile.path());
    fonts.addFont(utf8("DejaVu Sans Mono"));
    fonts.saveFontList(profile.path());
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("zoom 9"), utf8("font DejaVu Sans Mono"), utf8("state")}), 0);
    QCOMPARE(kiosk.play(Commands{utf8("zoom 12"), utf8("state")}), 0);
    QCOMPARE(qRound(kiosk.state().value(utf8("zoom")).toDouble() * 10), 13);
    QCOMPARE(kiosk.state().value(utf8("font")).toString(), utf8("DejaVu Sans Mono"));
    VLMC_BrowserUserSetting user;
    user.loadSetting(profile.pathPointer());
    QCOMPARE(user.getZoomInfo(), short(9));
}

void tst_Kiosk::font_isOneOfTheList()
{
    TestDirectory profile;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("font No Such Family")}), 0);
    VLMC_BrowserUserSetting user;
    user.loadSetting(profile.pathPointer());
    QString family;
    user.getFontName(&family);
    QCOMPARE(family, QString());
}

void tst_Kiosk::scripts_runAsSwitched_data()
{
    QTest::addColumn<char>("code");
    QTest::addColumn<QString>("title");
    QTest::newRow("on") << char(1) << utf8("scripted");
    QTest::newRow("off") << char(0) << utf8("still");
}

void tst_Kiosk::scripts_runAsSwitched()
{
    QFETCH(char, code);
    QFETCH(QString, title);
    TestDirectory profile;
    const WebServer server;
    changeDevice(profile,
                 [code](VLMC_BrowserCommonSetting &device) { device.setUseJavaScriptInfo(code); });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/script"))), 0);
    QCOMPARE(titlesIn(profile), QStringList(title));
}

void tst_Kiosk::plugins_playAsSwitched_data()
{
    QTest::addColumn<char>("code");
    QTest::newRow("on") << char(1);
    QTest::newRow("off") << char(0);
}

void tst_Kiosk::plugins_playAsSwitched()
{
    QFETCH(char, code);
    TestDirectory profile;
    changeDevice(profile,
                 [code](VLMC_BrowserCommonSetting &device) { device.setPlayFlashInfo(code); });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("state")}), 0);
    QCOMPARE(kiosk.state().value(utf8("plug-ins")).toBool(), code == 1);
}

void tst_Kiosk::cache_servesAsSwitched_data()
{
    QTest::addColumn<char>("code");
    QTest::addColumn<int>("requests");
    QTest::newRow("on") << char(1) << 1;
    QTest::newRow("off") << char(0) << 2;
}

void tst_Kiosk::cache_servesAsSwitched()
{
    QFETCH(char, code);
    QFETCH(int, requests);
    TestDirectory profile;
    const WebServer server;
    changeDevice(profile,
                 [code](VLMC_BrowserCommonSetting &device) { device.setUseCacheInfo(code); });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/cached"))), 0);
    QCOMPARE(kiosk.play(visit(server.url("/cached"))), 0);
    QCOMPARE(server.requests("/cached").size(), requests);
}

void tst_Kiosk::proxy_isAskedAsSwitched_data()
{
    QTest::addColumn<QString>("bypass");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("no bypass") << QString() << utf8("kiosk.invalid") << true;
    QTest::newRow("other domain") << utf8("other.invalid") << utf8("kiosk.invalid") << true;
    QTest::newRow("end of a name") << utf8("osk.invalid") << utf8("kiosk.invalid") << true;
    QTest::newRow("host") << utf8("a.invalid, Kiosk.Invalid") << utf8("kiosk.invalid") << false;
    QTest::newRow("below a domain") << utf8("a.invalid;invalid") << utf8("kiosk.invalid") << false;
}

void tst_Kiosk::proxy_isAskedAsSwitched()
{
    QFETCH(QString, bypass);
    QFETCH(QString, host);
    QFETCH(bool, isAsked);
    TestDirectory profile;
    const WebServer proxy;
    useProxy(profile, proxy);
    changeDevice(profile, [bypass](VLMC_BrowserCommonSetting &device) {
        device.setNoProxyDomainStr(bypass);
    });
    Kiosk kiosk(profile.path());
    const Commands commands{utf8("open http://%1/page?1").arg(host),
                            utf8(isAsked ? "wait" : "wait-failure")};
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(proxy.requests("/page").size(), isAsked ? 1 : 0);
}

void tst_Kiosk::proxy_hasAPortOfItsOwnForHttps()
{
    TestDirectory profile;
    const WebServer proxy;
    const WebServer proxyForHttps;
    useProxy(profile, proxy);
    changeDevice(profile, [&proxyForHttps](VLMC_BrowserCommonSetting &device) {
        device.setProxyHttpsPortStr(QString::number(proxyForHttps.serverPort()));
    });
    Kiosk kiosk(profile.path());
    const Commands commands{utf8("open https://kiosk.invalid/page?1"), utf8("wait-failure")};
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(proxy.requests("").size(), 0);
    QCOMPARE(proxyForHttps.requests("").value(0).left(25), QByteArray("CONNECT kiosk.invalid:443"));
}

void tst_Kiosk::proxy_isGivenTheAccount()
{
    TestDirectory profile;
    WebServer proxy;
    proxy.askForProxyAccount();
    useProxy(profile, proxy);
    changeDevice(profile, [](VLMC_BrowserCommonSetting &device) {
        device.setUseProxyCertificationInfo(1);
        device.setProxyAccountStr(kProxyAccount);
        device.setProxyPasswordStr(kProxyPassword);
    });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(utf8("http://kiosk.invalid/page?1"))), 0);
    QCOMPARE(titlesIn(profile), QStringList(utf8("Page 1")));
}

void tst_Kiosk::security_offersWhatIsSwitchedOn_data()
{
    QTest::addColumn<QList<int>>("switches"); // of TLS 1.0, 1.1, 1.2
    QTest::addColumn<bool>("offersTls12");
    QTest::newRow("all") << (QList<int>() << 1 << 1 << 1) << true;
    QTest::newRow("TLS 1.2") << (QList<int>() << 0 << 0 << 1) << true;
    QTest::newRow("a gap") << (QList<int>() << 1 << 0 << 1) << true;
    QTest::newRow("up to TLS 1.1") << (QList<int>() << 1 << 1 << 0) << false;
    QTest::newRow("TLS 1.0") << (QList<int>() << 1 << 0 << 0) << false;
    QTest::newRow("none") << (QList<int>() << 0 << 0 << 0) << false;
}

void tst_Kiosk::security_offersWhatIsSwitchedOn()
{
    QFETCH(QList<int>, switches);
    QFETCH(bool, offersTls12);
    TestDirectory profile;
    const Listener listener;
    changeDevice(profile, [switches](VLMC_BrowserCommonSetting &device) {
        device.setUseTLS10(char(switches.at(0)));
        device.setUseTLS11(char(switches.at(1)));
        device.setUseTLS12(char(switches.at(2)));
    });
    Kiosk kiosk(profile.path());
    const Commands commands{utf8("open https://127.0.0.1:%1/").arg(listener.serverPort()),
                            utf8("wait-failure")};
    QCOMPARE(kiosk.play(commands), 0);
    // What the system's own policy does not allow is not offered even if it is switched on.
    QCOMPARE(!listener.greetings.isEmpty()
                 && offeredVersions(listener.greetings.first()).contains(kTls12),
             offersTls12);
    for (const QByteArray &greeting : listener.greetings) {
        const QList<quint16> versions = offeredVersions(greeting);
        QVERIFY(switches.at(0) || !versions.contains(kTls10));
        QVERIFY(switches.at(1) || !versions.contains(kTls11));
    }
}

void tst_Kiosk::localContent_isMarked_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("localHost");
    QTest::addColumn<bool>("isLocal");
    QTest::newRow("loopback") << utf8("127.0.0.1") << QString() << true;
    QTest::newRow("network") << utf8("kiosk.invalid") << QString() << false;
    QTest::newRow("named") << utf8("kiosk.invalid") << utf8("KIOSK.invalid") << true;
    QTest::newRow("another") << utf8("kiosk.invalid") << utf8("device.invalid") << false;
}

void tst_Kiosk::localContent_isMarked()
{
    QFETCH(QString, host);
    QFETCH(QString, localHost);
    QFETCH(bool, isLocal);
    TestDirectory profile;
    const WebServer proxy;
    useProxy(profile, proxy);
    Kiosk kiosk(profile.path());
    if (!localHost.isEmpty()) {
        kiosk.setOptions(QStringList() << utf8("--local-host") << localHost);
    }
    QCOMPARE(kiosk.play(visit(utf8("http://%1/page?1").arg(host)) << utf8("state")), 0);
    QCOMPARE(kiosk.state().value(utf8("local")).toBool(), isLocal);
    QCOMPARE(kiosk.state().value(utf8("mark")).toString(),
             utf8(isLocal ? "On this device" : "Network"));
}

void tst_Kiosk::visits_keepAnyTitle()
{
    TestDirectory profile;
    const WebServer server;
    Commands commands;
    QStringList expected;
    for (int i = 0; i < WebServer::titles(); ++i) {
        commands += visit(server.url("/titles?%1").arg(i));
        expected.prepend(WebServer::title(i)); // newest first
    }
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(titlesIn(profile), expected);
}

void tst_Kiosk::visits_surviveATitleThatXmlCannotCarry()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const Commands commands = visit(server.url("/page?1")) + visit(server.url("/bell"));
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(titlesIn(profile), QStringList() << utf8("bell and start") << utf8("Page 1"));
    QCOMPARE(findingsIn(profile), QStringList());
}

void tst_Kiosk::visits_followRedirections()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/redirect"))), 0);
    const QList<VLMS_History> visits = visitsIn(profile);
    QCOMPARE(visits.size(), 1);
    QCOMPARE(visits.first().url, server.url("/page?redirected"));
    QCOMPARE(visits.first().title, utf8("Page redirected"));
    QVERIFY(visits.first().dateTime.isValid());
}

void tst_Kiosk::visits_renewAKnownPage()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const Commands commands = visit(server.url("/changing")) + visit(server.url("/page?1"))
                              + visit(server.url("/changing"));
    QCOMPARE(kiosk.play(commands), 0);
    // Visits of the same minute stay in order.
    QCOMPARE(titlesIn(profile).size(), 2);
    QVERIFY(titlesIn(profile).contains(utf8("Visit 2")));
    QVERIFY(titlesIn(profile).contains(utf8("Page 1")));
}

void tst_Kiosk::visits_leaveOutPagesThatFail()
{
    TestDirectory profile;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("open http://127.0.0.1:1/"), utf8("wait-failure")}), 0);
    QCOMPARE(visitsIn(profile).size(), 0);
}

void tst_Kiosk::bookmark_hasAPictureOfThePage()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/red")) << utf8("bookmark")), 0);
    const QList<VLMS_Bookmark> bookmarks = bookmarksIn(profile);
    QCOMPARE(bookmarks.size(), 1);
    QCOMPARE(bookmarks.first().title, utf8("Red"));
    QCOMPARE(bookmarks.first().url, server.url("/red"));
    const QImage picture(bookmarks.first().thumbnailPath);
    QCOMPARE(picture.size(), QSize(160, 120));
    QCOMPARE(picture.pixel(80, 60), 0xffff0000);
}

void tst_Kiosk::bookmark_isAddedOnce()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const QString bookmark = utf8("bookmark");
    // Of a blank page neither.
    QCOMPARE(
        kiosk.play(Commands{bookmark} + visit(server.url("/red")) + Commands{bookmark, bookmark}),
        0);
    QCOMPARE(kiosk.play(visit(server.url("/red")) << bookmark), 0);
    QCOMPARE(bookmarksIn(profile).size(), 1);
    QCOMPARE(findingsIn(profile), QStringList());
}

void tst_Kiosk::bookmark_isRemovedWithItsPicture()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const QString bookmark = utf8("bookmark");
    QCOMPARE(kiosk.play((visit(server.url("/page?1")) << bookmark) + visit(server.url("/page?2"))
                        + Commands{bookmark, utf8("delete-bookmark 0"), utf8("delete-bookmark 7")}),
             0);
    const QList<VLMS_Bookmark> bookmarks = bookmarksIn(profile);
    QCOMPARE(bookmarks.size(), 1);
    QCOMPARE(bookmarks.first().url, server.url("/page?2"));
    QCOMPARE(QDir(profile.file("thumbnail")).entryList(QDir::Files),
             QStringList(utf8("000002.PNG")));
    QCOMPARE(findingsIn(profile), QStringList());
}

void tst_Kiosk::bookmarks_areShown()
{
    const TestDirectory profile;
    const TestDirectory pictures;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const Commands commands = visit(server.url("/red"))
                              << utf8("bookmark") << utf8("open about:blank") << utf8("bookmarks")
                              << utf8("screenshot ") + pictures.file("bookmarks.png");
    QCOMPARE(kiosk.play(commands), 0);
    const QImage window(pictures.file("bookmarks.png"));
    QVERIFY(!window.isNull());
    // Somewhere below the tools the red picture.
    int red = 0;
    for (int x = 0; x < window.width(); ++x) {
        red += window.pixel(x, 110) == 0xffff0000 ? 1 : 0;
    }
    QVERIFY2(red > 140 && red <= 160, qPrintable(QString::number(red)));
}

void tst_Kiosk::cookies_outliveTheBrowser()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/cookies")) + visit(server.url("/page?1"))), 0);
    QCOMPARE(headerOf(server.requests("/page").value(0), "Cookie"),
             QByteArray("session=b7c41f; user=taro"));
    // Those of the session end with it.
    QCOMPARE(cookiesIn(profile), QStringList(utf8("user=taro")));
    QVERIFY(!exists(profile.file("cookie.ini")));
    QCOMPARE(kiosk.play(visit(server.url("/page?2"))), 0);
    QCOMPARE(headerOf(server.requests("/page").value(1), "Cookie"), QByteArray("user=taro"));
    QCOMPARE(cookiesIn(profile), QStringList(utf8("user=taro")));
}

void tst_Kiosk::cookies_areRefusedAsSwitched()
{
    TestDirectory profile;
    const WebServer server;
    changeDevice(profile, [](VLMC_BrowserCommonSetting &device) { device.setRcvCookieInfo(0); });
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/cookies")) + visit(server.url("/page?1"))), 0);
    QCOMPARE(headerOf(server.requests("/page").value(0), "Cookie"), QByteArray());
    QCOMPARE(cookiesIn(profile), QStringList());
}

// A conversion takes no more than this; the rest would pile up.
void tst_Kiosk::cookies_areHeldToTheLimit()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(visit(server.url("/many-cookies"))), 0);
    QCOMPARE(kiosk.play(Commands()), 0);
    const QStringList cookies = cookiesIn(profile);
    QCOMPARE(cookies.size(), 20);
    QVERIFY(cookies.contains(utf8("c29=v")));
    QVERIFY(!cookies.contains(utf8("c9=v")));
}

void tst_Kiosk::cookies_ofAKilledRunAreTakenOver()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    kiosk.start(visit(server.url("/cookies")) + visit(server.url("/page?1")));
    QTRY_VERIFY(exists(profile.file("visit.xml")) && visitsIn(profile).size() == 2);
    kiosk.kill();
    QVERIFY(exists(profile.file("cookie.ini")));
    writeFile(profile.file("cookie.ini.lock"), QByteArray());
    QCOMPARE(kiosk.play(visit(server.url("/page?2"))), 0);
    // The session goes on.
    const QByteArray cookies = headerOf(server.requests("/page").value(1), "Cookie");
    QVERIFY(cookies.contains("session=b7c41f") && cookies.contains("user=taro"));
    QCOMPARE(cookiesIn(profile), QStringList(utf8("user=taro")));
    QCOMPARE(findingsIn(profile), QStringList());
}

void tst_Kiosk::credentials_areKeptOnceAccepted_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("authType");
    QTest::newRow("basic") << QByteArray("/basic") << 0;
    QTest::newRow("digest") << QByteArray("/digest") << 1;
}

void tst_Kiosk::credentials_areKeptOnceAccepted()
{
    QFETCH(QByteArray, path);
    QFETCH(int, authType);
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    const Commands commands = visit(server.url(path)) << utf8("state");
    QCOMPARE(kiosk.play(Commands{utf8("credentials hanako correct-horse")} + commands), 0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), utf8("Inside"));
    const QList<VLMS_AuthInfo> credentials = credentialsIn(profile);
    QCOMPARE(credentials.size(), 1);
    QCOMPARE(credentials.first().hostName, utf8("127.0.0.1"));
    QCOMPARE(credentials.first().portNum, QString::number(server.serverPort()));
    QCOMPARE(int(credentials.first().authType), authType);
    QCOMPARE(credentials.first().user, QByteArray(kUser));
    QCOMPARE(credentials.first().passwd, QByteArray(kPassword));
    // Next time nobody is asked.
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), utf8("Inside"));
    QCOMPARE(credentialsIn(profile).size(), 1);
}

void tst_Kiosk::credentials_areNotKeptWhenRefused()
{
    TestDirectory profile;
    const WebServer server;
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("credentials hanako wrong")} + visit(server.url("/basic"))
                        + Commands{utf8("state")}),
             0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), utf8("Outside"));
    QCOMPARE(credentialsIn(profile).size(), 0);
}

void tst_Kiosk::credentials_areReplacedWhenOutdated()
{
    TestDirectory profile;
    const WebServer server;
    VLMC_AuthSetting store;
    store.loadAuthInfo(profile.pathPointer(), kMany);
    VLMS_AuthInfo old = VLMS_AuthInfo();
    old.hostName = utf8("127.0.0.1");
    old.portNum = QString::number(server.serverPort());
    old.user = "hanako";
    old.passwd = "old";
    store.setAuthInfo(&old);
    old.hostName = utf8("other.invalid");
    store.setAuthInfo(&old);
    store.saveAuthInfo(profile.pathPointer(), kMany);
    Kiosk kiosk(profile.path());
    QCOMPARE(kiosk.play(Commands{utf8("credentials hanako correct-horse")}
                        + visit(server.url("/basic")) + Commands{utf8("state")}),
             0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), utf8("Inside"));
    const QList<VLMS_AuthInfo> credentials = credentialsIn(profile);
    QCOMPARE(credentials.size(), 2);
    QCOMPARE(credentials.at(0).passwd, QByteArray(kPassword));
    QCOMPARE(credentials.at(1).hostName, utf8("other.invalid"));
}

void tst_Kiosk::userChange_obeysTheTimings_data()
{
    QTest::addColumn<char>("timing");
    QTest::addColumn<int>("left"); // cookies and credentials
    QTest::addColumn<int>("requests");
    QTest::newRow("at user change") << kAtUserChange << 0 << 2;
    QTest::newRow("never") << char(0) << 1 << 1;
}

void tst_Kiosk::userChange_obeysTheTimings()
{
    QFETCH(char, timing);
    QFETCH(int, left);
    QFETCH(int, requests);
    TestDirectory profile;
    const WebServer server;
    changeDevice(profile, [timing](VLMC_BrowserCommonSetting &device) {
        device.setCacheDeleteTiming(timing);
    });
    changeUser(profile, [timing](VLMC_BrowserUserSetting &user) {
        user.setCookieDeleteTiming(timing);
        user.setCertificationDeleteTiming(timing);
    });
    Kiosk kiosk(profile.path());
    const Commands commands =
        visit(server.url("/cookies")) + visit(server.url("/cached"))
        + Commands{utf8("credentials hanako correct-horse")} + visit(server.url("/basic"))
        + Commands{utf8("change-user"), utf8("wait")} + visit(server.url("/cached"));
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(cookiesIn(profile).size(), left);
    QCOMPARE(credentialsIn(profile).size(), left);
    QCOMPARE(server.requests("/cached").size(), requests);
    QCOMPARE(kiosk.play(visit(server.url("/basic")) << utf8("state")), 0);
    QCOMPARE(kiosk.state().value(utf8("title")).toString(), utf8(left ? "Inside" : "Outside"));
}

void tst_Kiosk::userChange_showsTheHomePageWithoutAWayBack()
{
    TestDirectory profile;
    const WebServer server;
    changeUser(profile, [&](VLMC_BrowserUserSetting &user) {
        user.setHomePage(server.url("/page?home"));
        user.setStartUp(1);
    });
    Kiosk kiosk(profile.path());
    const Commands commands =
        visit(server.url("/page?1")) + visit(server.url("/page?2"))
        + Commands{utf8("state"), utf8("change-user"), utf8("wait"), utf8("state")};
    QCOMPARE(kiosk.play(commands), 0);
    QCOMPARE(kiosk.state(0).value(utf8("way back")).toBool(), true);
    QCOMPARE(kiosk.state(1).value(utf8("way back")).toBool(), false);
    QCOMPARE(kiosk.state(1).value(utf8("title")).toString(), utf8("Page home"));
}

void tst_Kiosk::restart_knowsEverything()
{
    TestDirectory profile;
    const WebServer server;
    changeUser(profile, [](VLMC_BrowserUserSetting &user) { user.setStartUp(1); });
    Kiosk kiosk(profile.path());
    const Commands firstRun =
        visit(server.url("/titles?0")) + Commands{utf8("bookmark"), utf8("zoom 3")}
        + visit(server.url("/cookies")) + Commands{utf8("credentials hanako correct-horse")}
        + visit(server.url("/digest")) + visit(server.url("/redirect"));
    QCOMPARE(kiosk.play(firstRun), 0);
    QCOMPARE(findingsIn(profile), QStringList());
    const QStringList titles = titlesIn(profile);
    QCOMPARE(titles, QStringList() << utf8("Page redirected") << utf8("Inside") << utf8("Cookies")
                                   << WebServer::title(0));

    const Commands secondRun = Commands{utf8("wait"), utf8("state")} + visit(server.url("/digest"))
                               + Commands{utf8("state"), utf8("bookmark")};
    QCOMPARE(kiosk.play(secondRun), 0);
    QCOMPARE(kiosk.state(0).value(utf8("url")).toString(), server.url("/page?redirected"));
    QCOMPARE(qRound(kiosk.state(0).value(utf8("zoom")).toDouble() * 10), 7);
    QCOMPARE(kiosk.state(1).value(utf8("title")).toString(), utf8("Inside"));
    QCOMPARE(headerOf(server.requests("/page").last(), "Cookie"), QByteArray("user=taro"));
    QCOMPARE(titlesIn(profile), titles);
    const QList<VLMS_Bookmark> bookmarks = bookmarksIn(profile);
    QCOMPARE(bookmarks.size(), 2);
    QCOMPARE(bookmarks.first().title, WebServer::title(0));
    QVERIFY(bookmarks.last().thumbnailPath.endsWith(utf8("thumbnail/000002.PNG")));
    QCOMPARE(findingsIn(profile), QStringList());
}

// Each time the browser is somewhere between the first answer and the end of its commands, most of
// which write. VELMORA_KIOSK_KILLS asks for another number of times.
void tst_Kiosk::kill_leavesTheProfileWhole()
{
    const int kTimes = 50;
    const int kMaxMilliseconds = 250;
    const int kPages = 40;
    bool isAsked = false;
    const int asked = qEnvironmentVariableIntValue("VELMORA_KIOSK_KILLS", &isAsked);
    const int times = isAsked ? asked : kTimes;
    TestDirectory profile;
    WebServer server;
    std::mt19937 random(20240229);
    QSignalSpy requests(&server, &WebServer::asked);
    Kiosk kiosk(profile.path());
    int page = 0;
    int visits = 0;
    int leftovers = 0;
    for (int time = 0; time < times; ++time) {
        Commands commands;
        for (int i = 0; i < kPages; ++i) {
            page = (page + 1) % kPages;
            commands += visit(server.url("/page?%1").arg(page));
            commands += Commands{utf8("bookmark"), utf8("zoom %1").arg(1 + page % 11)};
            commands += visit(server.url("/counter?%1").arg(time * kPages + i));
            commands += Commands{utf8("delete-bookmark 0")}.mid(i % 2);
        }
        requests.clear();
        kiosk.start(commands);
        QVERIFY(requests.wait(30000));
        QTest::qWait(int(random() % kMaxMilliseconds));
        kiosk.kill();
        lookIntoKilledProfile(profile, leftovers);
        if (QTest::currentTestFailed()) {
            qWarning("killed for the %dth time", time + 1);
            return;
        }
        const int known = int(visitsIn(profile).size());
        QVERIFY(known >= visits);
        visits = known;
    }
    qInfo("killed %d times, %d leftovers, %d visits", times, leftovers, visits);
    QVERIFY(visits > 0);
    // The next start puts everything in order.
    QCOMPARE(kiosk.play(Commands()), 0);
    QCOMPARE(findingsIn(profile), QStringList());
}

void tst_Kiosk::lookIntoKilledProfile(TestDirectory &profile, int &leftovers)
{
    const QStringList findings = findingsIn(profile);
    for (const QString &finding : findings) {
        QVERIFY2(isLeftover(finding), qPrintable(finding));
        ++leftovers;
    }
    takeLog();
    VLMC_BrowserCommonSetting device;
    device.loadSetting(profile.pathPointer());
    VLMC_BrowserUserSetting user;
    user.loadSetting(profile.pathPointer());
    VLMC_FontListSetting fonts;
    fonts.loadFontList(profile.path());
    QVERIFY(fonts.getCount() > 0);
    visitsIn(profile);
    credentialsIn(profile);
    const QList<VLMS_Bookmark> bookmarks = bookmarksIn(profile);
    for (const VLMS_Bookmark &bookmark : bookmarks) {
        QVERIFY2(!QImage(bookmark.thumbnailPath).isNull(), qPrintable(bookmark.thumbnailPath));
    }
    cookiesIn(profile);
    if (exists(profile.file("cookie.ini"))) {
        VLMC_CookieSetting::getInstance()->loadCookieInfo(profile.pathPointer(), kMany);
    }
    const LogLines lines = takeLog();
    for (const LogLine &line : lines) {
        // The first ones are killed before there is everything.
        QVERIFY2(line.level > 2 || line.text.endsWith("file not exist!"), line.text.constData());
    }
}

QTEST_GUILESS_MAIN(tst_Kiosk)
#include "tst_Kiosk.moc"
