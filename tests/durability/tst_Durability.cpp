#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/CookieIni.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QScopedPointer>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const int kSavesUnderReader = 10000;
const int kMax = 20;
const uid_t kOtherUser = 65534;

// What a crash has left in the folder, so that each save has something to clean up first.
const char kStale[] = ".velmora-save-1-0";

// Calls that a signal may break off and that are then made again, or need not be.
const QList<QByteArray> kRepeatable = QList<QByteArray>() << "open"
                                                          << "create"
                                                          << "write"
                                                          << "fdatasync"
                                                          << "close"
                                                          << "fsync"
                                                          << "ftruncate";

// A store whose saves are watched, and nothing else that it does.
template <typename Store>
class Watched : public Store
{
public:
    void save(QString &path) override
    {
        const WatchedCalls watched;
        Store::save(path);
    }
};

// A folder without documents: what is loaded from there is empty, or has its defaults.
QString nowhere(const QString &directory) { return directory + utf8("none/"); }

// A folder for the files that a document is made from.
QString sourcesIn(const QString &directory)
{
    QDir(directory).mkpath(utf8("sources"));
    return directory + utf8("sources/");
}

// How each store comes to save one given text.
void saveFontList(QString directory, const QString &text)
{
    Watched<VLMC_FontListSetting> fonts;
    fonts.loadFontList(nowhere(directory));
    fonts.addFont(text);
    fonts.saveFontList(directory);
}

void saveCommonPreferences(QString directory, const QString &text)
{
    Watched<VLMC_BrowserCommonSetting> preferences;
    QString empty = nowhere(directory);
    preferences.loadSetting(&empty);
    preferences.setProxyServerStr(text);
    preferences.saveSetting(&directory);
}

void saveUserPreferences(QString directory, const QString &text)
{
    Watched<VLMC_BrowserUserSetting> preferences;
    QString empty = nowhere(directory);
    preferences.loadSetting(&empty);
    preferences.setHomePage(text);
    preferences.saveSetting(&directory);
}

void saveBookmarks(QString directory, const QString &text)
{
    Watched<VLMC_BookmarksSetting> bookmarks;
    QString empty = nowhere(directory);
    int lastNumber = 0;
    bookmarks.loadBookmark(&empty, kMax, lastNumber);
    VLMS_Bookmark bookmark = {utf8("title"), text, utf8("000001.PNG")};
    bookmarks.setBookmark(&bookmark, 0);
    bookmarks.saveBookmark(&directory, kMax);
}

void saveHistory(QString directory, const QString &text)
{
    Watched<VLMC_HistorySetting> history;
    QString empty = nowhere(directory);
    history.loadHistory(&empty, kMax);
    VLMS_History visit;
    visit.title = text;
    visit.url = utf8("http://x.com/");
    visit.dateTime = QDateTime(QDate(2015, 1, 2), QTime(3, 4));
    history.setHistory(&visit);
    history.saveHistory(&directory, kMax);
}

void saveCredentials(QString directory, const QString &text)
{
    Watched<VLMC_AuthSetting> credentials;
    QString empty = nowhere(directory);
    credentials.loadAuthInfo(&empty, kMax);
    VLMS_AuthInfo info = {utf8("x.com"), utf8("80"), 0, text.toUtf8(), text.toUtf8()};
    credentials.setAuthInfo(&info);
    credentials.saveAuthInfo(&directory, kMax);
}

void saveCookies(QString directory, const QString &text)
{
    const QString sources = sourcesIn(directory);
    writeFile(sources + utf8("cookie.ini"),
              cookieIniOf(QList<QByteArray>() << "n=" + text.toUtf8() + "; domain=x.com; path=/"));
    QByteArray from = QFile::encodeName(sources);
    QByteArray to = QFile::encodeName(directory) + "cookies.xml";
    Watched<VLMC_CookieSetting> cookies;
    cookies.convertCookieIniToXML(from.data(), to.data());
}

