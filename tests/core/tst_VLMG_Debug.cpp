#include "core/VLMG_Debug.h"

#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/PlatformRecorder.h"

#include <QtCore/QDir>

#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

// What the library starts with, read before any test can have changed it.
static const unsigned long initialOutputLevel = ul_outputLevel;
static const unsigned char initialSystemLogLevel = g_uc_SystemLogLevel;

static_assert(std::is_same<decltype(ul_outputLevel), unsigned long>::value, "published type");
static_assert(std::is_same<decltype(g_uc_SystemLogLevel), unsigned char>::value, "published type");

class tst_VLMG_Debug : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void globals_startWithFileOffAndSystemLogOn();
    void debugPrint_appendsOneLineAMessage();
    void debugPrint_createsTheFileButNotItsFolder();
    void debugPrint_leavesNoFileOpen();
    void debugPrint_admitsLevels_data();
    void debugPrint_admitsLevels();
    void debugPrint_ignoresEmptyFormat();
    void debugPrint_printsAnEmptyText();
    void debugPrint_usesTheArgumentsInBothSinks();
    void debugPrint_cutsTheSystemLog_data();
    void debugPrint_cutsTheSystemLog();
    void debugPrint_passesFixedArguments();
    void debugPrint_asksTheSystemLogSwitch_data();
    void debugPrint_asksTheSystemLogSwitch();
    void debugPrint_failedOpenSkipsTheSystemLog();
    void debugPrint_failedOpenOfARefusedLevelSkipsNothing();
    void debugPrint_ignoresTheResultOfTheSystemLog();
    void debugPrint_writesWholeLinesFromManyThreads();
    void debugSetLogLevel_storesTheLevel_data();
    void debugSetLogLevel_storesTheLevel();
    void debugAttachMemory_passesTheResultOn_data();
    void debugAttachMemory_passesTheResultOn();
    void setSignalHandler01_callsBothInOrder_data();
    void setSignalHandler01_callsBothInOrder();

private:
    QByteArray logFile() const { return readFile(m_directory->file("brwlog.log")); }
    bool logFileExists() const { return exists(m_directory->file("brwlog.log")); }

    QScopedPointer<TestDirectory> m_directory;
};

void tst_VLMG_Debug::init()
{
    m_directory.reset(new TestDirectory);
    setLogFile(m_directory->localFile("brwlog.log"));
    ul_outputLevel = 0;
    g_uc_SystemLogLevel = 1;
    takeLogFileModes();
    takePlatformCalls();
}

void tst_VLMG_Debug::cleanup()
{
    ul_outputLevel = 0;
    setLogFile(QByteArray());
    setPlatformResult("LIBF_WriteSystemLog", 0);
    setPlatformResult("LIBF_AttachMemory", 0);
    setPlatformResult("LIBF_SetSignalHandler01", 0);
    setPlatformResult("LIBF_SetApiSignalInfoNonSave", 0);
}

void tst_VLMG_Debug::globals_startWithFileOffAndSystemLogOn()
{
    QCOMPARE(initialOutputLevel, 0ul);
    QCOMPARE(int(initialSystemLogLevel), 1);
}

void tst_VLMG_Debug::debugPrint_appendsOneLineAMessage()
{
    writeFile(m_directory->file("brwlog.log"), "before\n");
    VLMG_DebugSetLogLevel(3);
    VLMG_DebugPrint(1, "one");
    VLMG_DebugPrint(2, "two\n");
    VLMG_DebugPrint(3, "three");
    COMPARE_BYTES(logFile(), "before\n[Velmora]one\n[Velmora]two\n\n[Velmora]three\n");
}

void tst_VLMG_Debug::debugPrint_createsTheFileButNotItsFolder()
{
    VLMG_DebugSetLogLevel(3);
    QVERIFY(!logFileExists());
    VLMG_DebugPrint(1, "one");
    QVERIFY(logFileExists());

    setLogFile(m_directory->localFile("missing/brwlog.log"));
    VLMG_DebugPrint(1, "two");
    QVERIFY(!exists(m_directory->file("missing")));
}

