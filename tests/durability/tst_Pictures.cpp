#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QDir>
#include <QtGui/QImage>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const char kReadingLine[] = "2 [VLMC_ThumbnailConverter::convertThumbnailPngToXML] "
                            "Couldn't read the directory.\n";
const char kWriteLine[] = "1 [VLMC_ThumbnailConverter] Couldn't write thumbnail.\n";

const int kPackedPictures = 3;
const int kRandomDeaths = 1000;
const int kLongestLifeMicroseconds = 2000;

enum Kind { Faults, Deaths, RandomDeaths, KindCount };
const char *const kKinds[] = {"faults", "deaths", "deaths at any moment"};

QImage picture()
{
    QImage image(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x * y * 7 % 256, x * 31 % 256, y * 57 % 256));
        }
    }
    return image;
}

// What Qt itself saves to a file.
QByteArray pictureBytes()
{
    const TestDirectory directory;
    const QString path = directory.file("picture.png");
    return picture().save(path, "PNG", -1) ? readFile(path) : QByteArray();
}

QString nameOf(int number) { return utf8("%1.PNG").arg(number, 6, 10, QLatin1Char('0')); }

// A way to write pictures, in the order of their numbers, and how many it writes. False when it is
// known that something went wrong.
struct Operation {
    const char *name;
    int pictures;
    bool (*run)(const QString &folder);
};

bool setThumbnail(const QString &folder)
{
    VLMC_BookmarksSetting bookmarks;
    QImage image = picture();
    QString path = folder;
    int number = 0;
    const WatchedCalls watched;
    return bookmarks.setThumbnail(&image, &path, number);
}

bool decode(const QString &folder)
{
    VLMC_ThumbnailConverter converter;
    QByteArray text = pictureBytes().toBase64();
    QString path = folder + nameOf(1);
    const WatchedCalls watched;
    return converter.decode_base64(text, path);
}

QByteArray packedPictures()
{
    QByteArray images;
    for (int i = 1; i <= kPackedPictures; ++i) {
        images += "<image src=\"" + nameOf(i).toLatin1() + "\"><![CDATA["
                  + pictureBytes().toBase64() + "]]></image>";
    }
    return "<thumbnail docInfo=\"1.0\">" + images + "</thumbnail>";
}

bool unpack(const QString &folder)
{
    const TestDirectory directory;
    writeFile(directory.file("packed.xml"), packedPictures());
    QByteArray packed = QFile::encodeName(directory.file("packed.xml"));
    QByteArray to = QFile::encodeName(folder);
    VLMC_ThumbnailConverter converter;
    takeLog();
    {
        const WatchedCalls watched;
        converter.convertThumbnailXMLToPng(packed.data(), to.data());
    }
    const QByteArray log = loggedText();
    return !log.contains("Couldn't") && !log.contains("error!");
}

const Operation kOperations[] = {
    {"setThumbnail", 1, setThumbnail},
    {"decode_base64", 1, decode},
    {"convertThumbnailXMLToPng", kPackedPictures, unpack},
};

// A folder in which an operation writes its pictures, over old ones or none.
class Case
{
public:
    Case(int row, bool overOld)
        : m_operation(kOperations[row]), m_overOld(overOld), m_old(5000, 'o'), m_new(pictureBytes())
    {
        restore();
        run();
        m_calls = watchedCalls();
        restore();
    }

    void restore()
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        const QStringList names = filesIn();
        for (const QString &name : names) {
            QFile::remove(m_folder.path() + name);
        }
        for (int i = 1; m_overOld && i <= m_operation.pictures; ++i) {
            writeFile(m_folder.path() + nameOf(i), m_old);
        }
    }
    bool run() const { return m_operation.run(m_folder.path()); }

    bool isNew() const { return all(true, false); }
    bool isOld() const { return all(false, true); }
    bool isWhole() const { return all(true, true); }
    QStringList leftOver() const
    {
        QStringList names = filesIn();
        for (int i = 1; i <= m_operation.pictures; ++i) {
            names.removeAll(nameOf(i));
        }
        return names;
    }
    QList<SystemCall> calls() const { return m_calls; }

