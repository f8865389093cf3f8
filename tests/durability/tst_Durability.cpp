#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "fonts/VLMC_FontListSetting.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QDir>

#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const int kSavesUnderReader = 10000;

// Calls that a signal may break off and that are then made again, or need not be.
const QList<QByteArray> kRepeatable = QList<QByteArray>() << "open"
                                                          << "create"
                                                          << "write"
                                                          << "fdatasync"
                                                          << "close"
                                                          << "fsync";

// How each store comes to save one given text; the calls are watched from WatchedCalls on.
void saveFontList(const QString &directory, const QString &text)
{
    VLMC_FontListSetting fonts;
    fonts.createXMLRootNode();
    fonts.addFont(text);
    const WatchedCalls watched;
    fonts.saveFontList(directory);
}

struct Store {
    const char *name;
    const char *fileName;
    void (*save)(const QString &directory, const QString &text);
};

const Store kStores[] = {
    {"font list", "fontlist.xml", saveFontList},
};

// One directory with a store's old file, and what its next save is to write.
class Case
{
public:
    Case(const Store &store, bool hasOld) : m_store(store)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        m_old = saved(QString(50, QLatin1Char('o')));
        m_new = saved(QString(250, QLatin1Char('n')));
        restore(hasOld);
        save();
        m_calls = watchedCalls();
        restore(hasOld);
    }

    void restore(bool hasOld)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        QFile::remove(file());
        if (hasOld) {
            writeFile(file(), m_old);
        }
        m_hasOld = hasOld;
    }

    void save() { m_store.save(m_directory.path(), QString(250, QLatin1Char('n'))); }

    bool isWhole() const
    {
        if (!exists(file())) {
            return !m_hasOld;
        }
        const QByteArray content = readFile(file());
        return content == m_new || (m_hasOld && content == m_old);
    }
    bool isOld() const { return m_hasOld ? readFile(file()) == m_old : !exists(file()); }
    bool isNew() const { return exists(file()) && readFile(file()) == m_new; }
    QStringList leftOver() const
    {
        QStringList names = QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden);
        names.removeAll(QString::fromLatin1(m_store.fileName));
        return names;
    }
    QString file() const { return m_directory.file(m_store.fileName); }
    QByteArray oldContent() const { return m_old; }
    QByteArray newContent() const { return m_new; }
    QList<SystemCall> calls() const { return m_calls; }

private:
    QByteArray saved(const QString &text)
    {
        m_store.save(m_directory.path(), text);
        return readFile(file());
    }

    const Store &m_store;
    TestDirectory m_directory;
    QByteArray m_old;
    QByteArray m_new;
    QList<SystemCall> m_calls;
    bool m_hasOld;
};

void storeRows()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("hasOld");
    for (int i = 0; i < int(sizeof kStores / sizeof kStores[0]); ++i) {
        const QByteArray name(kStores[i].name);
        QTest::newRow((name + ", over an old file").constData()) << i << true;
        QTest::newRow((name + ", for the first time").constData()) << i << false;
    }
}

// What the disk may hold of one file.
QList<QByteArray> possibleContents(const QByteArray &content, bool synced)
{
    QList<QByteArray> contents;
    contents.append(content);
    if (!synced) {
        contents.append(QByteArray());
        contents.append(content.left(int(content.size()) / 2));
        contents.append(QByteArray(content.size(), '\0'));
    }
    return contents;
}

// What the target may hold when the power is cut after the first calls: names may get to the disk
// before or after data as long as neither is synchronised. A null content is no file.
QList<QByteArray> possibleTargets(const QList<SystemCall> &calls, const QByteArray &old,
                                  const QByteArray &target)
{
    QByteArray written;
    bool dataSynced = false;
    bool renamed = false;
    bool nameSynced = false;
    QByteArray temporary;
    for (const SystemCall &call : calls) {
        if (call.name == "create") {
            temporary = call.file;
        } else if (call.name == "write" && call.file == temporary) {
            written += call.data;
            dataSynced = false;
        } else if (call.name == "fdatasync" && call.file == temporary) {
            dataSynced = true;
        } else if (call.name == "rename" && call.data == target) {
            renamed = true;
        } else if (call.name == "fsync" && target.startsWith(call.file)) {
            nameSynced = renamed;
        }
    }
    QList<QByteArray> contents;
    if (!nameSynced) {
        contents.append(old);
    }
    if (renamed) {
        contents += possibleContents(written, dataSynced);
    }
    return contents;
}

QList<SystemCall> without(const QList<SystemCall> &calls, const QByteArray &name)
{
    QList<SystemCall> left;
    for (const SystemCall &call : calls) {
        if (call.name != name) {
            left.append(call);
        }
    }
    return left;
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

template <typename Work>
int inChild(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

QByteArray document(int fill)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>" + QByteArray(fill, 'x') + "</r>\n";
}

bool writeTree(QString path, int fill)
{
    VLMC_XMLNode root(nullptr, 0);
    QString name = utf8("r");
    QString text(fill, QLatin1Char('x'));
    root.setName(name);
    root.setText(text);
    VLMC_XMLWriter writer;
    return writer.write(path, &root);
}
} // namespace

class tst_Durability : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }
    void cleanupTestCase();

    void save_takesTheSafeSteps_data() { storeRows(); }
    void save_takesTheSafeSteps();
    void save_survivesFailingCalls_data() { storeRows(); }
    void save_survivesFailingCalls();
    void save_survivesDeathAtEveryCall_data() { storeRows(); }
    void save_survivesDeathAtEveryCall();
    void save_survivesPowerCutAtEveryCall_data() { storeRows(); }
    void save_survivesPowerCutAtEveryCall();
    void powerCut_wouldShowAMissingSync();
    void write_keepsOldFileAtFileSizeLimit();
    void write_keepsOldFileOnFullDisk();
    void write_isSeenWholeAtEveryMoment();

