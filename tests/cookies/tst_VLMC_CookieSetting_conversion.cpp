#include "cookies/VLMC_CookieSetting.h"

#include "tests/support/CookieIni.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SmallStack.h"
#include "tests/support/WatchedStore.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRectF>

#include <ctime>
#include <sys/stat.h>

class tst_VLMC_CookieSetting_conversion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { runDeferredDeletes(); }

    void loadCookieInfo_readsTheFile();
    void loadCookieInfo_logsStartAndEnd();
    void loadCookieInfo_recordsTheMaximumOnly();
    void loadCookieInfo_findsNothing_data();
    void loadCookieInfo_findsNothing();
    void loadCookieInfo_appendsTheFileNameAsItStands();
    void loadCookieInfo_readsAsFarAsTheDataGo_data();
    void loadCookieInfo_readsAsFarAsTheDataGo();
    void loadCookieInfo_survivesEveryCut();
    void loadCookieInfo_survivesEveryChangedByte();
    void loadCookieInfo_survivesArbitraryFiles();
    void loadCookieInfo_takesNoMemoryForClaimedLengths();
    void loadCookieInfo_takesLinearTime();
    void loadCookieInfo_buildsNoDescribedValues_data();
    void loadCookieInfo_buildsNoDescribedValues();
    void loadCookieInfo_readsHarmfulTextInsideACookie();
    void loadCookieInfo_readsBesideOtherValues_data();
    void loadCookieInfo_readsBesideOtherValues();
    void loadCookieInfo_doesNotWaitAtAPipe();
    void loadCookieInfo_boundsTheFile();
    void loadCookieInfo_boundsTheCookies_data();
    void loadCookieInfo_boundsTheCookies();
    void loadCookieInfo_putsTheCopyBack_data();
    void loadCookieInfo_putsTheCopyBack();
    void saveCookieInfo_writesTheFile();
    void saveCookieInfo_writesExactBytes();
    void saveCookieInfo_logsStartAndEnd();
    void saveCookieInfo_removesEverythingElse();
    void saveCookieInfo_hasNoLimit();
    void saveCookieInfo_writesEmptyFormForCookieWithoutName();
    void saveCookieInfo_keepsArbitraryBytes();
    void saveCookieInfo_doesNotWaitAtAPipe();
    void saveCookieInfo_writesNothingInPlaceOfAFolder();
    void saveCookieInfo_keepsTheFileWithoutACopy();

    void convertIniToXml_refusesNull_data();
    void convertIniToXml_refusesNull();
    void convertIniToXml_writesTheDocument();
    void convertIniToXml_logsEachStep();
    void convertIniToXml_callsVirtualOperationsInOrder();
    void convertIniToXml_addsAllToMissingFile();
    void convertIniToXml_leavesTheSameCookiesAlone();
    void convertIniToXml_growsBeyondTwenty();
    void convertIniToXml_replacesChangedValue();
    void convertIniToXml_keepsEntryOfChangedExpiry();
    void convertIniToXml_keepsOrder();
    void convertIniToXml_matchesEachEntryOnce();
    void convertIniToXml_deletesFirstTwentyOnly_data();
    void convertIniToXml_deletesFirstTwentyOnly();
    void convertIniToXml_matchesTwentiethEntryOnly();
    void convertIniToXml_replacesNonAsciiCookies();
    void convertIniToXml_goesByLoadedIds();
    void convertIniToXml_renamesForeignRoot();
    void convertIniToXml_readsUnreadableFileAsEmpty();
    void convertIniToXml_keepsDocumentForUnreadableCookies();
    void convertIniToXml_keepsDocumentForEmptyPath();
    void convertIniToXml_writesNothingWithoutDocument();
    void convertIniToXml_numbers999();
    void convertIniToXml_leavesNoEntries();
    void convertIniToXml_decodesPathsAsLatin1();

    void convertXmlToIni_refusesNull_data();
    void convertXmlToIni_refusesNull();
    void convertXmlToIni_writesTheCookies();
    void convertXmlToIni_logsEachStep();
    void convertXmlToIni_callsVirtualOperationsInOrder();
    void convertXmlToIni_writesNoneForMissingFile();
    void convertXmlToIni_keepsCookiesForUnreadableDocument_data();
    void convertXmlToIni_keepsCookiesForUnreadableDocument();
    void convertXmlToIni_writesFirstTwenty_data();
    void convertXmlToIni_writesFirstTwenty();
    void convertXmlToIni_readsSecure_data();
    void convertXmlToIni_readsSecure();
    void convertXmlToIni_readsExpiry_data();
    void convertXmlToIni_readsExpiry();
    void convertXmlToIni_encodesUtf8();
    void convertXmlToIni_refusesEmptyDirectory();
    void convertXmlToIni_goesById();
    void convertXmlToIni_leavesTheXmlFileAlone();

    void roundTrip_keepsServerCookies_data();
    void roundTrip_keepsServerCookies();
    void roundTrip_leavesUnusualCookiesToQt_data();
    void roundTrip_leavesUnusualCookiesToQt();
    void roundTrip_losesHttpOnly();
    void roundTrip_shiftsExpiryByTheZone();
    void roundTrip_countsMaxAgeFromNow();
    void logs_holdNoSecrets();

private:
};

namespace
{
typedef QList<QByteArray> Bytes;

const char kIni[] = "cookie.ini";
const char kXml[] = "cookies.xml";
const char kXmlHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

void setZone(const char *zone)
{
    qputenv("TZ", zone);
    tzset();
}

// "c00=v", "c01=v", ...
QByteArray rawNumbered(int number)
{
    return 'c' + QByteArray::number(number).rightJustified(2, '0') + "=v; domain=x.com; path=/";
}

Bytes rawRange(int first, int last)
{
    Bytes rawForms;
    for (int i = first; i <= last; ++i) {
        rawForms.append(rawNumbered(i));
    }
    return rawForms;
}

QByteArray entryOf(int id, const QByteArray &name, const QByteArray &value = "v")
{
    return "    <webSiteInfo id=\"" + QByteArray::number(id).rightJustified(3, '0')
           + "\">\n"
             "        <website>x.com</website>\n"
             "        <name>"
           + name
           + "</name>\n"
             "        <path>/</path>\n"
             "        <secure>false</secure>\n"
             "        <expires/>\n"
             "        <contents><![CDATA["
           + value
           + "]]></contents>\n"
             "    </webSiteInfo>\n";
}

QByteArray documentOf(const Bytes &names)
{
    if (names.isEmpty()) {
        return kXmlHead + QByteArray("<cookie docInfo=\"1.0\"/>\n");
    }
    QByteArray document = kXmlHead + QByteArray("<cookie docInfo=\"1.0\">\n");
    for (int i = 0; i < names.size(); ++i) {
        document += entryOf(i, names.at(i));
    }
    return document + "</cookie>\n";
}

Bytes namesRange(int first, int last)
{
    Bytes names;
    for (int i = first; i <= last; ++i) {
        names.append('c' + QByteArray::number(i).rightJustified(2, '0'));
    }
    return names;
}

// "name=value" of each, in order.
Bytes pairsOf(const QList<QNetworkCookie> &cookies)
{
    Bytes pairs;
    for (const QNetworkCookie &cookie : cookies) {
        pairs.append(cookie.toRawForm(QNetworkCookie::NameAndValueOnly));
    }
    return pairs;
}

QList<QNetworkCookie> load(const TestDirectory &directory)
{
    QString path = directory.path();
    return VLMC_CookieSetting::getInstance()->loadCookieInfo(&path, 20);
}

Bytes loadedPairs(const TestDirectory &directory) { return pairsOf(load(directory)); }

void save(const QList<QNetworkCookie> &cookies, const TestDirectory &directory)
{
    QString path = directory.path();
    VLMC_CookieSetting::getInstance()->saveCookieInfo(cookies, &path, 20);
}

void writeIni(const TestDirectory &directory, const Bytes &rawForms)
{
    writeFile(directory.file(kIni), cookieIniOf(rawForms));
}

CookieIni readIni(const TestDirectory &directory)
{
    return decodeCookieIni(readFile(directory.file(kIni)));
}

void iniToXml(TestDirectory &directory)
{
    VLMC_CookieSetting::getInstance()->convertCookieIniToXML(directory.localFile(),
                                                             directory.localFile(kXml));
}

void xmlToIni(TestDirectory &directory)
{
    VLMC_CookieSetting::getInstance()->convertCookieXMLToIni(directory.localFile(kXml),
                                                             directory.localFile());
}

// The high-water mark of this process's memory, in KiB.
long peakMemory()
{
    QFile status(utf8("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const Bytes lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').first().toLong();
        }
    }
    return 0;
}

} // namespace

