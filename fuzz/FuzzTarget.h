#pragma once

#include <cstddef>
#include <cstdint>

/// What libFuzzer, and the replay of a corpus, call with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
