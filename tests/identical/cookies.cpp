#include "tests/identical/Script.h"

#include "cookies/VLMC_CookieSetting.h"

#include <QtCore/QFile>

namespace
{
const char kFile[] = "cookies.xml";
const char kIniFile[] = "cookie.ini";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<cookie docInfo=\"1.0\">\n"
                         "    <webSiteInfo id=\"000\">\n"
                         "        <website>www.example.com</website>\n"
                         "        <name>session</name>\n"
                         "        <path>/</path>\n"
                         "        <secure>true</secure>\n"
                         "        <expires/>\n"
                         "        <contents><![CDATA[abc123]]></contents>\n"
                         "    </webSiteInfo>\n"
                         "    <webSiteInfo id=\"001\">\n"
                         "        <website>.example.com</website>\n"
                         "        <name>language</name>\n"
                         "        <path>/shop</path>\n"
                         "        <secure>false</secure>\n"
                         "        <expires>2036/10/21 07:28:00</expires>\n"
                         "        <contents><![CDATA[\xE3\x81\x82]]></contents>\n"
                         "    </webSiteInfo>\n"
                         "</cookie>\n";
// The first entry of the document, and a cookie that it does not hold.
const char kIni[] =
    "[Cookie]\n"
    "cookies=\"@ByteArray(\\0\\0\\0\\x2\\0\\0\\0\\x36session=abc123; secure; "
    "domain=www.example.com; path=/\\0\\0\\0Slanguage=ja; expires=Wed, 21-Oct-2037 07:28:00 GMT; "
    "domain=.example.com; path=/shop)\"\n";

// Values of the key, whole or not.
const char *const kIniFiles[] = {
    "",
    "[Cookie]\n",
    "[Cookie]\ncookies=\n",
    "[Cookie]\ncookies=@ByteArray()\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\0)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x5\\0\\0\\0\\x3\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\xff\\xff\\xff\\xff\\0\\0\\0\\x3\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x9\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\xff\\xff\\xff\\xff\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\xff\\xff\\xff\\xfe\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x2\\0\\0\\0\\x1\\x61\\0\\0\\0\\x3\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x7\\x61=b\\nc=d)\n",
    "[Cookie]\ncookies=text\n",
    "[Cookie]\ncookies=a, b\n",
    "[Cookie]\nother=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n",
    "[Other]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n",
    "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b\n",
    "; comment\n[Other]\na=1\n\n[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n",
};

const char *const kRawForms[] = {
    "a=b",
    "a=b; path=/",
    "a=b; HttpOnly; secure; path=/",
    "a=\xFF; path=/",
    "a=\xE3\x81\x82; domain=WWW.Example.COM",
    "a=b; expires=Fri, 02-Jan-99 03:04:05 GMT",
    "a=b; expires=Fri, 02-Jan-2099 03:04:05 GMT",
    "a=b; expires=Sun, 29 Mar 2026 01:30:00 GMT",
    "a=b; expires=Sun, 25 Oct 2026 00:30:00 GMT",
    "a=b\nc=d; path=/\n",
    " a = b ; path = / ; unknown = c",
    "",
    "=b",
    "a",
};
const char *const kElements[] = {
    "<contents>v&#10;w</contents>",
    "<contents>\"quoted\"</contents>",
    "<contents>a,b</contents>",
    "<path>x</path>",
    "<path/>",
    "<website>.</website>",
    "<website>WWW.Example.COM</website>",
    "<secure>TRUE</secure>",
    "<secure>true</secure>",
    "<expires>2026/03/29 02:30:00</expires>",
    "<expires>2026/10/25 02:30:00</expires>",
    "<expires>2037/12/31 23:59:59</expires>",
    "<expires>9999/12/31 23:59:59</expires>",
    "<expires>2026/03/29 2:30:00</expires>",
    "<expires>2026/03/29 02:30</expires>",
};

// What Qt's versions parse and write alike.
const char *const kNames[] = {"a", "session", "_b-c.d", "\xE3\x81\x82"};
const char *const kValues[] = {"",       "1",       "abc123", "a=b", "\xE3\x81\x82\xF0\x9F\x98\x80",
                               "%3B%20", "a/b?c&d", "]]>",    "<&>"};
const char *const kDomains[] = {"", "www.example.com", ".example.com", "localhost", "127.0.0.1"};
const char *const kPaths[] = {"/", "/shop", "/a/b/"};

const int kMax = 20;

VLMC_CookieSetting &store() { return *VLMC_CookieSetting::getInstance(); }

void showInfos()
{
    const QList<VLMS_CookieInfo> infos = store().getAllCookieInfo();
    for (const VLMS_CookieInfo &info : infos) {
        line("entry", QStringList() << info.website << info.name << info.path << info.secure
                                    << info.expires << info.contents);
    }
}

void showCookies(const QList<QNetworkCookie> &cookies)
{
    for (const QNetworkCookie &cookie : cookies) {
        line("cookie", cookie.toRawForm());
    }
}

void toXml(const QString &folder)
{
    QByteArray directory = folder.toLatin1();
    QByteArray file = directory + kFile;
    store().convertCookieIniToXML(directory.data(), file.data());
}

void toIni(const QString &folder, const QString &target)
{
    QByteArray directory = target.toLatin1();
    QByteArray file = folder.toLatin1() + kFile;
    store().convertCookieXMLToIni(file.data(), directory.data());
}

// The document as it is read, and brought in line with two cookies.
void convertDocument(QString &folder)
{
    QString file = folder + utf8(kFile);
    store().load(file);
    showInfos();
    writeFile(folder + utf8(kIniFile), kIni);
    toXml(folder);
    QFile::remove(folder + utf8(kIniFile));
}

QNetworkCookie cookie(Draw &draw)
{
    QNetworkCookie cookie(draw.oneOf(kNames));
    cookie.setValue(draw.oneOf(kValues));
    cookie.setDomain(utf8(draw.oneOf(kDomains)));
    cookie.setPath(utf8(draw.oneOf(kPaths)));
    cookie.setSecure(draw.oneIn(2));
    if (draw.oneIn(2)) {
        const int days = draw.below(3000);
        cookie.setExpirationDate(
            QDateTime(QDate(2026, 1, 1).addDays(days), QTime(draw.below(24), 30, 5), Qt::UTC));
    }
    return cookie;
}

QList<QNetworkCookie> cookies(Draw &draw)
{
    QList<QNetworkCookie> list;
    const int count = draw.below(25);
    for (int i = 0; i < count; ++i) {
        list << cookie(draw);
    }
    return list;
}

// To the file, from there into a document that gathers what each round brings, and on to another
// file.
void playConversions()
{
    Draw draw(11);
    QByteArray gathered;
    for (int round = 0; round < 40; ++round) {
        const Part part("cookies, round " + shown(round + 1));
        QString folder = newFolder();
        writeFile(folder + utf8(kFile), gathered.isEmpty() ? QByteArray(kDocument) : gathered);
        store().saveCookieInfo(cookies(draw), &folder, kMax);
        showCookies(store().loadCookieInfo(&folder, kMax));
        toXml(folder);
        showFolder(folder);
        QFile file(folder + utf8(kFile));
        gathered = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        QString target = newFolder();
        toIni(folder, target);
        showCookies(store().loadCookieInfo(&target, 1));
        showFolder(target);
        showLog();
    }
}

void showConversions(QString &folder)
{
    const QString again = newFolder();
    toXml(folder);
    toIni(folder, again);
    showFolder(folder);
    showFolder(again);
    showLog();
}

void playEntries()
{
    Draw draw(12);
    const Part part("cookies, entries one by one");
    QString file = newFolder() + utf8(kFile);
    writeFile(file, kDocument);
    store().load(file);
    QString id = utf8("id");
    for (int i = 0; i < 100; ++i) {
        QNetworkCookie drawnCookie = cookie(draw);
        VLMS_CookieInfo info = {utf8(draw.oneOf(kDomains)),
                                utf8(draw.oneOf(kNames)),
                                utf8("/"),
                                utf8("true"),
                                QString(),
                                utf8(draw.oneOf(kValues))};
        line("equal", store().isMuchCookieInfo(drawnCookie, info));
        store().addCookieInfo(drawnCookie);
        if (draw.oneIn(2)) {
            store().setIDforChildren(id);
        }
        store().deleteCookieInfo(draw.id(6));
        showInfos();
    }
    showLog();
}

void playRefused()
{
    const Part part("cookies, what is refused");
    QString empty;
    QString folder = newFolder();
    QByteArray directory = folder.toLatin1();
    QByteArray file = directory + kFile;
    Draw draw(13);
    const QList<QNetworkCookie> some = cookies(draw);
    showCookies(store().loadCookieInfo(nullptr, kMax));
    showCookies(store().loadCookieInfo(&empty, kMax));
    showCookies(store().loadCookieInfo(&folder, 0));
    showCookies(store().loadCookieInfo(&folder, kMax));
    store().saveCookieInfo(some, nullptr, kMax);
    store().saveCookieInfo(some, &empty, kMax);
    store().saveCookieInfo(some, &folder, -1);
    store().convertCookieIniToXML(nullptr, file.data());
    store().convertCookieIniToXML(directory.data(), nullptr);
    store().convertCookieXMLToIni(nullptr, directory.data());
    store().convertCookieXMLToIni(file.data(), nullptr);
    showFolder(folder);
    store().convertCookieXMLToIni(file.data(), directory.data());
    showFolder(folder);
    showLog();
}
} // namespace

