// What all stores do alike with their files: a row for each store, a slot for each rule. What one
// store does differently stands in its own test.

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_HistorySetting.h"
#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tests/support/Files.h"
#include "tests/support/LivingObjects.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Nodes.h"
#include "tests/support/WatchedStore.h"

#include <limits>

namespace
{
/// A store of any kind.
class Subject
{
public:
    virtual ~Subject() {}
    virtual VLMC_XMLSetting &store() = 0;
    virtual void load(QString *directory, int max) = 0;
    virtual void save(QString *directory, int max) = 0;
    virtual int count() = 0;
    /// What a watched store was asked for.
    virtual QByteArray takeCalls() { return QByteArray(); }

    VLMC_XMLNode *root() { return store().getXMLRootNode(); }
};

void loadStore(VLMC_BookmarksSetting &store, QString *directory, int max)
{
    int lastNumber = 0;
    store.loadBookmark(directory, max, lastNumber);
}
void saveStore(VLMC_BookmarksSetting &store, QString *directory, int max)
{
    store.saveBookmark(directory, max);
}
int countOf(VLMC_BookmarksSetting &store) { return store.getBookmarkCnt(); }

void loadStore(VLMC_HistorySetting &store, QString *directory, int max)
{
    store.loadHistory(directory, max);
}
void saveStore(VLMC_HistorySetting &store, QString *directory, int max)
{
    store.saveHistory(directory, max);
}
int countOf(VLMC_HistorySetting &store) { return store.getHistoryCnt(); }

void loadStore(VLMC_AuthSetting &store, QString *directory, int max)
{
    store.loadAuthInfo(directory, max);
}
void saveStore(VLMC_AuthSetting &store, QString *directory, int max)
{
    store.saveAuthInfo(directory, max);
}
int countOf(VLMC_AuthSetting &store) { return store.getAuthInfoCnt(); }

void loadStore(VLMC_FontListSetting &store, QString *directory, int)
{
    store.loadFontList(*directory);
}
void saveStore(VLMC_FontListSetting &store, QString *directory, int)
{
    store.saveFontList(*directory);
}
int countOf(VLMC_FontListSetting &store) { return store.getCount(); }

void loadStore(VLMC_CookieSetting &store, QString *directory, int max)
{
    store.loadCookieInfo(directory, max);
}
void saveStore(VLMC_CookieSetting &store, QString *directory, int max)
{
    store.saveCookieInfo(QList<QNetworkCookie>(), directory, max);
}

void loadStore(VLMC_BrowserCommonSetting &store, QString *directory, int)
{
    store.loadSetting(directory);
}
void saveStore(VLMC_BrowserCommonSetting &store, QString *directory, int)
{
    store.saveSetting(directory);
}

void loadStore(VLMC_BrowserUserSetting &store, QString *directory, int)
{
    store.loadSetting(directory);
}
void saveStore(VLMC_BrowserUserSetting &store, QString *directory, int)
{
    store.saveSetting(directory);
}

// Of a store without entries.
int countOf(VLMC_XMLSetting &) { return 0; }

template <typename Store>
class Plain : public Subject
{
public:
    VLMC_XMLSetting &store() override { return m_store; }
    void load(QString *directory, int max) override { loadStore(m_store, directory, max); }
    void save(QString *directory, int max) override { saveStore(m_store, directory, max); }
    int count() override { return countOf(m_store); }

protected:
    Store m_store;
};

template <typename Store>
class Watched : public Plain<WatchedStore<Store>>
{
public:
    QByteArray takeCalls() override { return this->m_store.takeCalls(); }
};

template <typename AnySubject>
Subject *create()
{
    return new AnySubject;
}

template <typename Store>
VLMC_XMLSetting *instanceOf()
{
    return Store::getInstance();
}

struct Makers {
    VLMC_XMLSetting *(*instance)();
    Subject *(*plain)();
    Subject *(*watched)();
};

template <typename Store>
Makers makersOf()
{
    return {instanceOf<Store>, create<Plain<Store>>, create<Watched<Store>>};
}

enum NullDirectory { KnowsNoNull, RefusesNull };

struct Kind {
    const char *name;
    Makers make;
    /// What the messages of its operations begin with.
    const char *load;
    const char *save;
    const char *blankDirectory;
    NullDirectory null;
    /// What the refusal of a maximum by its save begins with, which may name another store; null
    /// in a store without maximum.
    const char *saveMax;
    const char *file;
    /// The root that its save writes; null where it keeps no document in memory.
    const char *root;
    /// Null where its document is no list of entries.
    const char *entry;
    /// What loading an empty list logs, and calls, after the reading and the numbering. "ROOT"
    /// stands for the root's address.
    const char *loadedLines;
    const char *loadedCalls;
};

const Kind kKinds[] = {
    {"bookmarks", makersOf<VLMC_BookmarksSetting>(), "[VLMC_BookmarksSetting::loadBookmark]",
     "[VLMC_BookmarksSetting::saveBookmark]", "Path is NULL or empty.", RefusesNull,
     "[VLMC_BookmarksSetting::saveBookmark]", "bookmark.xml", "bookmarks", "bookmark",
     "3 [VLMC_BookmarksSetting::getLastNumber] last number:0\n", ""},
    {"visits", makersOf<VLMC_HistorySetting>(), "[VLMC_HistorySetting::loadHistory]",
     "[VLMC_HistorySetting::saveHistory]", "Path is NULL or empty.", RefusesNull,
     "[VLMC_HistorySetting::saveAuthInfo]", "visit.xml", "history", "pageInfo",
     "3 [VLMC_HistorySetting::sortHistory]\n3 [VLMC_XMLSetting::deleteRootChildren] ROOT\n",
     "deleteAllSetting\nsetIDforChildren id\n"},
    {"credentials", makersOf<VLMC_AuthSetting>(), "[VLMC_AuthSetting::loadAuthInfo]",
     "[VLMC_AuthSetting::saveAuthInfo]", "Path is empty.", RefusesNull,
     "[VLMC_AuthSetting::saveAuthInfo]", "authinfo.xml", "authentication", "authInfo", "", ""},
    {"fonts", makersOf<VLMC_FontListSetting>(), "[VLMC_FontListSetting::loadFontList]",
     "[VLMC_FontListSetting::saveFontList]", "Path is empty.", KnowsNoNull, nullptr, "fontlist.xml",
     "fontlist", "font", "", ""},
    {"cookies", makersOf<VLMC_CookieSetting>(), "[VLMC_CookieSetting::loadCookieInfo]",
     "[VLMC_CookieSetting::saveCookieInfo]", "Path is NULL or empty.", RefusesNull,
     "[VLMC_CookieSetting::saveCookieInfo]", "cookie.ini", nullptr, nullptr, "", ""},
    {"common preferences", makersOf<VLMC_BrowserCommonSetting>(),
     "[VLMC_BrowserCommonSetting::loadSetting]", "[VLMC_BrowserCommonSetting::saveSetting]",
     "Common Path is NULL or empty.", RefusesNull, nullptr, "repostry.xml", "repostry_common",
     nullptr, "", ""},
    {"user preferences", makersOf<VLMC_BrowserUserSetting>(),
     "[VLMC_BrowserUserSetting::loadSetting]", "[VLMC_BrowserUserSetting::saveSetting]",
     "User Path is NULL or empty.", RefusesNull, nullptr, "repostry_private.xml", "repostry",
     nullptr, "", ""},
};

bool isAny(const Kind &) { return true; }
bool hasMax(const Kind &kind) { return kind.saveMax; }
bool hasDocument(const Kind &kind) { return kind.root; }
bool isList(const Kind &kind) { return kind.entry; }
bool isListWithMax(const Kind &kind) { return kind.entry && kind.saveMax; }

typedef const Kind *KindPointer;

// A row for each store of this sort.
void addKinds(bool (*belongs)(const Kind &))
{
    QTest::addColumn<KindPointer>("kind");
    for (const Kind &kind : kKinds) {
        if (belongs(kind)) {
            QTest::newRow(kind.name) << &kind;
        }
    }
}

enum Directory { NoDirectory, EmptyDirectory, GoodDirectory };

// What stands where a store looks for its file.
enum Place { Nothing, AFile, AFolder };

void addRefusal(const Kind &kind, const QByteArray &name, Directory directory, int max,
                const QByteArray &message)
{
    QTest::newRow((QByteArray(kind.name) + ", " + name).constData())
        << &kind << int(directory) << max << "2 " + message + '\n';
}

// The directory is looked at before the maximum.
void addRefusals(const char *Kind::*operation, const char *Kind::*maxOperation, const char *ofMax)
{
    QTest::addColumn<KindPointer>("kind");
    QTest::addColumn<int>("directory");
    QTest::addColumn<int>("max");
    QTest::addColumn<QByteArray>("message");
    for (const Kind &kind : kKinds) {
        const QByteArray blank = QByteArray(kind.*operation) + ' ' + kind.blankDirectory;
        addRefusal(kind, "empty", EmptyDirectory, 1, blank);
        addRefusal(kind, "empty before max 0", EmptyDirectory, 0, blank);
        if (kind.null == RefusesNull) {
            addRefusal(kind, "null", NoDirectory, 1, blank);
            addRefusal(kind, "null before max -1", NoDirectory, -1, blank);
        }
        for (const int max : {0, -1, std::numeric_limits<int>::min()}) {
            if (hasMax(kind)) {
                const QByteArray number = QByteArray::number(max);
                addRefusal(kind, "max " + number, GoodDirectory, max,
                           QByteArray(kind.*maxOperation) + ofMax + number);
            }
        }
    }
}

QByteArray loadLog(const Kind &kind, const QByteArray &emptied, const QByteArray &readersLines,
                   const QByteArray &root)
{
    QByteArray lines = kind.loadedLines;
    return "3 " + QByteArray(kind.load) + " start\n"
           + (isList(kind) ? "3 [VLMC_XMLSetting::deleteRootChildren] " + emptied + '\n'
                           : QByteArray())
           + "3 [VLMC_XMLSetting::loadBookmark] start\n" + readersLines
           + "3 [VLMC_XMLSetting::loadBookmark] end\n" + lines.replace("ROOT", root) + "3 "
           + kind.load + " end\n";
}

QByteArray saveLog(const Kind &kind, const QByteArray &writersLines = QByteArray())
{
    return "3 " + QByteArray(kind.save) + " start\n3 [VLMC_XMLSetting::save] start\n" + writersLines
           + "3 [VLMC_XMLSetting::saveBookmark] end\n3 " + kind.save + " end\n";
}

// A file of the kind with this many entries, or elements that no preference has.
QByteArray fileOf(const Kind &kind, int entries)
{
    const QByteArray entry = QByteArray("<") + (kind.entry ? kind.entry : "mine") + "/>";
    return QByteArray("<") + kind.root + '>' + entry.repeated(entries) + "</" + kind.root + '>';
}

QByteArray savedEmptyList(const Kind &kind)
{
    return QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<") + kind.root
           + " docInfo=\"1.0\"/>\n";
}

typedef QScopedPointer<Subject> SubjectPointer;

// A store that has loaded this document from a directory of its own.
struct Loaded {
    Loaded(const Kind &kind, const QByteArray &document)
        : subject(kind.make.plain()), file(directory.file(kind.file))
    {
        writeFile(file, document);
        subject->load(directory.pathPointer(), 1);
    }
    QByteArray saved()
    {
        subject->save(directory.pathPointer(), 1);
        return readFile(file);
    }
    QByteArray tree() { return described(subject->root()); }

