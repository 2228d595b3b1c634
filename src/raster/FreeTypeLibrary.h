#pragma once

#include <memory>

struct FT_LibraryRec_;

namespace KWFontService_NS {

struct FreeTypeLibraryCloser {
    void operator()(FT_LibraryRec_* library) const;
};

/// An instance of FreeType, with every face that is still open in it.
using FreeTypeLibrary = std::unique_ptr<FT_LibraryRec_, FreeTypeLibraryCloser>;

/// Null when FreeType does not start.
FreeTypeLibrary makeFreeTypeLibrary();

} // namespace KWFontService_NS
