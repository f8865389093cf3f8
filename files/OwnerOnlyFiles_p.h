#ifndef FILES_OWNERONLYFILES_P_H
#define FILES_OWNERONLYFILES_P_H

namespace vlm
{
// While one lives, files that this thread's saves create anew are readable and writable by their
// owner alone, whatever the umask says; files that exist keep their mode. For stores whose save
// goes through virtual operations, which have no room for such a wish. Heard by the saves of the
// same image only: the library counts its own ones, and a program that links this helper too counts
// others.
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
