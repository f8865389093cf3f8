#include "files/ReplaceFile_p.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLWriter.h"
#include "files/OwnerOnlyFiles_p.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"

#include <QtCore/QDir>
#include <QtCore/QThread>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
const uid_t kUnprivileged = 65534;

const char kOpenError[] = "2 VLMC_XMLWriter::write file open error!\n";
const char kWriteError[] = "2 VLMC_XMLWriter::write file write error!\n";
const char kWritten[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r/>\n";
const char kStale[] = ".velmora-save-1-0";

bool writeTree(QString path)
{
    VLMC_XMLNode root(nullptr, 0);
    QString name = utf8("r");
    root.setName(name);
    VLMC_XMLWriter writer;
    return writer.write(path, &root);
}

QByteArray local(const QString &path) { return QFile::encodeName(path); }

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    lstat(local(path).constData(), &status);
    return status;
}

int modeOf(const QString &path) { return int(statusOf(path).st_mode & 07777); }

QStringList filesIn(const TestDirectory &directory)
{
    return QDir(directory.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

class Umask
{
public:
    explicit Umask(mode_t mask) : m_old(umask(mask)) {}
    ~Umask() { umask(m_old); }
    Umask(const Umask &) = delete;
    Umask &operator=(const Umask &) = delete;

private:
    mode_t m_old;
};

// The exit status of work as a user whom access rights bind.
template <typename Work>
int asUnprivileged(Work work)
{
    const int status = inChild([&work] {
        if (getuid() == 0 && (setgid(kUnprivileged) != 0 || setuid(kUnprivileged) != 0)) {
            _exit(77);
        }
        _exit(work() ? 0 : 1);
    });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void giveAway(const QString &path)
{
    if (getuid() == 0) {
        QCOMPARE(chown(local(path).constData(), kUnprivileged, kUnprivileged), 0);
    }
}

class SavingThread : public QThread
{
public:
    explicit SavingThread(const QString &path) : m_path(path), m_failed(0) {}
    int failed() const { return m_failed; }

protected:
    void run() override
    {
        for (int i = 0; i < 200; ++i) {
            m_failed += writeTree(m_path) ? 0 : 1;
        }
    }

private:
    QString m_path;
    int m_failed;
};
} // namespace

class tst_ReplaceFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void write_replacesTheFile();
    void write_refusesNullRootBeforeTheFile();
    void write_refusesPath_data();
    void write_refusesPath();
    void write_refusesWithoutRights();
    void write_logsOpenErrorBeforeNullChild();
    void write_replacesByTruncatedDocument();
    void write_replacesTargetOfLink();
    void write_createsTargetOfLink();
    void write_refusesLinkLoop();
    void write_keepsMode_data();
    void write_keepsMode();
    void write_createsWithUmask();
    void open_createsForOwnerOnly();
    void write_keepsOwner();
    void write_keepsExtendedAttributes_data();
    void write_keepsExtendedAttributes();
    void write_keepsFoldersDefaultAccessOut();
    void write_writesFileWithoutNameInPlace();
    void write_writesHardLinkInPlace();
    void write_tellsOfLossInPlace();
    void open_refusesLinks_data();
    void open_refusesLinks();
    void write_writesForeignFileInPlace();
    void write_writesInPlaceInReadOnlyFolder();
    void write_writesMountPointInPlace();
    void write_refusesFifoWithoutReader();
    void write_doesNotBlockOnFullFifo();
    void write_writesDeviceInPlace();
    void write_takesLongFileName_data();
    void write_takesLongFileName();
    void write_takesRelativePath();
    void write_takesNonAsciiPath();
    void write_removesStaleFiles();
    void write_leavesLiveFiles();
    void write_leavesForeignNames();
    void write_worksFromManyThreadsAndProcesses();
    void write_leavesNoDescriptorOpen();
};

void tst_ReplaceFile::write_replacesTheFile()
{
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, QByteArray(10000, 'x'));
    const ino_t before = statusOf(path).st_ino;
    QFile reader(path);
    QVERIFY(reader.open(QIODevice::ReadOnly));
    QVERIFY(writeTree(path));
    COMPARE_BYTES(readFile(path), kWritten);
    QVERIFY(statusOf(path).st_ino != before);
    QCOMPARE(reader.readAll(), QByteArray(10000, 'x'));
    QCOMPARE(filesIn(directory).size(), 1);
    QCOMPARE(loggedText(), QByteArray());
}