void tst_VLMG_Debug::debugPrint_leavesNoFileOpen()
{
    const QDir descriptors(QString::fromLatin1("/proc/self/fd"));
    const int before = int(descriptors.entryList(QDir::Files | QDir::System).size());
    VLMG_DebugSetLogLevel(3);
    for (int i = 0; i < 20; ++i) {
        VLMG_DebugPrint(1, "line %d", i);
    }
    QCOMPARE(int(descriptors.entryList(QDir::Files | QDir::System).size()), before);
}

void tst_VLMG_Debug::debugPrint_admitsLevels_data()
{
    const unsigned long most = std::numeric_limits<unsigned long>::max();
    QTest::addColumn<qulonglong>("outputLevel");
    QTest::addColumn<qulonglong>("level");
    QTest::addColumn<bool>("written");
    QTest::newRow("off, level 0") << 0ull << 0ull << false;
    QTest::newRow("off, level 1") << 0ull << 1ull << false;
    QTest::newRow("off, level 3") << 0ull << 3ull << false;
    QTest::newRow("off, huge level") << 0ull << qulonglong(most) << false;
    QTest::newRow("1, level 0") << 1ull << 0ull << true;
    QTest::newRow("1, level 1") << 1ull << 1ull << true;
    QTest::newRow("1, level 2") << 1ull << 2ull << false;
    QTest::newRow("2, level 0") << 2ull << 0ull << true;
    QTest::newRow("2, level 1") << 2ull << 1ull << true;
    QTest::newRow("2, level 2") << 2ull << 2ull << true;
    QTest::newRow("2, level 3") << 2ull << 3ull << false;
    QTest::newRow("3, level 4") << 3ull << 4ull << false;
    QTest::newRow("3, huge level") << 3ull << qulonglong(most) << false;
    QTest::newRow("3, above the signed range") << 3ull << qulonglong(most / 2 + 1) << false;
    QTest::newRow("huge, level 3") << qulonglong(most) << 3ull << true;
    QTest::newRow("huge, huge level") << qulonglong(most) << qulonglong(most) << true;
    QTest::newRow("huge less one, huge level") << qulonglong(most - 1) << qulonglong(most) << false;
    QTest::newRow("above the signed range, level 3") << qulonglong(most / 2 + 1) << 3ull << true;
}

void tst_VLMG_Debug::debugPrint_admitsLevels()
{
    QFETCH(qulonglong, outputLevel);
    QFETCH(qulonglong, level);
    QFETCH(bool, written);
    ul_outputLevel = static_cast<unsigned long>(outputLevel);

    VLMG_DebugPrint(static_cast<unsigned long>(level), "message");

    QCOMPARE(logFileExists(), written);
    QCOMPARE(takeLogFileModes().size(), decltype(takeLogFileModes().size())(written ? 1 : 0));
    if (written) {
        COMPARE_BYTES(logFile(), "[Velmora]message\n");
    }
    // Whatever the level, and whether or not the file got it.
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "message");
}

void tst_VLMG_Debug::debugPrint_ignoresEmptyFormat()
{
    VLMG_DebugSetLogLevel(3);
    const char *const formats[] = {nullptr, ""};
    for (const char *const format : formats) {
        VLMG_DebugPrint(1, format, 0);
        QVERIFY(!logFileExists());
        QVERIFY(takeLogFileModes().isEmpty());
        QVERIFY(takePlatformCalls().isEmpty());
    }
}

// Only the format is looked at, not what becomes of it.
void tst_VLMG_Debug::debugPrint_printsAnEmptyText()
{
    VLMG_DebugSetLogLevel(3);
    VLMG_DebugPrint(1, "%s", "");
    COMPARE_BYTES(logFile(), "[Velmora]\n");
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "");
}

void tst_VLMG_Debug::debugPrint_usesTheArgumentsInBothSinks()
{
    VLMG_DebugSetLogLevel(3);
    VLMG_DebugPrint(1, "%d %s %c %.1f 0x%X %lu %%", -7, "text", 'c', 2.5, 0xABCu, 9ul);
    COMPARE_BYTES(logFile(), "[Velmora]-7 text c 2.5 0xABC 9 %\n");
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "-7 text c 2.5 0xABC 9 %");
}

