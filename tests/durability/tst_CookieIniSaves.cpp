// QSettings writes "cookie.ini", under the protection of a copy. Whatever goes wrong, the next load
// finds the old cookies or the new ones, and the document from which the file is made is never
// touched.

#include "cookies/VLMC_CookieSetting.h"
#include "tests/support/CookieIni.h"
#include "tests/support/Files.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Processes.h"
#include "tests/support/SystemCalls.h"

#include <QtCore/QDir>

#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
const char kIni[] = "cookie.ini";
const char kDocument[] = "cookies.xml";
const char kCopy[] = "cookie.ini.rollback";
const QStringList kLeftOver = QStringList() << utf8("cookie.ini.*") << utf8(".velmora-save-*");

// Longer than any conversion takes, shorter than QSettings waits for a lock.
const uint kSecondsToConvert = 20;

QByteArray iniWith(char letter)
{
    const QByteArray cookie = "n=" + QByteArray(200, letter) + "; domain=x.com; path=/";
    return cookieIniOf(QList<QByteArray>() << cookie);
}

// Each conversion is made by a process of its own: QSettings remembers what it read and wrote.
int convertInChild(const std::function<void()> &work)
{
    return inChild([&] {
        // QSettings complains about lock files that it cannot write or remove.
        silenceQt();
        alarm(kSecondsToConvert);
        work();
    });
}

// A directory with a document, and the "cookie.ini" of an earlier one or none.
class Conversion
{
public:
    explicit Conversion(bool overOldFile)
    {
        m_old = converted('o');
        m_new = converted('n');
        m_document = readFile(m_directory.file(kDocument));
        if (!overOldFile) {
            m_old = QByteArray();
        }
        restore();
    }

    void restore()
    {
        removeLeftOver();
        QFile::remove(ini());
        if (!m_old.isNull()) {
            writeFile(ini(), m_old);
        }
    }

    // The exit status: 1 when the conversion ended before the plan's call.
    int convert(const FaultPlan &plan)
    {
        char *const from = m_directory.localFile(kDocument);
        char *const to = m_directory.localFile();
        return convertInChild([&] {
            setFaultPlan(plan);
            VLMC_CookieSetting cookies;
            {
                const WatchedCalls watched;
                cookies.convertCookieXMLToIni(from, to);
            }
            _exit(plan.index < watchedCalls().size() ? 0 : 1);
        });
    }

    // As at the next start.
    void load()
    {
        QString *const directory = m_directory.pathPointer();
        convertInChild([&] { VLMC_CookieSetting().loadCookieInfo(directory, 20); });
    }

    // Locks and temporary files of dead processes are removed before: a lock
    // may delay it for half a minute, and the temporary files have the names that it would choose,
    // since processes of one parent draw the same random numbers.
    bool canBeRepeated()
    {
        removeLeftOver();
        return convert({FaultPlan::None, 0, 0}) == 0 && isNew();
    }
    bool isOld() const { return exists(ini()) ? readFile(ini()) == m_old : m_old.isNull(); }
    bool isNew() const { return exists(ini()) && readFile(ini()) == m_new; }
    bool documentIsWhole() const { return readFile(m_directory.file(kDocument)) == m_document; }
    bool isOldOrNew() const { return isOld() || isNew(); }
    bool hasCopy() const { return exists(m_directory.file(kCopy)); }
    int leftOver() const { return int(leftOverFiles().size()); }

private:
    QString ini() const { return m_directory.file(kIni); }

    QStringList leftOverFiles() const
    {
        return QDir(m_directory.path()).entryList(kLeftOver, QDir::Files | QDir::Hidden);
    }

    void removeLeftOver()
    {
        for (const QString &name : leftOverFiles()) {
            QFile::remove(m_directory.path() + name);
        }
    }

    // The file that QSettings makes of a cookie, and the document that leads to it.
    QByteArray converted(char letter)
    {
        writeFile(ini(), iniWith(letter));
        char *const directory = m_directory.localFile();
        char *const document = m_directory.localFile(kDocument);
        convertInChild([&] {
            VLMC_CookieSetting cookies;
            cookies.convertCookieIniToXML(directory, document);
        });
        QFile::remove(ini());
        convert({FaultPlan::None, 0, 0});
        return readFile(ini());
    }

