#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "tests/durability/FilledTree.h"
#include "tests/durability/SavedStores.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QScopedPointer>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
// Forking takes a process long under the sanitizers.
#ifdef __SANITIZE_ADDRESS__
const int kInterleavedStep = 8;
#else
const int kInterleavedStep = 1;
#endif

const uid_t kOtherUser = 65534;

// What a crash has left in the folder, so that each save has something to clean up first.
const char kStale[] = ".velmora-save-1-0";

// Calls that a signal may interrupt and that are then repeated, or need not be.
const QList<QByteArray> kRepeatable = QList<QByteArray>() << "open"
                                                          << "create"
                                                          << "write"
                                                          << "fdatasync"
                                                          << "close"
                                                          << "fsync"
                                                          << "ftruncate";

// Calls without which the document is not on the disk, from the temporary file to the folder.
const QList<QByteArray> kSteps = QList<QByteArray>() << "create"
                                                     << "write"
                                                     << "fdatasync"
                                                     << "fcntl"
                                                     << "close"
                                                     << "rename"
                                                     << "open"
                                                     << "fsync";

// The kinds of cases that each store's save goes through, and how they are printed.
enum Kind { Faults, Deaths, PowerCuts, OtherSavers, OtherProcesses, KindCount };
const char *const kKinds[] = {"faults", "deaths", "power cuts", "other savers", "processes"};

// What is in the file's place before the save.
enum Before { NoFile, OwnFile, ForeignFile, LinkedFile, AttributedFile };

// Root may set the first kind anywhere, others the second one where the file system has it.
const char *const kAttributes[] = {"trusted.note", "user.note"};

bool setAttribute(const QString &file)
{
    for (const char *const name : kAttributes) {
        if (setxattr(QFile::encodeName(file).constData(), name, "kept", 4, 0) == 0) {
            return true;
        }
    }
    return false;
}

bool hasAttribute(const QString &file)
{
    for (const char *const name : kAttributes) {
        if (getxattr(QFile::encodeName(file).constData(), name, nullptr, 0) == 4) {
            return true;
        }
    }
    return false;
}

QString textOf(int size, char letter) { return QString(size, QLatin1Char(letter)); }

QStringList filesIn(const QString &directory)
{
    return QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Name);
}

// One directory with a store's old file, and what its next save is to write.
class Case
{
public:
    Case(const SavedStore &store, int before) : m_store(store), m_before(NoFile)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        m_old = saved('o');
        m_new = saved('n');
        restore(before);
        save();
        m_calls = watchedCalls();
        restore(before);
    }

    void restore(int before)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        m_before = before;
        QFile::remove(file());
        QFile::remove(link());
        if (before == LinkedFile) {
            QVERIFY(QFile::link(utf8("behind.xml"), link()));
        }
        writeFile(m_directory.file(kStale), "stale");
        if (before != NoFile) {
            writeFile(file(), m_old);
        }
        if (before == ForeignFile) {
            QCOMPARE(chown(QFile::encodeName(file()).constData(), kOtherUser, kOtherUser), 0);
        }
        if (before == AttributedFile) {
            QVERIFY(setAttribute(file()));
        }
    }

    void save() const { m_store.save(m_directory.path(), textOf(kNewSize, 'n')); }

    bool isWhole() const
    {
        if (!exists(file())) {
            return m_before == NoFile;
        }
        return isNew() || (m_before != NoFile && isOld());
    }
    bool isOld() const
    {
        return m_before != NoFile ? holds(m_old, textOf(kOldSize, 'o')) : !exists(file());
    }
    bool isNew() const { return exists(file()) && holds(m_new, textOf(kNewSize, 'n')); }
    QStringList leftOver() const
    {
        QStringList names = filesIn(m_directory.path());
        names.removeAll(QFileInfo(file()).fileName());
        return names;
    }
    QString directory() const { return m_directory.path(); }
    QString file() const
    {
        return m_before == LinkedFile ? m_directory.file("behind.xml") : link();
    }
    QByteArray oldContent() const { return m_before != NoFile ? m_old : QByteArray(); }
    QByteArray newContent() const { return m_new; }
    QList<SystemCall> calls() const { return m_calls; }

