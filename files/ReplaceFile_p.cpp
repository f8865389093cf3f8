#include "files/ReplaceFile_p.h"

#include "files/DocumentSink_p.h"
#include "files/FileAttributes_p.h"
#include "files/OwnerOnlyFiles_p.h"
#include "files/PartialLoads_p.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QFile>
#include <QtCore/QList>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using vlm::FileDescriptor;

namespace
{
const char kTemporaryPrefix[] = ".velmora-save-";
const char kKeptSuffix[] = ".damaged";

// As many as the kernel follows.
const int kMaxLinks = 40;
// More saves than others can make between two calls. A file that is not reached by its name uses up
// all tries and is then written in place.
const int kMaxReplacements = 20;
// For names with the same number from another process space, and for a cleaner that was quicker.
const int kMaxNames = 1000;

// A signal may interrupt a call before it has done anything.
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

// The name behind all symbolic links at the end of the path, whether or not such a file exists;
// empty if they form a loop.
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

// Errors which mean that the file cannot be replaced at all. A full or failing disk is not among
// them: there the old file has to stand.
bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG
           || error == EINVAL || error == ENOTSUP;
}

// The same for a second name of the file, which other file systems and other owners refuse.
bool isLinkRefusal(int error)
{
    return isRefusal(error) || error == EXDEV || error == EMLINK || error == ENOSYS;
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

// Some file systems have nothing that could be done, which is no failure.
bool reachesDisk(int file)
{
    return retried([&] { return fdatasync(file); }) == 0 || errno == EINVAL;
}

// False for what is not a regular file, or is larger than any document.
bool readAll(const QByteArray &name, struct stat *status, QByteArray *content)
{
    const FileDescriptor file(openRetried(name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY));
    if (!file.isOpen() || fstat(file.get(), status) != 0 || !S_ISREG(status->st_mode)
        || status->st_size > vlm::kMaxDocumentBytes) {
        return false;
    }
    content->resize(int(status->st_size));
    char *next = content->data();
    size_t left = size_t(status->st_size);
    while (left > 0) {
        const ssize_t got = retried([&] { return read(file.get(), next, left); });
        if (got <= 0) {
            return false;
        }
        next += got;
        left -= size_t(got);
    }
    return true;
}

QByteArray newTemporaryName(const QByteArray &folder)
{
    static QAtomicInt number(0);
    return folder + kTemporaryPrefix + QByteArray::number(int(getpid())) + '-'
           + QByteArray::number(number.fetchAndAddRelaxed(1));
}

// Whoever removes a file holds its lock, and so does its saver from creation to rename. A saver
// that comes too late for the lock, or finds its file gone, takes another name. Whether the name
// still belongs to the locked file has to be checked: the saver may have renamed it before the
// lock.
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

// A folder that may be written but not read cannot be synchronised, nor can folders on some file
// systems. The new name still gets to the disk, after a few seconds at most.
bool syncFolder(const QByteArray &folder)
{
    const FileDescriptor open(openRetried(folderName(folder), O_RDONLY | O_DIRECTORY));
    if (!open.isOpen()) {
        return errno == EACCES;
    }
    return retried([&] { return fsync(open.get()); }) == 0 || errno == EINVAL;
}
} // namespace

vlm::ReplaceFile::ReplaceFile() : m_hasToBeKept(false), m_hasKept(false) {}

vlm::ReplaceFile::~ReplaceFile() { removeTemporary(); }

void vlm::ReplaceFile::removeKept(const QString &path)
{
    const QByteArray target = behindLinks(nativeName(path));
    if (unlink((target + kKeptSuffix).constData()) == 0) {
        syncFolder(folderPart(target));
    }
}

bool vlm::ReplaceFile::open(const QString &path, Links links)
{
    m_path = path;
    const QByteArray name = nativeName(path);
    if (name.isEmpty() || name.contains('\0')) {
        return false;
    }
    for (int i = 0; i < kMaxReplacements; ++i) {
        struct stat status = {};
        if (!openStanding(name, links, &status)) {
            return errno == ENOENT && openNew();
        }
        m_hasToBeKept =
            S_ISREG(status.st_mode) && status.st_size > 0 && PartialLoads::contains(path);
        // Another saver may have replaced the file in between: then the open file is the old one,
        // which no longer has a name.
        if (!S_ISREG(status.st_mode) || isFileAt(m_target, status)) {
            return openExisting(status);
        }
    }
    return true;
}

