#ifndef FILES_SAMEFILE_P_H
#define FILES_SAMEFILE_P_H

#include <QtCore/QStringList>

namespace vlm
{
// The names of the file at a path: the absolute one and, where something stands there, the one
// behind all links. Two paths lead to one file if they share a name, also while the system cannot
// follow the links of one of them.
class SameFile
{
public:
    explicit SameFile(const QString &path);

    bool operator==(const SameFile &other) const;

private:
    QStringList m_names;
};
} // namespace vlm

#endif