    TestDirectory directory;
    const SubjectPointer subject;
    const QString file;
};
} // namespace

Q_DECLARE_METATYPE(KindPointer)

class tst_LoadSaveContract : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup() { runDeferredDeletes(); }

    void getInstance_startsWithoutDocument_data() { addKinds(isAny); }
    void getInstance_startsWithoutDocument();
    void load_refusesArguments_data();
    void load_refusesArguments();
    void load_logsEveryStep_data() { addKinds(hasDocument); }
    void load_logsEveryStep();
    void load_goesThroughVirtualOperations_data() { addKinds(hasDocument); }
    void load_goesThroughVirtualOperations();
    void load_forgetsTheDocumentBefore_data();
    void load_forgetsTheDocumentBefore();
    void load_releasesTheDocumentBefore_data() { addKinds(hasDocument); }
    void load_releasesTheDocumentBefore();
    void load_readsMoreThanTheMaximum_data() { addKinds(isListWithMax); }
    void load_readsMoreThanTheMaximum();
    void load_numbersEveryChild_data() { addKinds(isList); }
    void load_numbersEveryChild();
    void save_refusesArguments_data();
    void save_refusesArguments();
    void save_logsEveryStep_data() { addKinds(hasDocument); }
    void save_logsEveryStep();
    void save_goesThroughVirtualOperations_data() { addKinds(hasDocument); }
    void save_goesThroughVirtualOperations();
    void save_writesNothingBeforeLoad_data() { addKinds(hasDocument); }
    void save_writesNothingBeforeLoad();
    void save_endsAfterAFailedWrite_data() { addKinds(hasDocument); }
    void save_endsAfterAFailedWrite();
    void save_renamesTheRoot_data() { addKinds(isList); }
    void save_renamesTheRoot();
    void save_writesAgainWhatWasLoaded_data() { addKinds(isList); }
    void save_writesAgainWhatWasLoaded();
    void save_appendsTheNameAsItStands_data() { addKinds(hasDocument); }
    void save_appendsTheNameAsItStands();
    void count_isZeroBeforeLoad_data() { addKinds(isList); }
    void count_isZeroBeforeLoad();
    void count_passesOverWhatIsNoEntry_data() { addKinds(isList); }
    void count_passesOverWhatIsNoEntry();
};