private:
    static const int kOldSize = 50;
    static const int kNewSize = 200;

    // The name by which the store knows the file.
    QString link() const { return m_directory.file(m_store.fileName); }

    QByteArray saved(char letter)
    {
        m_store.save(m_directory.path(), textOf(letter == 'o' ? kOldSize : kNewSize, letter));
        return readFile(file());
    }
    // Byte for byte, and for the store that loads it.
    bool holds(const QByteArray &content, const QString &text) const
    {
        return readFile(file()) == content && m_store.load(m_directory.path()) == text
               && keepsItsKind();
    }
    bool keepsItsKind() const
    {
        struct stat status = {};
        stat(QFile::encodeName(file()).constData(), &status);
        return status.st_uid == (m_before == ForeignFile ? kOtherUser : getuid())
               && (m_before != AttributedFile || hasAttribute(file()))
               && QFileInfo(link()).isSymLink() == (m_before == LinkedFile);
    }

    const SavedStore &m_store;
    TestDirectory m_directory;
    QByteArray m_old;
    QByteArray m_new;
    QList<SystemCall> m_calls;
    int m_before;
};

bool takesAttributes()
{
    const TestDirectory directory;
    writeFile(directory.file("probe"), "");
    return setAttribute(directory.file("probe"));
}

void storeRows(int stores = kStoreCount)
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("before");
    for (int i = 0; i < stores; ++i) {
        const QByteArray name(kStores[i].name);
        QTest::newRow((name + ", for the first time").constData()) << i << int(NoFile);
        QTest::newRow((name + ", over an old file").constData()) << i << int(OwnFile);
    }
    // What differs here does so below the stores, which all save alike.
    QTest::newRow("over a file behind a link") << 0 << int(LinkedFile);
    if (getuid() == 0) {
        QTest::newRow("over another user's file") << 0 << int(ForeignFile);
    }
    if (takesAttributes()) {
        QTest::newRow("over a file with attributes") << 0 << int(AttributedFile);
    }
}

