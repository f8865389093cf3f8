#include "cookies/IniFile_p.h"

#include "cookies/CookieElements_p.h"
#include "cookies/HarmlessIni_p.h"
#include "core/QEXC_TextCodec.h"
#include "files/FileDescriptor_p.h"
#include "files/OwnerOnlyFiles_p.h"
#include "files/ReplaceFile_p.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace vlm;
using namespace vlm::cookies;

namespace
{
const int kOpenFlags = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
// 200 ms in all, for what passes: signals, too many open files, a save that is going on.
const int kMaxTries = 20;
const int kTryMicroseconds = 10 * 1000;

enum Reading { Missing, Read, Unreadable };

bool isPassing(int error)
{
    return error == EINTR || error == EMFILE || error == ENFILE || error == EWOULDBLOCK;
}

template <typename Try>
bool succeedsInTime(Try succeeds)
{
    for (int i = 0; i < kMaxTries; ++i) {
        if (succeeds()) {
            return true;
        }
        if (!isPassing(errno)) {
            return false;
        }
        usleep(kTryMicroseconds);
    }
    return false;
}

bool isMissing(int error) { return error == ENOENT || error == ENOTDIR; }

bool readBytes(int file, int size, QByteArray *bytes)
{
    bytes->fill('\0', size);
    int got = 0;
    while (got < size) {
        const ssize_t more = read(file, bytes->data() + got, size_t(size - got));
        if (more < 0) {
            return false;
        }
        if (more == 0) {
            break;
        }
        got += int(more);
    }
    bytes->truncate(got);
    return true;
}

bool readOpen(int file, QByteArray *bytes)
{
    struct stat status = {};
    if (fstat(file, &status) != 0) {
        return false;
    }
    if (!S_ISREG(status.st_mode) || status.st_size > kMaxIniBytes) {
        errno = EFBIG;
        return false;
    }
    return readBytes(file, int(status.st_size), bytes);
}

Reading readNow(const QByteArray &name, QByteArray *bytes)
{
    const FileDescriptor file(open(name.constData(), O_RDONLY | kOpenFlags));
    if (!file.isOpen()) {
        return isMissing(errno) ? Missing : Unreadable;
    }
    return readOpen(file.get(), bytes) ? Read : Unreadable;
}

Reading readFile(const QByteArray &name, QByteArray *bytes)
{
    Reading reading = Unreadable;
    succeedsInTime([&] {
        reading = readNow(name, bytes);
        return reading != Unreadable;
    });
    return reading;
}

bool isWhole(const QByteArray &file)
{
    QDataStream stream(byteArrayOfIni(file, kIniGroup, kIniKey));
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QByteArray rawForm;
        stream >> rawForm;
    }
    return stream.status() == QDataStream::Ok && stream.atEnd() && !file.contains('\0');
}

// QSettings creates its files with the mode that the umask leaves, but gives those that replace an
// existing one the mode of that. So an empty file comes first, which holds no cookies either; and
// its folder, which QSettings would create as well.
void createForOwnerAlone(const QString &path, const QByteArray &name)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    const FileDescriptor created(open(name.constData(), O_WRONLY | O_CREAT | kOpenFlags, 0600));
}