private:
    QStringList filesIn() const
    {
        return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    bool all(bool mayBeNew, bool mayBeOld) const
    {
        for (int i = 1; i <= m_operation.pictures; ++i) {
            const QString path = m_folder.path() + nameOf(i);
            const bool isThere = exists(path);
            const QByteArray content = isThere ? readFile(path) : QByteArray();
            const bool isOld = m_overOld ? isThere && content == m_old : !isThere;
            const bool isNew = isThere && content == m_new;
            if (!(mayBeNew && isNew) && !(mayBeOld && isOld)) {
                return false;
            }
        }
        return true;
    }

    const Operation &m_operation;
    bool m_overOld;
    TestDirectory m_folder;
    QByteArray m_old;
    QByteArray m_new;
    QList<SystemCall> m_calls;
};

void operationRows()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("overOld");
    for (int i = 0; i < int(sizeof kOperations / sizeof *kOperations); ++i) {
        const QByteArray name(kOperations[i].name);
        QTest::newRow((name + ", new").constData()) << i << false;
        QTest::newRow((name + ", over old ones").constData()) << i << true;
    }
}

int indexOf(const QList<SystemCall> &calls, const QByteArray &name)
{
    for (int i = 0; i < calls.size(); ++i) {
        if (calls.at(i).name == name) {
            return i;
        }
    }
    return -1;
}

// As many bytes as fit into no file that is written afterwards.
void limitFiles(rlim_t bytes)
{
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}
} // namespace

class tst_Pictures : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();
    void cleanupTestCase();

    void write_survivesFailingCalls_data() { operationRows(); }
    void write_survivesFailingCalls();
    void write_survivesDeathAtEveryCall_data() { operationRows(); }
    void write_survivesDeathAtEveryCall();
    void write_survivesDeathAtAnyMoment_data() { operationRows(); }
    void write_survivesDeathAtAnyMoment();
    void write_tellsOfAFullDisk_data() { operationRows(); }
    void write_tellsOfAFullDisk();
    void decode_base64_logsWhatTheDiskRefuses();
    void convertThumbnailPngToXML_keepsThePackWithoutTheFolder();

private:
    int m_counts[KindCount] = {};
};

void tst_Pictures::cleanup()
{
    setFaultPlan({FaultPlan::None, 0, 0});
    runDeferredDeletes();
}

void tst_Pictures::cleanupTestCase()
{
    for (int kind = 0; kind < KindCount; ++kind) {
        printf("pictures, %s: %d\n", kKinds[kind], m_counts[kind]);
    }
    fflush(stdout);
}

void tst_Pictures::write_survivesFailingCalls()
{
    QFETCH(int, row);
    QFETCH(bool, overOld);
    Case pictures(row, overOld);
    const int calls = int(pictures.calls().size());
    QVERIFY(calls > 12);
    const int creating = indexOf(pictures.calls(), "create");
    const struct {
        FaultPlan::Kind kind;
        int error;
    } faults[] = {
        {FaultPlan::Fail, ENOSPC},         {FaultPlan::Fail, EIO},
        {FaultPlan::Fail, EDQUOT},         {FaultPlan::Fail, EMFILE},
        {FaultPlan::FailFromHere, ENOSPC}, {FaultPlan::FailFromHere, EIO},
        {FaultPlan::ShortWrite, 0},
    };
    for (const auto &fault : faults) {
        for (int k = 0; k < calls; ++k) {
            const QByteArray where = pictures.calls().at(k).name;
            pictures.restore();
            setFaultPlan({fault.kind, k, fault.error});
            const bool done = pictures.run();
            setFaultPlan({FaultPlan::None, 0, 0});
            ++m_counts[Faults];
            QVERIFY2(pictures.isWhole(), where.constData());
            QVERIFY2(!done || pictures.isNew(), where.constData());
            QVERIFY2(done || fault.kind != FaultPlan::ShortWrite, where.constData());
            const bool cleansUp = fault.kind == FaultPlan::Fail && k > creating;
            QVERIFY2(!cleansUp || where == "unlink" || pictures.leftOver().isEmpty(),
                     where.constData());
            QVERIFY2(pictures.run() && pictures.isNew(), where.constData());
            QVERIFY2(pictures.leftOver().isEmpty(), where.constData());
        }
    }
}

