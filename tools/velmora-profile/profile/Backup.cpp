#include "tools/velmora-profile/profile/Backup.h"

#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/profile/Secrets.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>

namespace
{
using namespace profile;

// A file of mode 0600 from its first byte on: a copy of secrets with the mode of the file would
// leave to others what its repair takes from them. Without a buffer, which would drop what a full
// disk does not take, and nobody would know.
bool copyFile(const QString &from, const QString &to)
{
    const OwnerOnly ownerOnly;
    QFile source(from);
    QSaveFile target(to);
    if (!source.open(QIODevice::ReadOnly)
        || !target.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return false;
    }
    if (!mayHoldSecrets(from)) {
        target.setPermissions(source.permissions());
    }
    const QByteArray content = source.readAll();
    return content.size() == source.size() && target.write(content) == content.size()
           && target.commit();
}
} // namespace

QString profile::keepCopy(const QString &file)
{
    const QString stamp = QDateTime::currentDateTime().toString(text("yyyyMMdd-hhmmss"));
    QString copy = text("%1.%2.bak").arg(file, stamp);
    for (int i = 2; QFile::exists(copy); ++i) {
        copy = text("%1.%2-%3.bak").arg(file, stamp).arg(i);
    }
    const Uninterrupted uninterrupted;
    if (copyFile(file, copy)) {
        return copy;
    }
    warn(text("%1 cannot be copied to %2; nothing was changed; check the free space")
             .arg(file, copy));
    return QString();
}