void tst_VLMC_CookieSetting_conversion::init()
{
    setZone("UTC0");
    takeLog();
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsTheFile()
{
    const TestDirectory directory;
    writeFile(directory.file(kIni),
              "[Cookie]\ncookies=\"@ByteArray(\\0\\0\\0\\x2\\0\\0\\0\\fa=1; path=/x\\0\\0\\0\\x3"
              "\\x62=2)\"\n");

    const QList<QNetworkCookie> cookies = load(directory);

    QCOMPARE(pairsOf(cookies), Bytes() << "a=1"
                                       << "b=2");
    QCOMPARE(cookies.first().path(), utf8("/x"));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_logsStartAndEnd()
{
    const TestDirectory directory;
    QVERIFY(load(directory).isEmpty());
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::loadCookieInfo] end\n");
    QVERIFY(!exists(directory.file(kIni)));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_recordsTheMaximumOnly()
{
    const TestDirectory directory;
    writeIni(directory, rawRange(1, 30));
    QString path = directory.path();
    WatchedStore<VLMC_CookieSetting> cookies;
    QCOMPARE(int(cookies.loadCookieInfo(&path, 1).size()), 30);
    QCOMPARE(cookies.max(), 1);
    QCOMPARE(int(cookies.loadCookieInfo(&path, 7).size()), 30);
    QVERIFY(cookies.loadCookieInfo(nullptr, 5).isEmpty());
    QVERIFY(cookies.loadCookieInfo(&path, 0).isEmpty());
    QCOMPARE(cookies.max(), 7);
    QVERIFY(!cookies.getXMLRootNode());
    QCOMPARE(cookies.takeCalls(), QByteArray());
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_findsNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray value = cookieIniOf(rawRange(1, 1)).mid(int(qstrlen("[Cookie]\ncookies=")));
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no key") << QByteArray("[Cookie]\nother=1\n");
    QTest::newRow("other group") << "[Other]\ncookies=" + value;
    QTest::newRow("no group") << "cookies=" + value;
    QTest::newRow("no value") << QByteArray("[Cookie]\ncookies=\n");
    QTest::newRow("empty value") << QByteArray("[Cookie]\ncookies=@ByteArray()\n");
    QTest::newRow("invalid value") << QByteArray("[Cookie]\ncookies=@Invalid()\n");
    QTest::newRow("a list") << QByteArray("[Cookie]\ncookies=a, b\n");
    QTest::newRow("count 0") << cookieIniOfValue(number32(0));
    QTest::newRow("count 0 before data") << cookieIniOfValue(cookieStream(0, rawRange(1, 2)));
    QTest::newRow("count cut") << cookieIniOfValue("\0\0\1");
    QTest::newRow("count alone") << cookieIniOfValue(number32(3));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_findsNothing()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeFile(directory.file(kIni), file);
    QVERIFY(load(directory).isEmpty());
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::loadCookieInfo] end\n");
    COMPARE_BYTES(readFile(directory.file(kIni)), file);
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_appendsTheFileNameAsItStands()
{
    const TestDirectory directory;
    writeFile(directory.file("subcookie.ini"), cookieIniOf(rawRange(1, 1)));
    QString path = directory.file("sub");
    VLMC_CookieSetting cookies;
    QCOMPARE(int(cookies.loadCookieInfo(&path, 1).size()), 1);
    cookies.saveCookieInfo(QList<QNetworkCookie>(), &path, 1);
    QCOMPARE(decodeCookieIni(readFile(directory.file("subcookie.ini"))).count, 0);
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsAsFarAsTheDataGo_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QList<QByteArray>>("pairs");
    const QByteArray nullArray(4, '\xff');
    QTest::newRow("count of 3 before two") << cookieStream(3, Bytes() << "a=1"
                                                                      << "b=2")
                                           << (Bytes() << "a=1"
                                                       << "b=2");
    QTest::newRow("count of 1 before two") << cookieStream(1, Bytes() << "a=1"
                                                                      << "b=2")
                                           << (Bytes() << "a=1");
    QTest::newRow("count of -1") << cookieStream(-1, Bytes() << "a=1"
                                                             << "b=2")
                                 << (Bytes() << "a=1"
                                             << "b=2");
    QTest::newRow("smallest count") << cookieStream(int(0x80000000u), Bytes() << "a=1"
                                                                              << "b=2")
                                    << (Bytes() << "a=1"
                                                << "b=2");
    QTest::newRow("largest count")
        << cookieStream(0x7fffffff, Bytes() << "a=1") << (Bytes() << "a=1");
    QTest::newRow("several in one form") << cookieStream(2, Bytes() << "a=1; path=/\nb=2\nc=3"
                                                                    << "d=4")
                                         << (Bytes() << "a=1"
                                                     << "b=2"
                                                     << "c=3"
                                                     << "d=4");
    QTest::newRow("none in a form") << cookieStream(4, Bytes() << "a=1"
                                                               << ""
                                                               << ";"
                                                               << "b=2")
                                    << (Bytes() << "a=1"
                                                << "b=2");
    QTest::newRow("without a name") << cookieStream(3, Bytes() << "a=1"
                                                               << "=x"
                                                               << "b=2")
                                    << (Bytes() << "a=1"
                                                << "b=2");
    QTest::newRow("null form") << number32(2) + nullArray
                                      + cookieStream(3, Bytes()).replace(0, 4, "") + number32(3)
                                      + "a=1"
                               << (Bytes() << "a=1");
    QTest::newRow("length cut") << cookieStream(2, Bytes() << "a=1") + "\1\2" << (Bytes() << "a=1");
    QTest::newRow("length of 2 GiB")
        << cookieStream(9, Bytes() << "a=1") + number32(0x7fffffff) + "b=2" << (Bytes() << "a=1");
    QTest::newRow("length of 4 GiB")
        << cookieStream(9, Bytes() << "a=1") + number32(0xfffffffe) + "b=2" << (Bytes() << "a=1");
    QTest::newRow("equal cookies") << cookieStream(2, Bytes() << "a=1"
                                                              << "a=1")
                                   << (Bytes() << "a=1"
                                               << "a=1");
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsAsFarAsTheDataGo()
{
    QFETCH(QByteArray, value);
    QFETCH(QList<QByteArray>, pairs);
    const TestDirectory directory;
    writeFile(directory.file(kIni), cookieIniOfValue(value));
    QCOMPARE(loadedPairs(directory), pairs);
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_survivesEveryCut()
{
    const Bytes pairs = Bytes() << "a=1"
                                << "bb=22"
                                << "ccc=333";
    const QByteArray value = cookieStream(3, pairs);
    const TestDirectory directory;
    for (int size = 0; size < value.size(); ++size) {
        // Of two files alike in path, size and time the settings would read one only.
        QString path = directory.file(QByteArray::number(size).append('-').constData());
        writeFile(path + utf8(kIni), cookieIniOfValue(value.left(size)));
        const int whole = size < 4 + 7 ? 0 : size < 4 + 7 + 9 ? 1 : 2;
        QCOMPARE(pairsOf(VLMC_CookieSetting::getInstance()->loadCookieInfo(&path, 1)),
                 pairs.mid(0, whole));
    }
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_survivesEveryChangedByte()
{
    const QByteArray value = cookieStream(2, Bytes() << "a=1; expires=Fri, 02-Jan-2026 03:04:05 GMT"
                                                     << "b=2");
    const TestDirectory directory;
    for (int i = 0; i < value.size(); ++i) {
        for (const char byte : {'\0', '\n', ';', '=', '\x80', '\xff'}) {
            QByteArray changed = value;
            changed[i] = byte;
            QString path = directory.file(
                (QByteArray::number(i) + '-' + QByteArray::number(int(byte)) + '-').constData());
            writeFile(path + utf8(kIni), cookieIniOfValue(changed));
            QVERIFY(VLMC_CookieSetting::getInstance()->loadCookieInfo(&path, 1).size() <= 3);
        }
    }
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_survivesArbitraryFiles()
{
    const TestDirectory directory;
    uint state = 1;
    for (int round = 0; round < 100; ++round) {
        QByteArray file = round % 2 ? QByteArray("[Cookie]\ncookies=@ByteArray(") : QByteArray();
        for (int i = 0; i < 200; ++i) {
            state = state * 1103515245u + 12345u;
            file.append(char(state >> 16));
        }
        QString path = directory.file(QByteArray::number(round).append('-').constData());
        writeFile(path + utf8(kIni), file + ")\n");
        VLMC_CookieSetting::getInstance()->loadCookieInfo(&path, 1);
    }
    COMPARE_BYTES(loggedText(), QByteArray("3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                           "3 [VLMC_CookieSetting::loadCookieInfo] end\n")
                                    .repeated(100));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_takesNoMemoryForClaimedLengths()
{
    const quint32 lengths[] = {0x40000000u, 0x7fffffffu, 0x80000000u, 0xf0000000u, 0xfffffffeu};
    const long before = peakMemory();
    for (const quint32 length : lengths) {
        const TestDirectory directory;
        writeFile(directory.file(kIni), cookieIniOfValue(number32(1) + number32(length) + "a=1"));
        QVERIFY(load(directory).isEmpty());
    }
    QVERIFY2(peakMemory() - before < 64 * 1024, QByteArray::number(int(peakMemory())).constData());
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_takesLinearTime()
{
    const TestDirectory directory;
    writeFile(directory.file(kIni),
              cookieIniOfValue(number32(0xFFFFFFFFu) + QByteArray(4 * 100000, '\xff')));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(load(directory).isEmpty());
    QVERIFY2(timer.elapsed() < 20000, QByteArray::number(timer.elapsed()).constData());
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_buildsNoDescribedValues_data()
{
    QTest::addColumn<QByteArray>("file");
    // Lists in lists: more than a small stack holds.
    const QByteArray deep = QByteArray("\\0\\0\\0\\x9\\0\\0\\0\\x1").repeated(10000);
    const QByteArray head("[Cookie]\ncookies=");
    QTest::newRow("plain") << head + "@Variant(" + deep + ")\n";
    QTest::newRow("quoted") << head + "\"@Variant(" + deep + ")\"\n";
    QTest::newRow("hexadecimal") << head + "\"\\x40V\\x061riant(" + deep + ")\"\n";
    QTest::newRow("octal") << head + "\"\\100V\\141riant(" + deep + ")\"\n";
    QTest::newRow("torn by quotes") << head + "@Var\"iant(" + deep + ")\"\n";
    QTest::newRow("torn by a blank behind quotes") << head + "\"@Variant\" (" + deep + ")\n";
    QTest::newRow("torn by a tab behind quotes") << head + "\"@Var\"\tiant(" + deep + ")\n";
    QTest::newRow("torn by a line's end") << head + "\"@Var\\\r\niant(" + deep + ")\"\n";
    QTest::newRow("in a list") << head + "@ByteArray(), @Variant(" + deep + ")\n";
    QTest::newRow("in a list behind quotes") << head + "\"@ByteArray()\", @Variant(" + deep + ")\n";
    QTest::newRow("second value") << head + "@ByteArray()\nother=@Variant(" + deep + ")\n";
    QTest::newRow("list of 4 GiB")
        << head + "\"@Variant(\\0\\0\\0\\x9\\xf\\xff\\xff\\xff\\0\\0\\0\\0)\"\n";
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_buildsNoDescribedValues()
{
    QFETCH(QByteArray, file);
    const TestDirectory directory;
    writeFile(directory.file(kIni), file);
    QList<QNetworkCookie> loaded;
    runOnSmallStack([&] { loaded = load(directory); });
    QVERIFY(loaded.isEmpty());
    COMPARE_BYTES(readFile(directory.file(kIni)), file);
    runOnSmallStack([&] { save(QList<QNetworkCookie>() << QNetworkCookie("a", "1"), directory); });
    QCOMPARE(readIni(directory).rawForms, Bytes() << "a=1");
    QCOMPARE(loadedPairs(directory), Bytes() << "a=1");
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsHarmfulTextInsideACookie()
{
    const TestDirectory directory;
    const QList<QNetworkCookie> cookies =
        QList<QNetworkCookie>() << QNetworkCookie("a", "@Variant(") << QNetworkCookie("b", "2");
    save(cookies, directory);
    QCOMPARE(load(directory), cookies);
    save(cookies + cookies, directory);
    QCOMPARE(load(directory), cookies + cookies);
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsBesideOtherValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("text in the group") << utf8("Cookie/version") << QVariant(1);
    QTest::newRow("quoted text in the group") << utf8("Cookie/note") << QVariant(utf8("a;\"b\\"));
    const QVariant time(QDateTime(QDate(2026, 1, 2), QTime(3, 4)));
    QTest::newRow("time in none") << utf8("lastUse") << time;
    QTest::newRow("time in a group before") << utf8("Access/lastUse") << time;
    QTest::newRow("time in a group behind") << utf8("Use/last") << time;
    QTest::newRow("time in the group") << utf8("Cookie/lastUse") << time;
    QTest::newRow("rectangle in the group")
        << utf8("Cookie/window") << QVariant(QRectF(1, 2, 3, 4));
    QTest::newRow("described in a text")
        << utf8("Cookie/note") << QVariant(utf8("no @Variant( here"));
    QTest::newRow("time in a group of two words") << utf8("My Group/lastUse") << time;
    QTest::newRow("list in a group behind")
        << utf8("Use/all") << QVariant(QVariantList() << 1 << time << utf8("a,\"b"));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_readsBesideOtherValues()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    const TestDirectory directory;
    const QList<QNetworkCookie> cookies =
        QList<QNetworkCookie>() << QNetworkCookie("a", "@Variant(") << QNetworkCookie("b", "2");
    save(cookies, directory);
    {
        QSettings settings(directory.file(kIni), QSettings::IniFormat);
        settings.setValue(key, value);
    }
    QVERIFY(readFile(directory.file(kIni)).contains(key.section(QLatin1Char('/'), -1).toUtf8()));
    QCOMPARE(load(directory), cookies);
    save(QList<QNetworkCookie>() << QNetworkCookie("c", "3"), directory);
    QCOMPARE(loadedPairs(directory), Bytes() << "c=3");
    QVERIFY(!readFile(directory.file(kIni)).contains(key.section(QLatin1Char('/'), -1).toUtf8()));
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_doesNotWaitAtAPipe()
{
    TestDirectory directory;
    QCOMPARE(mkfifo(directory.localFile(kIni), 0600), 0);
    QVERIFY(load(directory).isEmpty());
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::loadCookieInfo] File cannot be read.\n");
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_boundsTheFile()
{
    const int mebibytes16 = 16 * 1024 * 1024;
    const TestDirectory directory;
    QByteArray file = cookieIniOf(rawRange(1, 1));
    file += ';' + QByteArray(mebibytes16 - int(file.size()) - 1, 'x');
    writeFile(directory.file(kIni), file);
    QCOMPARE(loadedPairs(directory), Bytes() << "c01=v");
    takeLog();
    writeFile(directory.file(kIni), file + 'x');
    QVERIFY(load(directory).isEmpty());
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::loadCookieInfo] File cannot be read.\n");
    save(QList<QNetworkCookie>(), directory);
    COMPARE_BYTES(readFile(directory.file(kIni)), file + 'x');
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_boundsTheCookies_data()
{
    QTest::addColumn<bool>("inOneForm");
    QTest::newRow("many raw forms") << false;
    QTest::newRow("one raw form of many lines") << true;
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_boundsTheCookies()
{
    QFETCH(bool, inOneForm);
    const TestDirectory directory;
    Bytes rawForms;
    for (int i = 0; i < 20000; ++i) {
        rawForms.append("a=1");
    }
    const QByteArray lines = QByteArray("a=1\n").repeated(19999) + "a=1";
    writeIni(directory, inOneForm ? Bytes() << lines : rawForms);
    QCOMPARE(int(load(directory).size()), 20000);
    takeLog();
    writeIni(directory, inOneForm ? Bytes() << lines + "\na=1" : rawForms << "a=1");
    QVERIFY(load(directory).isEmpty());
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::loadCookieInfo] File cannot be read.\n");
}

// What a save that died has left.
void tst_VLMC_CookieSetting_conversion::loadCookieInfo_putsTheCopyBack_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("isPutBack");
    const QByteArray whole = cookieIniOf(rawRange(2, 3));
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("no line end") << whole.left(whole.size() - 1) << false;
    QTest::newRow("no end of the value") << whole.left(whole.size() - 3) << true;
    QTest::newRow("cut behind a bracket")
        << QByteArray("[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x5x=)\n") << true;
    QTest::newRow("more than it counts")
        << cookieIniOfValue(cookieStream(1, rawRange(1, 2))) << true;
    QTest::newRow("less than it counts")
        << cookieIniOfValue(cookieStream(3, rawRange(1, 2))) << true;
    QTest::newRow("lost block") << whole + QByteArray(512, '\0') << true;
    QTest::newRow("whole") << whole << false;
    QTest::newRow("whole, with other keys") << whole + "[Use]\nlast=@DateTime(x)\n" << false;
    QTest::newRow("no cookies") << cookieIniOf(Bytes()) << false;
}

void tst_VLMC_CookieSetting_conversion::loadCookieInfo_putsTheCopyBack()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, isPutBack);
    const TestDirectory directory;
    const QByteArray copy = cookieIniOf(rawRange(1, 1));
    writeFile(directory.file("cookie.ini.rollback"), copy);
    writeFile(directory.file(kIni), file);
    const Bytes loaded = loadedPairs(directory);
    QCOMPARE(loaded == Bytes() << "c01=v", isPutBack);
    COMPARE_BYTES(readFile(directory.file(kIni)), isPutBack ? copy : file);
    QVERIFY(!exists(directory.file("cookie.ini.rollback")));
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_writesTheFile()
{
    const TestDirectory directory;
    QNetworkCookie cookie("sid", "abc");
    cookie.setDomain(utf8(".example.com"));
    cookie.setPath(utf8("/shop"));
    cookie.setSecure(true);
    cookie.setHttpOnly(true);
    cookie.setExpirationDate(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC));

    save(QList<QNetworkCookie>() << cookie << QNetworkCookie("b", "2"), directory);

    const CookieIni ini = readIni(directory);
    QVERIFY(ini.valid);
    QCOMPARE(ini.count, 2);
    QCOMPARE(ini.rawForms.at(0),
             QByteArray("sid=abc; secure; HttpOnly; expires=Fri, 02-Jan-2026 03:04:05 GMT; "
                        "domain=.example.com; path=/shop"));
    QCOMPARE(ini.rawForms.at(1), QByteArray("b=2"));
    QCOMPARE(load(directory), QList<QNetworkCookie>() << cookie << QNetworkCookie("b", "2"));
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_writesExactBytes()
{
    const TestDirectory directory;
    save(QList<QNetworkCookie>() << QNetworkCookie("x", "y") << QNetworkCookie("b", "2"),
         directory);
    COMPARE_BYTES(readFile(directory.file(kIni)),
                  "[Cookie]\n"
                  "cookies=\"@ByteArray(\\0\\0\\0\\x2\\0\\0\\0\\x3x=y\\0\\0\\0\\x3\\x62=2)\"\n");
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_logsStartAndEnd()
{
    const TestDirectory directory;
    WatchedStore<VLMC_CookieSetting> cookies;
    QString path = directory.path();
    cookies.saveCookieInfo(QList<QNetworkCookie>(), &path, 1);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::saveCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::saveCookieInfo] end\n");
    QCOMPARE(cookies.max(), 0);
    QVERIFY(!cookies.getXMLRootNode());
    QCOMPARE(cookies.takeCalls(), QByteArray());
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_removesEverythingElse()
{
    const TestDirectory directory;
    writeFile(directory.file(kIni), "; a comment\ntop=1\n[Cookie]\ncookies=x\nother=2\n"
                                    "[Cookies]\ncookies=3\n");
    save(QList<QNetworkCookie>(), directory);
    COMPARE_BYTES(readFile(directory.file(kIni)), "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\0)\n");
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_hasNoLimit()
{
    const TestDirectory directory;
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < 2000; ++i) {
        cookies.append(QNetworkCookie('n' + QByteArray::number(i), "v"));
    }
    QString path = directory.path();
    VLMC_CookieSetting::getInstance()->saveCookieInfo(cookies, &path, 1);
    QCOMPARE(readIni(directory).count, 2000);
    QCOMPARE(load(directory), cookies);
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_writesEmptyFormForCookieWithoutName()
{
    const TestDirectory directory;
    save(QList<QNetworkCookie>() << QNetworkCookie("", "v") << QNetworkCookie("b", "2"), directory);
    const CookieIni ini = readIni(directory);
    QVERIFY(ini.valid);
    QCOMPARE(ini.rawForms, Bytes() << ""
                                   << "b=2");
    QCOMPARE(loadedPairs(directory), Bytes() << "b=2");
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_keepsArbitraryBytes()
{
    QByteArray value;
    for (int byte = 0x21; byte < 0x100; ++byte) {
        if (byte != '"' && byte != ';' && byte != '\\' && byte != 0x7f && byte != ',') {
            value.append(char(byte));
        }
    }
    const TestDirectory directory;
    save(QList<QNetworkCookie>() << QNetworkCookie("n", value), directory);
    QCOMPARE(readIni(directory).rawForms, Bytes() << "n=" + value);
    QCOMPARE(load(directory).first().value(), value);
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_doesNotWaitAtAPipe()
{
    TestDirectory directory;
    QCOMPARE(mkfifo(directory.localFile(kIni), 0600), 0);
    save(QList<QNetworkCookie>(), directory);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::saveCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::saveCookieInfo] File cannot be written.\n");
    QVERIFY(exists(directory.file(kIni)));
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_writesNothingInPlaceOfAFolder()
{
    const TestDirectory directory;
    QVERIFY(QDir().mkpath(directory.file("cookie.ini/inner")));
    save(QList<QNetworkCookie>() << QNetworkCookie("a", "1"), directory);
    QVERIFY(load(directory).isEmpty());
    QVERIFY(exists(directory.file("cookie.ini/inner")));
    QCOMPARE(QDir(directory.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
}

void tst_VLMC_CookieSetting_conversion::saveCookieInfo_keepsTheFileWithoutACopy()
{
    const TestDirectory directory;
    writeIni(directory, rawRange(1, 1));
    QVERIFY(QDir().mkpath(directory.file("cookie.ini.rollback")));
    save(QList<QNetworkCookie>(), directory);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::saveCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::saveCookieInfo] File cannot be written.\n");
    COMPARE_BYTES(readFile(directory.file(kIni)), cookieIniOf(rawRange(1, 1)));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_refusesNull_data()
{
    QTest::addColumn<bool>("withIni");
    QTest::addColumn<bool>("withXml");
    QTest::newRow("no directory") << false << true;
    QTest::newRow("no path") << true << false;
    QTest::newRow("neither") << false << false;
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_refusesNull()
{
    QFETCH(bool, withIni);
    QFETCH(bool, withXml);
    TestDirectory directory;
    writeIni(directory, rawRange(1, 2));
    WatchedStore<VLMC_CookieSetting> cookies;

    cookies.convertCookieIniToXML(withIni ? directory.localFile() : nullptr,
                                  withXml ? directory.localFile(kXml) : nullptr);

    COMPARE_BYTES(loggedText(),
                  "1 [VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.\n");
    QVERIFY(!exists(directory.file(kXml)));
    QCOMPARE(cookies.takeCalls(), QByteArray());
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_writesTheDocument()
{
    TestDirectory directory;
    writeIni(directory, Bytes() << "a=1; secure; HttpOnly; domain=.example.com; path=/shop; "
                                   "expires=Fri, 02-Jan-2026 03:04:05 GMT"
                                << "b=x&y]");

    iniToXml(directory);

    COMPARE_BYTES(readFile(directory.file(kXml)), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                  "<cookie docInfo=\"1.0\">\n"
                                                  "    <webSiteInfo id=\"000\">\n"
                                                  "        <website>.example.com</website>\n"
                                                  "        <name>a</name>\n"
                                                  "        <path>/shop</path>\n"
                                                  "        <secure>true</secure>\n"
                                                  "        <expires>2026/01/02 03:04:05</expires>\n"
                                                  "        <contents><![CDATA[1]]></contents>\n"
                                                  "    </webSiteInfo>\n"
                                                  "    <webSiteInfo id=\"001\">\n"
                                                  "        <website/>\n"
                                                  "        <name>b</name>\n"
                                                  "        <path/>\n"
                                                  "        <secure>false</secure>\n"
                                                  "        <expires/>\n"
                                                  "        <contents><![CDATA[x&y]]]></contents>\n"
                                                  "    </webSiteInfo>\n"
                                                  "</cookie>\n");
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_logsEachStep()
{
    TestDirectory directory;
    writeIni(directory, Bytes() << rawNumbered(1) << rawNumbered(2) << rawNumbered(3));
    writeFile(directory.file(kXml), documentOf(Bytes() << "old"
                                                       << "c02"
                                                       << "older"));
    VLMC_CookieSetting cookies;

    cookies.convertCookieIniToXML(directory.localFile(), directory.localFile(kXml));

    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::loadCookieInfo] end\n"
                                "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:2\n"
                                "3 [VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:0\n"
                                "3 [VLMC_CookieSetting::addCookieInfo]\n"
                                "3 [VLMC_CookieSetting::addCookieInfo]\n"
                                "3 [VLMC_XMLSetting::save] start\n"
                                "3 [VLMC_XMLSetting::saveBookmark] end\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] "
                                    + hexAddress(cookies.getXMLRootNode()) + '\n');
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c01"
                                                                     << "c03"
                                                                     << "c02"));
}

// The one instance reads the engine's file; the rest happens to the object of the call.
void tst_VLMC_CookieSetting_conversion::convertIniToXml_callsVirtualOperationsInOrder()
{
    TestDirectory directory;
    writeIni(directory, Bytes() << rawNumbered(1));
    writeFile(directory.file(kXml), documentOf(Bytes() << "old"));
    const QByteArray path = directory.file(kXml).toUtf8();
    WatchedStore<VLMC_CookieSetting> cookies;

    cookies.convertCookieIniToXML(directory.localFile(), directory.localFile(kXml));

    COMPARE_BYTES(cookies.takeCalls(), "load " + path
                                           + "\n"
                                             "deleteXMLNodeByID 0 id\n"
                                             "setIDforChildren id\n"
                                             "addXMLChild cookie webSiteInfo '' 0 0 1\n"
                                             "addXMLChild webSiteInfo website 'x.com' 0 0 0\n"
                                             "addXMLChild webSiteInfo name 'c01' 0 0 0\n"
                                             "addXMLChild webSiteInfo path '/' 0 0 0\n"
                                             "addXMLChild webSiteInfo secure 'false' 0 0 0\n"
                                             "addXMLChild webSiteInfo expires '' 0 0 0\n"
                                             "addXMLChild webSiteInfo contents 'v' 1 0 0\n"
                                             "setIDforChildren id\n"
                                             "save "
                                           + path
                                           + "\n"
                                             "deleteAllSetting\n");
    QCOMPARE(cookies.max(), 0);
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_addsAllToMissingFile()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 30));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(namesRange(1, 30)));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_leavesTheSameCookiesAlone()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 20));
    iniToXml(directory);
    const QByteArray first = readFile(directory.file(kXml));
    takeLog();

    iniToXml(directory);

    COMPARE_BYTES(readFile(directory.file(kXml)), first);
    const QByteArray log = loggedText();
    QVERIFY(!log.contains("deleteCookieInfo"));
    QVERIFY(!log.contains("addCookieInfo"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_growsBeyondTwenty()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 30));
    iniToXml(directory);

    iniToXml(directory);

    COMPARE_BYTES(readFile(directory.file(kXml)),
                  documentOf(namesRange(21, 30) + namesRange(1, 30)));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_replacesChangedValue()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 3)));
    writeIni(directory,
             Bytes() << rawNumbered(1) << rawNumbered(2).replace("=v", "=w") << rawNumbered(3));

    iniToXml(directory);

    COMPARE_BYTES(readFile(directory.file(kXml)),
                  kXmlHead + QByteArray("<cookie docInfo=\"1.0\">\n") + entryOf(0, "c02", "w")
                      + entryOf(1, "c01") + entryOf(2, "c03") + "</cookie>\n");
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_keepsEntryOfChangedExpiry()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 1)));
    writeIni(directory, Bytes() << rawNumbered(1) + "; expires=Fri, 02-Jan-2026 03:04:05 GMT");
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(namesRange(1, 1)));
}

// New ones in the order of the engine's file, then the kept ones in their own.
void tst_VLMC_CookieSetting_conversion::convertIniToXml_keepsOrder()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(Bytes() << "c05"
                                                       << "gone"
                                                       << "c03"
                                                       << "c01"
                                                       << "gone2"));
    writeIni(directory, rawRange(1, 6));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c02"
                                                                     << "c04"
                                                                     << "c06"
                                                                     << "c05"
                                                                     << "c03"
                                                                     << "c01"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_matchesEachEntryOnce()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(Bytes() << "c01"
                                                       << "c02"
                                                       << "c01"));
    writeIni(directory, Bytes() << rawNumbered(1));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c01"));

    // An equal cookie more than there are entries is new.
    writeIni(directory, Bytes() << rawNumbered(1) << rawNumbered(1) << rawNumbered(1));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c01"
                                                                     << "c01"
                                                                     << "c01"));
    takeLog();
    iniToXml(directory);
    QVERIFY(!loggedText().contains("addCookieInfo"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_deletesFirstTwentyOnly_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("empty") << QByteArray("\n");
    QTest::newRow("without cookies") << cookieIniOf(Bytes());
    QTest::newRow("empty directory") << QByteArray("-");
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_deletesFirstTwentyOnly()
{
    QFETCH(QByteArray, ini);
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 25)));
    QByteArray iniDirectory = directory.localFile();
    if (ini == "-") {
        iniDirectory.clear();
    } else if (!ini.isEmpty()) {
        writeFile(directory.file(kIni), ini);
    }

    VLMC_CookieSetting::getInstance()->convertCookieIniToXML(iniDirectory.data(),
                                                             directory.localFile(kXml));

    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(namesRange(21, 25)));
    const QByteArray log = loggedText();
    QCOMPARE(log.count("2 [VLMC_CookieSetting::loadCookieInfo] Path is NULL or empty.\n"),
             ini == "-" ? 1 : 0);
    QByteArray deletions;
    for (int id = 19; id >= 0; --id) {
        deletions +=
            "3 [VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:" + QByteArray::number(id) + '\n';
    }
    QVERIFY(log.contains(deletions));
    QCOMPARE(log.count("deleteCookieInfo"), 20);
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_matchesTwentiethEntryOnly()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 21)));
    writeIni(directory, Bytes() << rawNumbered(20) << rawNumbered(21));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c21"
                                                                     << "c20"
                                                                     << "c21"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_replacesNonAsciiCookies()
{
    TestDirectory directory;
    writeIni(directory, Bytes() << rawNumbered(1) << "c\xc3\xbc=v; domain=x.com; path=/");
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c01"
                                                                     << "c\xc3\xbc"));
    takeLog();

    iniToXml(directory);

    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c\xc3\xbc"
                                                                     << "c01"));
    const QByteArray log = loggedText();
    QVERIFY(log.contains("[VLMC_CookieSetting::deleteCookieInfo] si_XMLNum:1\n"));
    QCOMPARE(log.count("addCookieInfo"), 1);
}

