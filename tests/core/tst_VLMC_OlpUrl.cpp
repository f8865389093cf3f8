#include "core/VLMC_OlpUrl.h"

#include "tests/support/Files.h"

#include <QtCore/QUrl>

class tst_VLMC_OlpUrl : public QObject
{
    Q_OBJECT

private slots:
    void isOlpContents_tellsLocalHosts_data();
    void isOlpContents_tellsLocalHosts();
    void isOlpContents_comparesGivenHosts_data();
    void isOlpContents_comparesGivenHosts();
};

void tst_VLMC_OlpUrl::isOlpContents_tellsLocalHosts_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("local");
    QTest::newRow("127.0.0.1") << utf8("http://127.0.0.1/") << true;
    QTest::newRow("127.0.0.1, port and path") << utf8("https://127.0.0.1:8080/a/b?c=d#e") << true;
    QTest::newRow("127.0.0.200") << utf8("http://127.0.0.200:1/x") << true;
    QTest::newRow("127.0.0.255") << utf8("http://127.0.0.255") << true;
    QTest::newRow("only the prefix counts") << utf8("http://127.0.0.1.example.com/") << true;
    QTest::newRow("127.0.1.1") << utf8("http://127.0.1.1/") << false;
    QTest::newRow("127.1.0.1") << utf8("http://127.1.0.1/") << false;
    QTest::newRow("1127.0.0.1 as a name") << utf8("http://x127.0.0.1.net/") << false;
    QTest::newRow("seven characters") << utf8("http://1.1.1.1/") << false;
    QTest::newRow("localhost") << utf8("http://localhost/") << true;
    QTest::newRow("LOCALHOST") << utf8("http://LOCALHOST:81/index.html") << true;
    QTest::newRow("LocalHost, no path") << utf8("ftp://LocalHost") << true;
    QTest::newRow("user and password") << utf8("http://me:pw@localhost/") << true;
    QTest::newRow("localhost.example") << utf8("http://localhost.example/") << false;
    QTest::newRow("localhost.localdomain") << utf8("http://localhost.localdomain/") << false;
    QTest::newRow("mylocalhost") << utf8("http://mylocalhost/") << false;
    QTest::newRow("localhos") << utf8("http://localhos/") << false;
    QTest::newRow("localhost in the path") << utf8("http://example.com/localhost") << false;
    QTest::newRow("IPv6 loopback") << utf8("http://[::1]/") << false;
    QTest::newRow("file without host") << utf8("file:///127.0.0.1/x") << false;
    QTest::newRow("relative") << utf8("localhost/x") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("invalid") << utf8("http://[") << false;
}

// Whatever the other arguments are, as long as they name none of these hosts.
void tst_VLMC_OlpUrl::isOlpContents_tellsLocalHosts()
{
    QFETCH(QString, url);
    QFETCH(bool, local);
    char empty[] = "";
    char other[] = "other.test";
    char *const hosts[] = {nullptr, empty, other};
    for (int mode = 0; mode < 3; ++mode) {
        for (char *const first : hosts) {
            for (char *const second : hosts) {
                QCOMPARE(VLMC_OlpUrl::IsOlpContents(QUrl(url), char(mode), first, second), local);
            }
        }
    }
}

void tst_VLMC_OlpUrl::isOlpContents_comparesGivenHosts_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<bool>("local");
    const QString url = utf8("http://Panel.Device.test:8080/a");
    const QByteArray panel = "panel.device.test";
    const QByteArray other = "other.test";
    QTest::newRow("none") << url << 1 << QByteArray() << QByteArray() << false;
    QTest::newRow("first, mode 0") << url << 0 << panel << QByteArray() << false;
    QTest::newRow("first, mode 1") << url << 1 << panel << QByteArray() << true;
    QTest::newRow("first, mode 2") << url << 2 << panel << QByteArray() << false;
    QTest::newRow("first, mode -1") << url << -1 << panel << QByteArray() << false;
    QTest::newRow("first, mode '1'") << url << int('1') << panel << QByteArray() << false;
    QTest::newRow("first in capitals") << url << 1 << panel.toUpper() << QByteArray() << true;
    QTest::newRow("second, mode 0") << url << 0 << QByteArray() << panel << true;
    QTest::newRow("second, mode 1") << url << 1 << QByteArray() << panel << true;
    QTest::newRow("second, mode 2") << url << 2 << QByteArray() << panel << true;
    QTest::newRow("second in capitals") << url << 0 << QByteArray() << panel.toUpper() << true;
    QTest::newRow("second behind another first") << url << 1 << other << panel << true;
    QTest::newRow("first before another second") << url << 1 << panel << other << true;
    QTest::newRow("first, mode 0, another second") << url << 0 << panel << other << false;
    QTest::newRow("others") << url << 1 << other << other << false;
    QTest::newRow("a part of the host")
        << url << 1 << QByteArray("panel") << QByteArray("device.test") << false;
    QTest::newRow("more than the host") << url << 1 << panel + 'x' << 'x' + panel << false;
    QTest::newRow("an empty host equals nothing")
        << QString() << 1 << QByteArray("") << QByteArray("") << false;
}

void tst_VLMC_OlpUrl::isOlpContents_comparesGivenHosts()
{
    QFETCH(QString, url);
    QFETCH(int, mode);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(bool, local);
    QByteArray firstName = first;
    QByteArray secondName = second;
    char *const firstHost = first.isNull() ? nullptr : firstName.data();
    char *const secondHost = second.isNull() ? nullptr : secondName.data();
    QCOMPARE(VLMC_OlpUrl::IsOlpContents(QUrl(url), char(mode), firstHost, secondHost), local);
    QCOMPARE(firstName, first);
    QCOMPARE(secondName, second);
}

QTEST_GUILESS_MAIN(tst_VLMC_OlpUrl)
#include "tst_VLMC_OlpUrl.moc"