void tst_Pictures::write_survivesDeathAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(bool, overOld);
    Case pictures(row, overOld);
    const FaultPlan::Kind kinds[] = {FaultPlan::KillBefore, FaultPlan::KillAmid};
    for (const FaultPlan::Kind kind : kinds) {
        for (int k = 0; k < pictures.calls().size(); ++k) {
            if (kind == FaultPlan::KillAmid && pictures.calls().at(k).name != "write") {
                continue;
            }
            pictures.restore();
            setFaultPlan({kind, k, 0});
            const int status = inChild([&] { pictures.run(); });
            setFaultPlan({FaultPlan::None, 0, 0});
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            ++m_counts[Deaths];
            QVERIFY(pictures.isWhole());
            QVERIFY(pictures.run() && pictures.isNew());
            QCOMPARE(pictures.leftOver(), QStringList());
        }
    }
}

void tst_Pictures::write_survivesDeathAtAnyMoment()
{
    QFETCH(int, row);
    QFETCH(bool, overOld);
    Case pictures(row, overOld);
    for (int i = 0; i < kRandomDeaths; ++i) {
        if (i % 10 == 0) {
            pictures.restore();
        }
        const pid_t child = fork();
        if (child == 0) {
            for (;;) {
                pictures.run();
            }
        }
        // Spread evenly, in another order.
        usleep(useconds_t(i * 7919 % kLongestLifeMicroseconds));
        kill(child, SIGKILL);
        QCOMPARE(waitpid(child, nullptr, 0), child);
        ++m_counts[RandomDeaths];
        QVERIFY(pictures.isWhole());
    }
    QVERIFY(pictures.run() && pictures.isNew());
    QCOMPARE(pictures.leftOver(), QStringList());
}

void tst_Pictures::write_tellsOfAFullDisk()
{
    QFETCH(int, row);
    QFETCH(bool, overOld);
    const Case pictures(row, overOld);
    for (int k = 0; k < pictures.calls().size(); ++k) {
        if (pictures.calls().at(k).name == "write") {
            setFaultPlan({FaultPlan::FailFromHere, k, ENOSPC});
            QVERIFY(!pictures.run());
            setFaultPlan({FaultPlan::None, 0, 0});
            QVERIFY(pictures.isWhole());
            return;
        }
    }
    QFAIL("nothing was written");
}

void tst_Pictures::decode_base64_logsWhatTheDiskRefuses()
{
    const TestDirectory directory;
    const QString path = directory.file("a.png");
    writeFile(path, "old");
    const int status = inChild([&] {
        limitFiles(2);
        VLMC_ThumbnailConverter converter;
        QByteArray text = "b25l";
        QString file = path;
        takeLog();
        const bool done = converter.decode_base64(text, file);
        _exit(!done && loggedText() == kWriteLine ? 0 : 1);
    });
    QCOMPARE(status, 0);
    COMPARE_BYTES(readFile(path), "old");
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

// What cannot be listed is not taken for an empty folder, nor what is listed in part for all.
void tst_Pictures::convertThumbnailPngToXML_keepsThePackWithoutTheFolder()
{
    TestDirectory directory;
    QVERIFY(QDir().mkdir(directory.file("pictures")));
    writeFile(directory.file("pictures/1.png"), "one");
    writeFile(directory.file("pictures/2.png"), "two");
    const QString file = directory.file("packed.xml");
    QByteArray from = directory.localFile("pictures/");
    const auto pack = [&] {
        VLMC_ThumbnailConverter converter;
        QByteArray to = directory.localFile("packed.xml");
        const WatchedCalls watched;
        converter.convertThumbnailPngToXML(from.data(), to.data());
    };
    pack();
    const QList<SystemCall> calls = watchedCalls();
    const QByteArray whole = readFile(file);
    QCOMPARE(whole.count("<image src="), 2);
    QCOMPARE(whole.count("CDATA"), 2);
    int refused = 0;
    const int errors[] = {EIO, ENOMEM, EMFILE, EACCES};
    for (const int error : errors) {
        for (int k = 0; k < calls.size(); ++k) {
            const QByteArray name = calls.at(k).name;
            if (name == "open" || name == "create") {
                break;
            }
            writeFile(file, "the pack before");
            takeLog();
            setFaultPlan({FaultPlan::Fail, k, error});
            pack();
            setFaultPlan({FaultPlan::None, 0, 0});
            ++m_counts[Faults];
            const bool kept = readFile(file) == "the pack before";
            QVERIFY2(kept || readFile(file) == whole, name.constData());
            QCOMPARE(bool(loggedText().contains(kReadingLine)), kept);
            refused += kept ? 1 : 0;
        }
    }
    QVERIFY(refused >= 4 * 4);
}

QTEST_GUILESS_MAIN(tst_Pictures)
#include "tst_Pictures.moc"
