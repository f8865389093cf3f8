#ifndef FILES_REGULARFILE_P_H
#define FILES_REGULARFILE_P_H

class QFile;
class QString;

// Opening anything but a regular file may wait for somebody at its other end, who may never come,
// and reading it may never end.
namespace vlm
{
// False where something else than a regular file stands, and for an empty path. True where nothing
// stands.
bool isFileOrFree(const QString &path);

// True where nothing stands; false also where the system cannot tell.
bool isMissing(const QString &path);

// Opens the file for reading; false when it is no regular one. A name without a file, such as Qt's
// own ":/" ones, is Qt's to open. A process or system that has no descriptor left is asked again
// for 200 ms, and so is a call that a signal interrupts.
bool openRegular(QFile &file);
} // namespace vlm

#endif
