#ifndef TESTS_SUPPORT_PROCESSES_H
#define TESTS_SUPPORT_PROCESSES_H

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

/// Does the work in a process of its own; returns the status of waitpid(), 0 if the work returns.
template <typename Work>
int inChild(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = -1;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

#endif
