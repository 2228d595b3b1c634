// A printer font in segments.

#include "FuzzTarget.h"
#include "Type1Exercise.h"
#include "fonts/FS_Type1PFB.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string file(data, data + size);
    KWFuzz::exerciseSections(file, KWFontService_NS::readPFBSections);
    KWFuzz::exercisePrinterFont<KWFontService_NS::FS_Type1PFB>(file);
    return 0;
}