// Errors of folders that cannot be synchronised are not the file's: see ReplaceFile.
bool isOnDisk(const QByteArray &name)
{
    const FileDescriptor file(open(name.constData(), O_RDONLY | kOpenFlags));
    if (!file.isOpen() || fdatasync(file.get()) != 0) {
        return false;
    }
    const QByteArray folderName = name.left(name.lastIndexOf('/') + 1);
    const FileDescriptor folder(open(folderName.isEmpty() ? "./" : folderName.constData(),
                                     O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.isOpen() ? fsync(folder.get()) == 0 || errno == EINVAL : errno == EACCES;
}

QByteArray valueBySettings(const QString &path)
{
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(QEXC_TextCodec::fromSJIS(kIniGroup));
    return settings.value(QEXC_TextCodec::fromSJIS(kIniKey)).toByteArray();
}

bool writeBySettings(const QString &path, const QByteArray &value)
{
    QSettings settings(path, QSettings::IniFormat);
    settings.clear();
    settings.beginGroup(QEXC_TextCodec::fromSJIS(kIniGroup));
    settings.setValue(QEXC_TextCodec::fromSJIS(kIniKey), value);
    settings.endGroup();
    settings.sync();
    // What stood there may have been no INI file: that is an error of the format, and no matter.
    return settings.status() != QSettings::AccessError;
}

// By size and time QSettings tells whether a file is still the one that it knows; some of its
// versions look at whole seconds.
void makeOlder(const QByteArray &name)
{
    struct stat status = {};
    if (stat(name.constData(), &status) == 0) {
        const struct timespec times[] = {status.st_atim, {status.st_mtim.tv_sec - 2, 0}};
        utimensat(AT_FDCWD, name.constData(), times, 0);
    }
}
} // namespace

vlm::cookies::IniFile::IniFile(const QString &path)
    : m_path(path),
      m_name(QFile::encodeName(QFile(path).fileName())),
      m_copyName(m_name + kIniCopySuffix)
{
}

bool vlm::cookies::IniFile::read(QByteArray *value) const
{
    value->clear();
    QByteArray file;
    const Reading reading = settle() ? readFile(m_name, &file) : Unreadable;
    if (reading == Read) {
        *value = isHarmlessIni(file, kIniGroup) ? valueBySettings(m_path)
                                                : byteArrayOfIni(file, kIniGroup, kIniKey);
    }
    return reading != Unreadable;
}

bool vlm::cookies::IniFile::write(const QByteArray &value) const
{
    createForOwnerAlone(m_path, m_name);
    QByteArray old;
    if (!settle() || readFile(m_name, &old) != Read) {
        return false;
    }
    // Locks the copy while it lives.
    ReplaceFile copy;
    const OwnerOnlyFiles ownerOnly;
    if (!copy.open(QFile::decodeName(m_copyName)) || !copy.commit(old)) {
        unlink(m_copyName.constData());
        return false;
    }
    const bool replaced = replace(old, value);
    if (replaced || putBack(old)) {
        unlink(m_copyName.constData());
    }
    return replaced;
}

bool vlm::cookies::IniFile::settle() const
{
    return succeedsInTime([&] { return settleNow(); });
}

bool vlm::cookies::IniFile::settleNow() const
{
    const FileDescriptor copy(open(m_copyName.constData(), O_RDONLY | O_NOFOLLOW | kOpenFlags));
    if (!copy.isOpen()) {
        return isMissing(errno);
    }
    // A file system without locks gives another error.
    struct stat status = {};
    if ((flock(copy.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        || fstat(copy.get(), &status) != 0) {
        return false;
    }
    QByteArray old;
    QByteArray current;
    if (status.st_nlink == 0) {
        return true;
    }
    const Reading reading = readOpen(copy.get(), &old) ? readNow(m_name, &current) : Unreadable;
    if (reading == Unreadable || (reading == Read && !isWhole(current) && !putBack(old))) {
        return false;
    }
    unlink(m_copyName.constData());
    return true;
}

bool vlm::cookies::IniFile::putBack(const QByteArray &old) const
{
    ReplaceFile file;
    QByteArray current;
    if (!file.open(m_path) || !file.commit(old)) {
        return false;
    }
    makeOlder(m_name);
    return readFile(m_name, &current) == Read && current == old;
}

bool vlm::cookies::IniFile::replace(const QByteArray &old, const QByteArray &value) const
{
    // QSettings looks at the whole file before it writes.
    if (!isHarmlessIni(old) && !QFile::resize(m_path, 0)) {
        return false;
    }
    QByteArray current;
    return writeBySettings(m_path, value) && readFile(m_name, &current) == Read
           && byteArrayOfIni(current, kIniGroup, kIniKey) == value && isOnDisk(m_name);
}
