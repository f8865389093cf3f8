#ifndef TESTS_SUPPORT_SMALLSTACK_H
#define TESTS_SUPPORT_SMALLSTACK_H

#include "tests/support/QtTest.h"

#include <functional>
#include <pthread.h>

/// Runs work to its end on a thread with a stack of 256 KiB, as the device's threads have it. What
/// needs more ends the program.
inline void runOnSmallStack(const std::function<void()> &work)
{
    struct Start {
        static void *run(void *argument)
        {
            (*static_cast<const std::function<void()> *>(argument))();
            return nullptr;
        }
    };
    std::function<void()> copy = work;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    QCOMPARE(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    QCOMPARE(pthread_create(&thread, &attributes, Start::run, &copy), 0);
    pthread_attr_destroy(&attributes);
    QCOMPARE(pthread_join(thread, nullptr), 0);
}

#endif
