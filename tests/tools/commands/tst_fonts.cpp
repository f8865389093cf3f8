// velmora-profile fonts.

#include "tests/tools/Tool.h"

class tst_fonts : public QObject
{
    Q_OBJECT

private slots:
    void fonts_areListedAndAdded();
    void fonts_limitBytes_data();
    void fonts_limitBytes();
    void fonts_followFontconfig();
};

void tst_fonts::fonts_areListedAndAdded()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("fonts"), utf8("add"), directory.path(), utf8("A"),
                         utf8("\xe3\x81\x82 & B")}),
                0, "", "");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0, "Id  Name\n0   A\n1   \xe3\x81\x82 & B\n",
                "");
    COMPARE_RUN(runTool({utf8("fonts"), utf8("add"), directory.path(), QString()}), 2, "",
                "velmora-profile: '': a font needs a name; nothing was changed\n");
}

void tst_fonts::fonts_limitBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("status");
    const QString longest = QString(253, QLatin1Char('f')) + utf8("\xe3\x81\x82");
    QTest::newRow("256 bytes") << longest << 0;
    QTest::newRow("257 bytes") << longest + QLatin1Char('f') << 2;
}

void tst_fonts::fonts_limitBytes()
{
    QFETCH(QString, name);
    QFETCH(int, status);
    const TestDirectory directory;
    QCOMPARE(runTool({utf8("fonts"), utf8("add"), directory.path(), name}).status, status);
    QCOMPARE(exists(directory.file("fontlist.xml")), status == 0);
}

void tst_fonts::fonts_followFontconfig()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist><font>No Such Font</font><font>DejaVu Sans</font></fontlist>");
    const QByteArray before = readFile(directory.file("fontlist.xml"));
    const ToolRun dry = runTool(directory, "fonts sync % --dry-run");
    QCOMPARE(dry.status, 0);
    QVERIFY2(dry.output.startsWith("- No Such Font\n+ "), dry.output.constData());
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), before);

    COMPARE_RUN(runTool(directory, "fonts sync %"), 0, dry.output, "");

    QVERIFY(runTool(directory, "fonts list %").output.startsWith("Id  Name\n0   DejaVu Sans\n"));
    COMPARE_RUN(runTool(directory, "fonts sync %"), 0, "", "");
}

QTEST_GUILESS_MAIN(tst_fonts)
#include "tst_fonts.moc"
