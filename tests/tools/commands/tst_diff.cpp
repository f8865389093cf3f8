// velmora-profile diff.

#include "tests/tools/Tool.h"

class tst_diff : public QObject
{
    Q_OBJECT

private slots:
    void diff_findsNothingInACopy();
    void diff_tellsEntriesApart();
    void diff_masksTheValuesOfCookies();
};

void tst_diff::diff_findsNothingInACopy()
{
    const TestDirectory one;
    const TestDirectory other;
    writeGoodProfile(one);
    writeGoodProfile(other);
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.path()}), 0, "", "");
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.file("none")}), 2, "",
                "velmora-profile: '" + other.path().toUtf8()
                    + "none' cannot be read; name the folder of a profile\n");
}

void tst_diff::diff_tellsEntriesApart()
{
    const TestDirectory one;
    const TestDirectory other;
    writeGoodProfile(one);
    writeGoodProfile(other);
    runTool(other, "prefs set % pageInfo.Zoom 1.5");
    runTool(other, "prefs set % proxy.proxyUserPass", "other\n");
    runTool(other, "bookmarks remove % 0");
    runTool(other, "bookmarks add % http://c.example/");
    runTool(other, "fonts add % Serif");
    runTool(other, "auth remove % 0");
    runTool(other, "auth add % host.example 8080 digest me", "anders\n");
    writeFile(other.file("visit.xml"),
              "<history><pageInfo><title>First</title><url>http://a.example/</url>"
              "<dateTime>2026/01/01 09:05</dateTime></pageInfo>"
              "<pageInfo><title>Second</title><url>http://b.example/</url>"
              "<dateTime>2026/01/02 10:30</dateTime></pageInfo></history>");
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.path()}), 1,
                "repostry.xml\n"
                "  ~ proxy.proxyUserPass: value '********' is '********'\n"
                "repostry_private.xml\n"
                "  ~ pageInfo.Zoom: value '1.2' is '1.5'\n"
                "bookmark.xml\n"
                "  - http://a.example/\n"
                "  + http://c.example/\n"
                "visit.xml\n"
                "  the same entries in another order\n"
                "authinfo.xml\n"
                "  ~ host.example:8080: password '********' is '********'\n"
                "fontlist.xml\n"
                "  + Serif\n",
                "");
    const ToolRun json =
        runTool({utf8("diff"), one.path(), other.path(), utf8("--json"), utf8("--show-secrets")});
    QCOMPARE(jsonOf(json).array().size(), 7);
    QVERIFY(json.output.contains("\"after\": \"anders\""));
}

void tst_diff::diff_masksTheValuesOfCookies()
{
    const TestDirectory one;
    const TestDirectory other;
    for (const TestDirectory *const directory : {&one, &other}) {
        writeGoodProfile(*directory);
        runTool(*directory, "cookies to-xml %");
    }
    runTool(other, "cookies import % -", "b.example\tFALSE\t/docs\tFALSE\t2524608000\tlang\tja\n");
    runTool(other, "cookies to-xml %");
    QStringList arguments = {utf8("diff"), one.path(), other.path()};
    COMPARE_RUN(runTool(arguments), 1,
                "cookie.xml\n"
                "  ~ lang of b.example/docs: value '********' is '********'\n"
                "cookie.ini\n"
                "  ~ lang of b.example/docs: value '********' is '********'\n",
                "");
    const ToolRun json = runTool(arguments + QStringList(utf8("--json")));
    QCOMPARE(json.output.count("\"********\""), 4);
    const ToolRun shown = runTool(arguments + QStringList(utf8("--show-secrets")));
    QCOMPARE(shown.output.count("value 'en' is 'ja'\n"), 2);
}

QTEST_GUILESS_MAIN(tst_diff)
#include "tst_diff.moc"
