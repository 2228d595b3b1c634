#pragma once

#include <cstdint>

namespace KWTest {

/// A tiny generator (splitmix64) for sweeps: the same seed gives the same numbers everywhere.
class Rng {
public:
    explicit constexpr Rng(std::uint64_t seed) : state_(seed) {}

    constexpr std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }
    /// A number below `bound`, which must not be 0.
    constexpr std::uint32_t below(std::uint32_t bound) {
        return static_cast<std::uint32_t>(next() % bound);
    }
    constexpr std::uint8_t byte() { return static_cast<std::uint8_t>(next()); }
    constexpr bool chance(std::uint32_t oneIn) { return below(oneIn) == 0; }

private:
    std::uint64_t state_;
};

} // namespace KWTest
