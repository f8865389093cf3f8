// velmora-profile prefs.

#include "tests/tools/Tool.h"

#include <QtCore/QFileInfo>

class tst_prefs : public QObject
{
    Q_OBJECT

private slots:
    void prefs_listsValuesAndDefaults();
    void prefs_setsWords_data();
    void prefs_setsWords();
    void prefs_limitsBytes_data();
    void prefs_limitsBytes();
    void prefs_tellWhatTheFileCannotHold();
    void prefs_readsThePasswordFromStandardInput();
    void prefs_saysWhatTheBrowserDoesNotUse();
};

void tst_prefs::prefs_listsValuesAndDefaults()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun run = runTool(directory, "prefs list %");
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.size(), 28);
    COMPARE_BYTES(lines.at(0), "Name                           Value                 Default      "
                               "Note");
    COMPARE_BYTES(lines.at(7), "proxy.enableProxy              true                  false");
    COMPARE_BYTES(lines.at(15), "proxy.proxyUserPass            ********");
    COMPARE_BYTES(lines.at(20), "pageInfo.home                  http://home.example/  about:blank");
    COMPARE_BYTES(lines.at(21), "pageInfo.startup               homepage              homepage   "
                                "  default, not in the file");
    QVERIFY(runTool(directory, "prefs list % --show-secrets").output.contains("geheim"));
    QVERIFY(!runTool(directory, "prefs list % --json").output.contains("geheim"));
    QVERIFY(runTool(directory, "prefs list % --json --show-secrets").output.contains("geheim"));
}

void tst_prefs::prefs_setsWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("words");
    const char *const rows[][2] = {
        {"cookie.acceptCookie", "refuse accept"},
        {"cache.enableCache", "false true"},
        {"cache.cacheDeleteTiming", "changeUser notDelete"},
        {"keyboard.priority", "usb soft"},
        {"javascript.enableJavascript", "false true"},
        {"plugin.enableFlashPlugin", "false true"},
        {"proxy.enableProxy", "true false"},
        {"proxy.enableHTTP11", "false true"},
        {"proxy.enableProxyAuth", "true false"},
        {"security.enableSSL30", "true false"},
        {"security.enableTLS10", "false true"},
        {"security.enableTLS11", "false true"},
        {"security.enableTLS12", "false true"},
        {"pageInfo.startup", "lastpage homepage"},
        {"pageInfo.Zoom", "0.5 0.6 0.7 0.8 0.9 1.0 1.1 1.2 1.3 1.4 1.5"},
        {"cookie.cookieDeleteTiming", "changeUser notDelete"},
        {"authInfo.authInfoDeleteTiming", "changeUser notDelete"},
        {"proxy.hostName", "proxy.example"},
        {"proxy.portHTTP", "81"},
        {"proxy.portHTTPS", "82"},
        {"proxy.unusedDomain", "a;b"},
        {"proxy.proxyUserName", "me"},
        {"pageInfo.home", "http://home/"},
        {"pageInfo.lastPageURL", "http://last/"},
        {"font.fontName", "Serif"},
    };
    for (const auto &row : rows) {
        QTest::newRow(row[0]) << utf8(row[0]) << utf8(row[1]);
    }
}

void tst_prefs::prefs_setsWords()
{
    QFETCH(QString, name);
    QFETCH(QString, words);
    const TestDirectory directory;
    const QStringList values = words.split(QLatin1Char(' '));
    for (const QString &value : values) {
        COMPARE_RUN(runTool({utf8("prefs"), utf8("set"), directory.path(), name, value}), 0, "",
                    "");
        COMPARE_RUN(runTool({utf8("prefs"), utf8("get"), directory.path(), name}), 0,
                    value.toUtf8() + "\n", "");
    }
}

