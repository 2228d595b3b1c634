#include "fonts/FS_OperationMacros.h"
#include "fonts/FontErrors.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWUtil.h>

namespace KWFontService_NS {

FS_BaseFont::FS_BaseFont(const KWUri& fontUri) : uri(fontUri) {}
FS_BaseFont::~FS_BaseFont() {
    ftFace.reset(); // before the bytes that it uses in place
}

unsigned int FS_BaseFont::getClassId() const {
    return FS_CLASSID_BASE_FONT;
}

bool FS_BaseFont::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_BASE_FONT || KWRCObject::isKindOf(id);
}

UnicodeString FS_BaseFont::getClassName() const {
    return UnicodeString("FS_BaseFont");
}

const KWUri& FS_BaseFont::getUri() const {
    return uri;
}

FS_FontFileType FS_BaseFont::getFontFileType2(int faceIndex) const {
    return getFontFileType(faceIndex);
}

bool FS_BaseFont::isOpenType() const {
    return false;
}
bool FS_BaseFont::isFontCollection() const {
    return false;
}
bool FS_BaseFont::isExtraFont(int*, bool*, int) const {
    return false;
}

bool FS_BaseFont::scanNamedFont(KWError& error, std::istream& stream, const UnicodeString&, int,
                                int) {
    return scanFont(error, stream);
}

bool FS_BaseFont::loadFont(KWError&, int, std::istream*) {
    return true;
}
int FS_BaseFont::getFontCount() const {
    return 1;
}
void FS_BaseFont::registerFileName(FS_FontPool&, const KWUri&) {}
void FS_BaseFont::registerFontNames(FS_FontPool&) {}
KWMemStream* FS_BaseFont::getFontStream() {
    return nullptr;
}

bool FS_BaseFont::fontError(KWError& error, FS_ERROR code, const UnicodeString& detail) const {
    error = makeFontError(code, detail, getUri().getLocalPath());
    return false;
}

// The face-wise operations answer as a font without the data does.
namespace {
template <class... Arguments>
void ignore(const Arguments&...) {}
} // namespace

#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    result FS_BaseFont::name(FS_PARAMETERS parameters int) qualifier {                             \
        ignore arguments;                                                                          \
        return missing;                                                                            \
    }
#include "fonts/FS_FaceOperations.inc"

} // namespace KWFontService_NS