void tst_ReplaceFile::write_refusesNullRootBeforeTheFile()
{
    const TestDirectory directory;
    QString path = directory.file("f.xml");
    writeFile(directory.file(kStale), "stale");
    VLMC_XMLWriter writer;
    QVERIFY(!writer.write(path, static_cast<VLMC_XMLNode *>(nullptr)));
    QCOMPARE(filesIn(directory), QStringList() << utf8(kStale));
    QCOMPARE(loggedText(), QByteArray());
}

void tst_ReplaceFile::write_refusesPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("folder") << utf8("");
    QTest::newRow("folder without slash") << utf8(".");
    QTest::newRow("no folder") << utf8("missing/f.xml");
    QTest::newRow("slash at the end") << utf8("f.xml/");
    QTest::newRow("file as folder") << utf8("file/f.xml");
    QTest::newRow("zero character") << utf8("f") + QChar(0) + utf8("g");
    QTest::newRow("name too long") << QString(256, QLatin1Char('f'));
}

void tst_ReplaceFile::write_refusesPath()
{
    QFETCH(QString, path);
    const TestDirectory directory;
    writeFile(directory.file("file"), "old");
    QVERIFY(!writeTree(path.isNull() ? path : directory.path() + path));
    COMPARE_BYTES(loggedText(), kOpenError);
    QCOMPARE(filesIn(directory), QStringList() << utf8("file"));
    COMPARE_BYTES(readFile(directory.file("file")), "old");
}

void tst_ReplaceFile::write_refusesWithoutRights()
{
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, "old");
    QCOMPARE(chmod(local(path).constData(), 0444), 0);
    QCOMPARE(chmod(local(directory.path()).constData(), 0755), 0);
    giveAway(path);
    const int status = asUnprivileged([&] {
        const bool refused = !writeTree(path) && loggedText() == kOpenError;
        takeLog();
        return refused
               && (getuid() != kUnprivileged
                   || (!writeTree(directory.file("new.xml")) && loggedText() == kOpenError));
    });
    if (status == 77) {
        QSKIP("cannot become an unprivileged user");
    }
    QCOMPARE(status, 0);
    COMPARE_BYTES(readFile(path), "old");
}

void tst_ReplaceFile::write_logsOpenErrorBeforeNullChild()
{
    const TestDirectory directory;
    QString path = directory.file("missing/f.xml");
    VLMC_XMLNode root(nullptr, 0);
    root.getXMLNodeChildren().append(nullptr);
    VLMC_XMLWriter writer;
    QVERIFY(!writer.write(path, &root));
    COMPARE_BYTES(loggedText(), kOpenError);
    root.getXMLNodeChildren().clear();
}

void tst_ReplaceFile::write_replacesByTruncatedDocument()
{
    const TestDirectory directory;
    QString path = directory.file("f.xml");
    writeFile(path, "old");
    VLMC_XMLNode root(nullptr, 0);
    QString name = utf8("r");
    root.setName(name);
    root.getXMLNodeChildren().append(nullptr);
    VLMC_XMLWriter writer;
    QVERIFY(!writer.write(path, &root));
    COMPARE_BYTES(loggedText(), "1 [VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.\n");
    COMPARE_BYTES(readFile(path), kWritten);
    root.getXMLNodeChildren().clear();
}

void tst_ReplaceFile::write_replacesTargetOfLink()
{
    const TestDirectory directory;
    QVERIFY(QDir(directory.path()).mkdir(utf8("sub")));
    writeFile(directory.file("sub/target.xml"), "old");
    QCOMPARE(symlink("sub/second", local(directory.file("first")).constData()), 0);
    QCOMPARE(symlink("target.xml", local(directory.file("sub/second")).constData()), 0);
    const ino_t before = statusOf(directory.file("sub/target.xml")).st_ino;
    QVERIFY(writeTree(directory.file("first")));
    QVERIFY(S_ISLNK(statusOf(directory.file("first")).st_mode));
    QVERIFY(S_ISLNK(statusOf(directory.file("sub/second")).st_mode));
    COMPARE_BYTES(readFile(directory.file("sub/target.xml")), kWritten);
    QVERIFY(statusOf(directory.file("sub/target.xml")).st_ino != before);
}