// What a reader makes of the document, written again: the same bytes when it is whole.
QByteArray readAndWritten(const QByteArray &content)
{
    QBuffer source;
    source.setData(content);
    source.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    const QScopedPointer<VLMC_XMLNode> root(reader.read(source));
    QBuffer target;
    target.open(QIODevice::WriteOnly);
    VLMC_XMLWriter writer;
    return writer.write(target, root.data()) ? target.data() : QByteArray();
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

// Calls that change nothing.
bool isLook(const SystemCall &call)
{
    return call.name == "fstat" || call.name == "lstat" || call.name == "flistxattr"
           || call.name == "fgetxattr";
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

int indexOf(const QList<SystemCall> &calls, const QByteArray &name, int from = 0)
{
    for (int i = from; i < calls.size(); ++i) {
        if (calls.at(i).name == name) {
            return i;
        }
    }
    return -1;
}

// Works up to a watched call, and then waits for a word to go on.
class StoppedProcess
{
public:
    StoppedProcess(int call, const std::function<bool()> &work) : m_status(0), m_id(fork())
    {
        if (m_id == 0) {
            int index = 0;
            setCallProbe([&](const SystemCall &) {
                if (index++ == call) {
                    raise(SIGSTOP);
                }
            });
            _exit(work() ? 0 : 1);
        }
        wait(WUNTRACED);
    }
    ~StoppedProcess()
    {
        if (isStopped()) {
            dies();
        }
    }
    StoppedProcess(const StoppedProcess &) = delete;
    StoppedProcess &operator=(const StoppedProcess &) = delete;

    bool isStopped() const { return WIFSTOPPED(m_status); }
    bool finishes()
    {
        kill(m_id, SIGCONT);
        wait(0);
        return m_status == 0;
    }
    bool dies()
    {
        kill(m_id, SIGKILL);
        wait(0);
        return WIFSIGNALED(m_status);
    }

private:
    void wait(int options)
    {
        while (waitpid(m_id, &m_status, options) < 0 && errno == EINTR) {
        }
    }

    int m_status;
    pid_t m_id;
};

} // namespace

class tst_Durability : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();
    void cleanupTestCase();

    void save_takesTheSafeSteps_data() { storeRows(); }
    void save_takesTheSafeSteps();
    void save_survivesFailingCalls_data() { storeRows(); }
    void save_survivesFailingCalls();
    void save_survivesDeathAtEveryCall_data() { storeRows(); }
    void save_survivesDeathAtEveryCall();
    void save_survivesPowerCutAtEveryCall_data() { storeRows(); }
    void save_survivesPowerCutAtEveryCall();
    void save_survivesAnotherSaverAtEveryCall_data() { storeRows(); }
    void save_survivesAnotherSaverAtEveryCall();
    void save_survivesAnotherProcessAtEveryCall_data() { storeRows(1); }
    void save_survivesAnotherProcessAtEveryCall();
    void save_survivesAnotherProcessInBetween();
    void save_holdsItsLockUntilRenamed_data() { storeRows(); }
    void save_holdsItsLockUntilRenamed();
    void save_leavesASaverThatTookTheName();
    void save_leavesAFileToAQuickerCleaner();
    void save_takesAFolderThatCannotBeSynchronised_data();
    void save_takesAFolderThatCannotBeSynchronised();
    void save_takesAFileThatCannotBeSynchronised();
    void save_replacesWhereThereAreNoAttributes_data();
    void save_replacesWhereThereAreNoAttributes();
    void load_keepsItsFileFromOtherPrograms_data() { storeRows(); }
    void load_keepsItsFileFromOtherPrograms();
    void powerCut_wouldShowAMissingSync();

private:
    int m_counts[kStoreCount][KindCount] = {};
    int m_interleavings = 0;
};

void tst_Durability::cleanup()
{
    setFaultPlan({FaultPlan::None, 0, 0});
    setCallProbe(nullptr);
    runDeferredDeletes();
}

void tst_Durability::cleanupTestCase()
{
    printf("%-20s", "cases");
    for (const char *const kind : kKinds) {
        printf(" %12s", kind);
    }
    int total[KindCount] = {};
    for (int i = 0; i < kStoreCount; ++i) {
        printf("\n%-20s", kStores[i].name);
        for (int kind = 0; kind < KindCount; ++kind) {
            printf(" %12d", m_counts[i][kind]);
            total[kind] += m_counts[i][kind];
        }
    }
    printf("\n%-20s", "total");
    for (const int cases : total) {
        printf(" %12d", cases);
    }
    printf("\ninterleavings of two savers: %d\n", m_interleavings);
}

void tst_Durability::save_takesTheSafeSteps()
{
    QFETCH(int, row);
    QFETCH(int, before);
    const Case save(kStores[row], before);
    const QList<SystemCall> calls = save.calls();
    QList<QByteArray> steps;
    QByteArray temporary;
    for (const SystemCall &call : calls) {
        QVERIFY(!call.flags || (call.flags & O_CLOEXEC));
        if (call.name == "create") {
            QVERIFY(call.flags & O_EXCL);
            QCOMPARE(call.mode, before == NoFile ? kStores[row].mode : 0600);
            temporary = call.file;
            steps.append(call.name);
        } else if (!isLook(call) && !temporary.isEmpty()
                   && (call.file == temporary || call.name == "fsync")) {
            steps.append(call.name);
        }
    }
    QList<QByteArray> expected;
    expected << "create"
             << "flock";
    if (before == ForeignFile) {
        expected << "fchown";
    }
    if (before == AttributedFile) {
        expected << "fsetxattr";
    }
    if (before != NoFile) {
        expected << "fchmod";
    }
    // The second descriptor keeps the lock when the first is closed.
    expected << "write"
             << "fdatasync"
             << "fcntl"
             << "close"
             << "rename"
             << "fsync"
             << "close";
    QCOMPARE(steps, expected);
}