void tst_VLMG_Debug::debugPrint_cutsTheSystemLog_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("126 bytes") << QByteArray(126, 'm');
    QTest::newRow("127 bytes") << QByteArray(126, 'm') + 'n';
    QTest::newRow("128 bytes") << QByteArray(127, 'm') + 'n';
    QTest::newRow("129 bytes") << QByteArray(127, 'm') + "no";
    QTest::newRow("130 bytes") << QByteArray(127, 'm') + "nop";
    QTest::newRow("100000 bytes") << QByteArray(127, 'm') + QByteArray(99873, 'n');
    QTest::newRow("in the middle of a character") << QByteArray(126, 'm') + "\xe3\x81\x82";
}

void tst_VLMG_Debug::debugPrint_cutsTheSystemLog()
{
    QFETCH(QByteArray, message);
    VLMG_DebugSetLogLevel(3);

    VLMG_DebugPrint(1, "%s", message.constData());

    COMPARE_BYTES(logFile(), "[Velmora]" + message + "\n");
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << message.left(127));
}

void tst_VLMG_Debug::debugPrint_passesFixedArguments()
{
    for (unsigned long level = 0; level < 4; ++level) {
        VLMG_DebugPrint(level, "message %lu", level);
        const QList<PlatformCall> calls = takePlatformCalls();
        QCOMPARE(int(calls.size()), 1);
        QCOMPARE(calls.first().function, QByteArray("LIBF_WriteSystemLog"));
        QCOMPARE(calls.first().arguments, QList<int>() << 1 << 1 << 255);
        QCOMPARE(calls.first().text, "message " + QByteArray::number(qulonglong(level)));
        QCOMPARE(int(calls.first().value), 0xFFFF);
    }
}

void tst_VLMG_Debug::debugPrint_asksTheSystemLogSwitch_data()
{
    QTest::addColumn<int>("switchValue");
    QTest::addColumn<bool>("passed");
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << true;
    QTest::newRow("128") << 128 << true;
    QTest::newRow("255") << 255 << true;
}

void tst_VLMG_Debug::debugPrint_asksTheSystemLogSwitch()
{
    QFETCH(int, switchValue);
    QFETCH(bool, passed);
    g_uc_SystemLogLevel = static_cast<unsigned char>(switchValue);

    VLMG_DebugPrint(0, "file off");
    VLMG_DebugSetLogLevel(2);
    VLMG_DebugPrint(2, "both");
    VLMG_DebugPrint(9, "level 9");

    COMPARE_BYTES(logFile(), "[Velmora]both\n");
    const QList<QByteArray> all = QList<QByteArray>() << "file off"
                                                      << "both"
                                                      << "level 9";
    QCOMPARE(takeSystemLog(), passed ? all : QList<QByteArray>());
    QCOMPARE(int(g_uc_SystemLogLevel), switchValue);
}

void tst_VLMG_Debug::debugPrint_failedOpenSkipsTheSystemLog()
{
    VLMG_DebugSetLogLevel(3);
    setLogFile(QByteArray());
    VLMG_DebugPrint(1, "lost");
    VLMG_DebugPrint(1, "lost too");
    QCOMPARE(takeLogFileModes(), QList<QByteArray>() << "a"
                                                     << "a");
    QVERIFY(takePlatformCalls().isEmpty());
    setLogFile(m_directory->localFile("brwlog.log"));
    VLMG_DebugPrint(1, "kept");
    COMPARE_BYTES(logFile(), "[Velmora]kept\n");
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "kept");
}

void tst_VLMG_Debug::debugPrint_failedOpenOfARefusedLevelSkipsNothing()
{
    setLogFile(QByteArray());
    VLMG_DebugSetLogLevel(2);
    VLMG_DebugPrint(3, "system log only");
    QVERIFY(takeLogFileModes().isEmpty());
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "system log only");
}

void tst_VLMG_Debug::debugPrint_ignoresTheResultOfTheSystemLog()
{
    setPlatformResult("LIBF_WriteSystemLog", -1);
    VLMG_DebugPrint(1, "one");
    VLMG_DebugPrint(1, "two");
    QCOMPARE(takeSystemLog(), QList<QByteArray>() << "one"
                                                  << "two");
}

