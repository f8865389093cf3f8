#include "tests/support/LivingObjects.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace
{
std::atomic<int> living(0);

void *allocate(std::size_t size)
{
    void *const object = malloc(size ? size : 1);
    if (object) {
        ++living;
    }
    return object;
}

void release(void *object)
{
    if (object) {
        --living;
    }
    free(object);
}
} // namespace

int livingObjects() { return living; }

// Arrays come here, too: their operators call these.
void *operator new(std::size_t size)
{
    void *const object = allocate(size);
    if (!object) {
        throw std::bad_alloc();
    }
    return object;
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept { return allocate(size); }

void operator delete(void *object) noexcept { release(object); }

// What C++14 calls where it knows the size.
void operator delete(void *object, std::size_t) noexcept { release(object); }
