#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/Interposed.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QDir>

#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const int kMax = 50;
const int kEntries = 20;

const char kOpenError[] = "2 VLMC_XMLReader::read file open error!\n";
const char kKept[] = "2 VLMC_XMLWriter::write file not read whole, copy kept!\n";
const char kWriteError[] = "2 VLMC_XMLWriter::write file write error!\n";

// Which read of a watched load fails, counted from 0; -1 for none.
int failingRead = -1;
thread_local int reads = 0;
thread_local bool isLoading = false;

// A store whose loads are watched, and nothing else that it does.
template <typename Store>
class Watched : public Store
{
public:
    void load(QString &path) override
    {
        const WatchedCalls watched;
        reads = 0;
        isLoading = true;
        Store::load(path);
        isLoading = false;
    }
};

QString entryText(int i) { return utf8("entry%1.example").arg(i, 3, 10, QLatin1Char('0')); }

void addFont(QString directory, const QString &text)
{
    Watched<VLMC_FontListSetting> fonts;
    fonts.loadFontList(directory);
    fonts.addFont(text);
    fonts.saveFontList(directory);
}

void addBookmark(QString directory, const QString &text)
{
    Watched<VLMC_BookmarksSetting> bookmarks;
    int lastNumber = 0;
    bookmarks.loadBookmark(&directory, kMax, lastNumber);
    VLMS_Bookmark bookmark = {utf8("title"), text, QString()};
    bookmarks.setBookmark(&bookmark, 0);
    bookmarks.saveBookmark(&directory, kMax);
}

void addVisit(QString directory, const QString &text)
{
    Watched<VLMC_HistorySetting> history;
    history.loadHistory(&directory, kMax);
    VLMS_History visit;
    visit.title = text;
    visit.url = text;
    visit.dateTime = QDateTime(QDate(2015, 1, 2), QTime(3, 4));
    history.setHistory(&visit);
    history.saveHistory(&directory, kMax);
}

void addCredentials(QString directory, const QString &text)
{
    Watched<VLMC_AuthSetting> credentials;
    credentials.loadAuthInfo(&directory, kMax);
    VLMS_AuthInfo info = {text, utf8("80"), 0, "user", "password"};
    credentials.setAuthInfo(&info);
    credentials.saveAuthInfo(&directory, kMax);
}

void addCookie(QString directory, const QString &text)
{
    QString path = directory + utf8("cookie.xml");
    Watched<VLMC_CookieSetting> cookies;
    cookies.load(path);
    QString name = utf8("cookie");
    QString content = text;
    char type = 0;
    QXmlStreamAttributes attributes;
    cookies.addXMLChild(cookies.getXMLRootNode(), name, content, type, attributes, 0);
    cookies.getXMLRootNode()->setName(name);
    cookies.save(path);
}

void setProxyHost(QString directory, const QString &text)
{
    Watched<VLMC_BrowserCommonSetting> preferences;
    preferences.loadSetting(&directory);
    preferences.setProxyServerStr(text);
    preferences.saveSetting(&directory);
}

void setHomePage(QString directory, const QString &text)
{
    Watched<VLMC_BrowserUserSetting> preferences;
    preferences.loadSetting(&directory);
    preferences.setHomePage(text);
    preferences.saveSetting(&directory);
}

struct Store {
    const char *name;
    const char *fileName;
    // Loads the document, adds the text, saves.
    void (*add)(QString directory, const QString &text);
};

const Store kStores[] = {
    {"common preferences", "repostry.xml", setProxyHost},
    {"user preferences", "repostry_private.xml", setHomePage},
    {"bookmarks", "bookmark.xml", addBookmark},
    {"history", "visit.xml", addVisit},
    {"cookies", "cookie.xml", addCookie},
    {"credentials", "authinfo.xml", addCredentials},
    {"font list", "fontlist.xml", addFont},
};

QByteArray bookmarks(const QByteArray &inside)
{
    return "<bookmarkList>\n" + inside + "</bookmarkList>\n";
}

QByteArray bookmark(const char *url)
{
    return QByteArray("<bookmark><title>t</title><url>") + url + "</url></bookmark>\n";
}

QString keptFile(const QString &path) { return path + utf8(".damaged"); }

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    lstat(QFile::encodeName(path).constData(), &status);
    return status;
}