void tst_ReplaceFile::write_createsTargetOfLink()
{
    const TestDirectory directory;
    QVERIFY(QFile::link(directory.file("target.xml"), directory.file("link")));
    QVERIFY(writeTree(directory.file("link")));
    QVERIFY(S_ISLNK(statusOf(directory.file("link")).st_mode));
    QVERIFY(S_ISREG(statusOf(directory.file("target.xml")).st_mode));
}

void tst_ReplaceFile::write_refusesLinkLoop()
{
    const TestDirectory directory;
    QCOMPARE(symlink("b", local(directory.file("a")).constData()), 0);
    QCOMPARE(symlink("a", local(directory.file("b")).constData()), 0);
    QVERIFY(!writeTree(directory.file("a")));
    COMPARE_BYTES(loggedText(), kOpenError);
}

void tst_ReplaceFile::write_keepsMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("owner only") << 0600;
    QTest::newRow("everybody") << 0666;
    QTest::newRow("executable") << 0755;
    QTest::newRow("set-group") << 02775;
}

void tst_ReplaceFile::write_keepsMode()
{
    QFETCH(int, mode);
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, "old");
    QCOMPARE(chmod(local(path).constData(), mode_t(mode)), 0);
    const Umask umask(0077);
    const vlm::OwnerOnlyFiles ownerOnly;
    vlm::ReplaceFile file;
    QVERIFY(file.open(path) && file.commit("x"));
    QCOMPARE(modeOf(path), mode);
}

void tst_ReplaceFile::write_createsWithUmask()
{
    const TestDirectory directory;
    {
        const Umask umask(0);
        QVERIFY(writeTree(directory.file("open.xml")));
    }
    const Umask umask(0027);
    QVERIFY(writeTree(directory.file("closed.xml")));
    QCOMPARE(modeOf(directory.file("open.xml")), 0666);
    QCOMPARE(modeOf(directory.file("closed.xml")), 0640);
}

void tst_ReplaceFile::open_createsForOwnerOnly()
{
    const TestDirectory directory;
    const Umask umask(0);
    const vlm::OwnerOnlyFiles ownerOnly;
    vlm::ReplaceFile file;
    QVERIFY(file.open(directory.file("secret.xml")));
    const QStringList temporary = filesIn(directory);
    QCOMPARE(temporary.size(), 1);
    QCOMPARE(modeOf(directory.path() + temporary.first()), 0600);
    QVERIFY(file.commit("x"));
    QCOMPARE(modeOf(directory.file("secret.xml")), 0600);
}

void tst_ReplaceFile::write_keepsOwner()
{
    if (getuid() != 0) {
        QSKIP("only root can give a file away");
    }
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, "old");
    giveAway(path);
    QCOMPARE(chmod(local(path).constData(), 04755), 0);
    const ino_t before = statusOf(path).st_ino;
    QVERIFY(writeTree(path));
    QVERIFY(statusOf(path).st_ino != before);
    QCOMPARE(statusOf(path).st_uid, kUnprivileged);
    QCOMPARE(modeOf(path), 04755);
}

void tst_ReplaceFile::write_keepsExtendedAttributes_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("a value") << QByteArray("kept");
    QTest::newRow("an empty value") << QByteArray("");
}

void tst_ReplaceFile::write_keepsExtendedAttributes()
{
    QFETCH(QByteArray, value);
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, "old");
    if (setxattr(local(path).constData(), "user.note", value.constData(), size_t(value.size()), 0)
        != 0) {
        QSKIP("no extended attributes here");
    }
    const ino_t before = statusOf(path).st_ino;
    QVERIFY(writeTree(path));
    QVERIFY(statusOf(path).st_ino != before);
    char kept[8] = {};
    QCOMPARE(int(getxattr(local(path).constData(), "user.note", kept, sizeof kept)),
             int(value.size()));
    QCOMPARE(QByteArray(kept), value);
    COMPARE_BYTES(readFile(path), kWritten);
}

