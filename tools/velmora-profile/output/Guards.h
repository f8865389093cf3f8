#ifndef TOOLS_VELMORA_PROFILE_OUTPUT_GUARDS_H
#define TOOLS_VELMORA_PROFILE_OUTPUT_GUARDS_H

#include <csignal>

// What holds while an object lives: a limit of time, peace from signals, the mode of new files.
namespace profile
{
// While one lives, reading may take the processor's time that any honest file is read in many times
// over; then the tool ends with a line that says so. Nothing may have been written yet.
class Deadline
{
public:
    Deadline();
    ~Deadline();
    Deadline(const Deadline &) = delete;
    Deadline &operator=(const Deadline &) = delete;
};

// The signals that are an interruption: Ctrl-C and its like.
sigset_t interruptions();

// While one lives, Ctrl-C and its like wait: a file that is being written is finished first. So
// does the end of whoever reads the output, as in a pipe to head. One may live in another's time.
class Uninterrupted
{
public:
    Uninterrupted();
    ~Uninterrupted();
    Uninterrupted(const Uninterrupted &) = delete;
    Uninterrupted &operator=(const Uninterrupted &) = delete;

private:
    sigset_t m_before;
};

// Files that this process creates while one lives are their owner's alone.
class OwnerOnly
{
public:
    OwnerOnly();
    ~OwnerOnly();
    OwnerOnly(const OwnerOnly &) = delete;
    OwnerOnly &operator=(const OwnerOnly &) = delete;

private:
    unsigned int m_before;
};
} // namespace profile

#endif