void saveThumbnails(QString directory, const QString &text)
{
    const QString sources = sourcesIn(directory);
    writeFile(sources + utf8("000001.PNG"), text.toUtf8());
    QByteArray from = QFile::encodeName(sources);
    QByteArray to = QFile::encodeName(directory) + "thumbnails.xml";
    Watched<VLMC_ThumbnailConverter> thumbnails;
    thumbnails.convertThumbnailPngToXML(from.data(), to.data());
}

struct Store {
    const char *name;
    const char *fileName;
    void (*save)(QString directory, const QString &text);
};

const Store kStores[] = {
    {"common preferences", "repostry.xml", saveCommonPreferences},
    {"user preferences", "repostry_private.xml", saveUserPreferences},
    {"bookmarks", "bookmark.xml", saveBookmarks},
    {"packed thumbnails", "thumbnails.xml", saveThumbnails},
    {"history", "visit.xml", saveHistory},
    {"cookies", "cookies.xml", saveCookies},
    {"credentials", "authinfo.xml", saveCredentials},
    {"font list", "fontlist.xml", saveFontList},
};
const int kStoreCount = int(sizeof kStores / sizeof kStores[0]);

// How many cases of each kind a store's save has been through.
struct Counts {
    int faults;
    int deaths;
    int powerCuts;
    int otherSavers;
};

// What stands in the file's place before the save.
enum Before { NoFile, OwnFile, ForeignFile };

// One directory with a store's old file, and what its next save is to write.
class Case
{
public:
    Case(const Store &store, int before) : m_store(store), m_before(NoFile)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        m_old = saved(text(50, 'o'));
        m_new = saved(text(200, 'n'));
        restore(before);
        save();
        m_calls = watchedCalls();
        restore(before);
    }

    void restore(int before)
    {
        setFaultPlan({FaultPlan::None, 0, 0});
        QFile::remove(file());
        writeFile(m_directory.file(kStale), "stale");
        if (before != NoFile) {
            writeFile(file(), m_old);
        }
        if (before == ForeignFile) {
            QCOMPARE(chown(QFile::encodeName(file()).constData(), kOtherUser, kOtherUser), 0);
        }
        m_before = before;
    }

    void save() { m_store.save(m_directory.path(), text(200, 'n')); }

    bool isWhole() const
    {
        if (!exists(file())) {
            return m_before == NoFile;
        }
        const QByteArray content = readFile(file());
        return hasItsOwner() && (content == m_new || (m_before != NoFile && content == m_old));
    }
    bool isOld() const { return m_before != NoFile ? readFile(file()) == m_old : !exists(file()); }
    bool isNew() const { return exists(file()) && readFile(file()) == m_new && hasItsOwner(); }
    QStringList leftOver() const
    {
        QStringList names = QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden);
        names.removeAll(utf8(m_store.fileName));
        return names;
    }
    QString directory() const { return m_directory.path(); }
    QString file() const { return m_directory.file(m_store.fileName); }
    QByteArray oldContent() const { return m_before != NoFile ? m_old : QByteArray(); }
    QByteArray newContent() const { return m_new; }
    QList<SystemCall> calls() const { return m_calls; }

private:
    static QString text(int size, char letter) { return QString(size, QLatin1Char(letter)); }

    QByteArray saved(const QString &content)
    {
        m_store.save(m_directory.path(), content);
        return readFile(file());
    }
    bool hasItsOwner() const
    {
        struct stat status = {};
        stat(QFile::encodeName(file()).constData(), &status);
        return status.st_uid == (m_before == ForeignFile ? kOtherUser : getuid());
    }

    const Store &m_store;
    TestDirectory m_directory;
    QByteArray m_old;
    QByteArray m_new;
    QList<SystemCall> m_calls;
    int m_before;
};

