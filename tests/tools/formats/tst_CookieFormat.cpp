// cookies.txt line by line: what each field becomes, what a line cannot hold, and what comes back.

#include "tests/support/Files.h"
#include "tools/velmora-profile/formats/Formats.h"

#include <QtCore/QDateTime>
#include <QtTest/QtTest>

using namespace profile;

class tst_CookieFormat : public QObject
{
    Q_OBJECT

private slots:
    void readCookiesTxt_readsLines_data();
    void readCookiesTxt_readsLines();
    void readCookiesTxt_listsLosses_data();
    void readCookiesTxt_listsLosses();
    void readCookiesTxt_refuses_data();
    void readCookiesTxt_refuses();
    void readCookiesTxt_takes100000Lines();
    void writeCookiesTxt_writesLines_data();
    void writeCookiesTxt_writesLines();
    void writeCookiesTxt_listsLosses_data();
    void writeCookiesTxt_listsLosses();
    void cookies_comeBackAsTheyWere();
};

namespace
{
const char kTitle[] = "# Netscape HTTP Cookie File\n";

QByteArray described(const CookieImport &import)
{
    QByteArray lines = import.error.isEmpty() ? QByteArray() : import.error.toUtf8() + '\n';
    for (const QNetworkCookie &cookie : import.cookies) {
        lines += cookie.toRawForm(QNetworkCookie::Full) + '\n';
    }
    for (const Loss &loss : import.losses) {
        lines += "lost: " + loss.entry.toUtf8() + ": " + loss.reason.toUtf8() + '\n';
    }
    return lines;
}

QNetworkCookie cookie(const QString &domain, const QString &path, const QByteArray &name,
                      const QByteArray &value, qint64 expiry = 0)
{
    QNetworkCookie made(name, value);
    made.setDomain(domain);
    made.setPath(path);
    if (expiry != 0) {
        made.setExpirationDate(QDateTime::fromMSecsSinceEpoch(expiry * 1000).toUTC());
    }
    return made;
}

// Characters that no field holds are those that end it.
QByteArray anyBytes(int seed, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        const int byte = (seed * 7 + i * 11) % 256;
        bytes += byte < 0x20 || byte == 0x7f ? QByteArray("x") : QByteArray(1, char(byte));
    }
    return bytes;
}

QString anyText(int seed)
{
    QString all;
    for (int i = 0; i < 112; ++i) {
        const int code = (seed * 112 + i) % 0x110000;
        const bool isLeftOut =
            code < 0x20 || code == 0x7f || (code >= 0xd800 && code < 0xe000) || code == 0xfeff;
        const char32_t character = isLeftOut ? U'x' : char32_t(code);
        all += QString::fromUcs4(&character, 1);
    }
    return all;
}
} // namespace

