#include "files/SameFile_p.h"

#include <QtCore/QFileInfo>

vlm::SameFile::SameFile(const QString &path)
{
    const QFileInfo info(path);
    m_names.append(info.absoluteFilePath());
    const QString canonical = info.canonicalFilePath();
    if (!canonical.isEmpty()) {
        m_names.append(canonical);
    }
}

bool vlm::SameFile::operator==(const SameFile &other) const
{
    for (const QString &name : m_names) {
        if (other.m_names.contains(name)) {
            return true;
        }
    }
    return false;
}