void load(VLMC_BookmarksSetting &store, QString directory)
{
    int lastNumber = 0;
    store.loadBookmark(&directory, kMax, lastNumber);
}

void save(VLMC_BookmarksSetting &store, QString directory) { store.saveBookmark(&directory, kMax); }
} // namespace

INTERPOSED ssize_t read(int file, void *data, size_t size)
{
    static const auto call = real<ssize_t (*)(int, void *, size_t)>("read");
    if (isLoading && reads++ == failingRead) {
        errno = EIO;
        return -1;
    }
    return call(file, data, size);
}

class tst_PartialLoads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void save_losesNothingAfterFailingCalls();
    void save_losesNothingAfterFailingRead();
    void save_losesNothingAfterDamage_data();
    void save_losesNothingAfterDamage();
    void load_triesAgain_data();
    void load_triesAgain();
    void save_keepsNothingOfWholeFile();
    void save_keepsNothingOfEmptyFile();
    void save_keepsOnce();
    void save_keepsNewest();
    void save_keepsMode();
    void save_keepsBesideFileBehindLinks();
    void save_keepsCopyOfFileWithSeveralNames();
    void save_replacesFileThatACrashLeftWithBothNames();
    void save_failsWhereNothingCanBeKept();
    void save_failsOnFullDisk();
    void save_forgetsErased_data();
    void save_forgetsErased();
    void save_remembersErasureThatFailed();
    void save_keepsOtherUsersFile();
    void sort_isNoErasure();
    void load_tellsUnreachableFromMissing();
};

void tst_PartialLoads::init()
{
    takeLog();
    failingRead = -1;
    setFaultPlan({FaultPlan::None, 0, 0});
}

void tst_PartialLoads::cleanup() { runDeferredDeletes(); }

// Every call of every store's load fails in every way, once and from then on.
void tst_PartialLoads::save_losesNothingAfterFailingCalls()
{
    const int errors[] = {EIO, EMFILE, ENOMEM, EINTR, EACCES};
    int cases = 0;
    int kept = 0;
    for (const Store &store : kStores) {
        const TestDirectory directory;
        const QString path = directory.file(store.fileName);
        for (int i = 0; i < kEntries; ++i) {
            store.add(directory.path(), entryText(i));
        }
        const QByteArray old = readFile(path);
        QVERIFY(old.contains(entryText(kEntries - 1).toUtf8()));
        // Of a preference only the last text is there.
        const bool isList = old.contains(entryText(0).toUtf8());
        const int calls = int(watchedCalls().size());
        QVERIFY(calls > 0);
        for (const int error : errors) {
            // Qt closes a file again for as long as a signal interrupts it.
            const int plans = error == EINTR ? calls : 2 * calls;
            for (int call = 0; call < plans; ++call) {
                writeFile(path, old);
                QFile::remove(keptFile(path));
                takeLog();
                setFaultPlan({call < calls ? FaultPlan::Fail : FaultPlan::FailFromHere,
                              call % calls, error});
                store.add(directory.path(), utf8("new.example"));
                setFaultPlan({FaultPlan::None, 0, 0});
                const bool failed = loggedText().contains(kOpenError);
                QVERIFY(readFile(path).contains("new.example"));
                QCOMPARE(exists(keptFile(path)), failed);
                if (failed) {
                    COMPARE_BYTES(readFile(keptFile(path)), old);
                    ++kept;
                } else {
                    for (int i = 0; isList && i < kEntries; ++i) {
                        QVERIFY(readFile(path).contains(entryText(i).toUtf8()));
                    }
                }
                ++cases;
            }
        }
    }
    QVERIFY(kept > 0);
    qDebug("%d failing calls of loads, %d kept files", cases, kept);
}

