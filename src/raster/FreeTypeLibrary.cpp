#include "raster/FreeTypeLibrary.h"

#include <ft2build.h>
#include FT_FREETYPE_H

namespace KWFontService_NS {

void FreeTypeLibraryCloser::operator()(FT_LibraryRec_* library) const {
    FT_Done_FreeType(library);
}

FreeTypeLibrary makeFreeTypeLibrary() {
    FT_Library library = nullptr;
    return FreeTypeLibrary(FT_Init_FreeType(&library) == 0 ? library : nullptr);
}

} // namespace KWFontService_NS
