#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QRegularExpression>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/time.h>
#include <termios.h>
#include <unistd.h>

namespace
{
const qint64 kQuietMilliseconds = 1000;
const qint64 kMillisecondsBetweenSteps = 100;

const int kSecondsForReading = 10;

const char kControlPictures[] = "\xe2\x90\x80"; // U+2400, the picture of NUL; the others follow it

// Direction overrides and isolates let a text rearrange the line that it stands in.
bool turnsDirection(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool isControl(QChar character)
{
    const ushort code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029;
}

sigset_t interruptions()
{
    sigset_t signalSet;
    sigemptyset(&signalSet);
    sigaddset(&signalSet, SIGINT);
    sigaddset(&signalSet, SIGTERM);
    sigaddset(&signalSet, SIGHUP);
    return signalSet;
}

// Switches a terminal's echo off while it lives.
class WithoutEcho
{
public:
    WithoutEcho() : m_before(), m_terminal(tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (m_terminal) {
            termios silent = m_before;
            silent.c_lflag &= ~tcflag_t(ECHO);
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
        }
    }
    ~WithoutEcho()
    {
        if (m_terminal) {
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
            fputc('\n', stderr);
        }
    }
    WithoutEcho(const WithoutEcho &) = delete;
    WithoutEcho &operator=(const WithoutEcho &) = delete;

private:
    termios m_before;
    bool m_terminal;
};

// Tells whether an interruption waits for its moment.
class Interruption
{
public:
    Interruption() : m_signals(interruptions()), m_descriptor(signalfd(-1, &m_signals, SFD_CLOEXEC))
    {
    }
    ~Interruption() { close(m_descriptor); }
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    int descriptor() const { return m_descriptor; }
    bool waits() const
    {
        pollfd source = {m_descriptor, POLLIN, 0};
        return poll(&source, 1, 0) == 1;
    }

private:
    sigset_t m_signals;
    int m_descriptor;
};

// What stands for a byte when there is none.
const int kUnreadable = EOF - 1;
const int kInterrupted = EOF - 2;

bool isReady(const Interruption &interruption)
{
    pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {interruption.descriptor(), POLLIN, 0}};
    int ready = 0;
    do {
        ready = poll(sources, 2, -1);
    } while (ready < 0 && errno == EINTR);
    return ready > 0 && sources[1].revents == 0;
}

// The next byte of standard input, or why there is none.
int nextByte(const Interruption &interruption)
{
    if (!isReady(interruption)) {
        return interruption.waits() ? kInterrupted : kUnreadable;
    }
    char byte = 0;
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count < 0) {
        return kUnreadable;
    }
    return count == 1 ? static_cast<unsigned char>(byte) : EOF;
}

// A line without its end, which is the result. An interruption that came meanwhile ends the tool
// where it may.
int readLine(QByteArray *line)
{
    const profile::Uninterrupted uninterrupted;
    const Interruption interruption;
    const WithoutEcho silence;
    int byte = 0;
    while ((byte = nextByte(interruption)) >= 0 && byte != '\n') {
        line->append(char(byte));
    }
    return interruption.waits() ? kInterrupted : byte;
}

// Why a line that ended so is no password; empty when it is one. Half a line may be half a
// password, and no line at all is rather a mistake than an empty one.
QString refusalOf(const QByteArray &secret, int end)
{
    if (end == kUnreadable) {
        return profile::text("standard input cannot be read");
    }
    if (end == EOF && secret.isEmpty()) {
        return profile::text("standard input holds no password");
    }
    return QString::fromUtf8(secret).toUtf8() == secret
               ? QString()
               : profile::text("the password is no text in UTF-8");
}

// A handler may call little, and nothing that could wait for the code it interrupts.
void endTool(int)
{
    const char kLine[] = "velmora-profile: reading the file takes too long; nothing was changed, "
                         "look at what it is\n";
    const ssize_t written = write(STDERR_FILENO, kLine, sizeof kLine - 1);
    Q_UNUSED(written)
    _exit(profile::Failed);
}

// The processor's time, not the clock's: a busy machine is no reason to give up. 0 stops it.
void startTimer(int seconds)
{
    itimerval time = {{0, 0}, {seconds, 0}};
    setitimer(ITIMER_VIRTUAL, &time, nullptr);
}
} // namespace

