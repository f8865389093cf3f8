#include "core/QEXC_TextCodec.h"
#include "core/QtCompat_p.h"
#include "tests/support/Files.h"

#include <QtCore/QProcess>
#include <QtCore/QSemaphore>

#include <cstdio>
#include <cstring>
#include <dlfcn.h>

// What the settings library does while it is loaded, which is before anything of this program is
// initialised: hence plain memory, and functions that stand in for Qt's own by their symbols.
static char initialisation[256];

static void note(const char *event, const void *caller)
{
    Dl_info info;
    if (!dladdr(caller, &info) || !strstr(info.dli_fname, "libvelmora-settings")) {
        return;
    }
    const size_t used = strlen(initialisation);
    snprintf(initialisation + used, sizeof initialisation - used, "%s;", event);
}

extern "C" __attribute__((visibility("default"))) QTextCodec *interposedCodecForName(
    const QByteArray &name) __asm__("_ZN10QTextCodec12codecForNameERK10QByteArray");

QTextCodec *interposedCodecForName(const QByteArray &name)
{
    char event[64];
    snprintf(event, sizeof event, "codec %s", name.constData());
    note(event, __builtin_return_address(0));
    typedef QTextCodec *(*Real)(const QByteArray &);
    static const Real real =
        reinterpret_cast<Real>(dlsym(RTLD_NEXT, "_ZN10QTextCodec12codecForNameERK10QByteArray"));
    return real(name);
}

extern "C" __attribute__((visibility("default"))) void
interposedSemaphore(QSemaphore *semaphore, int resources) __asm__("_ZN10QSemaphoreC1Ei");

void interposedSemaphore(QSemaphore *semaphore, int resources)
{
    char event[64];
    snprintf(event, sizeof event, "semaphore %d", resources);
    note(event, __builtin_return_address(0));
    typedef void (*Real)(QSemaphore *, int);
    static const Real real = reinterpret_cast<Real>(dlsym(RTLD_NEXT, "_ZN10QSemaphoreC1Ei"));
    real(semaphore, resources);
}

class tst_StaticInit : public QObject
{
    Q_OBJECT

private slots:
    void library_findsTheCodecBeforeItMakesTheSemaphore();
    void library_servesOthersFromTheirStartToTheirEnd();
    void library_survivesAMissingLogFolder();
};

static QByteArray outputOfProgram(const QByteArray &logFile)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(utf8("STATIC_INIT_LOG"), QString::fromLocal8Bit(logFile));
    process.setProcessEnvironment(environment);
    // Behind the words that run a program of another processor.
    QStringList words = environment.value(utf8("EMULATOR")).split(utf8(" "));
    words.removeAll(QString());
    words << utf8(STATIC_INIT_PROGRAM);
    process.start(words.first(), words.mid(1));
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        return "the program failed: " + process.errorString().toUtf8() + '\n'
               + process.readAllStandardError();
    }
    return process.readAllStandardOutput();
}

void tst_StaticInit::library_findsTheCodecBeforeItMakesTheSemaphore()
{
    // A use, so that the linker keeps the library.
    QCOMPARE(QEXC_TextCodec::fromSJIS("text"), utf8("text"));
    QCOMPARE(QByteArray(initialisation), QByteArray("codec SJIS;semaphore 1;"));
}

void tst_StaticInit::library_servesOthersFromTheirStartToTheirEnd()
{
    TestDirectory directory;
    const QByteArray lines = "library: initialised, text converted\n"
                             "program: initialised\n"
                             "program: runs\n"
                             "program: exits\n"
                             "[VLMC_XMLSetting::~VLMC_XMLSetting] 0x0\n"
                             "program: destroyed\n"
                             "library: destroyed\n";
    COMPARE_BYTES(outputOfProgram(directory.localFile("log")), lines);
    QByteArray tagged = "[Velmora]" + lines;
    tagged.replace("\n", "\n[Velmora]");
    tagged.chop(int(strlen("[Velmora]")));
    COMPARE_BYTES(readFile(directory.file("log")), tagged);
}

// A log file that cannot be opened takes the system log's messages with it; the program goes on.
void tst_StaticInit::library_survivesAMissingLogFolder()
{
    TestDirectory directory;
    COMPARE_BYTES(outputOfProgram(directory.localFile("missing/log")), QByteArray());
    QVERIFY(!exists(directory.file("missing")));
}

QTEST_GUILESS_MAIN(tst_StaticInit)
#include "tst_StaticInit.moc"