// What is created in such a folder takes its access control list over, and cannot lose it again
// without its mode. The file was there before and has none.
void tst_ReplaceFile::write_keepsFoldersDefaultAccessOut()
{
    // The version, then tag, rights and user of each entry, the low byte first: owner, user 65534,
    // group, mask, others.
    const QByteArray accessList = QByteArray::fromHex("02000000"
                                                      "01000700ffffffff"
                                                      "02000700feff0000"
                                                      "04000500ffffffff"
                                                      "10000700ffffffff"
                                                      "20000500ffffffff");
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, "old");
    if (setxattr(local(directory.path()).constData(), "system.posix_acl_default",
                 accessList.constData(), size_t(accessList.size()), 0)
        != 0) {
        QSKIP("no access control lists here");
    }
    const int mode = modeOf(path);
    QVERIFY(writeTree(path));
    COMPARE_BYTES(loggedText(), "");
    COMPARE_BYTES(readFile(path), kWritten);
    QCOMPARE(int(listxattr(local(path).constData(), nullptr, 0)), 0);
    QCOMPARE(modeOf(path), mode);
    QCOMPARE(filesIn(directory), QStringList() << utf8("f.xml"));
}

// As one that is handed on open and then removed.
void tst_ReplaceFile::write_writesFileWithoutNameInPlace()
{
    const TestDirectory directory;
    const QByteArray name = local(directory.file("f.xml"));
    const int handed = open(name.constData(), O_RDWR | O_CREAT, 0600);
    QCOMPARE(unlink(name.constData()), 0);
    QVERIFY(writeTree(utf8("/proc/self/fd/%1").arg(handed)));
    char content[sizeof kWritten] = {};
    QCOMPARE(int(pread(handed, content, sizeof content, 0)), int(sizeof kWritten) - 1);
    close(handed);
    QCOMPARE(QByteArray(content), QByteArray(kWritten));
    QCOMPARE(filesIn(directory), QStringList());
}

void tst_ReplaceFile::write_writesHardLinkInPlace()
{
    const TestDirectory directory;
    writeFile(directory.file("one"), QByteArray(10000, 'x'));
    QCOMPARE(
        link(local(directory.file("one")).constData(), local(directory.file("two")).constData()),
        0);
    QVERIFY(writeTree(directory.file("one")));
    COMPARE_BYTES(readFile(directory.file("two")), kWritten);
    QCOMPARE(int(statusOf(directory.file("one")).st_nlink), 2);
}

void tst_ReplaceFile::write_tellsOfLossInPlace()
{
    const TestDirectory directory;
    const QString path = directory.file("one");
    writeFile(path, "old");
    QCOMPARE(link(local(path).constData(), local(directory.file("two")).constData()), 0);
    const int status = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {10, 10};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(!writeTree(path) && loggedText() == kWriteError ? 0 : 1);
    });
    QCOMPARE(status, 0);
    COMPARE_BYTES(readFile(path), QByteArray(kWritten).left(10));
}

void tst_ReplaceFile::open_refusesLinks_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("to a file") << QByteArray("victim");
    QTest::newRow("to nothing") << QByteArray("missing");
    QTest::newRow("to itself") << QByteArray("link");
}

void tst_ReplaceFile::open_refusesLinks()
{
    QFETCH(QByteArray, target);
    const TestDirectory directory;
    writeFile(directory.file("victim"), "untouched");
    QCOMPARE(symlink(target.constData(), local(directory.file("link")).constData()), 0);
    vlm::ReplaceFile file;
    QVERIFY(!file.open(directory.file("link"), vlm::ReplaceFile::RefuseLinks));
    COMPARE_BYTES(readFile(directory.file("victim")), "untouched");
    QVERIFY(S_ISLNK(statusOf(directory.file("link")).st_mode));
    QVERIFY(!exists(directory.file("missing")));
    vlm::ReplaceFile other;
    QVERIFY(other.open(directory.file("victim"), vlm::ReplaceFile::RefuseLinks));
    QVERIFY(other.commit("new"));
    COMPARE_BYTES(readFile(directory.file("victim")), "new");
}

void tst_ReplaceFile::write_writesForeignFileInPlace()
{
    if (getuid() != 0) {
        QSKIP("only root can make a file of another owner");
    }
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, QByteArray(10000, 'x'));
    QCOMPARE(chmod(local(path).constData(), 0666), 0);
    QCOMPARE(chmod(local(directory.path()).constData(), 0777), 0);
    const ino_t before = statusOf(path).st_ino;
    QCOMPARE(asUnprivileged([&] { return writeTree(path); }), 0);
    QCOMPARE(statusOf(path).st_ino, before);
    QCOMPARE(statusOf(path).st_uid, uid_t(0));
    COMPARE_BYTES(readFile(path), kWritten);
    QCOMPARE(filesIn(directory).size(), 1);
}