void tst_VLMG_Debug::debugPrint_writesWholeLinesFromManyThreads()
{
    const int threadCount = 8;
    const int linesPerThread = 50;
    // Past the buffer of the standard I/O, so that a line takes several writes.
    const size_t lineBytes = 10000;
    VLMG_DebugSetLogLevel(3);

    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.push_back(std::thread([=] {
            const std::string filler(lineBytes, char('a' + i));
            for (int line = 0; line < linesPerThread; ++line) {
                VLMG_DebugPrint(1, "%s", filler.c_str());
            }
        }));
    }
    for (std::thread &thread : threads) {
        thread.join();
    }

    QList<QByteArray> lines = logFile().split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QCOMPARE(int(lines.size()), threadCount * linesPerThread);
    QMap<char, int> linesByThread;
    for (const QByteArray &line : static_cast<const QList<QByteArray> &>(lines)) {
        const char letter = line.at(line.size() - 1);
        QCOMPARE(line, "[Velmora]" + QByteArray(int(lineBytes), letter));
        ++linesByThread[letter];
    }
    for (int i = 0; i < threadCount; ++i) {
        QCOMPARE(linesByThread.value(char('a' + i)), linesPerThread);
    }
    QCOMPARE(int(takeSystemLog().size()), threadCount * linesPerThread);
}

void tst_VLMG_Debug::debugSetLogLevel_storesTheLevel_data()
{
    QTest::addColumn<qulonglong>("level");
    QTest::newRow("0") << 0ull;
    QTest::newRow("1") << 1ull;
    QTest::newRow("3") << 3ull;
    QTest::newRow("most") << qulonglong(std::numeric_limits<unsigned long>::max());
}

void tst_VLMG_Debug::debugSetLogLevel_storesTheLevel()
{
    QFETCH(qulonglong, level);
    ul_outputLevel = 77;
    VLMG_DebugSetLogLevel(static_cast<unsigned long>(level));
    QCOMPARE(qulonglong(ul_outputLevel), level);
    QVERIFY(takePlatformCalls().isEmpty());
    QVERIFY(takeLogFileModes().isEmpty());
}

void tst_VLMG_Debug::debugAttachMemory_passesTheResultOn_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("most") << std::numeric_limits<int>::max();
}

void tst_VLMG_Debug::debugAttachMemory_passesTheResultOn()
{
    QFETCH(int, result);
    setPlatformResult("LIBF_AttachMemory", result);
    QCOMPARE(VLMG_DebugAttachMemory(), result);
    const QList<PlatformCall> calls = takePlatformCalls();
    QCOMPARE(int(calls.size()), 1);
    QCOMPARE(calls.first().function, QByteArray("LIBF_AttachMemory"));
}

void tst_VLMG_Debug::setSignalHandler01_callsBothInOrder_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("both succeed") << 0 << 0;
    QTest::newRow("the first fails") << -1 << 5;
    QTest::newRow("the second fails") << 5 << -1;
}

void tst_VLMG_Debug::setSignalHandler01_callsBothInOrder()
{
    QFETCH(int, first);
    QFETCH(int, second);
    setPlatformResult("LIBF_SetSignalHandler01", first);
    setPlatformResult("LIBF_SetApiSignalInfoNonSave", second);
    QCOMPARE(VLMG_SetSignalHandler01(), second);
    const QList<PlatformCall> calls = takePlatformCalls();
    QCOMPARE(int(calls.size()), 2);
    QCOMPARE(calls.at(0).function, QByteArray("LIBF_SetSignalHandler01"));
    QCOMPARE(calls.at(0).arguments, QList<int>() << 65535);
    QCOMPARE(calls.at(1).function, QByteArray("LIBF_SetApiSignalInfoNonSave"));
    QCOMPARE(calls.at(1).arguments, QList<int>() << 1);
}

QTEST_GUILESS_MAIN(tst_VLMG_Debug)
#include "tst_VLMG_Debug.moc"
