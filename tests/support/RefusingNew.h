#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the allocation functions: to be included in one file of a program of its own.

namespace KWTest {

/// `operator new` has no memory for a block of exactly this size; 0 refuses nothing.
inline std::size_t g_refusedSize = 0;

} // namespace KWTest

void* operator new(std::size_t size) {
    if (size != 0 && size == KWTest::g_refusedSize)
        throw std::bad_alloc();
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return size != 0 && size == KWTest::g_refusedSize ? nullptr : std::malloc(size != 0 ? size : 1);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
