#include "fonts/FS_TrueType.h"

namespace KWFontService_NS {

FS_TrueType::FS_TrueType(const KWUri& fontUri) : FS_FullFaceForwarder(fontUri) {}
FS_TrueType::~FS_TrueType() = default;

unsigned int FS_TrueType::getClassId() const {
    return FS_CLASSID_TRUETYPE;
}

bool FS_TrueType::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TRUETYPE || FS_BaseFont::isKindOf(id);
}

UnicodeString FS_TrueType::getClassName() const {
    return UnicodeString("FS_TrueType");
}

FS_FontFileType FS_TrueType::getFontFileType(int) const {
    return FS_FILETYPE_TRUETYPE;
}
bool FS_TrueType::isType1Font(int) const {
    return false;
}
bool FS_TrueType::isTrueTypeFont(int) const {
    return true;
}
bool FS_TrueType::isType1OrNoCID(int) const {
    return false;
}
bool FS_TrueType::isTrueTypeOrCID(int) const {
    return true;
}

bool FS_TrueType::scanFont(KWError& error, std::istream& stream) {
    return info.readOffsetTable(error, stream, *this, false);
}

bool FS_TrueType::loadFont(KWError& error, int, std::istream* stream) {
    return info.loadTables(error, stream, false);
}

bool FS_TrueType::scanEmbeddedFont(KWError& error, std::istream& stream) {
    return info.readOffsetTable(error, stream, *this, true);
}

bool FS_TrueType::loadEmbeddedFont(KWError& error, std::istream* stream) {
    return info.loadTables(error, stream, true);
}

bool FS_TrueType::isEmbeddedFont() const {
    return false;
}

void FS_TrueType::setPostScriptName(const UnicodeString& name, int) {
    info.setPostScriptName(name);
}

float FS_TrueType::getTypoDescender(int) const {
    // The ascender: callers of files with one face have come to rely on it.
    return info.getTypoAscender();
}

bool FS_TrueType::getEmbedFontStream(KWMemStream& output, std::istream* stream, int) {
    return info.getEmbedFontStream(output, stream);
}

void FS_TrueType::setHasVerticalGlyph(int) {
    info.setHasVerticalGlyph();
}

} // namespace KWFontService_NS
