#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the allocation functions: to be included in one file of a program of its own.

namespace KWTest {

/// Bytes that are allocated now, with what an allocator spends on each block.
inline std::size_t g_heldBytes = 0;

inline constexpr std::size_t kBlockCost = 16;

/// Null when there is no memory. The size of a block stands in front of it.
inline void* allocateHeld(std::size_t size) noexcept {
    auto* const block = static_cast<std::size_t*>(std::malloc(size + kBlockCost));
    if (block == nullptr)
        return nullptr;
    *block = size;
    g_heldBytes += size + kBlockCost;
    return reinterpret_cast<unsigned char*>(block) + kBlockCost;
}

} // namespace KWTest

void* operator new(std::size_t size) {
    if (void* const memory = KWTest::allocateHeld(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return KWTest::allocateHeld(size);
}

void operator delete(void* memory) noexcept {
    if (memory == nullptr)
        return;
    auto* const block =
        reinterpret_cast<std::size_t*>(static_cast<unsigned char*>(memory) - KWTest::kBlockCost);
    KWTest::g_heldBytes -= *block + KWTest::kBlockCost;
    std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