void tst_Durability::save_survivesFailingCalls()
{
    QFETCH(int, row);
    QFETCH(int, before);
    Case save(kStores[row], before);
    const int calls = int(save.calls().size());
    QVERIFY(calls > 12);
    const int creating = indexOf(save.calls(), "create");
    const int renaming = indexOf(save.calls(), "rename");
    const int syncing = indexOf(save.calls(), "fsync");
    // A signal at every call from one on would not be a signal.
    const struct {
        FaultPlan::Kind kind;
        int error;
    } faults[] = {
        {FaultPlan::Fail, ENOSPC},         {FaultPlan::Fail, EIO},
        {FaultPlan::Fail, EINTR},          {FaultPlan::Fail, EDQUOT},
        {FaultPlan::Fail, EMFILE},         {FaultPlan::FailFromHere, ENOSPC},
        {FaultPlan::FailFromHere, EIO},    {FaultPlan::FailFromHere, EDQUOT},
        {FaultPlan::FailFromHere, EMFILE}, {FaultPlan::ShortWrite, 0},
    };
    for (const auto &fault : faults) {
        for (int k = 0; k < calls; ++k) {
            const QByteArray where = save.calls().at(k).name;
            if (fault.kind == FaultPlan::ShortWrite && where != "write") {
                continue;
            }
            save.restore(before);
            takeLog();
            setFaultPlan({fault.kind, k, fault.error});
            save.save();
            setFaultPlan({FaultPlan::None, 0, 0});
            const bool refused = loggedText().contains(" error!\n");
            ++m_counts[row][Faults];
            QVERIFY2(save.isWhole(), where.constData());
            // Only a folder that cannot be synchronised is noticed after the rename.
            const bool renamed = fault.kind == FaultPlan::FailFromHere || k > renaming;
            QVERIFY2(!refused || renamed || save.isOld(), where.constData());
            QVERIFY2(refused || save.isNew(), where.constData());
            const bool harmless = fault.kind == FaultPlan::ShortWrite
                                  || (fault.error == EINTR && kRepeatable.contains(where));
            QVERIFY2(!harmless || !refused, where.constData());
            const bool isStep = k >= creating && k <= syncing && kSteps.contains(where);
            QVERIFY2(harmless || !isStep || refused, where.constData());
            const bool cleansUp =
                k > creating && where != "unlink" && fault.kind == FaultPlan::Fail;
            QVERIFY2(!cleansUp || save.leftOver().isEmpty(), where.constData());
            save.save();
            QVERIFY2(save.isNew(), where.constData());
            QVERIFY2(save.leftOver().isEmpty(), where.constData());
        }
    }
}

void tst_Durability::save_survivesDeathAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(int, before);
    Case save(kStores[row], before);
    const int calls = int(save.calls().size());
    // Death after a call is death before the next one, except after the last.
    const FaultPlan::Kind kinds[] = {FaultPlan::KillBefore, FaultPlan::KillAmid,
                                     FaultPlan::KillAfter};
    for (const FaultPlan::Kind kind : kinds) {
        for (int k = kind == FaultPlan::KillAfter ? calls - 1 : 0; k < calls; ++k) {
            if (kind == FaultPlan::KillAmid && save.calls().at(k).name != "write") {
                continue;
            }
            save.restore(before);
            setFaultPlan({kind, k, 0});
            const int status = inChild([&] { save.save(); });
            setFaultPlan({FaultPlan::None, 0, 0});
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            ++m_counts[row][Deaths];
            QVERIFY(save.isWhole());
            // One from before, and one of its own.
            QVERIFY(save.leftOver().size() <= 2);
            save.save();
            QVERIFY(save.isNew());
            QCOMPARE(save.leftOver(), QStringList());
        }
    }
}

