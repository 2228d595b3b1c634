#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the allocation functions: to be included in one file of a program of its own.

namespace KWTest {

/// How many more calls of `operator new` find memory; below 0 all do.
inline long g_allocationsLeft = -1;

inline void* allocateCounted(std::size_t size) noexcept {
    if (g_allocationsLeft == 0)
        return nullptr;
    if (g_allocationsLeft > 0)
        --g_allocationsLeft;
    return std::malloc(size != 0 ? size : 1);
}

} // namespace KWTest

void* operator new(std::size_t size) {
    if (void* const memory = KWTest::allocateCounted(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return KWTest::allocateCounted(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