void playRawForm(const char *form)
{
    const Part part("cookie " + QByteArray(form));
    QString folder = newFolder();
    store().saveCookieInfo(QNetworkCookie::parseCookies(form), &folder, kMax);
    showConversions(folder);
}

void playCookieEntry(const char *element)
{
    const Part part("cookie of the entry " + QByteArray(element));
    const QString folder = newFolder();
    const QString target = newFolder();
    writeFile(folder + utf8(kFile), "<cookie><webSiteInfo id=\"000\"><name>a</name>"
                                        + QByteArray(element) + "</webSiteInfo></cookie>");
    toIni(folder, target);
    showFolder(target);
    showLog();
}

void playCookieIni(const char *bytes)
{
    const Part part("cookies, file " + QByteArray(bytes));
    QString folder = newFolder();
    writeFile(folder + utf8(kIniFile), bytes);
    showCookies(store().loadCookieInfo(&folder, kMax));
    showConversions(folder);
}

void playCookies()
{
    playRefused();
    playDocuments(kFile, kDocument, convertDocument);
    for (const char *const ini : kIniFiles) {
        playCookieIni(ini);
    }
    for (const char *const form : kRawForms) {
        playRawForm(form);
    }
    for (const char *const element : kElements) {
        playCookieEntry(element);
    }
    playEntries();
    playConversions();
}
