// velmora-profile auth, and passwords from standard input.

#include "tests/tools/Tool.h"

#include <QtCore/QFileInfo>

class tst_auth : public QObject
{
    Q_OBJECT

private slots:
    void auth_masksPasswords();
    void auth_readsThePasswordFromStandardInput();
    void passwords_areRefusedWithoutOne_data();
    void passwords_areRefusedWithoutOne();
    void passwords_mayBeEmptyLines();
    void auth_limitsBytes_data();
    void auth_limitsBytes();
};

void tst_auth::auth_masksPasswords()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "auth list %"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   host.example  8080  digest  me    ********\n",
                "");
    COMPARE_RUN(runTool(directory, "auth list % --show-secrets"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   host.example  8080  digest  me    geheim\n",
                "");
    QVERIFY(!runTool(directory, "auth list % --json").output.contains("geheim"));
    QVERIFY(runTool(directory, "auth list % --json --show-secrets").output.contains("geheim"));
}

void tst_auth::auth_readsThePasswordFromStandardInput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "auth add % new.example 80 NTLM you", "p w\n"), 0, "", "");
    COMPARE_RUN(runTool(directory, "auth list % --show-secrets"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   new.example   80    NTLM    you   p w\n"
                "1   host.example  8080  digest  me    geheim\n",
                "");
    COMPARE_RUN(runTool(directory, "auth remove % 1"), 0, "", "");
    QVERIFY(!runTool(directory, "auth list %").output.contains("host.example"));
    const TestDirectory fresh;
    QCOMPARE(runTool(fresh, "auth add % h 1 basic u", "p").status, 0);
    QCOMPARE(QFileInfo(fresh.file("authinfo.xml")).permissions()
                 & (QFile::ReadGroup | QFile::ReadOther),
             QFile::Permissions());
}

void tst_auth::passwords_areRefusedWithoutOne_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QByteArray>("refusal");
    const char *const inputs[][2] = {
        {"< /", "standard input cannot be read"},
        {"<&-", "standard input cannot be read"},
        {"< /dev/null", "standard input holds no password"},
        {"< \"$1/latin1\"", "the password is no text in UTF-8"},
        {"< \"$1/mark\"", "the password is no text in UTF-8"},
    };
    for (const char *const command :
         {"prefs set \"$1\" proxy.proxyUserPass", "auth add \"$1\" h 80 basic u"}) {
        for (const auto &input : inputs) {
            QTest::newRow(QByteArray(command) + ' ' + input[0])
                << utf8(command) << utf8(input[0])
                << QByteArray("velmora-profile: ") + input[1] + "; nothing was changed\n";
        }
    }
}

void tst_auth::passwords_areRefusedWithoutOne()
{
    QFETCH(QString, command);
    QFETCH(QString, input);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("latin1"), "gehe\xefm\n");
    writeFile(directory.file("mark"), "\xef\xbb\xbfgeheim\n");
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runShell(utf8("\"$0\" ") + command + QLatin1Char(' ') + input, directory), 2, "",
                refusal);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_auth::passwords_mayBeEmptyLines()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", "\n"), 0, "", "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass --show-secrets"), 0, "\n", "");
    COMPARE_RUN(runTool(directory, "auth add % h 80 basic u", "\n"), 0, "", "");
}

void tst_auth::auth_limitsBytes_data()
{
    QTest::addColumn<int>("host");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("user");
    QTest::addColumn<int>("password");
    QTest::addColumn<QByteArray>("refusal");
    QTest::newRow("last accepted") << 256 << 5 << 272 << 272 << QByteArray();
    QTest::newRow("host") << 257 << 5 << 272 << 272
                          << QByteArray("the host has 257 bytes, over the limit of 256");
    QTest::newRow("port") << 256 << 6 << 272 << 272
                          << QByteArray("the port has 6 bytes, over the limit of 5");
    QTest::newRow("user") << 256 << 5 << 273 << 272
                          << QByteArray("the user has 273 bytes, over the limit of 272");
    QTest::newRow("password") << 256 << 5 << 272 << 273
                              << QByteArray("the password has 273 bytes, over the limit of 272");
}

void tst_auth::auth_limitsBytes()
{
    QFETCH(int, host);
    QFETCH(int, port);
    QFETCH(int, user);
    QFETCH(int, password);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    const QStringList arguments = {utf8("auth"),
                                   utf8("add"),
                                   directory.path(),
                                   QString(host, QLatin1Char('h')),
                                   QString(port, QLatin1Char('1')),
                                   utf8("basic"),
                                   QString(user, QLatin1Char('u'))};
    COMPARE_RUN(runTool(arguments, QByteArray(password, 'p')), refusal.isEmpty() ? 0 : 2, "",
                refusal.isEmpty() ? QByteArray()
                                  : "velmora-profile: " + refusal + "; nothing was changed\n");
    QCOMPARE(exists(directory.file("authinfo.xml")), refusal.isEmpty());
}

QTEST_GUILESS_MAIN(tst_auth)
#include "tst_auth.moc"
