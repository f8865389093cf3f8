#ifndef TESTS_SUPPORT_PLATFORMRECORDER_H
#define TESTS_SUPPORT_PLATFORMRECORDER_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

/**
 * Stands in for the device's platform functions and records their calls, in order. Safe to be
 * called from several threads.
 */
struct PlatformCall {
    QByteArray function;
    QList<int> arguments;
    QByteArray text;
    unsigned short value;
};

/// The calls since the last call of this function.
QList<PlatformCall> takePlatformCalls();

/// The texts that went to the system log since the last take.
QList<QByteArray> takeSystemLog();

/// What the platform function of this name returns from now on; 0 at first.
void setPlatformResult(const QByteArray &function, int result);

#endif
