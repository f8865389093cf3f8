#include "platform/libf.h"

#include "tests/support/Files.h"
#include "tests/support/Interposed.h"

#include <cstdarg>
#include <cstdio>
#include <syslog.h>

namespace
{
int priority = -1;
char message[64];
} // namespace

INTERPOSED void syslog(int level, const char *format, ...)
{
    priority = level;
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
}

class tst_libf_host : public QObject
{
    Q_OBJECT

private slots:
    void writeSystemLog_logsTheText();
    void others_succeed();
};

// As it stands, whatever it holds, and for those only who want to see everything.
void tst_libf_host::writeSystemLog_logsTheText()
{
    unsigned short value = 0;
    QCOMPARE(LIBF_WriteSystemLog(1, 2, 3, "100%s %d", &value), 0);
    QCOMPARE(QByteArray(message), QByteArray("100%s %d"));
    QCOMPARE(priority, LOG_USER | LOG_DEBUG);
}

void tst_libf_host::others_succeed()
{
    QCOMPARE(LIBF_AttachMemory(), 0);
    QCOMPARE(LIBF_SetSignalHandler01(1), 0);
    QCOMPARE(LIBF_SetApiSignalInfoNonSave(1), 0);
}

QTEST_GUILESS_MAIN(tst_libf_host)
#include "tst_libf_host.moc"