void tst_ReplaceFile::write_writesInPlaceInReadOnlyFolder()
{
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    writeFile(path, QByteArray(10000, 'x'));
    giveAway(path);
    QCOMPARE(chmod(local(directory.path()).constData(), 0555), 0);
    const int status = asUnprivileged([&] { return writeTree(path) && loggedText().isEmpty(); });
    chmod(local(directory.path()).constData(), 0700);
    if (status == 77) {
        QSKIP("cannot become an unprivileged user");
    }
    QCOMPARE(status, 0);
    COMPARE_BYTES(readFile(path), kWritten);
}

void tst_ReplaceFile::write_writesMountPointInPlace()
{
    const TestDirectory directory;
    const QByteArray path = local(directory.file("f.xml"));
    writeFile(directory.file("f.xml"), "under");
    writeFile(directory.file("source"), QByteArray(10000, 'x'));
    if (mount(local(directory.file("source")).constData(), path.constData(), nullptr, MS_BIND,
              nullptr)
        != 0) {
        QSKIP("mounting is not allowed here");
    }
    const bool written = writeTree(directory.file("f.xml"));
    umount(path.constData());
    QVERIFY(written);
    COMPARE_BYTES(readFile(directory.file("source")), kWritten);
    QCOMPARE(filesIn(directory).size(), 2);
}

void tst_ReplaceFile::write_refusesFifoWithoutReader()
{
    const TestDirectory directory;
    QCOMPARE(mkfifo(local(directory.file("fifo")).constData(), 0600), 0);
    QVERIFY(!writeTree(directory.file("fifo")));
    COMPARE_BYTES(loggedText(), kOpenError);
    QVERIFY(S_ISFIFO(statusOf(directory.file("fifo")).st_mode));
}

void tst_ReplaceFile::write_doesNotBlockOnFullFifo()
{
    const TestDirectory directory;
    const QByteArray name = local(directory.file("fifo"));
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    const int reader = open(name.constData(), O_RDONLY | O_NONBLOCK);
    int written = 0;
    while (written < 3000 && writeTree(directory.file("fifo"))) {
        ++written;
    }
    // A pipe holds 64 KiB.
    QVERIFY(written > 0 && written < 3000);
    COMPARE_BYTES(loggedText(), kWriteError);
    char bytes[sizeof kWritten] = {};
    QCOMPARE(int(read(reader, bytes, sizeof bytes - 1)), int(sizeof kWritten) - 1);
    QCOMPARE(QByteArray(bytes), QByteArray(kWritten));
    close(reader);
}

void tst_ReplaceFile::write_writesDeviceInPlace()
{
    QVERIFY(writeTree(utf8("/dev/null")));
    QVERIFY(S_ISCHR(statusOf(utf8("/dev/null")).st_mode));
    COMPARE_BYTES(loggedText(), "");
    QVERIFY(!writeTree(utf8("/dev/full")));
    COMPARE_BYTES(loggedText(), kWriteError);
}

void tst_ReplaceFile::write_takesLongFileName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("255 bytes") << QString(255, QLatin1Char('f'));
    QTest::newRow("255 bytes, 3 a character") << QString(85, QChar(0x3042));
}

void tst_ReplaceFile::write_takesLongFileName()
{
    QFETCH(QString, name);
    const TestDirectory directory;
    QVERIFY(writeTree(directory.path() + name));
    const ino_t before = statusOf(directory.path() + name).st_ino;
    QVERIFY(writeTree(directory.path() + name));
    QVERIFY(statusOf(directory.path() + name).st_ino != before);
    QCOMPARE(filesIn(directory), QStringList() << name);
}

void tst_ReplaceFile::write_takesRelativePath()
{
    const TestDirectory directory;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(directory.path()));
    const bool first = writeTree(utf8("f.xml"));
    const bool second = writeTree(utf8("f.xml"));
    QDir::setCurrent(before);
    QVERIFY(first && second);
    QCOMPARE(filesIn(directory), QStringList() << utf8("f.xml"));
}

void tst_ReplaceFile::write_takesNonAsciiPath()
{
    const TestDirectory directory;
    const QString path = directory.file("\xe3\x81\x82 \xc3\xa9.xml");
    QVERIFY(writeTree(path));
    COMPARE_BYTES(readFile(path), kWritten);
}

