#include "core/ReplaceFile_p.h"

#include "core/OwnerOnlyFiles_p.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QFile>
#include <QtCore/QList>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using vlm::FileDescriptor;

namespace
{
const char kTemporaryPrefix[] = ".velmora-save-";

// As many as the kernel follows.
const int kMaxLinks = 40;
// More than other savers make between two calls. A file that is reached in another way than by its
// name takes that many tries, and is then written in place.
const int kMaxReplacements = 20;
// Names of the same number from another process space, or a cleaner that was quicker than we are.
const int kMaxNames = 1000;

// A signal may break a call off before it has done anything.
template <typename Call>
auto retried(Call call) -> decltype(call())
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) {
            return result;
        }
    }
}

int openRetried(const QByteArray &name, int flags, int mode = 0)
{
    return retried([&] { return open(name.constData(), flags | O_CLOEXEC, mode); });
}

// The name by which the system knows the file that QFile would write. With a prefix that stands for
// search paths (QDir::setSearchPaths) that is the first file found in them, and when there is none
// the path as it stands. Empty for one of Qt's resources, which nobody can write.
QByteArray nativeName(const QString &path)
{
    if (!path.contains(QLatin1Char(':'))) {
        return QFile::encodeName(path);
    }
    return path.startsWith(QLatin1Char(':')) ? QByteArray()
                                             : QFile::encodeName(QFile(path).fileName());
}

// With its "/", or empty for a name without one.
QByteArray folderPart(const QByteArray &name) { return name.left(name.lastIndexOf('/') + 1); }

bool isLink(const QByteArray &name)
{
    struct stat status = {};
    return lstat(name.constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

QByteArray linkTarget(const QByteArray &link)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t size = readlink(link.constData(), target.data(), size_t(target.size()));
    target.truncate(int(qMax(size, ssize_t(0))));
    return target.startsWith('/') ? target : folderPart(link) + target;
}

// The name behind all symbolic links at the end of the path, whether or not a file has it; empty
// when they go round in circles.
QByteArray behindLinks(QByteArray name)
{
    for (int i = 0; isLink(name); ++i) {
        if (i == kMaxLinks) {
            return QByteArray();
        }
        name = linkTarget(name);
    }
    return name;
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isFileAt(const QByteArray &name, const struct stat &file)
{
    struct stat status = {};
    return lstat(name.constData(), &status) == 0 && isSameFile(status, file);
}

// Errors that say that the file cannot be replaced at all. A full or failing disk is none of them:
// there the old file has to stand.
bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG
           || error == EINVAL || error == ENOTSUP;
}

bool keepsOwner(int file, const struct stat &target)
{
    struct stat status = {};
    if (fstat(file, &status) != 0) {
        return false;
    }
    const bool same = status.st_uid == target.st_uid && status.st_gid == target.st_gid;
    return same || fchown(file, target.st_uid, target.st_gid) == 0;
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

bool keepsAttribute(int file, int target, const QByteArray &name)
{
    QByteArray value;
    QByteArray present;
    if (!readAttribute(target, name, &value) || !readAttribute(file, name, &present)) {
        return false;
    }
    return (present == value && !present.isNull())
           || fsetxattr(file, name.constData(), value.constData(), size_t(value.size()), 0) == 0;
}

// Access control lists and security labels are extended attributes too.
bool keepsAttributes(int file, int target)
{
    QList<QByteArray> names;
    QList<QByteArray> kept;
    if (!readAttributeNames(target, &names)) {
        return false;
    }
    for (const QByteArray &name : static_cast<const QList<QByteArray> &>(names)) {
        if (!keepsAttribute(file, target, name)) {
            return false;
        }
    }
    if (!readAttributeNames(file, &kept)) {
        return false;
    }
    errno = ENOTSUP;
    return kept == names;
}

bool writeAll(int file, const QByteArray &content)
{
    const char *rest = content.constData();
    size_t left = size_t(content.size());
    while (left > 0) {
        const ssize_t written = retried([&] { return write(file, rest, left); });
        if (written <= 0) {
            return false;
        }
        rest += written;
        left -= size_t(written);
    }
    return true;
}

QByteArray newTemporaryName(const QByteArray &folder)
{
    static QAtomicInt number(0);
    return folder + kTemporaryPrefix + QByteArray::number(int(getpid())) + '-'
           + QByteArray::number(number.fetchAndAddRelaxed(1));
}

// Whoever removes a file holds its lock, and so does its saver from creation to renaming; a saver
// that comes second to the lock, or finds its file gone, takes another name. That the name still
// belongs to the locked file has to be looked up: the saver may have renamed it before the lock.
void removeIfStale(const QByteArray &name)
{
    const FileDescriptor file(openRetried(name, O_WRONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY));
    struct stat status = {};
    if (file.isOpen() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)
        && flock(file.get(), LOCK_EX | LOCK_NB) == 0 && isFileAt(name, status)) {
        unlink(name.constData());
    }
}

QByteArray folderName(const QByteArray &folder) { return folder.isEmpty() ? "./" : folder; }

void removeStaleFiles(const QByteArray &folder)
{
    DIR *const entries = opendir(folderName(folder).constData());
    if (!entries) {
        return;
    }
    QList<QByteArray> stale;
    while (const dirent *const entry = readdir(entries)) {
        if (strncmp(entry->d_name, kTemporaryPrefix, sizeof kTemporaryPrefix - 1) == 0) {
            stale.append(folder + entry->d_name);
        }
    }
    closedir(entries);
    for (const QByteArray &name : static_cast<const QList<QByteArray> &>(stale)) {
        removeIfStale(name);
    }
}
} // namespace

