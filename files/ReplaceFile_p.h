#ifndef FILES_REPLACEFILE_P_H
#define FILES_REPLACEFILE_P_H

#include "files/FileDescriptor_p.h"

#include <QtCore/QByteArray>

class QString;
struct stat;

namespace vlm
{
// Gives one file new content in such a way that a reader, and whoever comes after a crash or a
// power cut, finds the old content whole or the new content whole.
//
// The content goes into a temporary file in the same folder, reaches the disk, and takes the
// file's name. The target of a symbolic link is what is replaced; mode, owner, group and extended
// attributes are kept. A file for which that cannot be done is written in place, with no such
// promise: one that is no regular file, has several names or an owner that cannot be kept, is a
// mount point, or stands in a folder that takes no new file.
//
// The temporary file is locked while its saver lives. A save removes those it finds unlocked in
// the folder: they are what a crash left behind.
class ReplaceFile
{
public:
    ReplaceFile();
    ~ReplaceFile();
    ReplaceFile(const ReplaceFile &) = delete;
    ReplaceFile &operator=(const ReplaceFile &) = delete;

    // False when the file at path cannot be opened for writing, or created; nothing is changed
    // then. The content of the file is not touched before commit() in any case.
    bool open(const QString &path);
    // Once, after open() gave true. False when the content did not get to the disk: the old file
    // stands then. What goes wrong while writing in place is not noticed.
    bool commit(const QByteArray &content);

private:
    bool openStanding(const QByteArray &name, struct stat *status);
    bool openNew();
    bool openExisting(const struct stat &target);
    bool createTemporary(int mode);
    bool createLocked(int mode);
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