// Entries are counted in the order of the ids in the file, and deleted by that count: where ids
// have a gap, a deletion can miss.
void tst_VLMC_CookieSetting_conversion::convertIniToXml_goesByLoadedIds()
{
    TestDirectory directory;
    QByteArray document = documentOf(Bytes() << "c01"
                                             << "c02"
                                             << "c03");
    document.replace("id=\"002\"", "id=\"x\"").replace("id=\"001\"", "id=\"002\"");
    writeFile(directory.file(kXml), document);
    // Of the two entries with an id the second has the id 2, not 1: the deletion of 1 only
    // renumbers, and that of 0 finds the first.
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes() << "c02"
                                                                     << "c03"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_renamesForeignRoot()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), "<biscuits a=\"b\" docInfo=\"9\"/>");
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(Bytes()));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_readsUnreadableFileAsEmpty()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), "no document");
    writeIni(directory, rawRange(1, 1));
    iniToXml(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), documentOf(namesRange(1, 1)));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_keepsDocumentForUnreadableCookies()
{
    TestDirectory directory;
    const QByteArray document = documentOf(namesRange(1, 3));
    writeFile(directory.file(kXml), document);
    QVERIFY(QDir().mkpath(directory.file(kIni)));
    VLMC_CookieSetting cookies;
    cookies.convertCookieIniToXML(directory.localFile(), directory.localFile(kXml));
    COMPARE_BYTES(readFile(directory.file(kXml)), document);
    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::loadCookieInfo] File cannot be read.\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n");
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_keepsDocumentForEmptyPath()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 1));
    QByteArray empty("");
    VLMC_CookieSetting cookies;
    VLMC_XMLNode *const root = cookies.createXMLRootNode();

    cookies.convertCookieIniToXML(directory.localFile(), empty.data());

    COMPARE_BYTES(loggedText(), "3 [VLMC_CookieSetting::loadCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::loadCookieInfo] end\n"
                                "2 [VLMC_XMLSetting::load] Path is NULL or empty.\n"
                                "3 [VLMC_CookieSetting::addCookieInfo]\n"
                                "2 [VLMC_XMLSetting::save] Path is NULL or empty.\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] "
                                    + hexAddress(root) + '\n');
    QCOMPARE(cookies.getXMLRootNode(), root);
    QCOMPARE(root->getName(), utf8("cookie"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_writesNothingWithoutDocument()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 1));
    QByteArray empty("");
    VLMC_CookieSetting cookies;
    cookies.convertCookieIniToXML(directory.localFile(), empty.data());
    QVERIFY(!cookies.getXMLRootNode());
    QVERIFY(loggedText().endsWith("3 [VLMC_XMLSetting::deleteRootChildren] 0x0\n"));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_numbers999()
{
    TestDirectory directory;
    Bytes rawForms;
    for (int i = 0; i < 1001; ++i) {
        rawForms.append("c=v; domain=x.com; path=/");
    }
    writeIni(directory, rawForms);
    iniToXml(directory);
    const QByteArray document = readFile(directory.file(kXml));
    QCOMPARE(document.count("<webSiteInfo id="), 999);
    QCOMPARE(document.count("<webSiteInfo>"), 2);
    QVERIFY(document.contains("id=\"998\""));
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_leavesNoEntries()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 3));
    VLMC_CookieSetting cookies;
    cookies.convertCookieIniToXML(directory.localFile(), directory.localFile(kXml));
    QCOMPARE(cookies.getXMLNodeCnt(), 0);
    QCOMPARE(cookies.getXMLRootNode()->getName(), utf8("cookie"));
    QCOMPARE(cookies.getXMLRootNode()->getAttribute().value(utf8("docInfo")).toString(),
             utf8("1.0"));
    QVERIFY(cookies.getAllCookieInfo().isEmpty());
}

