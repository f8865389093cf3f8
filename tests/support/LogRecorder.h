#ifndef TESTS_SUPPORT_LOGRECORDER_H
#define TESTS_SUPPORT_LOGRECORDER_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

/**
 * What the library logs, level and whole text, in order. A test program that links this stands in
 * for VLMG_DebugPrint itself, so that no sink and no cut comes between a message and its test.
 */
struct LogLine {
    unsigned long level;
    QByteArray text;

    bool operator==(const LogLine &other) const
    {
        return level == other.level && text == other.text;
    }
};
typedef QList<LogLine> LogLines;

/// The lines logged since the last call.
LogLines takeLog();

/// The lines, one per row, as "<level> <text>"; for comparison as a whole.
QByteArray toText(const LogLines &lines);

/// takeLog() as text: QCOMPARE(loggedText(), QByteArray("3 [..] start\n3 [..] end\n")).
QByteArray loggedText();

/// What "0x%X" prints of a pointer.
QByteArray hexAddress(const void *pointer);

#endif
