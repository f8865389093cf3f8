// How texts are printed, and what signals do to the tool. Prompts are tried on a terminal, in
// tests/tools/terminal.

#include "tests/support/Files.h"
#include "tests/support/Processes.h"
#include "tools/velmora-profile/output/Console.h"

#include <QtTest/QtTest>

#include <csignal>
#include <sys/time.h>

using namespace profile;

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
    void counted_takesTheSingularForOne();
    void printable_showsWhatSteersATerminal_data();
    void printable_showsWhatSteersATerminal();
    void masked_hidesTheLengthOfSecrets();
    void withoutUserInfo_leavesTheRestOfAnAddress_data();
    void withoutUserInfo_leavesTheRestOfAnAddress();
    void warn_printsOneLine();
    void deadline_isTenSecondsOfTheProcessor();
    void deadline_endsTheToolWithOneLine();
    void uninterrupted_letsInterruptionsWait_data();
    void uninterrupted_letsInterruptionsWait();
};

namespace
{
const int kSecond = 1000000;

// What is left of the processor's time that may be taken, in microseconds; 0 for no limit.
qint64 timeLeft()
{
    itimerval timer;
    getitimer(ITIMER_VIRTUAL, &timer);
    return timer.it_value.tv_sec * qint64(kSecond) + timer.it_value.tv_usec;
}

// Runs the work in a process of its own; what it writes on standard error.
template <typename Work>
QByteArray errorsOf(Work work, int *status)
{
    const TestDirectory directory;
    const QString path = directory.file("stderr");
    *status = inChild([&] {
        QFile errors(path);
        if (!errors.open(QIODevice::WriteOnly) || dup2(errors.handle(), STDERR_FILENO) < 0) {
            _exit(1);
        }
        work();
    });
    return readFile(path);
}

bool isExit(int status, int code) { return WIFEXITED(status) && WEXITSTATUS(status) == code; }
} // namespace

void tst_Console::counted_takesTheSingularForOne()
{
    QCOMPARE(counted(0, "entry", "entries"), text("0 entries"));
    QCOMPARE(counted(1, "entry", "entries"), text("1 entry"));
    QCOMPARE(counted(3, "entry", "entries"), text("3 entries"));
}

void tst_Console::printable_showsWhatSteersATerminal_data()
{
    QTest::addColumn<QString>("untrusted");
    QTest::addColumn<QString>("printed");
    QTest::newRow("plain") << text("a b") << text("a b");
    QTest::newRow("letters of any script") << text("日本 é") << text("日本 é");
    QTest::newRow("escape") << text("\x1b[2J") << text("␛[2J");
    QTest::newRow("ends of lines") << text("a\r\nb\tc") << text("a␍␊b␉c");
    QTest::newRow("delete") << text("a\x7f") << text("a\xef\xbf\xbd");
    QTest::newRow("control sequence introducer") << text("\xc2\x9b") << text("\xef\xbf\xbd");
    QTest::newRow("turned around") << text("\xe2\x80\xae") << text("\xef\xbf\xbd");
}

void tst_Console::printable_showsWhatSteersATerminal()
{
    QFETCH(QString, untrusted);
    QFETCH(QString, printed);
    QCOMPARE(printable(untrusted), printed);
}

void tst_Console::masked_hidesTheLengthOfSecrets()
{
    QCOMPARE(masked(text("a")), text("********"));
    QCOMPARE(masked(text("a secret of some length")), text("********"));
    QCOMPARE(masked(text("a"), true), text("a"));
    QCOMPARE(masked(QString()), QString());
}

void tst_Console::withoutUserInfo_leavesTheRestOfAnAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("left");
    QTest::newRow("none") << text("http://h/p?a=b#c") << text("http://h/p?a=b#c");
    QTest::newRow("user") << text("http://u@h/") << text("http://h/");
    QTest::newRow("user and password") << text("ftp://u:p@h:8080/x") << text("ftp://h:8080/x");
    QTest::newRow("more than one @") << text("http://u:p@q@h/") << text("http://h/");
    QTest::newRow("@ in the path") << text("http://h/a@b") << text("http://h/a@b");
    QTest::newRow("@ in the query") << text("http://h?a@b") << text("http://h?a@b");
    QTest::newRow("@ in the fragment") << text("http://h#a@b") << text("http://h#a@b");
    QTest::newRow("address in an address")
        << text("http://h/?u=http://u:p@i/") << text("http://h/?u=http://i/");
    QTest::newRow("scheme twice") << text("http://http://u:p@h/") << text("http://http://h/");
    QTest::newRow("scheme in a scheme") << text("http:x://u:p@h/") << text("http:x://h/");
    QTest::newRow("many schemes") << text("http:").repeated(100000) + text("/@")
                                  << text("http:").repeated(100000) + text("/@");
    QTest::newRow("no valid address") << text("http://u:p w%@h:x/") << text("http://h:x/");
    QTest::newRow("no end") << text("https://u:p@") << text("https://");
    QTest::newRow("no slashes") << text("HTTP:u:p@h/") << text("HTTP:h/");
    QTest::newRow("backslashes") << text("http:\\\\u:p@h/") << text("http:\\\\h/");
    QTest::newRow("no scheme") << text("//u:p@h/") << text("//h/");
    QTest::newRow("mail") << text("mailto:a@b.example") << text("mailto:a@b.example");
    QTest::newRow("plain text") << text("a@b: c") << text("a@b: c");
    QTest::newRow("nothing") << QString() << QString();
}

void tst_Console::withoutUserInfo_leavesTheRestOfAnAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, left);
    QCOMPARE(withoutUserInfo(address), left);
}

void tst_Console::warn_printsOneLine()
{
    int status = -1;
    const QByteArray errors = errorsOf([] { warn(text("a\nb")); }, &status);
    QCOMPARE(errors, QByteArray("velmora-profile: a␊b\n"));
    QVERIFY(isExit(status, 0));
}

void tst_Console::deadline_isTenSecondsOfTheProcessor()
{
    QCOMPARE(timeLeft(), qint64(0));
    {
        const Deadline deadline;
        // The kernel counts in ticks, and may give one more.
        QVERIFY2(timeLeft() > 9 * kSecond && timeLeft() < 11 * kSecond,
                 QByteArray::number(timeLeft()).constData());
    }
    QCOMPARE(timeLeft(), qint64(0));
}

void tst_Console::deadline_endsTheToolWithOneLine()
{
    int status = -1;
    const QByteArray errors = errorsOf(
        [] {
            const Deadline deadline;
            raise(SIGVTALRM);
        },
        &status);
    QCOMPARE(errors, QByteArray("velmora-profile: reading the file takes too long; nothing was "
                                "changed, look at what it is\n"));
    QVERIFY(isExit(status, Failed));
}

void tst_Console::uninterrupted_letsInterruptionsWait_data()
{
    QTest::addColumn<int>("interruption");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("end of the reader") << SIGPIPE;
}

// The interruption comes when the outermost one has ended, and not before.
void tst_Console::uninterrupted_letsInterruptionsWait()
{
    QFETCH(int, interruption);
    int status = -1;
    const QByteArray errors = errorsOf(
        [interruption] {
            // Not Qt Test's.
            signal(interruption, SIG_DFL);
            {
                const Uninterrupted outer;
                {
                    const Uninterrupted inner;
                    raise(interruption);
                }
                warn(text("still here"));
            }
            warn(text("and here"));
        },
        &status);
    QCOMPARE(errors, QByteArray("velmora-profile: still here\n"));
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(WTERMSIG(status), interruption);
}

QTEST_GUILESS_MAIN(tst_Console)
#include "tst_Console.moc"
