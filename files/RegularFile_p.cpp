#include "files/RegularFile_p.h"

#include "files/FileDescriptor_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

bool vlm::isFileOrFree(const QString &path)
{
    const QFileInfo info(path);
    return !path.isEmpty() && (!info.exists() || info.isFile());
}

bool vlm::openRegular(QFile &file)
{
    const QByteArray name = QFile::encodeName(file.fileName());
    FileDescriptor descriptor(open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
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
