#include "files/RegularFile_p.h"

#include "files/FileDescriptor_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
// Both bound the time that a load takes. Others close files within a few of the pauses, or never.
const int kMaxTries = 1000;
const int kMaxPauses = 20;
const int kPauseMicroseconds = 10 * 1000;

int openPatiently(const QByteArray &name)
{
    int pauses = 0;
    for (int i = 0; i < kMaxTries; ++i) {
        const int file = open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
        const bool noneLeft = file < 0 && (errno == EMFILE || errno == ENFILE);
        if (noneLeft && pauses < kMaxPauses) {
            ++pauses;
            usleep(kPauseMicroseconds);
        } else if (file >= 0 || errno != EINTR) {
            return file;
        }
    }
    return -1;
}
} // namespace

bool vlm::isFileOrFree(const QString &path)
{
    const QFileInfo info(path);
    return !path.isEmpty() && (!info.exists() || info.isFile());
}

bool vlm::isMissing(const QString &path)
{
    if (QFile::exists(path)) {
        return false;
    }
    struct stat status = {};
    const QByteArray name = QFile::encodeName(QFile(path).fileName());
    return stat(name.constData(), &status) == 0 || errno == ENOENT || errno == ENOTDIR;
}

bool vlm::openRegular(QFile &file)
{
    const QByteArray name = QFile::encodeName(file.fileName());
    FileDescriptor descriptor(openPatiently(name));
    if (!descriptor.isOpen()) {
        return errno == ENOENT && file.open(QIODevice::ReadOnly);
    }
    struct stat status = {};
    if (fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || !file.open(descriptor.get(), QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        return false;
    }
    descriptor.release();
    return true;
}