void tst_CookieFormat::readCookiesTxt_readsLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("cookie");
    QTest::newRow("session") << QByteArray("a.example\tFALSE\t/p\tFALSE\t0\tn\tv")
                             << QByteArray("n=v; domain=a.example; path=/p");
    QTest::newRow("hosts below") << QByteArray(".a.example\tTRUE\t/\tFALSE\t0\tn\tv")
                                 << QByteArray("n=v; domain=.a.example; path=/");
    QTest::newRow("hosts below without a dot") << QByteArray("a.example\tTRUE\t/\tFALSE\t0\tn\tv")
                                               << QByteArray("n=v; domain=.a.example; path=/");
    QTest::newRow("dot without hosts below") << QByteArray(".a.example\tFALSE\t/\tFALSE\t0\tn\tv")
                                             << QByteArray("n=v; domain=a.example; path=/");
    QTest::newRow("secure") << QByteArray("a.example\tFALSE\t/\tTRUE\t0\tn\tv")
                            << QByteArray("n=v; secure; domain=a.example; path=/");
    QTest::newRow("lower case") << QByteArray("a.example\ttrue\t/\ttrue\t0\tn\tv")
                                << QByteArray("n=v; secure; domain=.a.example; path=/");
    QTest::newRow("HttpOnly") << QByteArray("#HttpOnly_a.example\tFALSE\t/\tFALSE\t0\tn\tv")
                              << QByteArray("n=v; HttpOnly; domain=a.example; path=/");
    QTest::newRow("expiry")
        << QByteArray("a.example\tFALSE\t/\tFALSE\t2524608000\tn\tv")
        << QByteArray("n=v; expires=Sat, 01-Jan-2050 00:00:00 GMT; domain=a.example; path=/");
    QTest::newRow("first second")
        << QByteArray("a.example\tFALSE\t/\tFALSE\t1\tn\tv")
        << QByteArray("n=v; expires=Thu, 01-Jan-1970 00:00:01 GMT; domain=a.example; path=/");
    QTest::newRow("last second")
        << QByteArray("a.example\tFALSE\t/\tFALSE\t253402300799\tn\tv")
        << QByteArray("n=v; expires=Fri, 31-Dec-9999 23:59:59 GMT; domain=a.example; path=/");
    QTest::newRow("no value") << QByteArray("a.example\tFALSE\t/\tFALSE\t0\tn\t")
                              << QByteArray("n=; domain=a.example; path=/");
    QTest::newRow("no seventh field") << QByteArray("a.example\tFALSE\t/\tFALSE\t0\tn")
                                      << QByteArray("n=; domain=a.example; path=/");
    QTest::newRow("no expiry") << QByteArray("a.example\tFALSE\t/\tFALSE\t\tn\tv")
                               << QByteArray("n=v; domain=a.example; path=/");
    QTest::newRow("no path") << QByteArray("a.example\tFALSE\t\tFALSE\t0\tn\tv")
                             << QByteArray("n=v; domain=a.example; path=/");
    QTest::newRow("return at the end") << QByteArray("a.example\tFALSE\t/\tFALSE\t0\tn\tv\r")
                                       << QByteArray("n=v; domain=a.example; path=/");
    QTest::newRow("international name")
        << QByteArray("xn--r8jz45g.xn--zckzah\tFALSE\t/\tFALSE\t0\tn\tv")
        << "n=v; domain=" + QUrl::fromAce("xn--r8jz45g.xn--zckzah").toUtf8() + "; path=/";
    QTest::newRow("readable name") << QByteArray("B\xc3\xbc"
                                                 "cher.example\tFALSE\t/\tFALSE\t0\tn\tv")
                                   << QByteArray("n=v; domain=xn--bcher-kva.example; path=/");
    QTest::newRow("upper case") << QByteArray("A.Example\tFALSE\t/\tFALSE\t0\tn\tv")
                                << QByteArray("n=v; domain=a.example; path=/");
    QTest::newRow("address") << QByteArray("127.0.0.1\tFALSE\t/\tFALSE\t0\tn\tv")
                             << QByteArray("n=v; domain=127.0.0.1; path=/");
    QTest::newRow("name that no host has") << QByteArray("a_B.example\tFALSE\t/\tFALSE\t0\tn\tv")
                                           << QByteArray("n=v; domain=a_b.example; path=/");
}

void tst_CookieFormat::readCookiesTxt_readsLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, cookie);
    COMPARE_BYTES(described(readCookiesTxt(line)), cookie + '\n');
    const QString domain = readCookiesTxt(line).cookies.at(0).domain();
    QCOMPARE(domain, domain.toLower());
    COMPARE_BYTES(described(readCookiesTxt("\xef\xbb\xbf" + line + "\n\n# a comment\n")),
                  cookie + '\n');
}

void tst_CookieFormat::readCookiesTxt_listsLosses_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray lost = "lost: line 2: ";
    QTest::newRow("five fields") << QByteArray("a\tFALSE\t/\tFALSE\t0")
                                 << lost + "it has 5 fields instead of 7\n";
    QTest::newRow("eight fields") << QByteArray("a\tFALSE\t/\tFALSE\t0\tn\tv\tw")
                                  << lost + "it has 8 fields instead of 7\n";
    QTest::newRow("words") << QByteArray("some words") << lost + "it has 1 fields instead of 7\n";
    QTest::newRow("tabulators alone")
        << QByteArray(1000000, '\t') << lost + "it has 1000001 fields instead of 7\n";
    const QByteArray neither = lost + "its second or fourth field is neither TRUE nor FALSE\n";
    QTest::newRow("second field") << QByteArray("a\tYES\t/\tFALSE\t0\tn\tv") << neither;
    QTest::newRow("fourth field") << QByteArray("a\tTRUE\t/\t\t0\tn\tv") << neither;
    const QByteArray noNumber = lost + "its expiry is not a number\n";
    QTest::newRow("fraction") << QByteArray("a\tTRUE\t/\tTRUE\t1.5\tn\tv") << noNumber;
    QTest::newRow("word") << QByteArray("a\tTRUE\t/\tTRUE\tnever\tn\tv") << noNumber;
    QTest::newRow("too large a number")
        << QByteArray("a\tTRUE\t/\tTRUE\t99999999999999999999\tn\tv") << noNumber;
    const QByteArray noName = lost + "its cookie has no domain or no name\n";
    QTest::newRow("no domain") << QByteArray("\tTRUE\t/\tTRUE\t0\tn\tv") << noName;
    QTest::newRow("dot alone") << QByteArray(".\tTRUE\t/\tTRUE\t0\tn\tv") << noName;
    QTest::newRow("no name") << QByteArray("a\tTRUE\t/\tTRUE\t0\t\tv") << noName;
    const QByteArray noUtf8 = lost + "its domain or path is not UTF-8\n";
    QTest::newRow("domain") << QByteArray("a\xff\tTRUE\t/\tTRUE\t0\tn\tv") << noUtf8;
    QTest::newRow("path") << QByteArray("a\tTRUE\t/\xff\tTRUE\t0\tn\tv") << noUtf8;
    const QByteArray nearest =
        lost + "its expiry is not between 1970 and 9999 and becomes the nearest date that is\n";
    QTest::newRow("before 1970") << QByteArray("a\tFALSE\t/\tFALSE\t-1\tn\tv")
                                 << "n=v; expires=Thu, 01-Jan-1970 00:00:01 GMT; domain=a; path=/\n"
                                        + nearest;
    QTest::newRow("behind 9999") << QByteArray("a\tFALSE\t/\tFALSE\t253402300800\tn\tv")
                                 << "n=v; expires=Fri, 31-Dec-9999 23:59:59 GMT; domain=a; path=/\n"
                                        + nearest;
    QTest::newRow("last number") << QByteArray("a\tFALSE\t/\tFALSE\t9223372036854775807\tn\tv")
                                 << "n=v; expires=Fri, 31-Dec-9999 23:59:59 GMT; domain=a; path=/\n"
                                        + nearest;
}

