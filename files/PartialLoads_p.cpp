#include "files/PartialLoads_p.h"

#include "files/SameFile_p.h"

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

namespace
{
const int kMaxFiles = 1024;

struct Files {
    QMutex mutex;
    QList<vlm::SameFile> partial;
};

// Never destroyed: stores may be used while the process exits.
Files &files()
{
    static Files *const instance = new Files;
    return *instance;
}
} // namespace

void vlm::PartialLoads::add(const QString &path)
{
    const SameFile file(path);
    const QMutexLocker locker(&files().mutex);
    QList<SameFile> &partial = files().partial;
    partial.removeAll(file);
    if (partial.size() == kMaxFiles) {
        partial.removeFirst();
    }
    partial.append(file);
}

// The list is nearly always empty; then the system need not be asked for the names.
void vlm::PartialLoads::remove(const QString &path)
{
    const QMutexLocker locker(&files().mutex);
    if (!files().partial.isEmpty()) {
        files().partial.removeAll(SameFile(path));
    }
}

bool vlm::PartialLoads::contains(const QString &path)
{
    const QMutexLocker locker(&files().mutex);
    return !files().partial.isEmpty() && files().partial.contains(SameFile(path));
}