void tst_VLMC_CookieSetting_conversion::convertIniToXml_decodesPathsAsLatin1()
{
    TestDirectory directory;
    QByteArray path = directory.localFile("\xfc.xml");
    QByteArray latin1 = directory.path().toLatin1() + "\xfc.xml";
    WatchedStore<VLMC_CookieSetting> cookies;
    cookies.convertCookieIniToXML(directory.localFile(), latin1.data());
    QVERIFY(cookies.takeCalls().startsWith("load " + directory.path().toUtf8() + "\xc3\xbc.xml\n"));
    cookies.convertCookieXMLToIni(latin1.data(), directory.localFile());
    QVERIFY(cookies.takeCalls().startsWith("load " + directory.path().toUtf8() + "\xc3\xbc.xml\n"));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_refusesNull_data()
{
    convertIniToXml_refusesNull_data();
}

// The message names the other conversion.
void tst_VLMC_CookieSetting_conversion::convertXmlToIni_refusesNull()
{
    QFETCH(bool, withIni);
    QFETCH(bool, withXml);
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 2)));
    WatchedStore<VLMC_CookieSetting> cookies;

    cookies.convertCookieXMLToIni(withXml ? directory.localFile(kXml) : nullptr,
                                  withIni ? directory.localFile() : nullptr);

    COMPARE_BYTES(loggedText(),
                  "1 [VLMC_CookieSetting::convertCookieIniToXML] Invalid Parameter.\n");
    QVERIFY(!exists(directory.file(kIni)));
    QCOMPARE(cookies.takeCalls(), QByteArray());
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_writesTheCookies()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), "<cookie><webSiteInfo id=\"000\">"
                                    "<website>.example.com</website><name>sid</name>"
                                    "<path>/shop</path><secure>true</secure>"
                                    "<expires>2026/01/02 03:04:05</expires>"
                                    "<contents><![CDATA[a&b<c>]]></contents></webSiteInfo>"
                                    "<webSiteInfo id=\"001\"><name>b</name><expires/>"
                                    "</webSiteInfo></cookie>");

    xmlToIni(directory);

    const CookieIni ini = readIni(directory);
    QVERIFY(ini.valid);
    QCOMPARE(ini.rawForms, Bytes() << "sid=a&b<c>; secure; expires=Fri, 02-Jan-2026 03:04:05 GMT; "
                                      "domain=.example.com; path=/shop"
                                   << "b=");
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_logsEachStep()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 2)));
    VLMC_CookieSetting cookies;

    cookies.convertCookieXMLToIni(directory.localFile(kXml), directory.localFile());

    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_CookieSetting::saveCookieInfo] start\n"
                                "3 [VLMC_CookieSetting::saveCookieInfo] end\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] "
                                    + hexAddress(cookies.getXMLRootNode()) + '\n');
    QCOMPARE(cookies.getXMLNodeCnt(), 0);
    QCOMPARE(cookies.getXMLRootNode()->getName(), utf8("cookie"));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_callsVirtualOperationsInOrder()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 2)));
    WatchedStore<VLMC_CookieSetting> cookies;
    cookies.convertCookieXMLToIni(directory.localFile(kXml), directory.localFile());
    COMPARE_BYTES(cookies.takeCalls(),
                  "load " + directory.file(kXml).toUtf8() + "\ndeleteAllSetting\n");
    QCOMPARE(cookies.max(), 0);
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_writesNoneForMissingFile()
{
    TestDirectory directory;
    writeIni(directory, rawRange(1, 3));
    xmlToIni(directory);
    COMPARE_BYTES(readFile(directory.file(kIni)), "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\0)\n");
    QVERIFY(!exists(directory.file(kXml)));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_keepsCookiesForUnreadableDocument_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("folder") << true;
    QTest::newRow("no document") << false;
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_keepsCookiesForUnreadableDocument()
{
    QFETCH(bool, isFolder);
    TestDirectory directory;
    writeIni(directory, rawRange(1, 3));
    if (isFolder) {
        QVERIFY(QDir().mkpath(directory.file(kXml)));
    } else {
        writeFile(directory.file(kXml), "no document");
    }
    xmlToIni(directory);
    COMPARE_BYTES(readFile(directory.file(kIni)), cookieIniOf(rawRange(1, 3)));
    QVERIFY(loggedText().contains(
        "2 [VLMC_CookieSetting::convertCookieXMLToIni] File cannot be read.\n"));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_writesFirstTwenty_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("written");
    QTest::newRow("19") << 19 << 19;
    QTest::newRow("20") << 20 << 20;
    QTest::newRow("21") << 21 << 20;
    QTest::newRow("25") << 25 << 20;
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_writesFirstTwenty()
{
    QFETCH(int, entries);
    QFETCH(int, written);
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, entries)));
    xmlToIni(directory);
    const CookieIni ini = readIni(directory);
    QVERIFY(ini.valid);
    QCOMPARE(ini.count, written);
    QCOMPARE(ini.rawForms, rawRange(1, written));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_readsSecure_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("secure");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("capitals") << QByteArray("TRUE") << false;
    QTest::newRow("blank behind") << QByteArray("true ") << false;
    QTest::newRow("1") << QByteArray("1") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_readsSecure()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, secure);
    TestDirectory directory;
    writeFile(directory.file(kXml),
              documentOf(namesRange(1, 1)).replace(">false<", ">" + text + "<"));
    xmlToIni(directory);
    QCOMPARE(readIni(directory).rawForms, Bytes() << (secure ? "c01=v; secure; domain=x.com; path=/"
                                                             : "c01=v; domain=x.com; path=/"));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_readsExpiry_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expires");
    const QByteArray utc("UTC0");
    QTest::newRow("UTC") << utc << QByteArray("2026/01/02 03:04:05")
                         << QByteArray("Fri, 02-Jan-2026 03:04:05 GMT");
    QTest::newRow("east") << QByteArray("JST-9") << QByteArray("2026/01/02 03:04:05")
                          << QByteArray("Thu, 01-Jan-2026 18:04:05 GMT");
    QTest::newRow("west") << QByteArray("EST5") << QByteArray("2026/01/02 03:04:05")
                          << QByteArray("Fri, 02-Jan-2026 08:04:05 GMT");
    QTest::newRow("skipped by daylight saving")
        << QByteArray("CET-1CEST,M3.5.0,M10.5.0/3") << QByteArray("2026/03/29 02:30:00")
        << QByteArray("Sun, 29-Mar-2026 01:30:00 GMT");
    QTest::newRow("empty") << utc << QByteArray() << QByteArray();
    QTest::newRow("no time") << utc << QByteArray("soon") << QByteArray();
    QTest::newRow("date only") << utc << QByteArray("2026/01/02") << QByteArray();
    QTest::newRow("to the minute") << utc << QByteArray("2026/01/02 03:04") << QByteArray();
    QTest::newRow("hour of one digit") << utc << QByteArray("2026/01/02 3:04:05") << QByteArray();
    QTest::newRow("hyphens") << utc << QByteArray("2026-01-02 03:04:05") << QByteArray();
    QTest::newRow("no such day") << utc << QByteArray("2026/02/30 03:04:05") << QByteArray();
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_readsExpiry()
{
    QFETCH(QByteArray, zone);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expires);
    setZone(zone.constData());
    TestDirectory directory;
    writeFile(
        directory.file(kXml),
        documentOf(namesRange(1, 1)).replace("<expires/>", "<expires>" + text + "</expires>"));
    xmlToIni(directory);
    const QByteArray part = expires.isEmpty() ? QByteArray() : "expires=" + expires + "; ";
    QCOMPARE(readIni(directory).rawForms, Bytes() << "c01=v; " + part + "domain=x.com; path=/");
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_encodesUtf8()
{
    TestDirectory directory;
    writeFile(directory.file(kXml),
              documentOf(Bytes() << "\xc3\xbc\xe3\x81\x82").replace("[v]", "[\xf0\x9f\x8d\xaa]"));
    xmlToIni(directory);
    QCOMPARE(readIni(directory).rawForms,
             Bytes() << "\xc3\xbc\xe3\x81\x82=\xf0\x9f\x8d\xaa; domain=x.com; path=/");
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_refusesEmptyDirectory()
{
    TestDirectory directory;
    writeFile(directory.file(kXml), documentOf(namesRange(1, 2)));
    QByteArray empty("");
    VLMC_CookieSetting cookies;

    cookies.convertCookieXMLToIni(directory.localFile(kXml), empty.data());

    COMPARE_BYTES(loggedText(), "3 [VLMC_XMLSetting::loadBookmark] start\n"
                                "3 [VLMC_XMLSetting::loadBookmark] end\n"
                                "3 [VLMC_CookieSetting::saveCookieInfo] start\n"
                                "2 [VLMC_CookieSetting::saveCookieInfo] Path is NULL or empty.\n"
                                "3 [VLMC_XMLSetting::deleteRootChildren] "
                                    + hexAddress(cookies.getXMLRootNode()) + '\n');
    QCOMPARE(cookies.getXMLNodeCnt(), 0);
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_goesById()
{
    TestDirectory directory;
    QByteArray document = documentOf(namesRange(1, 3));
    document.replace("id=\"000\"", "id=\"2\"").replace("id=\"001\"", "id=\"x\"");
    document.replace("id=\"002\"", "id=\"0\"");
    writeFile(directory.file(kXml), document);
    xmlToIni(directory);
    QCOMPARE(readIni(directory).rawForms, Bytes() << rawNumbered(3) << rawNumbered(1));
}

void tst_VLMC_CookieSetting_conversion::convertXmlToIni_leavesTheXmlFileAlone()
{
    TestDirectory directory;
    const QByteArray document = "<other>" + documentOf(namesRange(1, 3)).mid(39) + "</other>";
    writeFile(directory.file(kXml), document);
    xmlToIni(directory);
    COMPARE_BYTES(readFile(directory.file(kXml)), document);
}

void tst_VLMC_CookieSetting_conversion::roundTrip_keepsServerCookies_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("session") << QByteArray("sid=31d4d96e407aad42");
    QTest::newRow("expires with hyphens")
        << QByteArray("id=a3fWa; Expires=Wed, 21-Oct-2037 07:28:00 GMT; Domain=x.com; Path=/");
    QTest::newRow("expires with blanks")
        << QByteArray("id=a3fWa; Expires=Wed, 21 Oct 2037 07:28:00 GMT; Path=/");
    QTest::newRow("expired") << QByteArray("id=; Expires=Thu, 01-Jan-1970 00:00:01 GMT; Path=/");
    QTest::newRow("secure") << QByteArray("id=1; Secure; Path=/docs");
    QTest::newRow("leading dot") << QByteArray("id=1; domain=.shop.example.com; path=/");
    QTest::newRow("domain in capitals") << QByteArray("id=1; domain=.Shop.EXAMPLE.com; path=/");
    QTest::newRow("domain in Punycode") << QByteArray("id=1; domain=.xn--bcher-kva.com; path=/");
    QTest::newRow("domain in UTF-8") << QByteArray("id=1; domain=.b\xc3\xbc"
                                                   "cher.com; path=/");
    QTest::newRow("quoted value") << QByteArray("id=\"quoted\"; path=/");
    QTest::newRow("value with equals signs") << QByteArray("id=a=b==; path=/");
    QTest::newRow("value with markup") << QByteArray("id=<a>&amp;%20+/; path=/");
    QTest::newRow("value in UTF-8") << QByteArray("id=\xe3\x81\x82; path=/");
    QTest::newRow("name in UTF-8") << QByteArray("\xe3\x81\x82=1; path=/");
    QTest::newRow("4096 bytes") << "id=" + QByteArray(4090, 'v') + "; path=/";
}

void tst_VLMC_CookieSetting_conversion::roundTrip_keepsServerCookies()
{
    QFETCH(QByteArray, header);
    const QList<QNetworkCookie> sent = QNetworkCookie::parseCookies(header);
    QCOMPARE(int(sent.size()), 1);
    TestDirectory directory;
    save(sent, directory);
    const CookieIni before = readIni(directory);
    QVERIFY(before.valid);

    iniToXml(directory);
    save(QList<QNetworkCookie>(), directory);
    xmlToIni(directory);

    QCOMPARE(readIni(directory).rawForms, before.rawForms);
    QCOMPARE(load(directory), sent);
}

// What Qt 4.8 makes of them, and what later versions do.
void tst_VLMC_CookieSetting_conversion::roundTrip_leavesUnusualCookiesToQt_data()
{
    QTest::addColumn<QByteArray>("rawForm");
    QTest::addColumn<Bytes>("withQt4");
    QTest::addColumn<Bytes>("later");
    const QByteArray quotes("a={\"k\":1}");
    QTest::newRow("unreadable expiry")
        << QByteArray("a=1; expires=never") << Bytes() << (Bytes() << "a=1");
    QTest::newRow("unreadable age")
        << QByteArray("a=1; max-age=never") << Bytes() << (Bytes() << "a=1");
    QTest::newRow("quotes") << quotes << (Bytes() << "a=\"{\\\"k\\\":1}\"") << (Bytes() << quotes);
    QTest::newRow("relative path")
        << QByteArray("a=1; path=x") << (Bytes() << "a=1; path=x") << (Bytes() << "a=1");
}

void tst_VLMC_CookieSetting_conversion::roundTrip_leavesUnusualCookiesToQt()
{
    QFETCH(QByteArray, rawForm);
    QFETCH(Bytes, withQt4);
    QFETCH(Bytes, later);
    const TestDirectory directory;
    writeIni(directory, Bytes() << rawForm);
    save(load(directory), directory);
    QCOMPARE(readIni(directory).rawForms, QT_VERSION < 0x050000 ? withQt4 : later);
}

void tst_VLMC_CookieSetting_conversion::roundTrip_losesHttpOnly()
{
    TestDirectory directory;
    writeIni(directory, Bytes() << "a=1; secure; HttpOnly; path=/");
    iniToXml(directory);
    xmlToIni(directory);
    QCOMPARE(readIni(directory).rawForms, Bytes() << "a=1; secure; path=/");
}

// Written as UTC, read back as local time.
void tst_VLMC_CookieSetting_conversion::roundTrip_shiftsExpiryByTheZone()
{
    setZone("JST-9");
    TestDirectory directory;
    writeIni(directory, Bytes() << "a=1; expires=Fri, 02-Jan-2026 03:04:05 GMT");
    iniToXml(directory);
    QVERIFY(readFile(directory.file(kXml)).contains("<expires>2026/01/02 03:04:05</expires>"));
    xmlToIni(directory);
    QCOMPARE(readIni(directory).rawForms, Bytes() << "a=1; expires=Thu, 01-Jan-2026 18:04:05 GMT");
}

void tst_VLMC_CookieSetting_conversion::roundTrip_countsMaxAgeFromNow()
{
    TestDirectory directory;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    writeIni(directory, Bytes() << "a=1; Max-Age=3600; path=/");
    iniToXml(directory);
    xmlToIni(directory);
    const QDateTime expires = load(directory).first().expirationDate();
    QVERIFY(expires >= before.addSecs(3600 - 1));
    QVERIFY(expires <= QDateTime::currentDateTimeUtc().addSecs(3600));
}

void tst_VLMC_CookieSetting_conversion::logs_holdNoSecrets()
{
    TestDirectory directory;
    QNetworkCookie cookie("canaryName", "canaryValue");
    cookie.setDomain(utf8("canary.example"));
    save(QList<QNetworkCookie>() << cookie, directory);
    iniToXml(directory);
    iniToXml(directory);
    save(QList<QNetworkCookie>(), directory);
    iniToXml(directory);
    save(QList<QNetworkCookie>() << cookie, directory);
    iniToXml(directory);
    xmlToIni(directory);
    load(directory);
    QVERIFY(readFile(directory.file(kXml)).contains("canaryValue"));
    QVERIFY(!loggedText().contains("canary"));
}

QTEST_GUILESS_MAIN(tst_VLMC_CookieSetting_conversion)
#include "tst_VLMC_CookieSetting_conversion.moc"
