#ifndef OUTPUT_CONSOLE_H
#define OUTPUT_CONSOLE_H

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

#include <csignal>

// What the tool says. Output is UTF-8 whatever the locale is.
namespace profile
{
enum ExitStatus {
    Done = 0,
    Differs = 1, // findings, differences, nothing found
    Failed = 2   // usage, or a file that cannot be read or written
};

QString text(const char *utf8);

// "1 entry", "3 entries".
QString counted(qint64 count, const char *one, const char *many);

// A text from a profile or a file, on one line and without characters that steer a terminal.
QString printable(const QString &untrusted);

// Stars in place of a secret, unless it is to be shown or empty.
QString masked(const QString &secret, bool showSecrets = false);

// A text in which no address has a user name or a password any more.
QString withoutUserInfo(const QString &address);

// One line on standard output.
void say(const QString &line);
void sayBytes(const QByteArray &bytes);

// One line on standard error, behind the tool's name.
void warn(const QString &line);

// warn(), and the exit status for it: return fail(...).
int fail(const QString &line);

// A password from standard input: its first line. False, and said so, when there is none that can
// be taken. A terminal is asked without echo, and gets it back also when Ctrl-C ends the tool
// meanwhile.
bool readSecret(const char *prompt, QByteArray *secret);

// How far long work has come, on a terminal only and from the second second on.
class Progress
{
public:
    Progress(const char *what, qint64 total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void step();

private:
    const char *m_what;
    qint64 m_total;
    qint64 m_done;
    qint64 m_shownAt;
    bool m_visible;
    QElapsedTimer m_timer;
};

// While one lives, reading may take the processor's time that any honest file is read in many times
// over; then the tool ends with a line that says so. Nothing may have been written yet.
class Deadline
{
public:
    Deadline();
    ~Deadline();
    Deadline(const Deadline &) = delete;
    Deadline &operator=(const Deadline &) = delete;
};

// While one lives, Ctrl-C and its like wait: a file that is being written is finished first. So
// does the end of whoever reads the output, as in a pipe to head. One may live in another's time.
class Uninterrupted
{
public:
    Uninterrupted();
    ~Uninterrupted();
    Uninterrupted(const Uninterrupted &) = delete;
    Uninterrupted &operator=(const Uninterrupted &) = delete;

private:
    sigset_t m_before;
};
} // namespace profile

#endif