private:
    int m_faults = 0;
    int m_deaths = 0;
    int m_powerCuts = 0;
};

void tst_Durability::cleanupTestCase()
{
    printf("faults: %d, deaths: %d, power cuts: %d cases\n", m_faults, m_deaths, m_powerCuts);
}

void tst_Durability::save_takesTheSafeSteps()
{
    QFETCH(int, row);
    QFETCH(bool, hasOld);
    const Case save(kStores[row], hasOld);
    const QList<SystemCall> calls = save.calls();
    QList<QByteArray> steps;
    QByteArray temporary;
    for (const SystemCall &call : calls) {
        if (call.name == "create") {
            temporary = call.file;
            steps.append(call.name);
        } else if (!temporary.isEmpty() && (call.file == temporary || call.name == "fsync")) {
            steps.append(call.name);
        }
    }
    QList<QByteArray> expected;
    expected << "create"
             << "flock";
    if (hasOld) {
        expected << "fchmod";
    }
    expected << "write"
             << "fdatasync"
             << "close"
             << "rename"
             << "fsync";
    QCOMPARE(steps, expected);
}

void tst_Durability::save_survivesFailingCalls()
{
    QFETCH(int, row);
    QFETCH(bool, hasOld);
    Case save(kStores[row], hasOld);
    const int calls = int(save.calls().size());
    QVERIFY(calls > 8);
    const int renaming = indexOf(save.calls(), "rename");
    const int errors[] = {ENOSPC, EIO, EINTR, EDQUOT, EMFILE};
    const FaultPlan::Kind kinds[] = {FaultPlan::Fail, FaultPlan::FailFromHere,
                                     FaultPlan::ShortWrite};
    for (const FaultPlan::Kind kind : kinds) {
        for (const int error : errors) {
            // A signal at every call from now on would be no signal.
            if (kind == FaultPlan::FailFromHere && error == EINTR) {
                continue;
            }
            for (int k = 0; k < calls; ++k) {
                save.restore(hasOld);
                takeLog();
                setFaultPlan({kind, k, error});
                save.save();
                setFaultPlan({FaultPlan::None, 0, 0});
                ++m_faults;
                const QByteArray where = save.calls().at(k).name;
                QVERIFY2(save.isWhole(), where.constData());
                const bool refused = loggedText().contains(" error!\n");
                // Only a folder that cannot be synchronised is noticed after the renaming.
                const bool renamed = kind == FaultPlan::FailFromHere || k > renaming;
                QVERIFY2(!refused || renamed || save.isOld(), where.constData());
                QVERIFY2(refused || save.isNew(), where.constData());
                const bool harmless = kind == FaultPlan::ShortWrite
                                      || (error == EINTR && kRepeatable.contains(where));
                QVERIFY2(!harmless || !refused, where.constData());
                save.save();
                QVERIFY2(save.isNew(), where.constData());
                QVERIFY2(save.leftOver().isEmpty(), where.constData());
            }
        }
    }
}

void tst_Durability::save_survivesDeathAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(bool, hasOld);
    Case save(kStores[row], hasOld);
    const int calls = int(save.calls().size());
    const FaultPlan::Kind kinds[] = {FaultPlan::KillBefore, FaultPlan::KillAfter};
    for (const FaultPlan::Kind kind : kinds) {
        for (int k = 0; k < calls; ++k) {
            save.restore(hasOld);
            setFaultPlan({kind, k, 0});
            const int status = inChild([&] { save.save(); });
            setFaultPlan({FaultPlan::None, 0, 0});
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            ++m_deaths;
            QVERIFY(save.isWhole());
            QVERIFY(save.leftOver().size() <= 1);
            save.save();
            QVERIFY(save.isNew());
            QCOMPARE(save.leftOver(), QStringList());
        }
    }
}

void tst_Durability::save_survivesPowerCutAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(bool, hasOld);
    const Case save(kStores[row], hasOld);
    const QByteArray old = hasOld ? save.oldContent() : QByteArray();
    const QByteArray target = QFile::encodeName(save.file());
    for (int k = 0; k <= save.calls().size(); ++k) {
        const QList<QByteArray> states = possibleTargets(save.calls().mid(0, k), old, target);
        QVERIFY(!states.isEmpty());
        for (const QByteArray &state : states) {
            ++m_powerCuts;
            QVERIFY(state == old || state == save.newContent());
        }
    }
    const QList<QByteArray> finished = possibleTargets(save.calls(), old, target);
    QCOMPARE(finished, QList<QByteArray>() << save.newContent());
}

void tst_Durability::powerCut_wouldShowAMissingSync()
{
    const Case save(kStores[0], true);
    const QByteArray target = QFile::encodeName(save.file());
    const QList<QByteArray> unsynced =
        possibleTargets(without(save.calls(), "fdatasync"), save.oldContent(), target);
    QVERIFY(unsynced.contains(QByteArray()));
    const QList<QByteArray> unnamed =
        possibleTargets(without(save.calls(), "fsync"), save.oldContent(), target);
    QVERIFY(unnamed.contains(save.oldContent()));
}

void tst_Durability::write_keepsOldFileAtFileSizeLimit()
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

void tst_Durability::write_keepsOldFileOnFullDisk()
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

void tst_Durability::write_isSeenWholeAtEveryMoment()
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

QTEST_GUILESS_MAIN(tst_Durability)
#include "tst_Durability.moc"