void tst_ReplaceFile::write_removesStaleFiles()
{
    const TestDirectory directory;
    writeFile(directory.file("f.xml"), "old");
    writeFile(directory.file(kStale), "stale");
    writeFile(directory.file(".velmora-save-2-7"), "stale");
    QVERIFY(writeTree(directory.file("f.xml")));
    QCOMPARE(filesIn(directory), QStringList() << utf8("f.xml"));
    writeFile(directory.file(kStale), "stale");
    QVERIFY(writeTree(directory.file("new.xml")));
    QCOMPARE(filesIn(directory), QStringList() << utf8("f.xml") << utf8("new.xml"));
}

void tst_ReplaceFile::write_leavesLiveFiles()
{
    const TestDirectory directory;
    writeFile(directory.file(kStale), "live");
    const int saver = open(local(directory.file(kStale)).constData(), O_WRONLY);
    QCOMPARE(flock(saver, LOCK_EX), 0);
    QVERIFY(writeTree(directory.file("f.xml")));
    QVERIFY(exists(directory.file(kStale)));
    close(saver);
    QVERIFY(writeTree(directory.file("f.xml")));
    QVERIFY(!exists(directory.file(kStale)));
}

void tst_ReplaceFile::write_leavesForeignNames()
{
    const TestDirectory directory;
    writeFile(directory.file("target"), "kept");
    writeFile(directory.file(".velmora-other"), "kept");
    QVERIFY(QDir(directory.path()).mkdir(utf8(".velmora-save-folder")));
    QCOMPARE(mkfifo(local(directory.file(".velmora-save-fifo")).constData(), 0600), 0);
    QCOMPARE(symlink("target", local(directory.file(".velmora-save-link")).constData()), 0);
    QVERIFY(writeTree(directory.file("f.xml")));
    COMPARE_BYTES(readFile(directory.file("target")), "kept");
    QVERIFY(exists(directory.file(".velmora-other")));
    QVERIFY(exists(directory.file(".velmora-save-folder")));
    QVERIFY(exists(directory.file(".velmora-save-fifo")));
    QVERIFY(exists(directory.file(".velmora-save-link")));
    // One that can be opened, as it has a reader.
    const int reader =
        open(local(directory.file(".velmora-save-fifo")).constData(), O_RDONLY | O_NONBLOCK);
    QVERIFY(writeTree(directory.file("f.xml")));
    QVERIFY(exists(directory.file(".velmora-save-fifo")));
    close(reader);
}

void tst_ReplaceFile::write_worksFromManyThreadsAndProcesses()
{
    const TestDirectory directory;
    const QString path = directory.file("f.xml");
    const pid_t other = fork();
    if (other == 0) {
        int refused = 0;
        for (int i = 0; i < 500; ++i) {
            refused += writeTree(path) ? 0 : 1;
        }
        _exit(refused == 0 ? 0 : 1);
    }
    QList<SavingThread *> threads;
    for (int i = 0; i < 8; ++i) {
        threads.append(new SavingThread(path));
        threads.last()->start();
    }
    int failed = 0;
    while (!threads.isEmpty()) {
        SavingThread *const thread = threads.takeFirst();
        thread->wait();
        failed += thread->failed();
        delete thread;
    }
    int status = 0;
    waitpid(other, &status, 0);
    QCOMPARE(status, 0);
    QCOMPARE(failed, 0);
    QVERIFY(writeTree(path));
    QCOMPARE(filesIn(directory), QStringList() << utf8("f.xml"));
}

void tst_ReplaceFile::write_leavesNoDescriptorOpen()
{
    const TestDirectory directory;
    writeFile(directory.file("one"), "x");
    writeFile(directory.file("plain"), "x");
    QCOMPARE(
        link(local(directory.file("one")).constData(), local(directory.file("two")).constData()),
        0);
    const int before = dup(0);
    close(before);
    writeTree(directory.file("one"));
    writeTree(directory.file("plain"));
    writeTree(directory.file("new"));
    writeTree(directory.path());
    writeTree(directory.file("missing/f"));
    const int after = dup(0);
    close(after);
    QCOMPARE(after, before);
}

QTEST_GUILESS_MAIN(tst_ReplaceFile)
#include "tst_ReplaceFile.moc"