void tst_LoadSaveContract::getInstance_startsWithoutDocument()
{
    QFETCH(KindPointer, kind);
    VLMC_XMLSetting *const instance = kind->make.instance();
    QVERIFY(instance);
    QCOMPARE(kind->make.instance(), instance);
    QVERIFY(!instance->getXMLRootNode());
    COMPARE_BYTES(loggedText(), "");
}

void tst_LoadSaveContract::load_refusesArguments_data()
{
    addRefusals(&Kind::load, &Kind::load, " Error load_max:");
}

void tst_LoadSaveContract::load_refusesArguments()
{
    QFETCH(KindPointer, kind);
    QFETCH(int, directory);
    QFETCH(int, max);
    QFETCH(QByteArray, message);
    TestDirectory good;
    const SubjectPointer subject(kind->make.watched());
    if (hasDocument(*kind)) {
        writeFile(good.file(kind->file), fileOf(*kind, 2));
    }
    subject->load(good.pathPointer(), 5);
    const QByteArray before = described(subject->root());
    subject->takeCalls();
    takeLog();

    QString empty;
    QString *const given[] = {nullptr, &empty, good.pathPointer()};
    subject->load(given[directory], max);

    COMPARE_BYTES(loggedText(), "3 " + QByteArray(kind->load) + " start\n" + message);
    COMPARE_BYTES(subject->takeCalls(), "");
    COMPARE_BYTES(described(subject->root()), before);
}

