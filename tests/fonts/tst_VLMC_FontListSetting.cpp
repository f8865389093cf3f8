#include "fonts/VLMC_FontListSetting.h"

#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SavedDocuments.h"

class tst_VLMC_FontListSetting : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { runDeferredDeletes(); }

    void saveFontList_writesWhatWasAdded();
    void getFont_takesAnyElement();
    void getFont_isEmptyBeforeLoad();
    void getFont_isEmptyOutsideTheList();
    void getFont_limitsBytes_data();
    void getFont_limitsBytes();
    void addFont_refusesEmptyName();
    void addFont_keepsNothingBeforeLoad();

private:
    QScopedPointer<TestDirectory> m_directory;
    QScopedPointer<VLMC_FontListSetting> m_fonts;
};

// Each test has a store without fonts that was loaded.
void tst_VLMC_FontListSetting::init()
{
    m_directory.reset(new TestDirectory);
    m_fonts.reset(new VLMC_FontListSetting);
    m_fonts->loadFontList(m_directory->path());
    takeLog();
}

void tst_VLMC_FontListSetting::saveFontList_writesWhatWasAdded()
{
    QCOMPARE(m_fonts->getCount(), 0);
    m_fonts->addFont(utf8("A"));
    m_fonts->addFont(utf8("A"));
    m_fonts->addFont(utf8("\xe3\x81\x82 & B"));
    QCOMPARE(m_fonts->getCount(), 3);
    QCOMPARE(m_fonts->getFont(2), utf8("\xe3\x81\x82 & B"));

    m_fonts->saveFontList(m_directory->path());

    COMPARE_BYTES(readFile(m_directory->file("fontlist.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<fontlist docInfo=\"1.0\">\n"
                  "    <font id=\"000\">A</font>\n"
                  "    <font id=\"001\">A</font>\n"
                  "    <font id=\"002\">\xe3\x81\x82 &amp; B</font>\n"
                  "</fontlist>\n");
}

void tst_VLMC_FontListSetting::getFont_takesAnyElement()
{
    writeFile(m_directory->file("fontlist.xml"),
              "<fontlist><font>A</font><other>B</other><font>C</font></fontlist>");
    m_fonts->loadFontList(m_directory->path());
    QCOMPARE(m_fonts->getCount(), 2);
    QCOMPARE(m_fonts->getFont(0), utf8("A"));
    QCOMPARE(m_fonts->getFont(1), utf8("B"));
    QCOMPARE(m_fonts->getFont(2), utf8("C"));
}

void tst_VLMC_FontListSetting::getFont_isEmptyBeforeLoad()
{
    VLMC_FontListSetting fonts;
    QCOMPARE(fonts.getFont(0), QString());
    COMPARE_BYTES(loggedText(), "3 [VLMC_FontListSetting::getFont]\n");
}

void tst_VLMC_FontListSetting::getFont_isEmptyOutsideTheList()
{
    m_fonts->addFont(utf8("only"));
    QCOMPARE(m_fonts->getFont(0), utf8("only"));
    QCOMPARE(m_fonts->getFont(-1), QString());
    QCOMPARE(m_fonts->getFont(m_fonts->getCount()), QString());
}

void tst_VLMC_FontListSetting::getFont_limitsBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("given");
    QTest::newRow("256 bytes") << QString(256, QLatin1Char('f')) << true;
    QTest::newRow("257 bytes") << QString(257, QLatin1Char('f')) << false;
    QTest::newRow("256 bytes, 3 a character")
        << QString(85, QChar(0x3042)) + QLatin1Char('f') << true;
    QTest::newRow("258 bytes, 3 a character") << QString(86, QChar(0x3042)) << false;
}

void tst_VLMC_FontListSetting::getFont_limitsBytes()
{
    QFETCH(QString, name);
    QFETCH(bool, given);
    const ForeignDocuments overTheLimit;

    m_fonts->addFont(name);

    QCOMPARE(m_fonts->getCount(), 1);
    QCOMPARE(m_fonts->getFont(0), given ? name : QString());
    m_fonts->saveFontList(m_directory->path());
    QVERIFY(readFile(m_directory->file("fontlist.xml")).contains(name.toUtf8()));
}

void tst_VLMC_FontListSetting::addFont_refusesEmptyName()
{

    m_fonts->addFont(QString());

    COMPARE_BYTES(loggedText(), "3 [VLMC_FontListSetting::addFont]\n"
                                "2 [VLMC_FontListSetting::addFont] FontName is empty.\n");
    QCOMPARE(m_fonts->getCount(), 0);
}

void tst_VLMC_FontListSetting::addFont_keepsNothingBeforeLoad()
{
    VLMC_FontListSetting fonts;
    fonts.addFont(utf8("A"));
    QVERIFY(!fonts.getXMLRootNode());
    QCOMPARE(fonts.getCount(), 0);
}

QTEST_GUILESS_MAIN(tst_VLMC_FontListSetting)
#include "tst_VLMC_FontListSetting.moc"
