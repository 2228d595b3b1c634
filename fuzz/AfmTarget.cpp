// The metrics file of a Type 1 font as text.

#include "FuzzTarget.h"
#include "Type1Exercise.h"
#include "fonts/FS_Type1AFM.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    KWFuzz::exerciseMetricsFont<KWFontService_NS::FS_Type1AFM>(std::string(data, data + size));
    return 0;
}