void tst_Durability::save_survivesPowerCutAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(int, before);
    const Case save(kStores[row], before);
    const QByteArray old = save.oldContent();
    const QByteArray target = QFile::encodeName(save.file());
    for (int k = 0; k <= save.calls().size(); ++k) {
        const QList<QByteArray> states = possibleTargets(save.calls().mid(0, k), old, target);
        QVERIFY(!states.isEmpty());
        for (const QByteArray &state : states) {
            ++m_counts[row][PowerCuts];
            QVERIFY(state == old || state == save.newContent());
            QVERIFY(state.isNull() || readAndWritten(state) == state);
        }
    }
    const QList<QByteArray> finished = possibleTargets(save.calls(), old, target);
    QCOMPARE(finished, QList<QByteArray>() << save.newContent());
}

// The other saver comes between two calls, once with another file of the folder, which it cleans
// up, and once with the same one.
void tst_Durability::save_survivesAnotherSaverAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(int, before);
    Case save(kStores[row], before);
    const QString others[] = {save.directory() + utf8("other.xml"), save.file()};
    for (const QString &other : others) {
        for (int k = 0; k < save.calls().size(); ++k) {
            save.restore(before);
            takeLog();
            // Whoever has the file open keeps what it held.
            QFile reader(save.file());
            QCOMPARE(reader.open(QIODevice::ReadOnly), before != NoFile);
            int index = 0;
            bool otherWritten = false;
            setCallProbe([&](const SystemCall &) {
                if (index++ == k) {
                    otherWritten = writeTree(other, 5);
                }
            });
            save.save();
            setCallProbe(nullptr);
            ++m_counts[row][OtherSavers];
            const QByteArray where = save.calls().at(k).name;
            QVERIFY2(otherWritten, where.constData());
            QVERIFY2(!loggedText().contains(" error!\n"), where.constData());
            QVERIFY2(save.isNew() || (other == save.file() && readFile(other) == document(5)),
                     where.constData());
            QVERIFY2(other == save.file() || readFile(other) == document(5), where.constData());
            QVERIFY2(before == NoFile || reader.readAll() == save.oldContent(), where.constData());
            QFile::remove(save.directory() + utf8("other.xml"));
            QCOMPARE(save.leftOver(), QStringList());
        }
    }
}

// This process saves another file in the folder, and so cleans up there, while the store's saver
// stops before a call. Then that saver goes on, or dies.
void tst_Durability::save_survivesAnotherProcessAtEveryCall()
{
    QFETCH(int, row);
    QFETCH(int, before);
    Case save(kStores[row], before);
    const QString other = save.directory() + utf8("other.xml");
    // It holds the lock of the stale file, which it removes, and then that of its own.
    const int cleaning = indexOf(save.calls(), "flock");
    const int cleaned = indexOf(save.calls(), "unlink");
    const int saving = indexOf(save.calls(), "flock", cleaning + 1);
    const int renaming = indexOf(save.calls(), "rename");
    for (int k = 0; k < save.calls().size(); ++k) {
        const QByteArray where = save.calls().at(k).name;
        for (const bool dies : {false, true}) {
            save.restore(before);
            StoppedProcess saver(k, [&] {
                takeLog();
                save.save();
                return !loggedText().contains(" error!\n") && save.isNew();
            });
            QVERIFY2(saver.isStopped(), where.constData());
            QVERIFY2(writeTree(other, 5), where.constData());
            QFile::remove(other);
            const bool living = (k > cleaning && k <= cleaned) || (k > saving && k <= renaming);
            QVERIFY2(save.leftOver().size() == (living ? 1 : 0), where.constData());
            QVERIFY2(dies ? saver.dies() : saver.finishes(), where.constData());
            QVERIFY2(writeTree(other, 5), where.constData());
            QFile::remove(other);
            QVERIFY2(save.isWhole(), where.constData());
            QCOMPARE(save.leftOver(), QStringList());
            ++m_counts[row][OtherProcesses];
        }
    }
}

