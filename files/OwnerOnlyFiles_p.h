#ifndef FILES_OWNERONLYFILES_P_H
#define FILES_OWNERONLYFILES_P_H

namespace vlm
{
// While one lives, new files that this thread saves are readable and writable by their owner alone,
// whatever the umask; existing files keep their mode. For stores whose save goes through virtual
// operations, whose signatures have no place for this. Heard by the saves of the same image only:
// the library counts its own ones, and a program that links this helper too counts others.
class OwnerOnlyFiles
{
public:
    OwnerOnlyFiles();
    ~OwnerOnlyFiles();
    OwnerOnlyFiles(const OwnerOnlyFiles &) = delete;
    OwnerOnlyFiles &operator=(const OwnerOnlyFiles &) = delete;

    static bool wanted();
};
} // namespace vlm

#endif