void tst_prefs::prefs_limitsBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("refusal");
    const struct {
        const char *name;
        int limit;
        const char *unit;
    } rows[] = {{"proxy.hostName", 253, "bytes of UTF-8"},
                {"proxy.portHTTP", 5, "bytes of UTF-8"},
                {"proxy.portHTTPS", 5, "bytes of UTF-8"},
                {"proxy.unusedDomain", 253, "bytes of UTF-8"},
                {"proxy.proxyUserName", 80, "bytes"},
                {"pageInfo.home", 256, "bytes of UTF-8"},
                {"pageInfo.lastPageURL", 256, "bytes of UTF-8"},
                {"font.fontName", 256, "bytes of UTF-8"}};
    for (const auto &row : rows) {
        const QByteArray refusal = QByteArray("velmora-profile: ") + row.name + " takes at most "
                                   + QByteArray::number(row.limit) + " " + row.unit + "; these are "
                                   + QByteArray::number(row.limit + 1) + "\n";
        const QString fits = QString(row.limit - 3, QLatin1Char('a')) + utf8("\xe3\x81\x82");
        QTest::newRow(QByteArray(row.name) + ", last accepted")
            << utf8(row.name) << fits << QByteArray();
        QTest::newRow(QByteArray(row.name) + ", first refused")
            << utf8(row.name) << fits + QLatin1Char('a') << refusal;
    }
    QTest::newRow("a word")
        << utf8("proxy.enableProxy") << utf8("maybe")
        << QByteArray("velmora-profile: proxy.enableProxy takes true or false, not 'maybe'\n");
    QTest::newRow("a word of old")
        << utf8("cache.cacheDeleteTiming") << utf8("logout")
        << QByteArray("velmora-profile: cache.cacheDeleteTiming takes changeUser or notDelete, not "
                      "'logout'\n");
    QTest::newRow("a zoom") << utf8("pageInfo.Zoom") << utf8("1.6")
                            << QByteArray("velmora-profile: pageInfo.Zoom takes 0.5, 0.6, 0.7, "
                                          "0.8, 0.9, 1.0, 1.1, 1.2, 1.3, 1.4 or 1.5, not '1.6'\n");
}

void tst_prefs::prefs_limitsBytes()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("prefs"), utf8("set"), directory.path(), name, value}),
                refusal.isEmpty() ? 0 : 2, "", refusal);
    if (refusal.isEmpty()) {
        COMPARE_RUN(runTool({utf8("prefs"), utf8("get"), directory.path(), name}), 0,
                    value.toUtf8() + "\n", "");
    } else {
        COMPARE_BYTES(contentsOf(directory.path()), "");
    }
}

void tst_prefs::prefs_tellWhatTheFileCannotHold()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    const QByteArray lost =
        "velmora-profile: lost: pageInfo.home: the file cannot hold all its characters\n";
    COMPARE_RUN(runTool(directory, "prefs set % pageInfo.home http://x/\x01\x1b! --strict"), 2, "",
                lost
                    + "velmora-profile: 1 loss, and --strict was asked for; nothing was changed\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
    COMPARE_RUN(runTool(directory, "prefs set % pageInfo.home http://x/\x01\x1b!"), 0, "", lost);
    COMPARE_RUN(runTool(directory, "prefs get % pageInfo.home"), 0, "http://x/!\n", "");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserName a\x01z --strict"), 0, "", "");
}

void tst_prefs::prefs_readsThePasswordFromStandardInput()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass word"), 2, "",
                "velmora-profile: proxy.proxyUserPass is read from standard input, where others do "
                "not see it; leave it out of the command line\n");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", "ge heim\nmore\n"), 0, "",
                "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass"), 0, "********\n", "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass --show-secrets"), 0,
                "ge heim\n", "");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", QByteArray(81, 'x') + "\n"),
                2, "",
                "velmora-profile: proxy.proxyUserPass takes at most 80 bytes; these are 81\n");
    QCOMPARE(QFileInfo(directory.file("repostry.xml")).permissions()
                 & (QFile::ReadGroup | QFile::ReadOther),
             QFile::Permissions());
    COMPARE_RUN(runTool(directory, "prefs set % proxy.hostName"), 2, "",
                "velmora-profile: proxy.hostName takes at most 253 bytes of UTF-8; name a value\n");
}

void tst_prefs::prefs_saysWhatTheBrowserDoesNotUse()
{
    const TestDirectory directory;
    writeFile(directory.file("repostry.xml"),
              "<repostry_common><proxy><portHTTP>123456</portHTTP></proxy>"
              "<cookie><acceptCookie>perhaps</acceptCookie></cookie></repostry_common>");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.portHTTP"), 0, "123456\n",
                "velmora-profile: proxy.portHTTP: 6 bytes, over the limit of 5: the browser uses "
                "the default '8080'\n");
    COMPARE_RUN(runTool(directory, "prefs get % cookie.acceptCookie"), 0, "perhaps\n",
                "velmora-profile: cookie.acceptCookie: the browser does not know this word: the "
                "browser uses the default 'accept'\n");
}

QTEST_GUILESS_MAIN(tst_prefs)
#include "tst_prefs.moc"
