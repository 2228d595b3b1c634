#include "common/FallbackRandom.h"

#include <atomic>
#include <chrono>

namespace KWCommonNS {

std::uint32_t fallbackRandom() noexcept {
    static std::atomic<std::uint64_t> calls{0};
    const auto now =
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    // The place of the counter differs between processes where addresses are random. The constants
    // are those of SplitMix64 (Steele, Lea, Flood 2014).
    std::uint64_t word =
        (now ^ reinterpret_cast<std::uintptr_t>(&calls)) + ++calls * 0x9E3779B97F4A7C15ULL;
    word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9ULL;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EBULL;
    return static_cast<std::uint32_t>(word >> 32);
}

} // namespace KWCommonNS
