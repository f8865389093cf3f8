#ifndef NARROWCALLS_H
#define NARROWCALLS_H

/// While one lives, this thread's calls of the functions that take file sizes and inode numbers of
/// 32 bits on a 32-bit system fail as they do there on a file that has larger ones. Elsewhere these
/// functions have the same names, though their numbers have 64 bits. Reading a folder stops at its
/// first entry.
class NarrowCalls
{
public:
    NarrowCalls();
    ~NarrowCalls();
    NarrowCalls(const NarrowCalls &) = delete;
    NarrowCalls &operator=(const NarrowCalls &) = delete;
};

#endif
