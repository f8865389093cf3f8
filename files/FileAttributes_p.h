#ifndef FILES_FILEATTRIBUTES_P_H
#define FILES_FILEATTRIBUTES_P_H

struct stat;

namespace vlm
{
// Gives an open file the owner, group, mode and extended attributes of another one, which has this
// status. False, and errno says why, when one of them cannot be had.
bool keepsAllButContent(int file, int original, const struct stat &status);
} // namespace vlm

#endif
