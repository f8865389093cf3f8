#include "tools/velmora-profile/output/Password.h"

#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

namespace
{
using namespace profile;

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
    const Uninterrupted uninterrupted;
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
        return text("standard input cannot be read");
    }
    if (end == EOF && secret.isEmpty()) {
        return text("standard input holds no password");
    }
    return QString::fromUtf8(secret).toUtf8() == secret ? QString()
                                                        : text("the password is no text in UTF-8");
}
} // namespace

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
