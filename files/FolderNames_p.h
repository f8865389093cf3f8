#ifndef FILES_FOLDERNAMES_P_H
#define FILES_FOLDERNAMES_P_H

#include <QtCore/QStringList>

namespace vlm
{
// Lists the files of a folder whose names end so, in any letter case, without hidden ones, symbolic
// links, and names that cannot be told from others as text. False when the folder is there and
// could not be read to its end; a folder that is not there has no files.
bool namesInFolder(const QString &folder, const QString &suffix, QStringList *names);
} // namespace vlm

#endif
