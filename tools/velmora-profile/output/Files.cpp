#include "tools/velmora-profile/output/Files.h"

#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <algorithm>
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

bool isControl(ushort code)
{
    return (code < 0x20 && code != 0x09 && code != 0x0a) || (code & 0xfffe) == 0xfffe
           || (code >= 0xfdd0 && code <= 0xfdef);
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

void profile::sayLosses(const QList<Loss> &losses)
{
    for (const Loss &loss : losses) {
        warn(text("lost: %1: %2").arg(loss.entry, loss.reason));
    }
}

QJsonArray profile::toJson(const QList<Loss> &losses)
{
    QJsonArray array;
    for (const Loss &loss : losses) {
        QJsonObject object;
        object.insert(text("entry"), loss.entry);
        object.insert(text("reason"), loss.reason);
        array.append(object);
    }
    return array;
}

int profile::refuseLosses(const Call &call, const QList<Loss> &losses)
{
    if (losses.isEmpty() || !call.has("strict")) {
        return Done;
    }
    return fail(text("%1, and --strict was asked for; nothing was changed")
                    .arg(counted(losses.size(), "loss", "losses")));
}

QString profile::imported(const Call &call, int added)
{
    if (call.has("dry-run")) {
        return text("would be");
    }
    return text(added == 1 ? "was" : "were");
}

bool profile::readIds(const Call &call, int count, QList<int> *ids)
{
    for (const QString &operand : call.operands) {
        bool isNumber = false;
        const int id = operand.toInt(&isNumber);
        if (!isNumber || id < 0 || id >= count) {
            warn(text("'%1' is no id; there are %2, the first is 0, 'list' shows them")
                     .arg(operand, QString::number(count)));
            return false;
        }
        if (!ids->contains(id)) {
            ids->append(id);
        }
    }
    std::sort(ids->begin(), ids->end());
    std::reverse(ids->begin(), ids->end());
    return true;
}

bool profile::isKept(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const bool isPair =
            character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            const uint code = QChar::surrogateToUcs4(character, text.at(i + 1));
            if ((code & 0xfffe) == 0xfffe) {
                return false;
            }
            ++i;
        } else if (character.isSurrogate() || isControl(character.unicode())) {
            return false;
        }
    }
    // A document's text that is nothing but blanks reads as empty.
    return text.isEmpty() || !text.trimmed().isEmpty();
}
