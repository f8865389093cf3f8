#ifndef FILES_REPLACEFILE_P_H
#define FILES_REPLACEFILE_P_H

#include "files/FileDescriptor_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

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
// A file of which less than the whole was loaded (PartialLoads) is first kept beside itself, under
// its name and ".damaged", instead of what was kept there before: as a hard link, which takes no
// room, or where the file is written in place or takes no links, as a copy for its owner alone. A
// file that cannot be kept is not replaced.
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
    // Whether commit() found a file that has to be kept, and it now is.
    bool hasKept() const { return m_hasKept; }

    // Removes what was kept of the file at path.
    static void removeKept(const QString &path);

private:
    bool openStanding(const QByteArray &name, Links links, struct stat *status);
    bool openNew();
    bool openExisting(const struct stat &target);
    bool createTemporary(int mode);
    bool createLocked(int mode);
    bool isStillThere() const;
    bool keep();
    bool keepAsLink() const;
    bool keepAsCopy() const;
    bool hasOneName(const struct stat &target) const;
    bool writeTemporary(const QByteArray &content);
    bool closeTemporary();
    bool writeInPlace(const QByteArray &content);
    void removeTemporary();

    QString m_path;
    QByteArray m_target;
    QByteArray m_folder;
    QByteArray m_temporaryName;
    FileDescriptor m_existing;
    bool m_hasToBeKept;
    bool m_hasKept;
    FileDescriptor m_temporary;
    // Shares the lock of m_temporary and holds it until the temporary file has its final name.
    FileDescriptor m_lock;
};
} // namespace vlm

#endif