// Before each call of a save another process begins to save, stops before each call of its own
// until the first save is over, and then goes on.
void tst_Durability::save_survivesAnotherProcessInBetween()
{
    Case save(kStores[0], OwnFile);
    const QString other = save.directory() + utf8("other.xml");
    for (int i = 0; i < save.calls().size(); i += kInterleavedStep) {
        bool stopped = true;
        for (int k = 0; stopped; ++k) {
            save.restore(OwnFile);
            takeLog();
            QScopedPointer<StoppedProcess> saver;
            int index = 0;
            setCallProbe([&](const SystemCall &) {
                if (index++ == i) {
                    saver.reset(new StoppedProcess(k, [&] {
                        const WatchedCalls watched;
                        return writeTree(other, 5);
                    }));
                }
            });
            save.save();
            setCallProbe(nullptr);
            stopped = saver->isStopped();
            QVERIFY(!loggedText().contains(" error!\n"));
            QVERIFY(save.isNew());
            QVERIFY(!stopped || saver->finishes());
            COMPARE_BYTES(readFile(other), document(5));
            QFile::remove(other);
            QVERIFY(save.isNew());
            QCOMPARE(save.leftOver(), QStringList());
            m_interleavings += stopped ? 1 : 0;
        }
    }
}

void tst_Durability::save_holdsItsLockUntilRenamed()
{
    QFETCH(int, row);
    QFETCH(int, before);
    Case save(kStores[row], before);
    QByteArray temporary;
    QList<QByteArray> unlocked;
    int looked = 0;
    setCallProbe([&](const SystemCall &call) {
        if (call.name == "flock" || temporary.isEmpty()) {
            // The last lock before the writing is that of the file's own saver.
            temporary = call.name == "flock" ? call.file : QByteArray();
            return;
        }
        const int cleaner = open(temporary.constData(), O_WRONLY | O_CLOEXEC);
        if (cleaner < 0) {
            return;
        }
        ++looked;
        if (flock(cleaner, LOCK_EX | LOCK_NB) == 0) {
            unlocked.append(call.name);
        }
        close(cleaner);
    });
    save.save();
    setCallProbe(nullptr);
    // Writing, synchronising, duplicating, closing and renaming at the least.
    QVERIFY(looked >= 5);
    QCOMPARE(unlocked, QList<QByteArray>());
    QVERIFY(save.isNew());
}

// Between the opening of a stale file and its lock, another one may get its name, where processes
// of the same number share a folder.
void tst_Durability::save_leavesASaverThatTookTheName()
{
    const Case save(kStores[0], OwnFile);
    const QString name = save.directory() + utf8(kStale);
    int saver = -1;
    setCallProbe([&](const SystemCall &call) {
        if (call.name == "flock" && saver < 0) {
            QFile::remove(name);
            writeFile(name, "living");
            saver = open(QFile::encodeName(name).constData(), O_WRONLY | O_CLOEXEC);
            QCOMPARE(flock(saver, LOCK_EX | LOCK_NB), 0);
        }
    });
    save.save();
    setCallProbe(nullptr);
    QVERIFY(save.isNew());
    COMPARE_BYTES(readFile(name), "living");
    close(saver);
}