void storeRows()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("before");
    for (int i = 0; i < kStoreCount; ++i) {
        const QByteArray name(kStores[i].name);
        QTest::newRow((name + ", for the first time").constData()) << i << int(NoFile);
        QTest::newRow((name + ", over an old file").constData()) << i << int(OwnFile);
        if (getuid() == 0) {
            QTest::newRow((name + ", over another user's file").constData())
                << i << int(ForeignFile);
        }
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
    void save_holdsItsLockUntilRenamed_data() { storeRows(); }
    void save_holdsItsLockUntilRenamed();
    void powerCut_wouldShowAMissingSync();
    void write_keepsOldFileAtFileSizeLimit();
    void write_keepsOldFileOnFullDisk();
    void write_isSeenWholeAtEveryMoment();

private:
    Counts m_counts[kStoreCount] = {};
};

void tst_Durability::cleanup()
{
    setFaultPlan({FaultPlan::None, 0, 0});
    setCallProbe(nullptr);
    runDeferredDeletes();
}

void tst_Durability::cleanupTestCase()
{
    Counts total = {0, 0, 0, 0};
    printf("%-20s %8s %8s %12s %14s\n", "cases", "faults", "deaths", "power cuts", "other savers");
    for (int i = 0; i < kStoreCount; ++i) {
        const Counts &counts = m_counts[i];
        printf("%-20s %8d %8d %12d %14d\n", kStores[i].name, counts.faults, counts.deaths,
               counts.powerCuts, counts.otherSavers);
        total.faults += counts.faults;
        total.deaths += counts.deaths;
        total.powerCuts += counts.powerCuts;
        total.otherSavers += counts.otherSavers;
    }
    printf("%-20s %8d %8d %12d %14d\n", "total", total.faults, total.deaths, total.powerCuts,
           total.otherSavers);
}

void tst_Durability::save_takesTheSafeSteps()
{
    QFETCH(int, row);
    QFETCH(int, before);
    const Case save(kStores[row], before);
    // Looking at the file's status and attributes is no step.
    const QList<SystemCall> calls = without(without(save.calls(), "fstat"), "flistxattr");
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
    if (before == ForeignFile) {
        expected << "fchown";
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
    const int renaming = indexOf(save.calls(), "rename");
    // A signal at every call from some one on would be no signal.
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
            ++m_counts[row].faults;
            QVERIFY2(save.isWhole(), where.constData());
            const bool refused = loggedText().contains(" error!\n");
            // Only a folder that cannot be synchronised is noticed after the renaming.
            const bool renamed = fault.kind == FaultPlan::FailFromHere || k > renaming;
            QVERIFY2(!refused || renamed || save.isOld(), where.constData());
            QVERIFY2(refused || save.isNew(), where.constData());
            const bool harmless = fault.kind == FaultPlan::ShortWrite
                                  || (fault.error == EINTR && kRepeatable.contains(where));
            QVERIFY2(!harmless || !refused, where.constData());
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
    const FaultPlan::Kind kinds[] = {FaultPlan::KillBefore, FaultPlan::KillAfter};
    for (const FaultPlan::Kind kind : kinds) {
        for (int k = 0; k < calls; ++k) {
            save.restore(before);
            setFaultPlan({kind, k, 0});
            const int status = inChild([&] { save.save(); });
            setFaultPlan({FaultPlan::None, 0, 0});
            QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
            ++m_counts[row].deaths;
            QVERIFY(save.isWhole());
            // One from before and one of its own.
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
            ++m_counts[row].powerCuts;
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
            int index = 0;
            bool otherWritten = false;
            setCallProbe([&](const SystemCall &) {
                if (index++ == k) {
                    otherWritten = writeTree(other, 5);
                }
            });
            save.save();
            setCallProbe(nullptr);
            ++m_counts[row].otherSavers;
            const QByteArray where = save.calls().at(k).name;
            QVERIFY2(otherWritten, where.constData());
            QVERIFY2(!loggedText().contains(" error!\n"), where.constData());
            QVERIFY2(save.isNew() || (other == save.file() && readFile(other) == document(5)),
                     where.constData());
            QVERIFY2(other == save.file() || readFile(other) == document(5), where.constData());
            QFile::remove(save.directory() + utf8("other.xml"));
            QCOMPARE(save.leftOver(), QStringList());
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