void tst_CookieFormat::readCookiesTxt_listsLosses()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, expected);
    COMPARE_BYTES(described(readCookiesTxt(kTitle + line + '\n')), expected);
}

void tst_CookieFormat::readCookiesTxt_refuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("error");
    const QByteArray other = "it holds no line of a cookies.txt file\n";
    QTest::newRow("nothing") << QByteArray() << other;
    QTest::newRow("text") << QByteArray("one\n")
                          << other + "lost: line 1: it has 1 fields instead of 7\n";
    QTest::newRow("comments") << QByteArray("# one\n") << other;
    QTest::newRow("title alone") << QByteArray(kTitle) << QByteArray();
    QTest::newRow("shorter title alone") << QByteArray("# HTTP Cookie File\n") << QByteArray();
}

void tst_CookieFormat::readCookiesTxt_refuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, error);
    COMPARE_BYTES(described(readCookiesTxt(content)), error);
}

void tst_CookieFormat::readCookiesTxt_takes100000Lines()
{
    const QByteArray line = "a.example\tFALSE\t/\tFALSE\t0\tn\tv\n";
    QCOMPARE(readCookiesTxt(line.repeated(100000)).error, QString());
    QCOMPARE(readCookiesTxt(line.repeated(100000)).cookies.size(), 100000);
    QCOMPARE(readCookiesTxt(line.repeated(100001)).error, utf8("it has over 100000 lines"));
    const QByteArray bad = kTitle + QByteArray("x\n").repeated(100000);
    QCOMPARE(readCookiesTxt(bad).error, QString());
    QCOMPARE(readCookiesTxt(bad).losses.size(), 100000);
    QCOMPARE(readCookiesTxt(bad + 'x').error, utf8("it has over 100000 lines"));
}

void tst_CookieFormat::writeCookiesTxt_writesLines_data()
{
    QTest::addColumn<QNetworkCookie>("made");
    QTest::addColumn<QByteArray>("line");
    QNetworkCookie made = cookie(utf8("a.example"), utf8("/p"), "n", "v");
    QTest::newRow("session") << made << QByteArray("a.example\tFALSE\t/p\tFALSE\t0\tn\tv\n");
    made.setSecure(true);
    QTest::newRow("secure") << made << QByteArray("a.example\tFALSE\t/p\tTRUE\t0\tn\tv\n");
    made.setHttpOnly(true);
    QTest::newRow("HttpOnly") << made
                              << QByteArray("#HttpOnly_a.example\tFALSE\t/p\tTRUE\t0\tn\tv\n");
    QTest::newRow("hosts below") << cookie(utf8(".a.example"), QString(), "n", "")
                                 << QByteArray(".a.example\tTRUE\t/\tFALSE\t0\tn\t\n");
    QTest::newRow("expiry") << cookie(utf8("a"), utf8("/"), "n", "v", 2524608000)
                            << QByteArray("a\tFALSE\t/\tFALSE\t2524608000\tn\tv\n");
    QTest::newRow("first second") << cookie(utf8("a"), utf8("/"), "n", "v", 1)
                                  << QByteArray("a\tFALSE\t/\tFALSE\t1\tn\tv\n");
    QTest::newRow("last second") << cookie(utf8("a"), utf8("/"), "n", "v", 253402300799)
                                 << QByteArray("a\tFALSE\t/\tFALSE\t253402300799\tn\tv\n");
    QTest::newRow("international name")
        << cookie(utf8(".b\xc3\xbc"
                       "cher.example"),
                  utf8("/"), "n", "v")
        << QByteArray(".xn--bcher-kva.example\tTRUE\t/\tFALSE\t0\tn\tv\n");
}

