#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_CONSOLE_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_CONSOLE_H

#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

// What the tool says. Output is UTF-8 whatever the locale is.
namespace profile
{
enum ExitStatus {
    Done = 0,
    Differs = 1, // findings, differences, nothing found
    Failed = 2   // usage, or a file that cannot be read or written
};

// One line on standard output.
void say(const QString &line);
void sayBytes(const QByteArray &bytes);
void sayJson(const QJsonObject &object);
void sayJson(const QJsonArray &array);

// One line on standard error, behind the tool's name.
void warn(const QString &line);

// warn(), and the exit status for it: return fail(...).
int fail(const QString &line);

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
} // namespace profile

#endif
