// A whole font file.

#include "FontExercise.h"
#include "FuzzTarget.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    KWFuzz::exerciseFont(data, size);
    return 0;
}
