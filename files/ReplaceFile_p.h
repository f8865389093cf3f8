#ifndef FILES_REPLACEFILE_P_H
#define FILES_REPLACEFILE_P_H

#include "files/FileDescriptor_p.h"

#include <QtCore/QByteArray>

class QString;
struct stat;

namespace vlm
{
// Gives one file new content in such a way that any reader, even after a crash or a power cut,
// finds either the old content or the new content, whole.
//
// The content goes into a temporary file in the same folder, reaches the disk, and takes the file's
// name. The target of a symbolic link is what is replaced, unless links are refused; mode, owner,
// group and extended attributes are kept. Where that is not possible, the file is written in place,
// without this promise: where it is not a regular file, has several names or an owner that cannot
// be kept, is a mount point, or is in a folder that takes no new files.
//
// The temporary file is locked while its saver lives. A save removes those that it finds unlocked
// in the folder: a crash has left them.
class ReplaceFile
{
public:
    enum Links {
        FollowLinks,
        // Where others may have put a link in the way: open() fails at one.
        RefuseLinks
    };

    ReplaceFile();
    ~ReplaceFile();
    ReplaceFile(const ReplaceFile &) = delete;
    ReplaceFile &operator=(const ReplaceFile &) = delete;

    // False if the file at path can be neither opened for writing nor created; then nothing is
    // changed. In any case commit() is the first to touch the content of the file.
    bool open(const QString &path, Links links = FollowLinks);
    // To be called once, after open() returned true. False if the content did not reach the disk:
    // the old file then stands, unless it was to be written in place.
    bool commit(const QByteArray &content);

private:
    bool openStanding(const QByteArray &name, Links links, struct stat *status);
    bool openNew();
    bool openExisting(const struct stat &target);
    bool createTemporary(int mode);
    bool createLocked(int mode);
    bool isStillThere() const;
    bool writeTemporary(const QByteArray &content);
    bool closeTemporary();
    bool syncFolder() const;
    bool writeInPlace(const QByteArray &content);
    void removeTemporary();

    QByteArray m_target;
    QByteArray m_folder;
    QByteArray m_temporaryName;
    FileDescriptor m_existing;
    FileDescriptor m_temporary;
    // Shares the lock of m_temporary and holds it until the temporary file has its final name.
    FileDescriptor m_lock;
};
} // namespace vlm

#endif
