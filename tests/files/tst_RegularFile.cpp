#include "files/RegularFile_p.h"

#include "tests/support/Files.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <sys/stat.h>

using namespace vlm;

class tst_RegularFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void both_takeRegularFilesOnly_data();
    void both_takeRegularFilesOnly();

private:
    TestDirectory m_directory;
};

void tst_RegularFile::initTestCase()
{
    writeFile(m_directory.file("file"), "content");
    QCOMPARE(mkfifo(m_directory.localFile("fifo"), 0600), 0);
    QVERIFY(QDir(m_directory.path()).mkdir(utf8("folder")));
    QVERIFY(QFile::link(m_directory.file("file"), m_directory.file("link")));
    QVERIFY(QFile::link(m_directory.file("fifo"), m_directory.file("link to fifo")));
}

void tst_RegularFile::both_takeRegularFilesOnly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isOpened");
    QTest::addColumn<bool>("isFree");
    QTest::newRow("file") << m_directory.file("file") << true << true;
    QTest::newRow("link") << m_directory.file("link") << true << true;
    QTest::newRow("missing") << m_directory.file("missing") << false << true;
    QTest::newRow("empty path") << QString() << false << false;
    QTest::newRow("folder") << m_directory.file("folder") << false << false;
    // Opened like a file, it would wait for a writer.
    QTest::newRow("FIFO") << m_directory.file("fifo") << false << false;
    QTest::newRow("link to FIFO") << m_directory.file("link to fifo") << false << false;
    QTest::newRow("device") << utf8("/dev/null") << false << false;
}

void tst_RegularFile::both_takeRegularFilesOnly()
{
    QFETCH(QString, path);
    QFETCH(bool, isOpened);
    QFETCH(bool, isFree);
    QCOMPARE(isFileOrFree(path), isFree);
    QFile file(path);
    QCOMPARE(openRegular(file), isOpened);
    QCOMPARE(file.isOpen(), isOpened);
    COMPARE_BYTES(isOpened ? file.readAll() : QByteArray("none"), isOpened ? "content" : "none");
}

QTEST_GUILESS_MAIN(tst_RegularFile)
#include "tst_RegularFile.moc"
