// Who may read the files in which the stores keep credentials and cookies: from the moment each
// file is created, temporary ones too, and with a umask that takes nothing away.

#include "cookies/VLMC_AuthSetting.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMG_Debug.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"
#include "tests/support/FileModes.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QDir>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
void savePreferences(TestDirectory &directory)
{
    VLMC_BrowserCommonSetting store;
    store.loadSetting(directory.pathPointer());
    store.setProxyPasswordStr("secret");
    const WatchedModes watched;
    store.saveSetting(directory.pathPointer());
}

void saveCredentials(TestDirectory &directory)
{
    VLMC_AuthSetting store;
    store.createXMLRootNode();
    VLMS_AuthInfo info = {utf8("host"), utf8("80"), 0, "user", "secret"};
    store.setAuthInfo(&info);
    const WatchedModes watched;
    store.saveAuthInfo(directory.pathPointer(), 10);
}

QList<QNetworkCookie> cookies()
{
    return QList<QNetworkCookie>() << QNetworkCookie("name", "secret");
}

void saveCookies(TestDirectory &directory)
{
    VLMC_CookieSetting store;
    const WatchedModes watched;
    store.saveCookieInfo(cookies(), directory.pathPointer(), 10);
}

void convertToXml(TestDirectory &directory)
{
    TestDirectory engine;
    VLMC_CookieSetting store;
    store.saveCookieInfo(cookies(), engine.pathPointer(), 10);
    const WatchedModes watched;
    store.convertCookieIniToXML(engine.localFile(), directory.localFile("cookies.xml"));
}

void convertToIni(TestDirectory &directory)
{
    TestDirectory device;
    convertToXml(device);
    VLMC_CookieSetting store;
    const WatchedModes watched;
    store.convertCookieXMLToIni(device.localFile("cookies.xml"), directory.localFile());
}

struct Saver {
    const char *name;
    const char *fileName;
    void (*save)(TestDirectory &directory);
    /// What another program left there.
    const char *earlier;
};

const Saver kSavers[] = {
    {"preferences", "repostry.xml", savePreferences, "<repostry_common/>"},
    {"credentials", "authinfo.xml", saveCredentials, "<authentication/>"},
    {"cookies saved", "cookie.ini", saveCookies, "[Cookie]\ncookies=@ByteArray()\n"},
    {"cookies converted to XML", "cookies.xml", convertToXml, "<cookie/>"},
    {"cookies converted to ini", "cookie.ini", convertToIni, "[Cookie]\ncookies=@ByteArray()\n"},
};

int modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777)
                                                                   : -1;
}

bool isIni(const Saver &saver) { return strcmp(saver.fileName, "cookie.ini") == 0; }

// The lock beside "cookie.ini" holds the number of its process.
bool isLock(const FileMode &file) { return file.name.endsWith(".lock"); }

// The modes at these moments, each once.
QList<int> modesAt(FileMode::Moment moment)
{
    QList<int> modes;
    const QList<FileMode> seen = watchedModes();
    for (const FileMode &file : seen) {
        if (file.moment == moment && !isLock(file) && !modes.contains(file.mode)) {
            modes.append(file.mode);
        }
    }
    return modes;
}

QByteArray octal(int mode) { return QByteArray::number(mode, 8); }

void saverRows()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(sizeof kSavers / sizeof kSavers[0]); ++i) {
        QTest::newRow(kSavers[i].name) << i;
    }
}

void existingRows()
{
    const int modes[] = {0600, 0640, 0644, 0666, 0700};
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("mode");
    for (int i = 0; i < int(sizeof kSavers / sizeof kSavers[0]); ++i) {
        for (const int mode : modes) {
            QTest::newRow((kSavers[i].name + QByteArray(", ") + octal(mode)).constData())
                << i << mode;
        }
    }
}
} // namespace

class tst_FileModes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newFile_isItsOwnersAlone_data() { saverRows(); }
    void newFile_isItsOwnersAlone();
    void newFile_isItsOwnersAloneBehindALink_data() { saverRows(); }
    void newFile_isItsOwnersAloneBehindALink();
    void newFile_obeysAStricterUmask_data() { saverRows(); }
    void newFile_obeysAStricterUmask();
    void newFile_isItsOwnersAloneInANewFolder();
    void existingFile_keepsItsMode_data() { existingRows(); }
    void existingFile_keepsItsMode();
    void failingSave_leavesNothing_data() { saverRows(); }
    void failingSave_leavesNothing();
    void otherFiles_followTheUmask();