void tst_PartialLoads::save_losesNothingAfterFailingRead()
{
    int kept = 0;
    for (const Store &store : kStores) {
        const TestDirectory directory;
        const QString path = directory.file(store.fileName);
        // More than one read.
        store.add(directory.path(), entryText(0));
        const QByteArray old = readFile(path) + QByteArray(40000, '\n');
        for (int i = 0; i < 2; ++i) {
            const QByteArray spread = QByteArray(old).replace("\n    ", QByteArray(20000, '\n'));
            writeFile(path, spread);
            QFile::remove(keptFile(path));
            takeLog();
            failingRead = i;
            store.add(directory.path(), utf8("new.example"));
            failingRead = -1;
            const bool isKept = loggedText().contains(kKept);
            QCOMPARE(exists(keptFile(path)), isKept);
            if (isKept) {
                COMPARE_BYTES(readFile(keptFile(path)), spread);
                ++kept;
            } else {
                // Qt 4 reads on where a single call failed. A preference is the new one, then.
                QVERIFY(QT_VERSION < 0x050000);
                QVERIFY(readFile(path).contains(entryText(0).toUtf8())
                        || qstrncmp(store.fileName, "repostry", 8) == 0);
            }
        }
    }
    QVERIFY(kept == 14 || QT_VERSION < 0x050000);
}

void tst_PartialLoads::save_losesNothingAfterDamage_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray two = bookmark("a") + bookmark("b");
    QTest::newRow("one byte") << bookmarks(bookmark("a") + "<" + bookmark("b"));
    QTest::newRow("cut short") << bookmarks(two).left(60);
    QTest::newRow("no document") << QByteArray("nothing");
    QTest::newRow("more behind the end") << bookmarks(two) + bookmarks(two);
    QTest::newRow("entities past the bound") << QByteArray("<!DOCTYPE r [<!ENTITY e \"")
                                                    + QByteArray(4000, 'e') + "\">]>"
                                                    + bookmarks(bookmark("&e;&e;") + bookmark("b"));
    QTest::newRow("default attributes past the bound")
        << QByteArray("<!DOCTYPE r [<!ATTLIST url a CDATA \"") + QByteArray(3000, 'a') + "\">]>"
               + bookmarks(two + two);
}

void tst_PartialLoads::save_losesNothingAfterDamage()
{
    QFETCH(QByteArray, content);
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, content);
    addBookmark(directory.path(), utf8("new.example"));
    QVERIFY(loggedText().contains(kKept));
    COMPARE_BYTES(readFile(keptFile(path)), content);
    QVERIFY(readFile(path).contains("new.example"));
}

void tst_PartialLoads::load_triesAgain_data()
{
    QTest::addColumn<int>("error");

    QTest::newRow("EINTR") << EINTR;
    QTest::newRow("EMFILE") << EMFILE;
    QTest::newRow("ENFILE") << ENFILE;
}

void tst_PartialLoads::load_triesAgain()
{
    QFETCH(int, error);
    const TestDirectory directory;
    addBookmark(directory.path(), utf8("old.example"));
    takeLog();
    setFaultPlan({FaultPlan::Fail, 0, error});
    addBookmark(directory.path(), utf8("new.example"));
    QVERIFY(!loggedText().contains(kOpenError));
    QVERIFY(readFile(directory.file("bookmark.xml")).contains("old.example"));
    QCOMPARE(watchedCalls().at(1).name, watchedCalls().at(0).name);

    setFaultPlan({FaultPlan::FailFromHere, 0, error});
    addBookmark(directory.path(), utf8("new.example"));
    QVERIFY(loggedText().contains(kOpenError));
    QCOMPARE(int(watchedCalls().size()), error == EINTR ? 1000 : 21);
}

void tst_PartialLoads::save_keepsNothingOfWholeFile()
{
    for (const Store &store : kStores) {
        const TestDirectory directory;
        const QString path = directory.file(store.fileName);
        store.add(directory.path(), utf8("first.example"));
        store.add(directory.path(), utf8("second.example"));
        QVERIFY(!exists(keptFile(path)));
        QVERIFY(!loggedText().contains(kKept));
    }
}

void tst_PartialLoads::save_keepsNothingOfEmptyFile()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "");
    addBookmark(directory.path(), utf8("new.example"));
    QVERIFY(readFile(path).contains("new.example"));
    QVERIFY(!exists(keptFile(path)));
}