QString profile::text(const char *utf8) { return QString::fromUtf8(utf8); }

QString profile::counted(qint64 count, const char *one, const char *many)
{
    return text("%1 %2").arg(count).arg(text(count == 1 ? one : many));
}

QString profile::printable(const QString &untrusted)
{
    QString line = untrusted;
    const ushort pictures = text(kControlPictures).at(0).unicode();
    for (int i = 0; i < line.size(); ++i) {
        const QChar character = line.at(i);
        if (turnsDirection(character)) {
            line[i] = QChar(QChar::ReplacementCharacter);
        } else if (isControl(character)) {
            const ushort code = character.unicode();
            line[i] =
                code < 0x20 ? QChar(ushort(pictures + code)) : QChar(QChar::ReplacementCharacter);
        }
    }
    return line;
}

QString profile::masked(const QString &secret, bool showSecrets)
{
    return secret.isEmpty() || showSecrets ? secret : text("********");
}

// By hand, as a text need not be a valid address to hold a password. Browsers take any slashes, or
// none, behind the schemes of the web. Each piece is looked at once, however many a text has.
QString profile::withoutUserInfo(const QString &address)
{
    static const QRegularExpression authority(text("(?:https?:[/\\\\]*|(?<=:)//|^//)([^/?#]*+)"),
                                              QRegularExpression::CaseInsensitiveOption);
    QString left;
    int copied = 0;
    QRegularExpressionMatchIterator found = authority.globalMatch(address);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        const int start = int(match.capturedStart(1));
        left += address.mid(copied, start - copied);
        copied = start + int(match.captured(1).lastIndexOf(QLatin1Char('@'))) + 1;
    }
    return left + address.mid(copied);
}

void profile::sayBytes(const QByteArray &bytes)
{
    fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}

void profile::say(const QString &line) { sayBytes(line.toUtf8() + '\n'); }

void profile::warn(const QString &line)
{
    fflush(stdout);
    fprintf(stderr, "velmora-profile: %s\n", printable(line).toUtf8().constData());
}

int profile::fail(const QString &line)
{
    warn(line);
    return Failed;
}

bool profile::readSecret(const char *prompt, QByteArray *secret)
{
    const bool asks = isatty(STDIN_FILENO) != 0;
    if (asks) {
        fprintf(stderr, "%s: ", prompt);
    }
    const int end = readLine(secret);
    if (end == kInterrupted) {
        exit(Failed);
    }
    const QString refusal = refusalOf(*secret, end);
    if (!refusal.isEmpty()) {
        warn(text("%1; nothing was changed").arg(refusal));
    }
    return refusal.isEmpty();
}

profile::Progress::Progress(const char *what, qint64 total)
    : m_what(what),
      m_total(total),
      m_done(0),
      m_shownAt(kQuietMilliseconds),
      m_visible(isatty(STDERR_FILENO) != 0)
{
    m_timer.start();
}

profile::Progress::~Progress()
{
    if (m_visible && m_shownAt > kQuietMilliseconds) {
        fputs("\r\033[K", stderr);
    }
}

void profile::Progress::step()
{
    ++m_done;
    if (!m_visible || m_timer.elapsed() < m_shownAt) {
        return;
    }
    m_shownAt = m_timer.elapsed() + kMillisecondsBetweenSteps;
    fprintf(stderr, "\r%s %lld of %lld\033[K", m_what, static_cast<long long>(m_done),
            static_cast<long long>(m_total));
    fflush(stderr);
}

profile::Deadline::Deadline()
{
    signal(SIGVTALRM, endTool);
    startTimer(kSecondsForReading);
}

profile::Deadline::~Deadline() { startTimer(0); }

profile::Uninterrupted::Uninterrupted() : m_before()
{
    sigset_t waiting = interruptions();
    // What the tool has put aside, sessions among it, is to be gone before it ends.
    sigaddset(&waiting, SIGPIPE);
    sigprocmask(SIG_BLOCK, &waiting, &m_before);
}

profile::Uninterrupted::~Uninterrupted() { sigprocmask(SIG_SETMASK, &m_before, nullptr); }
