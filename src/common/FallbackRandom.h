#pragma once

#include <cstdint>

namespace KWCommonNS {

/// Numbers for ids where the system has no random source: those of two calls, threads or processes
/// differ, but they are no secret. Thread-safe.
std::uint32_t fallbackRandom() noexcept;

} // namespace KWCommonNS