void tst_PartialLoads::save_keepsOnce()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<damaged");
    VLMC_BookmarksSetting store;
    load(store, directory.path());
    save(store, directory.path());
    QVERIFY(loggedText().contains(kKept));
    save(store, directory.path());
    QVERIFY(!loggedText().contains(kKept));
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");

    // The same damage again, as when another program restores a file.
    const ino_t kept = statusOf(keptFile(path)).st_ino;
    writeFile(path, "<damaged");
    load(store, directory.path());
    save(store, directory.path());
    QCOMPARE(statusOf(keptFile(path)).st_ino, kept);
}

void tst_PartialLoads::save_keepsNewest()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<older");
    addBookmark(directory.path(), utf8("a.example"));
    writeFile(path, "<newer");
    addBookmark(directory.path(), utf8("b.example"));
    COMPARE_BYTES(readFile(keptFile(path)), "<newer");
}

// The very file, with its mode, which takes no room.
void tst_PartialLoads::save_keepsMode()
{
    const TestDirectory directory;
    const QString path = directory.file("authinfo.xml");
    writeFile(path, "<damaged");
    chmod(QFile::encodeName(path).constData(), 0640);
    const struct stat old = statusOf(path);
    addCredentials(directory.path(), utf8("new.example"));
    const struct stat kept = statusOf(keptFile(path));
    QCOMPARE(kept.st_ino, old.st_ino);
    QCOMPARE(int(kept.st_mode & 07777), 0640);
    QCOMPARE(int(kept.st_nlink), 1);
    QCOMPARE(int(statusOf(path).st_mode & 07777), 0640);
}

void tst_PartialLoads::save_keepsBesideFileBehindLinks()
{
    const TestDirectory directory;
    const TestDirectory elsewhere;
    const QString path = directory.file("bookmark.xml");
    const QString real = elsewhere.file("real.xml");
    writeFile(real, "<damaged");
    QVERIFY(QFile::link(real, path));
    addBookmark(directory.path(), utf8("new.example"));
    COMPARE_BYTES(readFile(keptFile(real)), "<damaged");
    QVERIFY(!exists(keptFile(path)));
    QVERIFY(readFile(real).contains("new.example"));
}

// It is written in place: another name would be overwritten too.
void tst_PartialLoads::save_keepsCopyOfFileWithSeveralNames()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<damaged");
    const QByteArray second = QFile::encodeName(directory.file("second"));
    QCOMPARE(link(QFile::encodeName(path).constData(), second.constData()), 0);
    addBookmark(directory.path(), utf8("new.example"));
    QVERIFY(loggedText().contains(kKept));
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");
    QVERIFY(readFile(path).contains("new.example"));
    QCOMPARE(int(statusOf(path).st_nlink), 2);
    QVERIFY(!loggedText().contains(kWriteError));
}

void tst_PartialLoads::save_replacesFileThatACrashLeftWithBothNames()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<damaged");
    QCOMPARE(
        link(QFile::encodeName(path).constData(), QFile::encodeName(keptFile(path)).constData()),
        0);
    addBookmark(directory.path(), utf8("new.example"));
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");
    QVERIFY(readFile(path).contains("new.example"));
}

void tst_PartialLoads::save_failsWhereNothingCanBeKept()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<damaged");
    QVERIFY(QDir().mkdir(keptFile(path)));
    addBookmark(directory.path(), utf8("new.example"));
    const QByteArray log = loggedText();
    QVERIFY(log.contains(kWriteError));
    QVERIFY(!log.contains(kKept));
    COMPARE_BYTES(readFile(path), "<damaged");

    // The next one succeeds where nothing stands in the way any more.
    QVERIFY(QDir().rmdir(keptFile(path)));
    addBookmark(directory.path(), utf8("new.example"));
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");
}

// The copy of a file with several names does not fit; then the file stays.
void tst_PartialLoads::save_failsOnFullDisk()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    const QByteArray damaged = bookmarks("<" + QByteArray(8000, 'a'));
    writeFile(path, damaged);
    const QByteArray second = QFile::encodeName(directory.file("second"));
    QCOMPARE(link(QFile::encodeName(path).constData(), second.constData()), 0);
    const int status = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        addBookmark(directory.path(), utf8("new.example"));
        _exit(loggedText().contains(kWriteError) ? 3 : 4);
    });
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 3);
    COMPARE_BYTES(readFile(path), damaged);
    QVERIFY(!exists(keptFile(path)));
}

