#ifndef REGULARFILE_P_H
#define REGULARFILE_P_H

#include <QtCore/QFileInfo>
#include <QtCore/QString>

namespace vlm
{
// False where something else than a regular file stands: opening a FIFO waits for its other end,
// which may never come. True where nothing stands.
inline bool isFileOrFree(const QString &path)
{
    const QFileInfo info(path);
    return !path.isEmpty() && (!info.exists() || info.isFile());
}
} // namespace vlm

#endif
