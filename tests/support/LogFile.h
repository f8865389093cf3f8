#ifndef TESTS_SUPPORT_LOGFILE_H
#define TESTS_SUPPORT_LOGFILE_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

/**
 * The log file of a test program. Linking this interposes fopen: the library's fixed path leads to
 * a file of the test's choosing, every other path to where it always led.
 */

/// The local file that stands for the log file; empty makes its opening fail.
void setLogFile(const QByteArray &path);

/// The modes with which the log file was opened since the last call.
QList<QByteArray> takeLogFileModes();

#endif