void tst_CookieFormat::writeCookiesTxt_writesLines()
{
    QFETCH(QNetworkCookie, made);
    QFETCH(QByteArray, line);
    QList<Loss> losses;
    COMPARE_BYTES(writeCookiesTxt({made}, &losses), kTitle + line);
    QCOMPARE(losses.size(), 0);
}

void tst_CookieFormat::writeCookiesTxt_listsLosses_data()
{
    QTest::addColumn<QNetworkCookie>("made");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("reason");
    const QString domain = utf8("a.example");
    const QString path = utf8("/");
    const QString control = utf8("a line cannot hold its control characters");
    QTest::newRow("name") << cookie(domain, path, "n\tm", "v") << QByteArray() << control;
    QTest::newRow("value") << cookie(domain, path, "n", "v\nw") << QByteArray() << control;
    QTest::newRow("last control") << cookie(domain, path, "n", "v\x1fw") << QByteArray() << control;
    QTest::newRow("delete") << cookie(domain, path, "n", "v\x7fw") << QByteArray() << control;
    QTest::newRow("NUL") << cookie(domain, path, "n", QByteArray("v\0", 2)) << QByteArray()
                         << control;
    QTest::newRow("domain") << cookie(utf8("a\tb"), path, "n", "v") << QByteArray() << control;
    QTest::newRow("path") << cookie(domain, utf8("/\r"), "n", "v") << QByteArray() << control;
    QTest::newRow("comment") << cookie(utf8("#a"), path, "n", "v") << QByteArray()
                             << utf8("a line that begins as its domain does is a comment");
    const QString without = utf8("a line needs a domain and a name");
    QTest::newRow("no domain") << cookie(QString(), path, "n", "v") << QByteArray() << without;
    QTest::newRow("no name") << cookie(domain, path, "", "v") << QByteArray() << without;
    const QString nearest =
        utf8("its expiry is not between 1970 and 9999 and becomes the nearest date that is");
    QTest::newRow("before 1970") << cookie(domain, path, "n", "v", -1)
                                 << QByteArray("a.example\tFALSE\t/\tFALSE\t1\tn\tv\n") << nearest;
    QNetworkCookie atOnce = cookie(domain, path, "n", "v");
    atOnce.setExpirationDate(QDateTime::fromMSecsSinceEpoch(0).toUTC());
    QTest::newRow("second of a session")
        << atOnce << QByteArray("a.example\tFALSE\t/\tFALSE\t1\tn\tv\n") << nearest;
    QTest::newRow("behind 9999") << cookie(domain, path, "n", "v", 253402300800)
                                 << QByteArray("a.example\tFALSE\t/\tFALSE\t253402300799\tn\tv\n")
                                 << nearest;
}

void tst_CookieFormat::writeCookiesTxt_listsLosses()
{
    QFETCH(QNetworkCookie, made);
    QFETCH(QByteArray, line);
    QFETCH(QString, reason);
    const QNetworkCookie good = cookie(utf8("z"), utf8("/"), "z", "z");
    QList<Loss> losses;
    COMPARE_BYTES(writeCookiesTxt({made, good}, &losses),
                  kTitle + line + "z\tFALSE\t/\tFALSE\t0\tz\tz\n");
    QCOMPARE(losses.size(), 1);
    QCOMPARE(losses.at(0).entry, QString::fromUtf8(made.name()));
    QCOMPARE(losses.at(0).reason, reason);
}

void tst_CookieFormat::cookies_comeBackAsTheyWere()
{
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < 10000; ++i) {
        const QString host = utf8("h") + QString::number(i) + utf8(".example");
        QNetworkCookie made =
            cookie(i % 3 ? host : QLatin1Char('.') + host, QLatin1Char('/') + anyText(i),
                   'n' + anyBytes(i, 20), anyBytes(i + 1, i % 200),
                   i % 5 ? 1 + i * Q_INT64_C(25000000) : 0);
        made.setSecure(i % 2);
        made.setHttpOnly(i % 7 == 0);
        cookies.append(made);
    }
    QList<Loss> losses;
    const CookieImport import = readCookiesTxt(writeCookiesTxt(cookies, &losses));
    QCOMPARE(losses.size(), 0);
    QCOMPARE(import.error, QString());
    QCOMPARE(import.losses.size(), 0);
    QCOMPARE(import.cookies.size(), cookies.size());
    for (int i = 0; i < cookies.size(); ++i) {
        QCOMPARE(import.cookies.at(i), cookies.at(i));
    }
}

QTEST_GUILESS_MAIN(tst_CookieFormat)
#include "tst_CookieFormat.moc"
