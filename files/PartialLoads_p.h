#ifndef FILES_PARTIALLOADS_P_H
#define FILES_PARTIALLOADS_P_H

class QString;

namespace vlm
{
// The files of which less than the whole was read at the last load: they could not be opened, or
// the document ended early, by an error in it, at a bound, or because the device failed. Whoever
// replaces one of them keeps what stands there. Remembered for the life of the process, for the
// last 1,024 such files, outside the published classes, whose fields are fixed. May be used from
// any thread.
class PartialLoads
{
public:
    static void add(const QString &path);
    static void remove(const QString &path);
    static bool contains(const QString &path);
};
} // namespace vlm

#endif