    TestDirectory m_directory;
    QByteArray m_old;
    QByteArray m_new;
    QByteArray m_document;
};
} // namespace

class tst_CookieIniSaves : public QObject
{
    Q_OBJECT

private slots:
    void init() { takeLog(); }
    void cleanup();
    void cleanupTestCase();

    void conversion_survivesDeathAtEveryCall_data() { rows(); }
    void conversion_survivesDeathAtEveryCall();
    void conversion_survivesFailingCalls_data() { rows(); }
    void conversion_survivesFailingCalls();

private:
    void rows();

    int m_deaths = 0;
    int m_cut = 0;
    int m_leftOver = 0;
    int m_faults = 0;
    int m_damaged = 0;
    int m_torn = 0;
};

void tst_CookieIniSaves::cleanup() { runDeferredDeletes(); }

void tst_CookieIniSaves::cleanupTestCase()
{
    printf(
        "cookie.ini: %d deaths, %d of which left other files and %d a part until the next load; %d"
        " faults, %d of which left a part until the next load; %d torn after it\n",
        m_deaths, m_leftOver, m_cut, m_faults, m_damaged, m_torn);
}

void tst_CookieIniSaves::rows()
{
    QTest::addColumn<bool>("overOldFile");
    QTest::newRow("for the first time") << false;
    QTest::newRow("over an old file") << true;
}

void tst_CookieIniSaves::conversion_survivesDeathAtEveryCall()
{
    QFETCH(bool, overOldFile);
    Conversion conversion(overOldFile);
    const FaultPlan::Kind kinds[] = {FaultPlan::KillBefore, FaultPlan::KillAmid};
    for (const FaultPlan::Kind kind : kinds) {
        int status = 0;
        for (int k = 0; status == 0 || WIFSIGNALED(status); ++k) {
            const QByteArray where = "call " + QByteArray::number(k);
            conversion.restore();
            status = conversion.convert({kind, k, 0});
            QVERIFY2(WIFEXITED(status) || WTERMSIG(status) == SIGKILL, where.constData());
            m_deaths += WIFSIGNALED(status) ? 1 : 0;
            m_cut += conversion.isOldOrNew() ? 0 : 1;
            m_leftOver += conversion.leftOver() > 0 ? 1 : 0;
            conversion.load();
            m_torn += conversion.isOldOrNew() ? 0 : 1;
            QVERIFY2(conversion.isOldOrNew() && !conversion.hasCopy(), where.constData());
            QVERIFY2(conversion.documentIsWhole(), where.constData());
            QVERIFY2(conversion.canBeRepeated(), where.constData());
        }
    }
}

void tst_CookieIniSaves::conversion_survivesFailingCalls()
{
    QFETCH(bool, overOldFile);
    Conversion conversion(overOldFile);
    const struct {
        FaultPlan::Kind kind;
        int error;
    } faults[] = {
        {FaultPlan::Fail, ENOSPC},         {FaultPlan::Fail, EIO},
        {FaultPlan::Fail, EINTR},          {FaultPlan::ShortWrite, 0},
        {FaultPlan::FailFromHere, ENOSPC}, {FaultPlan::FailFromHere, EIO},
        {FaultPlan::Fail, EMFILE},         {FaultPlan::FailFromHere, EMFILE},
    };
    for (const auto &fault : faults) {
        int status = 0;
        for (int k = 0; status == 0; ++k) {
            const QByteArray where = "call " + QByteArray::number(k);
            conversion.restore();
            status = conversion.convert({fault.kind, k, fault.error});
            QVERIFY2(WIFEXITED(status), where.constData());
            QVERIFY2(conversion.documentIsWhole(), where.constData());
            m_faults += status == 0 ? 1 : 0;
            m_damaged += conversion.isOldOrNew() ? 0 : 1;
            conversion.load();
            m_torn += conversion.isOldOrNew() ? 0 : 1;
            QVERIFY2(conversion.isOldOrNew() && !conversion.hasCopy(), where.constData());
            QVERIFY2(conversion.canBeRepeated(), where.constData());
        }
    }
}

QTEST_GUILESS_MAIN(tst_CookieIniSaves)
#include "tst_CookieIniSaves.moc"