void tst_PartialLoads::save_forgetsErased_data()
{
    QTest::addColumn<bool>("isPartial");
    QTest::addColumn<bool>("takesRoot");

    QTest::newRow("partial, deleteAllSetting") << true << false;
    QTest::newRow("partial, deleteAllXMLNode") << true << true;
    QTest::newRow("whole, deleteAllSetting") << false << false;
    QTest::newRow("whole, deleteAllXMLNode") << false << true;
}

void tst_PartialLoads::save_forgetsErased()
{
    QFETCH(bool, isPartial);
    QFETCH(bool, takesRoot);
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, isPartial ? bookmarks(bookmark("a") + "<") : bookmarks(bookmark("a")));
    writeFile(keptFile(path), "<older");
    VLMC_BookmarksSetting store;
    load(store, directory.path());
    if (takesRoot) {
        store.deleteAllXMLNode();
    } else {
        store.deleteAllSetting();
    }
    save(store, directory.path());
    QVERIFY(!loggedText().contains(kKept));
    QVERIFY(!exists(keptFile(path)));
    QVERIFY(!readFile(path).contains("<url>"));

    // The erasure is over: what is damaged later is kept again.
    writeFile(path, "<damaged");
    load(store, directory.path());
    save(store, directory.path());
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");
}

void tst_PartialLoads::save_remembersErasureThatFailed()
{
    const TestDirectory directory;
    const QString path = directory.file("bookmark.xml");
    writeFile(path, "<damaged");
    writeFile(keptFile(path), "<older");
    VLMC_BookmarksSetting store;
    load(store, directory.path());
    store.deleteAllSetting();
    {
        const WatchedCalls watched;
        setFaultPlan({FaultPlan::FailFromHere, 0, ENOSPC});
        QString text = path;
        store.save(text);
    }
    setFaultPlan({FaultPlan::None, 0, 0});
    COMPARE_BYTES(readFile(path), "<damaged");
    QVERIFY(exists(keptFile(path)));
    save(store, directory.path());
    QVERIFY(!exists(keptFile(path)));

    // Another store, whose document was not erased, keeps the file after the same failure.
    writeFile(path, "<damaged");
    addBookmark(directory.path(), utf8("new.example"));
    COMPARE_BYTES(readFile(keptFile(path)), "<damaged");
}

// What is erased is the document of one user; the file of the one before was never erased.
void tst_PartialLoads::save_keepsOtherUsersFile()
{
    const TestDirectory one;
    const TestDirectory other;
    writeFile(one.file("bookmark.xml"), "<one");
    writeFile(other.file("bookmark.xml"), bookmarks(bookmark("b")));
    VLMC_BookmarksSetting store;
    load(store, one.path());
    load(store, other.path());
    store.deleteAllSetting();
    save(store, one.path());
    COMPARE_BYTES(readFile(keptFile(one.file("bookmark.xml"))), "<one");
}

void tst_PartialLoads::sort_isNoErasure()
{
    const TestDirectory directory;
    const QString path = directory.file("visit.xml");
    writeFile(path, "<pageInfoList><pageInfo><title>t</title>");
    VLMC_HistorySetting history;
    QString folder = directory.path();
    history.loadHistory(&folder, kMax);
    history.sortHistory();
    history.saveHistory(&folder, kMax);
    COMPARE_BYTES(readFile(keptFile(path)), "<pageInfoList><pageInfo><title>t</title>");
}

void tst_PartialLoads::load_tellsUnreachableFromMissing()
{
    const TestDirectory directory;
    QString tooLong = directory.path() + QString(300, QLatin1Char('n'));
    QString missing = directory.file("missing");
    QString below = directory.file("file") + utf8("/missing");
    writeFile(directory.file("file"), "");
    takeLog();
    delete VLMC_XMLReader().read(tooLong);
    QCOMPARE(loggedText(), QByteArray(kOpenError));
    delete VLMC_XMLReader().read(missing);
    delete VLMC_XMLReader().read(below);
    QCOMPARE(loggedText(), QByteArray("2 VLMC_XMLReader::read file not exist!\n"
                                      "2 VLMC_XMLReader::read file not exist!\n"));
}

QTEST_GUILESS_MAIN(tst_PartialLoads)
#include "tst_PartialLoads.moc"
