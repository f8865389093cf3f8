#include "tests/fuzz/Fuzz.h"

#include "core/VLMG_Debug.h"
#include "tests/support/TemporaryFolder.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace
{
const char kMemory[] = "/dev/shm";

QString parentDirectory()
{
    const QString memory = QString::fromLatin1(kMemory);
    const bool usable = QFileInfo(memory).isDir() && QFileInfo(memory).isWritable();
    return usable ? memory : QDir::tempPath();
}

const QString &programDirectory()
{
    static const TemporaryFolder directory(parentDirectory());
    static const QString path = directory.path();
    return path;
}
} // namespace

// A zone with daylight saving time, and file names in UTF-8.
int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    static QCoreApplication application(*argc, *argv);
    g_uc_SystemLogLevel = 0;
    VLMG_DebugSetLogLevel(0);
    programDirectory();
    return 0;
}

void require(bool holds, const char *promise)
{
    if (holds) {
        return;
    }
    fprintf(stderr, "Broken promise: %s\n", promise);
    abort();
}

InputDirectory::InputDirectory()
{
    static int number = 0;
    m_path = programDirectory() + QString::number(++number) + QLatin1Char('/');
    require(QDir().mkdir(m_path), "a directory can be created");
}

InputDirectory::~InputDirectory()
{
    require(removeFolder(m_path), "what was written can be removed");
}

QString InputDirectory::path() const { return m_path; }

QString InputDirectory::file(const char *name) const { return m_path + QString::fromLatin1(name); }

QString InputDirectory::newDirectory(const char *name) const
{
    require(QDir().mkdir(file(name)), "a directory can be created");
    return file(name) + QLatin1Char('/');
}

QByteArray bytesOfFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeToFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "the input can be written to a file");
}

DeferredDeletes::~DeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Input::Input(const uint8_t *data, size_t size)
    : m_bytes(reinterpret_cast<const char *>(data), int(size)), m_position(0)
{
}

int Input::choice(int limit)
{
    if (m_position == m_bytes.size()) {
        return 0;
    }
    return uchar(m_bytes.at(m_position++) - '0') % limit;
}

QByteArray Input::rest() const { return m_bytes.mid(m_position); }
