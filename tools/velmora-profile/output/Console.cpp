#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QJsonDocument>

#include <cstdio>
#include <unistd.h>

namespace
{
const qint64 kQuietMilliseconds = 1000;
const qint64 kMillisecondsBetweenSteps = 100;
} // namespace

void profile::sayBytes(const QByteArray &bytes)
{
    fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}

void profile::say(const QString &line) { sayBytes(line.toUtf8() + '\n'); }

void profile::sayJson(const QJsonObject &object) { sayBytes(QJsonDocument(object).toJson()); }

void profile::sayJson(const QJsonArray &array) { sayBytes(QJsonDocument(array).toJson()); }

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