void tst_LoadSaveContract::load_logsEveryStep()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    const SubjectPointer subject(kind->make.plain());

    subject->load(directory.pathPointer(), 1);
    const QByteArray first = hexAddress(subject->root());
    COMPARE_BYTES(loggedText(),
                  loadLog(*kind, "0x0", "2 VLMC_XMLReader::read file not exist!\n", first));

    writeFile(directory.file(kind->file), fileOf(*kind, 0));
    subject->load(directory.pathPointer(), 1);
    COMPARE_BYTES(loggedText(), loadLog(*kind, first, "", hexAddress(subject->root())));
}

void tst_LoadSaveContract::load_goesThroughVirtualOperations()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    const SubjectPointer subject(kind->make.watched());

    subject->load(directory.pathPointer(), 1);

    const QByteArray calls = subject->takeCalls();
    const QByteArray read = "load " + directory.file(kind->file).toUtf8() + '\n';
    if (isList(*kind)) {
        // What was there goes first.
        COMPARE_BYTES(calls,
                      "deleteAllSetting\n" + read + "setIDforChildren id\n" + kind->loadedCalls);
    } else {
        QVERIFY2(calls.startsWith(read), calls.constData());
        QCOMPARE(calls.count("load "), 1);
    }
}

void tst_LoadSaveContract::load_forgetsTheDocumentBefore_data()
{
    QTest::addColumn<KindPointer>("kind");
    QTest::addColumn<int>("place");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("entries");
    for (const Kind &kind : kKinds) {
        if (hasDocument(kind)) {
            const QByteArray name(kind.name);
            QTest::newRow(name + ", file") << &kind << int(AFile) << fileOf(kind, 1) << 1;
            QTest::newRow(name + ", empty file") << &kind << int(AFile) << QByteArray() << 0;
            QTest::newRow(name + ", no document") << &kind << int(AFile) << QByteArray("no") << 0;
            QTest::newRow(name + ", folder") << &kind << int(AFolder) << QByteArray() << 0;
            QTest::newRow(name + ", nothing") << &kind << int(Nothing) << QByteArray() << 0;
        }
    }
}