private:
    mode_t m_umask = 0;
};

void tst_FileModes::init()
{
    m_umask = umask(0);
    takeLog();
}

void tst_FileModes::cleanup()
{
    umask(m_umask);
    setSyncError(0);
    runDeferredDeletes();
}

void tst_FileModes::newFile_isItsOwnersAlone()
{
    QFETCH(int, row);
    const Saver &saver = kSavers[row];
    TestDirectory directory;
    saver.save(directory);
    QVERIFY(readFile(directory.file(saver.fileName)).size() > 10);
    QCOMPARE(modeOf(directory.file(saver.fileName)), 0600);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0600);
    QCOMPARE(modesAt(FileMode::Written), QList<int>() << 0600);
}

void tst_FileModes::newFile_isItsOwnersAloneBehindALink()
{
    QFETCH(int, row);
    const Saver &saver = kSavers[row];
    TestDirectory directory;
    TestDirectory target;
    QVERIFY(QFile::link(target.file("file"), directory.file(saver.fileName)));
    saver.save(directory);
    QVERIFY(readFile(target.file("file")).size() > 10);
    QCOMPARE(modeOf(target.file("file")), 0600);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0600);
    QCOMPARE(modesAt(FileMode::Written), QList<int>() << 0600);
}

void tst_FileModes::newFile_obeysAStricterUmask()
{
    QFETCH(int, row);
    const Saver &saver = kSavers[row];
    umask(0077);
    TestDirectory directory;
    saver.save(directory);
    QCOMPARE(modeOf(directory.file(saver.fileName)), 0600);
}

// Only "cookie.ini" gets a folder made for it.
void tst_FileModes::newFile_isItsOwnersAloneInANewFolder()
{
    TestDirectory directory;
    QString missing = directory.file("new/folder/");
    VLMC_CookieSetting store;
    {
        const WatchedModes watched;
        store.saveCookieInfo(cookies(), &missing, 10);
    }
    QVERIFY(readFile(missing + utf8("cookie.ini")).size() > 10);
    QCOMPARE(modeOf(missing + utf8("cookie.ini")), 0600);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0600);
    QCOMPARE(modesAt(FileMode::Written), QList<int>() << 0600);
}

// A temporary file never lets in anybody whom the file keeps out, and at first only its owner.
void tst_FileModes::existingFile_keepsItsMode()
{
    QFETCH(int, row);
    QFETCH(int, mode);
    const Saver &saver = kSavers[row];
    TestDirectory directory;
    const QByteArray earlier(saver.earlier);
    writeFile(directory.file(saver.fileName), earlier);
    QCOMPARE(chmod(directory.localFile(saver.fileName), mode_t(mode)), 0);
    saver.save(directory);
    QVERIFY(readFile(directory.file(saver.fileName)) != earlier);
    QCOMPARE(modeOf(directory.file(saver.fileName)), mode);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0600);
    const QList<int> written = modesAt(FileMode::Written);
    QVERIFY(!written.isEmpty());
    for (const int seen : written) {
        QVERIFY2((seen & ~mode) == 0, octal(seen).constData());
    }
}

// Of "cookie.ini" the empty file stays that comes before it; its copy cannot be made.
void tst_FileModes::failingSave_leavesNothing()
{
    QFETCH(int, row);
    const Saver &saver = kSavers[row];
    TestDirectory directory;
    setSyncError(EIO);
    saver.save(directory);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0600);
    QCOMPARE(modesAt(FileMode::Written), isIni(saver) ? QList<int>() : QList<int>() << 0600);
    const QStringList left =
        QDir(directory.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    QCOMPARE(left, isIni(saver) ? QStringList(utf8("cookie.ini")) : QStringList());
}

void tst_FileModes::otherFiles_followTheUmask()
{
    TestDirectory directory;
    VLMC_FontListSetting store;
    store.createXMLRootNode();
    store.addFont(utf8("font"));
    {
        const WatchedModes watched;
        store.saveFontList(directory.path());
    }
    QCOMPARE(modeOf(directory.file("fontlist.xml")), 0666);
    QCOMPARE(modesAt(FileMode::Created), QList<int>() << 0666);
    QCOMPARE(modesAt(FileMode::Written), QList<int>() << 0666);
}

QTEST_GUILESS_MAIN(tst_FileModes)
#include "tst_FileModes.moc"
