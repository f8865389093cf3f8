#include "tests/durability/FilledTree.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"

#include <QtCore/QDir>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const int kSavesUnderReader = 10000;
} // namespace

class tst_WholeFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void write_keepsOldFileAtFileSizeLimit();
    void write_keepsOldFileOnFullDisk();
    void write_isSeenWholeAtEveryMoment();
};

void tst_WholeFiles::write_keepsOldFileAtFileSizeLimit()
{
    const TestDirectory directory;
    const QString path = directory.file("limited.xml");
    QVERIFY(writeTree(path, 10));
    const int status = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        takeLog();
        const bool written = writeTree(path, 100000);
        const bool told = loggedText() == "2 VLMC_XMLWriter::write file write error!\n";
        _exit(!written && told ? 0 : 1);
    });
    QCOMPARE(status, 0);
    COMPARE_BYTES(readFile(path), document(10));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_WholeFiles::write_keepsOldFileOnFullDisk()
{
    const TestDirectory directory;
    const QByteArray folder = QFile::encodeName(directory.path());
    if (mount("tmpfs", folder.constData(), "tmpfs", 0, "size=64k") != 0) {
        QSKIP("mounting is not allowed here");
    }
    const QString path = directory.file("full.xml");
    const bool first = writeTree(path, 10);
    takeLog();
    const bool second = writeTree(path, 200000);
    const QByteArray log = loggedText();
    const QByteArray content = readFile(path);
    const int files = int(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size());
    const bool third = writeTree(path, 1000);
    const QByteArray last = readFile(path);
    umount(folder.constData());
    QVERIFY(first && !second && third);
    COMPARE_BYTES(log, "2 VLMC_XMLWriter::write file write error!\n");
    COMPARE_BYTES(content, document(10));
    COMPARE_BYTES(last, document(1000));
    QCOMPARE(files, 1);
}

void tst_WholeFiles::write_isSeenWholeAtEveryMoment()
{
    const TestDirectory directory;
    const QString path = directory.file("busy.xml");
    QVERIFY(writeTree(path, 20000));
    const pid_t reader = fork();
    if (reader == 0) {
        const QByteArray large = document(20000);
        const QByteArray small = document(5);
        for (;;) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                _exit(1);
            }
            const QByteArray content = file.readAll();
            if (content != large && content != small) {
                _exit(2);
            }
        }
    }
    for (int i = 0; i < kSavesUnderReader; ++i) {
        writeTree(path, i % 2 == 0 ? 5 : 20000);
    }
    int status = 0;
    const bool stillReading = waitpid(reader, &status, WNOHANG) == 0;
    kill(reader, SIGKILL);
    waitpid(reader, &status, 0);
    QVERIFY(stillReading);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

QTEST_GUILESS_MAIN(tst_WholeFiles)
#include "tst_WholeFiles.moc"
