#ifndef TOOL_H
#define TOOL_H

#include "tests/support/Files.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>

/// What a run of velmora-profile gave.
struct ToolRun {
    int status; // -1 when it did not end by itself, or with words that are not the tool's
    QByteArray output;
    QByteArray errors;
};

/// Runs the tool with arguments that stand between blanks; "%" stands for the path of directory.
ToolRun runTool(const TestDirectory &directory, const char *arguments,
                const QByteArray &input = QByteArray());
/// Runs it with arguments as they are.
ToolRun runTool(const QStringList &arguments, const QByteArray &input = QByteArray());
/// Has a shell run a script in which "$0" is the tool and "$1" the directory, for what is done to
/// its streams.
ToolRun runShell(const QString &script, const TestDirectory &directory);
/// Runs it where a file takes so many blocks of 512 bytes, as on a disk that runs full.
ToolRun runInBlocks(int blocks, const TestDirectory &directory, const char *arguments,
                    const QByteArray &input = QByteArray());
/// Runs it without the rights of root, for what permissions refuse.
ToolRun runUnprivileged(const QStringList &arguments);
/// False where root cannot give up its rights, or nobody else can get at the tool.
bool canRunUnprivileged();
/// Makes whom runUnprivileged() runs as the owner of the directory and all in it.
void giveToUnprivileged(const TestDirectory &directory);

/// Runs it and interrupts it after so many milliseconds. False when it could not be started.
bool interruptTool(const TestDirectory &directory, const char *arguments, int milliseconds);

/// What the run printed as JSON; the test fails when it is none.
QJsonDocument jsonOf(const ToolRun &run);

/// Whether what the tool said on standard error is one line of its own.
bool isOneLine(const QByteArray &errors);

/// A document of as many visits as a history takes.
QByteArray fullHistory();
/// Every file of a profile with nothing wrong in it.
void writeGoodProfile(const TestDirectory &directory);
/// All files below the directory with their contents.
QByteArray contentsOf(const QString &path);

/// A run whose exit status and two outputs are what they should be, whole.
#define COMPARE_RUN(run, expectedStatus, expectedOutput, expectedErrors)                           \
    do {                                                                                           \
        const ToolRun done = (run);                                                                \
        COMPARE_BYTES(done.errors, expectedErrors);                                                \
        COMPARE_BYTES(done.output, expectedOutput);                                                \
        QCOMPARE(done.status, expectedStatus);                                                     \
    } while (false)

#endif
