#include "tools/velmora-profile/output/Files.h"

#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"

#include <QtCore/QFile>
#include <QtCore/QSaveFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
using namespace profile;

const qint64 kPieceBytes = kMebibyte;

bool refuseToWrite(const QString &path, const QString &reason)
{
    warn(text("'%1' cannot be written: %2").arg(path, reason));
    return false;
}

// What /dev/stdout leads to, whatever that is; a file is then appended to when the shell says so.
bool isStandardOutput(const struct stat &status)
{
    struct stat output = {};
    return fstat(STDOUT_FILENO, &output) == 0 && output.st_dev == status.st_dev
           && output.st_ino == status.st_ino;
}

// A disk that runs full takes a part, and says what is wrong at the rest only.
bool writeAll(QIODevice *file, const QByteArray &content)
{
    qint64 done = 0;
    while (done < content.size()) {
        const qint64 written = file->write(content.constData() + done, content.size() - done);
        if (written <= 0) {
            return false;
        }
        done += written;
    }
    return true;
}

// For pipes and devices: a file that took their name would never reach who waits at the other end.
// There is nothing to keep whole, so an interruption ends the wait for a reader.
bool writeInPlace(const QString &path, const QByteArray &content)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        return refuseToWrite(path, QString::fromLocal8Bit(strerror(errno)));
    }
    QFile file;
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    return (file.open(descriptor, mode, QFile::AutoCloseHandle) && writeAll(&file, content))
           || refuseToWrite(path, file.errorString());
}
} // namespace

bool profile::readFile(const QString &path, QByteArray *content, qint64 maxBytes)
{
    QFile file(path);
    const bool isOpen =
        path == text("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!isOpen) {
        warn(text("'%1' cannot be read: %2").arg(path, file.errorString()));
        return false;
    }
    // Read piece by piece: some files tell no size, and some have no end.
    QByteArray piece;
    while (content->size() <= maxBytes && !(piece = file.read(kPieceBytes)).isEmpty()) {
        *content += piece;
    }
    if (file.error() != QFile::NoError) {
        warn(text("'%1' cannot be read: %2").arg(path, file.errorString()));
        return false;
    }
    if (content->size() > maxBytes) {
        warn(text("'%1' is larger than %2 MiB; nothing was changed")
                 .arg(path)
                 .arg(maxBytes / kMebibyte));
        return false;
    }
    return true;
}

bool profile::writeFile(const QString &path, const QByteArray &content, Readers readers)
{
    struct stat status = {};
    const bool stands = stat(QFile::encodeName(path).constData(), &status) == 0;
    if (path == text("-") || (stands && isStandardOutput(status))) {
        sayBytes(content);
        return true;
    }
    if (stands && S_ISDIR(status.st_mode)) {
        return refuseToWrite(path, text("it is a folder"));
    }
    return stands && !S_ISREG(status.st_mode) ? writeInPlace(path, content)
                                              : replaceFile(path, content, readers);
}

bool profile::replaceFile(const QString &path, const QByteArray &content, Readers readers)
{
    const bool isNew = !QFile::exists(path);
    const Uninterrupted uninterrupted;
    QSaveFile file(path);
    // A buffer would drop what is left of a part.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return refuseToWrite(path, file.errorString());
    }
    if (isNew && readers == OwnerAlone) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    return (writeAll(&file, content) && file.commit()) || refuseToWrite(path, file.errorString());
}