// A cleaner may lock the temporary file before its saver does, and may then remove it at any time.
void tst_Durability::save_leavesAFileToAQuickerCleaner()
{
    const Case save(kStores[0], OwnFile);
    int cleaner = -1;
    QByteArray created;
    QByteArray taken;
    setCallProbe([&](const SystemCall &call) {
        if (call.name == "create") {
            created = call.file;
        } else if (call.name == "flock" && call.file == created && cleaner < 0) {
            taken = created;
            cleaner = open(taken.constData(), O_WRONLY | O_CLOEXEC);
            QCOMPARE(flock(cleaner, LOCK_EX | LOCK_NB), 0);
        } else if (call.name == "write") {
            QCOMPARE(unlink(taken.constData()), 0);
        }
    });
    takeLog();
    save.save();
    setCallProbe(nullptr);
    close(cleaner);
    QVERIFY(!loggedText().contains(" error!\n"));
    QVERIFY(save.isNew());
    QCOMPARE(save.leftOver(), QStringList());
}

void tst_Durability::save_takesAFolderThatCannotBeSynchronised_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("not readable") << QByteArray("open") << EACCES << true;
    QTest::newRow("not openable") << QByteArray("open") << EIO << false;
    QTest::newRow("no such operation") << QByteArray("fsync") << EINVAL << true;
    QTest::newRow("failing") << QByteArray("fsync") << EIO << false;
}

void tst_Durability::save_takesAFolderThatCannotBeSynchronised()
{
    QFETCH(QByteArray, call);
    QFETCH(int, error);
    QFETCH(bool, accepted);
    const Case save(kStores[0], OwnFile);
    const int index = indexOf(save.calls(), call, indexOf(save.calls(), "rename"));
    takeLog();
    setFaultPlan({FaultPlan::Fail, index, error});
    save.save();
    QCOMPARE(!loggedText().contains("write error!\n"), accepted);
    QVERIFY(save.isNew());
}

void tst_Durability::save_takesAFileThatCannotBeSynchronised()
{
    const Case save(kStores[0], OwnFile);
    takeLog();
    setFaultPlan({FaultPlan::Fail, indexOf(save.calls(), "fdatasync"), EINVAL});
    save.save();
    QVERIFY(!loggedText().contains(" error!\n"));
    QVERIFY(save.isNew());
}

void tst_Durability::save_replacesWhereThereAreNoAttributes_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("file system without them") << ENOTSUP;
    QTest::newRow("kernel without them") << ENOSYS;
}

void tst_Durability::save_replacesWhereThereAreNoAttributes()
{
    QFETCH(int, error);
    const Case save(kStores[0], OwnFile);
    setFaultPlan({FaultPlan::Fail, indexOf(save.calls(), "flistxattr"), error});
    save.save();
    setFaultPlan({FaultPlan::None, 0, 0});
    QVERIFY(indexOf(watchedCalls(), "rename") >= 0);
    QCOMPARE(indexOf(watchedCalls(), "ftruncate"), -1);
    QVERIFY(save.isNew());
}

// Those that another thread starts meanwhile would inherit it.
void tst_Durability::load_keepsItsFileFromOtherPrograms()
{
    QFETCH(int, row);
    QFETCH(int, before);
    const Case save(kStores[row], before);
    save.save();
    {
        const WatchedCalls watched;
        kStores[row].load(save.directory());
    }
    int opened = 0;
    const QList<SystemCall> calls = watchedCalls();
    for (const SystemCall &call : calls) {
        if (call.name == "open" && call.file.endsWith(kStores[row].fileName)) {
            ++opened;
            QVERIFY(call.flags & O_CLOEXEC);
        }
    }
    QVERIFY(opened > 0);
}

void tst_Durability::powerCut_wouldShowAMissingSync()
{
    const Case save(kStores[0], OwnFile);
    const QByteArray target = QFile::encodeName(save.file());
    const QList<QByteArray> unsynced =
        possibleTargets(without(save.calls(), "fdatasync"), save.oldContent(), target);
    QVERIFY(unsynced.contains(QByteArray()));
    const QList<QByteArray> unnamed =
        possibleTargets(without(save.calls(), "fsync"), save.oldContent(), target);
    QVERIFY(unnamed.contains(save.oldContent()));
}

QTEST_GUILESS_MAIN(tst_Durability)
#include "tst_Durability.moc"
