#ifndef TESTS_SUPPORT_SYSTEMCALLS_H
#define TESTS_SUPPORT_SYSTEMCALLS_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <functional>

/**
 * The system calls of a test program's saves. Linking this interposes the C library's functions by
 * which a file is replaced; outside of a WatchedCalls object they do what they always did.
 */
struct SystemCall {
    QByteArray name;
    /// The file's name; for descriptors the one it was opened by.
    QByteArray file;
    /// What was written, or the new name.
    QByteArray data;
    /// What a file was opened with, and the mode asked for when it was created.
    int flags;
    int mode;
};

/// What happens at which call, counted from 0; everything else runs as usual.
struct FaultPlan {
    /// ShortWrite and KillAmid take half of what a write is given, and leave other calls alone.
    enum Kind { None, Fail, FailFromHere, ShortWrite, KillBefore, KillAfter, KillAmid };

    Kind kind;
    int index;
    /// For the two kinds that fail.
    int error;
};

/// While one lives, this thread's calls are counted and recorded, and fail by the plan.
class WatchedCalls
{
public:
    WatchedCalls();
    ~WatchedCalls();
    WatchedCalls(const WatchedCalls &) = delete;
    WatchedCalls &operator=(const WatchedCalls &) = delete;
};

void setFaultPlan(const FaultPlan &plan);

/// What is done just before each watched call, unwatched itself; null for nothing.
typedef std::function<void(const SystemCall &call)> CallProbe;
void setCallProbe(const CallProbe &probe);

/// The calls of the last WatchedCalls.
QList<SystemCall> watchedCalls();

#endif