bool vlm::ReplaceFile::openStanding(const QByteArray &name, Links links, struct stat *status)
{
    m_target = links == FollowLinks ? behindLinks(name) : name;
    m_folder = folderPart(m_target);
    // Through the links, as the system follows them, or not at all.
    const int noLinks = links == FollowLinks ? 0 : O_NOFOLLOW;
    m_existing.reset(openRetried(name, O_WRONLY | O_NONBLOCK | O_NOCTTY | noLinks));
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

// Without a temporary file the file is written in place.
bool vlm::ReplaceFile::openExisting(const struct stat &target)
{
    if (!S_ISREG(target.st_mode) || !hasOneName(target)) {
        return true;
    }
    removeStaleFiles(m_folder);
    if (createTemporary(0600) && keepsAllButContent(m_temporary.get(), m_existing.get(), target)) {
        return true;
    }
    if (!isRefusal(errno)) {
        m_existing.reset(-1);
    }
    removeTemporary();
    return true;
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
    // A file system without locks gives another error; no cleaner gets a lock there either.
    if (flock(m_temporary.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        m_temporary.reset(-1);
        errno = EEXIST;
        return false;
    }
    m_temporaryName = name;
    if (isStillThere()) {
        return true;
    }
    const int error = errno;
    if (error == EEXIST) {
        m_temporaryName.clear();
    }
    removeTemporary();
    m_temporary.reset(-1);
    errno = error;
    return false;
}

// False with EEXIST when a cleaner has removed the locked file, whose name may be somebody else's
// by now; with another error when that cannot be found out.
bool vlm::ReplaceFile::isStillThere() const
{
    struct stat created = {};
    struct stat found = {};
    if (fstat(m_temporary.get(), &created) != 0) {
        return false;
    }
    const bool isFound = lstat(m_temporaryName.constData(), &found) == 0;
    if (!isFound && errno != ENOENT) {
        return false;
    }
    errno = EEXIST;
    return isFound && isSameFile(created, found);
}

bool vlm::ReplaceFile::commit(const QByteArray &content)
{
    if (m_temporaryName.isEmpty()) {
        return writeInPlace(content);
    }
    if (!writeTemporary(content) || !closeTemporary() || (m_hasToBeKept && !keep())) {
        removeTemporary();
        return false;
    }
    if (rename(m_temporaryName.constData(), m_target.constData()) != 0) {
        const bool mountPoint = errno == EBUSY && m_existing.isOpen();
        removeTemporary();
        return mountPoint && writeInPlace(content);
    }
    m_temporaryName.clear();
    PartialLoads::remove(m_path);
    return syncFolder(m_folder);
}

// Nothing may be lost to a power cut: the second name is on the disk before the first one goes.
bool vlm::ReplaceFile::keep()
{
    m_hasKept = (keepAsLink() && syncFolder(m_folder)) || (isLinkRefusal(errno) && keepAsCopy());
    return m_hasKept;
}

// A crash may have left the link already. An older file gives way, unless it holds the same.
bool vlm::ReplaceFile::keepAsLink() const
{
    const QByteArray name = m_target + kKeptSuffix;
    struct stat status = {};
    QByteArray standing;
    QByteArray kept;
    if (readAll(m_target, &status, &standing) && readAll(name, &status, &kept)
        && standing == kept) {
        return true;
    }
    const auto link = [&] {
        return linkat(AT_FDCWD, m_target.constData(), AT_FDCWD, name.constData(), 0) == 0;
    };
    return link() || (errno == EEXIST && unlink(name.constData()) == 0 && link());
}

// A file of its own, never another name of the one that is about to be overwritten. The owner and
// what else the file has are kept where they can be; before that nobody else may read the copy.
bool vlm::ReplaceFile::keepAsCopy() const
{
    const QByteArray name = m_target + kKeptSuffix;
    struct stat status = {};
    struct stat keptStatus = {};
    QByteArray standing;
    QByteArray kept;
    if (!readAll(m_target, &status, &standing)) {
        return false;
    }
    if (readAll(name, &keptStatus, &kept) && standing == kept && !isSameFile(status, keptStatus)) {
        return true;
    }
    ReplaceFile copy;
    copy.m_target = name;
    copy.m_folder = m_folder;
    if (!copy.createTemporary(0600)) {
        return false;
    }
    const bool keepsAll = keepsAllButContent(copy.m_temporary.get(), m_existing.get(), status);
    Q_UNUSED(keepsAll)
    if (!copy.writeTemporary(standing) || !copy.closeTemporary()
        || rename(copy.m_temporaryName.constData(), name.constData()) != 0) {
        return false;
    }
    copy.m_temporaryName.clear();
    return syncFolder(m_folder);
}

// The name under which the file is kept does not count: a crash between keeping and replacing it
// leaves both.
bool vlm::ReplaceFile::hasOneName(const struct stat &target) const
{
    return target.st_nlink == 1
           || (target.st_nlink == 2 && isFileAt(m_target + kKeptSuffix, target));
}

bool vlm::ReplaceFile::writeTemporary(const QByteArray &content)
{
    const int file = m_temporary.get();
    return writeAll(file, content) && reachesDisk(file);
}

// Closing may report what a network file system could not write. The lock is kept.
bool vlm::ReplaceFile::closeTemporary()
{
    m_lock.reset(fcntl(m_temporary.get(), F_DUPFD_CLOEXEC, 0));
    return m_lock.isOpen() && (close(m_temporary.release()) == 0 || errno == EINTR);
}

// A failure leaves part of the content, or nothing.
bool vlm::ReplaceFile::writeInPlace(const QByteArray &content)
{
    if (!m_existing.isOpen()) {
        return false;
    }
    m_hasKept = m_hasToBeKept && keepAsCopy();
    if (m_hasToBeKept && !m_hasKept) {
        return false;
    }
    const int file = m_existing.get();
    // Only a regular file can be emptied; for others this says so.
    const bool isEmptied = retried([&] { return ftruncate(file, 0); }) == 0 || errno == EINVAL;
    if (!isEmptied || !writeAll(file, content) || !reachesDisk(file)) {
        return false;
    }
    PartialLoads::remove(m_path);
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