// A store that held something is afterwards as one that held nothing; no file is written.
void tst_LoadSaveContract::load_forgetsTheDocumentBefore()
{
    QFETCH(KindPointer, kind);
    QFETCH(int, place);
    QFETCH(QByteArray, content);
    QFETCH(int, entries);
    TestDirectory used;
    writeFile(used.file(kind->file), fileOf(*kind, 3).replace(kind->root, "foreign"));
    const SubjectPointer subject(kind->make.plain());
    subject->load(used.pathPointer(), 1);
    TestDirectory directory;
    const QString path = directory.file(kind->file);
    if (place == AFile) {
        writeFile(path, content);
    } else if (place == AFolder) {
        QVERIFY(QDir().mkdir(path));
    }

    subject->load(directory.pathPointer(), 1);

    const SubjectPointer fresh(kind->make.plain());
    fresh->load(directory.pathPointer(), 1);
    QVERIFY(subject->root());
    COMPARE_BYTES(described(subject->root()), described(fresh->root()));
    if (isList(*kind)) {
        QCOMPARE(subject->store().getXMLNodeCnt(), entries);
    }
    QCOMPARE(exists(path), place != Nothing);
    if (place == AFile) {
        COMPARE_BYTES(readFile(path), content);
    }
}

void tst_LoadSaveContract::load_releasesTheDocumentBefore()
{
    QFETCH(KindPointer, kind);
    const int entries = 300;
    TestDirectory directory;
    writeFile(directory.file(kind->file), fileOf(*kind, entries));
    const SubjectPointer subject(kind->make.plain());
    int before = 0;
    for (int i = 0; i < 2; ++i) {
        before = livingObjects();
        subject->load(directory.pathPointer(), 1);
        runDeferredDeletes();
        takeLog();
    }
    // Qt and the test keep a few.
    const int more = livingObjects() - before;
    QVERIFY2(more < entries, QByteArray::number(more).constData());
}

// And as many are saved.
void tst_LoadSaveContract::load_readsMoreThanTheMaximum()
{
    QFETCH(KindPointer, kind);
    Loaded loaded(*kind, fileOf(*kind, 3));
    QCOMPARE(loaded.subject->count(), 3);
    QCOMPARE(loaded.saved().count(QByteArray(kind->entry) + " id="), 3);
}

void tst_LoadSaveContract::load_numbersEveryChild()
{
    QFETCH(KindPointer, kind);
    const QByteArray entry = kind->entry;
    const QByteArray root = kind->root;
    Loaded loaded(*kind, '<' + root + "><" + entry + " id=\"9\" x=\"1\"/><other id=\"0\"/><" + entry
                             + "/></" + root + '>');
    const QList<VLMC_XMLNode *> children = loaded.subject->root()->getXMLNodeChildren();
    QCOMPARE(int(children.size()), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(int(children.at(i)->getAttribute().size()), 1);
        QCOMPARE(children.at(i)->getAttribute().value(utf8("id")).toString(),
                 QString::fromLatin1("00%1").arg(i));
    }
}

void tst_LoadSaveContract::save_refusesArguments_data()
{
    addRefusals(&Kind::save, &Kind::saveMax, " Error save_max:");
}

void tst_LoadSaveContract::save_refusesArguments()
{
    QFETCH(KindPointer, kind);
    QFETCH(int, directory);
    QFETCH(int, max);
    QFETCH(QByteArray, message);
    TestDirectory good;
    writeFile(good.file(kind->file), "stands");
    const SubjectPointer subject(kind->make.watched());
    subject->store().createXMLRootNode();

    QString empty;
    QString *const given[] = {nullptr, &empty, good.pathPointer()};
    subject->save(given[directory], max);

    COMPARE_BYTES(loggedText(), "3 " + QByteArray(kind->save) + " start\n" + message);
    COMPARE_BYTES(subject->takeCalls(), "");
    COMPARE_BYTES(described(subject->root()), "");
    COMPARE_BYTES(readFile(good.file(kind->file)), "stands");
}

void tst_LoadSaveContract::save_logsEveryStep()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    const SubjectPointer subject(kind->make.plain());
    subject->load(directory.pathPointer(), 1);
    takeLog();

    subject->save(directory.pathPointer(), 1);

    COMPARE_BYTES(loggedText(), saveLog(*kind));
    const QByteArray document = readFile(directory.file(kind->file));
    if (isList(*kind)) {
        COMPARE_BYTES(document, savedEmptyList(*kind));
    }
    QVERIFY(document.contains(kind->root));
}