vlm::ReplaceFile::ReplaceFile() {}

vlm::ReplaceFile::~ReplaceFile() { removeTemporary(); }

bool vlm::ReplaceFile::open(const QString &path)
{
    const QByteArray name = nativeName(path);
    if (name.isEmpty() || name.contains('\0')) {
        return false;
    }
    for (int i = 0; i < kMaxReplacements; ++i) {
        struct stat status = {};
        if (!openStanding(name, &status)) {
            return errno == ENOENT && openNew();
        }
        // Another saver may have replaced the file in between: what is open then is the old one,
        // and has no name any more.
        if (!S_ISREG(status.st_mode) || isFileAt(m_target, status)) {
            return openExisting(status);
        }
    }
    return true;
}

bool vlm::ReplaceFile::openStanding(const QByteArray &name, struct stat *status)
{
    m_target = behindLinks(name);
    m_folder = folderPart(m_target);
    // Through the links, as the system follows them.
    m_existing.reset(openRetried(name, O_WRONLY | O_NONBLOCK | O_NOCTTY));
    return m_existing.isOpen() && fstat(m_existing.get(), status) == 0;
}

bool vlm::ReplaceFile::openNew()
{
    if (m_target.isEmpty() || m_target.endsWith('/')) {
        return false;
    }
    removeStaleFiles(m_folder);
    return createTemporary(OwnerOnlyFiles::wanted() ? 0600 : 0666);
}

// What is left without a temporary file here is written in place.
bool vlm::ReplaceFile::openExisting(const struct stat &target)
{
    if (!S_ISREG(target.st_mode) || target.st_nlink != 1) {
        return true;
    }
    removeStaleFiles(m_folder);
    if (createTemporary(0600) && keepsAllButContent(target)) {
        return true;
    }
    if (!isRefusal(errno)) {
        m_existing.reset(-1);
    }
    removeTemporary();
    return true;
}

// Owner before mode: a change of owner takes bits of the mode away.
bool vlm::ReplaceFile::keepsAllButContent(const struct stat &target) const
{
    return keepsOwner(m_temporary.get(), target)
           && keepsAttributes(m_temporary.get(), m_existing.get())
           && fchmod(m_temporary.get(), target.st_mode & 07777) == 0;
}

bool vlm::ReplaceFile::createTemporary(int mode)
{
    for (int i = 0; i < kMaxNames; ++i) {
        if (createLocked(mode)) {
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

// EEXIST stands for every reason to try the next name.
bool vlm::ReplaceFile::createLocked(int mode)
{
    const QByteArray name = newTemporaryName(m_folder);
    m_temporary.reset(openRetried(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode));
    if (!m_temporary.isOpen()) {
        return false;
    }
    struct stat status = {};
    // A file system without locks gives another error; there no cleaner gets a lock either.
    const bool taken = flock(m_temporary.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (taken || fstat(m_temporary.get(), &status) != 0 || !isFileAt(name, status)) {
        m_temporary.reset(-1);
        errno = EEXIST;
        return false;
    }
    m_temporaryName = name;
    return true;
}

bool vlm::ReplaceFile::commit(const QByteArray &content)
{
    if (m_temporaryName.isEmpty()) {
        return writeInPlace(content);
    }
    if (!writeTemporary(content) || !closeTemporary()) {
        removeTemporary();
        return false;
    }
    if (rename(m_temporaryName.constData(), m_target.constData()) != 0) {
        const bool mountPoint = errno == EBUSY && m_existing.isOpen();
        removeTemporary();
        return mountPoint && writeInPlace(content);
    }
    m_temporaryName.clear();
    return syncFolder();
}

bool vlm::ReplaceFile::writeTemporary(const QByteArray &content)
{
    const int file = m_temporary.get();
    return writeAll(file, content) && retried([&] { return fdatasync(file); }) == 0;
}

// Closing may report what a network file system could not write. The lock outlives it.
bool vlm::ReplaceFile::closeTemporary()
{
    m_lock.reset(fcntl(m_temporary.get(), F_DUPFD_CLOEXEC, 0));
    return m_lock.isOpen() && (close(m_temporary.release()) == 0 || errno == EINTR);
}

// A folder that may be written to but not read cannot be synchronised, nor can those of some file
// systems. Both still have the new name in order, at the latest after a few seconds.
bool vlm::ReplaceFile::syncFolder() const
{
    const FileDescriptor folder(openRetried(folderName(m_folder), O_RDONLY | O_DIRECTORY));
    if (!folder.isOpen()) {
        return errno == EACCES;
    }
    return retried([&] { return fsync(folder.get()); }) == 0 || errno == EINVAL;
}

// False only when there is no file to write to: what goes wrong while writing is not noticed.
bool vlm::ReplaceFile::writeInPlace(const QByteArray &content)
{
    if (!m_existing.isOpen()) {
        return false;
    }
    // Only a regular file can be emptied; for others this fails and does not matter.
    const bool emptied = retried([&] { return ftruncate(m_existing.get(), 0); }) == 0;
    Q_UNUSED(emptied)
    writeAll(m_existing.get(), content);
    return true;
}

void vlm::ReplaceFile::removeTemporary()
{
    if (m_temporaryName.isEmpty()) {
        return;
    }
    unlink(m_temporaryName.constData());
    m_temporaryName.clear();
    m_temporary.reset(-1);
    m_lock.reset(-1);
}
