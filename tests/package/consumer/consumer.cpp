#include <KWCommon15/KWCommon.h>
#include <KWFontService17/KWFontService.h>

#include <cstdio>

int main() {
    using namespace KWFontService_NS;

    std::printf("GSUB = 0x%08X\n", toTAG(UnicodeString(u"GSUB")));

    const FS_FontInfo noFont;
    std::printf("FS_FontInfo constructed\n");

    // One call into the companion library, so that both are really linked and found.
    const KWCommonNS::KWError noError;
    std::printf("KWError constructed\n");
    return 0;
}