void tst_LoadSaveContract::save_goesThroughVirtualOperations()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    const SubjectPointer subject(kind->make.watched());
    subject->load(directory.pathPointer(), 1);
    subject->takeCalls();
    subject->save(directory.pathPointer(), 1);
    COMPARE_BYTES(subject->takeCalls(), "save " + directory.file(kind->file).toUtf8() + '\n');
}

void tst_LoadSaveContract::save_writesNothingBeforeLoad()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    const SubjectPointer subject(kind->make.plain());
    subject->save(directory.pathPointer(), 1);
    COMPARE_BYTES(loggedText(), saveLog(*kind));
    QVERIFY(!exists(directory.file(kind->file)));
    QVERIFY(!subject->root());

    writeFile(directory.file(kind->file), "stands");
    subject->save(directory.pathPointer(), 1);
    COMPARE_BYTES(readFile(directory.file(kind->file)), "stands");
}

void tst_LoadSaveContract::save_endsAfterAFailedWrite()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    QString missing = directory.file("missing/");
    const SubjectPointer subject(kind->make.plain());
    subject->store().createXMLRootNode();
    subject->save(&missing, 1);
    COMPARE_BYTES(loggedText(), saveLog(*kind, "2 VLMC_XMLWriter::write file open error!\n"));
}

// The name and the attributes of the file's root stay until then.
void tst_LoadSaveContract::save_renamesTheRoot()
{
    QFETCH(KindPointer, kind);
    Loaded loaded(*kind, "<foreign a=\"b\" docInfo=\"2.0\"/>");
    COMPARE_BYTES(loaded.tree(), "foreign{a=b}{docInfo=2.0}");
    COMPARE_BYTES(loaded.saved(), savedEmptyList(*kind));
}

void tst_LoadSaveContract::save_writesAgainWhatWasLoaded()
{
    QFETCH(KindPointer, kind);
    Loaded loaded(*kind, fileOf(*kind, 2));
    const QByteArray document = loaded.saved();
    const QByteArray tree = loaded.tree();
    COMPARE_BYTES(loaded.saved(), document);
    COMPARE_BYTES(loaded.tree(), tree);

    Loaded again(*kind, document);
    COMPARE_BYTES(again.tree(), tree);
    COMPARE_BYTES(again.saved(), document);
}

// And as it stands load appends it, too.
void tst_LoadSaveContract::save_appendsTheNameAsItStands()
{
    QFETCH(KindPointer, kind);
    TestDirectory directory;
    writeFile(directory.file(QByteArray("my-") + kind->file), fileOf(*kind, 2));
    QString prefix = directory.file("my-");
    const SubjectPointer subject(kind->make.plain());

    subject->load(&prefix, 1);
    QCOMPARE(int(described(subject->root()).count(isList(*kind) ? "id=" : "mine")), 2);
    subject->save(&prefix, 1);

    QVERIFY(readFile(directory.file(QByteArray("my-") + kind->file)).startsWith("<?xml"));
    QVERIFY(!exists(directory.file(kind->file)));
    QCOMPARE(prefix, directory.file("my-"));
}

void tst_LoadSaveContract::count_isZeroBeforeLoad()
{
    QFETCH(KindPointer, kind);
    const SubjectPointer subject(kind->make.plain());
    QCOMPARE(subject->count(), 0);
    QVERIFY(!subject->root());
    COMPARE_BYTES(loggedText(), "");
}

void tst_LoadSaveContract::count_passesOverWhatIsNoEntry()
{
    QFETCH(KindPointer, kind);
    const SubjectPointer subject(kind->make.watched());
    VLMC_XMLNode *const root = subject->store().createXMLRootNode();
    const QByteArray entry(kind->entry);
    addAttribute(newNode(root, entry), "id", "000");
    addAttribute(newNode(root, "other"), "id", "001");
    addAttribute(newNode(root, entry), "id", "002");
    addAttribute(newNode(root, entry.toUpper()), "id", "003");
    // No id leads there.
    addAttribute(newNode(root, entry), "id", "9");

    QCOMPARE(subject->count(), 2);

    COMPARE_BYTES(subject->takeCalls(), "getXMLRootNodeChildCntByName id " + entry + '\n');
    COMPARE_BYTES(loggedText(), "");
}

QTEST_GUILESS_MAIN(tst_LoadSaveContract)
#include "tst_LoadSaveContract.moc"
