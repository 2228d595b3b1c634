#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the allocation functions: to be included in one file of a program of its own.

namespace KWTest {

/// How often `operator new` was called.
inline std::size_t g_allocations = 0;

template <typename Work>
std::size_t allocationsOf(Work work) {
    const std::size_t before = g_allocations;
    work();
    return g_allocations - before;
}

} // namespace KWTest

void* operator new(std::size_t size) {
    ++KWTest::g_allocations;
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++KWTest::g_allocations;
    return std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
