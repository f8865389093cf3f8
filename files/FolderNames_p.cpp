#include "files/FolderNames_p.h"

#include <QtCore/QFile>

#include <cerrno>
#include <dirent.h>
#include <sys/stat.h>

namespace
{
bool isMissing(int error) { return error == ENOENT || error == ENOTDIR; }

bool isWanted(const QByteArray &name, const QString &suffix)
{
    const QString text = QFile::decodeName(name);
    return !name.startsWith('.') && text.endsWith(suffix, Qt::CaseInsensitive)
           && QFile::encodeName(text) == name;
}

// Adds the name of a regular file. False when nothing can be said about it.
bool addFile(const QByteArray &folder, const QByteArray &name, QStringList *names)
{
    struct stat status = {};
    if (lstat((folder + '/' + name).constData(), &status) != 0) {
        return isMissing(errno);
    }
    if (S_ISREG(status.st_mode)) {
        names->append(QFile::decodeName(name));
    }
    return true;
}

bool addFiles(DIR *entries, const QByteArray &folder, const QString &suffix, QStringList *names)
{
    for (;;) {
        errno = 0;
        const dirent *const entry = readdir(entries);
        if (!entry) {
            return errno == 0;
        }
        if (isWanted(entry->d_name, suffix) && !addFile(folder, entry->d_name, names)) {
            return false;
        }
    }
}
} // namespace

bool vlm::namesInFolder(const QString &folder, const QString &suffix, QStringList *names)
{
    const QByteArray path = folder.isEmpty() ? QByteArray(".") : QFile::encodeName(folder);
    DIR *const entries = opendir(path.constData());
    if (!entries) {
        return isMissing(errno);
    }
    const bool whole = addFiles(entries, path, suffix, names);
    closedir(entries);
    return whole;
}
