#include "tests/support/PlatformRecorder.h"

#include "platform/libf.h"

#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace
{
struct Recorder {
    QMutex mutex;
    QList<PlatformCall> calls;
    QMap<QByteArray, int> results;
};

Recorder &recorder()
{
    // Never destroyed: stores log while the process exits.
    static Recorder *const instance = new Recorder;
    return *instance;
}

int record(const PlatformCall &call)
{
    const QMutexLocker locker(&recorder().mutex);
    recorder().calls.append(call);
    return recorder().results.value(call.function);
}
} // namespace

int LIBF_WriteSystemLog(int first, int second, int third, const char *text, unsigned short *value)
{
    return record({"LIBF_WriteSystemLog", QList<int>() << first << second << third,
                   QByteArray(text), *value});
}

int LIBF_AttachMemory(void) { return record({"LIBF_AttachMemory", QList<int>(), "", 0}); }

int LIBF_SetSignalHandler01(int mask)
{
    return record({"LIBF_SetSignalHandler01", QList<int>() << mask, "", 0});
}

int LIBF_SetApiSignalInfoNonSave(int unsaved)
{
    return record({"LIBF_SetApiSignalInfoNonSave", QList<int>() << unsaved, "", 0});
}

QList<PlatformCall> takePlatformCalls()
{
    const QMutexLocker locker(&recorder().mutex);
    QList<PlatformCall> calls;
    calls.swap(recorder().calls);
    return calls;
}

QList<QByteArray> takeSystemLog()
{
    QList<QByteArray> texts;
    const QList<PlatformCall> calls = takePlatformCalls();
    for (const PlatformCall &call : calls) {
        if (call.function == "LIBF_WriteSystemLog") {
            texts.append(call.text);
        }
    }
    return texts;
}

void setPlatformResult(const QByteArray &function, int result)
{
    const QMutexLocker locker(&recorder().mutex);
    recorder().results[function] = result;
}
