#include "files/FileAttributes_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{
bool keepsOwner(int file, const struct stat &original)
{
    struct stat status = {};
    if (fstat(file, &status) != 0) {
        return false;
    }
    const bool same = status.st_uid == original.st_uid && status.st_gid == original.st_gid;
    return same || fchown(file, original.st_uid, original.st_gid) == 0;
}

// True for a file system without attributes, too: there are none.
bool readAttributeNames(int file, QList<QByteArray> *names)
{
    const ssize_t size = flistxattr(file, nullptr, 0);
    QByteArray bytes(int(qMax(size, ssize_t(0))), '\0');
    const ssize_t filled = size > 0 ? flistxattr(file, bytes.data(), size_t(size)) : size;
    if (filled < 0) {
        return errno == ENOTSUP || errno == ENOSYS;
    }
    bytes.truncate(int(filled));
    *names = bytes.split('\0');
    names->removeAll(QByteArray());
    std::sort(names->begin(), names->end());
    return true;
}

// Null for an attribute that the file does not have.
bool readAttribute(int file, const QByteArray &name, QByteArray *value)
{
    const ssize_t size = fgetxattr(file, name.constData(), nullptr, 0);
    QByteArray bytes(int(qMax(size, ssize_t(0))), '\0');
    const ssize_t filled =
        size > 0 ? fgetxattr(file, name.constData(), bytes.data(), size_t(size)) : size;
    if (filled < 0) {
        return errno == ENODATA;
    }
    bytes.truncate(int(filled));
    *value = bytes;
    return true;
}

bool keepsAttribute(int file, int original, const QByteArray &name)
{
    QByteArray value;
    QByteArray present;
    if (!readAttribute(original, name, &value) || !readAttribute(file, name, &present)) {
        return false;
    }
    return (present == value && !present.isNull())
           || fsetxattr(file, name.constData(), value.constData(), size_t(value.size()), 0) == 0;
}

// Access control lists and security labels are extended attributes too.
bool keepsAttributes(int file, int original)
{
    QList<QByteArray> names;
    QList<QByteArray> kept;
    if (!readAttributeNames(original, &names)) {
        return false;
    }
    for (const QByteArray &name : static_cast<const QList<QByteArray> &>(names)) {
        if (!keepsAttribute(file, original, name)) {
            return false;
        }
    }
    if (!readAttributeNames(file, &kept)) {
        return false;
    }
    errno = ENOTSUP;
    return kept == names;
}
} // namespace

// Owner before mode: a change of owner clears bits of the mode.
bool vlm::keepsAllButContent(int file, int original, const struct stat &status)
{
    return keepsOwner(file, status) && keepsAttributes(file, original)
           && fchmod(file, status.st_mode & 07777) == 0;
}
