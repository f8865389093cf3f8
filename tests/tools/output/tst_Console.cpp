// What the tool says on standard error, and what signals do to it. Prompts are tried on a terminal,
// in tests/tools/terminal.

#include "tests/support/Files.h"
#include "tests/support/Processes.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtTest/QtTest>

#include <csignal>
#include <sys/time.h>

using namespace profile;

class tst_Console : public QObject
{
    Q_OBJECT

private slots:
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
