// A printer font as hexadecimal text.

#include "FuzzTarget.h"
#include "Type1Exercise.h"
#include "fonts/FS_Type1PFA.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string file(data, data + size);
    KWFuzz::exerciseSections(file, KWFontService_NS::readPFASections);
    KWFuzz::exercisePrinterFont<KWFontService_NS::FS_Type1PFA>(file);
    return 0;
}
