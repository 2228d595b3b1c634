#include "fonts/FS_Type1Printer.h"

#include <utility>

namespace KWFontService_NS {

FS_Type1Printer::FS_Type1Printer(const KWUri& fontUri) : FS_BaseFont(fontUri) {}

unsigned int FS_Type1Printer::getClassId() const {
    return FS_CLASSID_TYPE1_PRINTER;
}

bool FS_Type1Printer::isKindOf(unsigned int id) const {
    return id == FS_CLASSID_TYPE1_PRINTER || FS_BaseFont::isKindOf(id);
}

bool FS_Type1Printer::isType1Font(int) const {
    return true;
}
bool FS_Type1Printer::isTrueTypeFont(int) const {
    return false;
}
bool FS_Type1Printer::isType1OrNoCID(int) const {
    return true;
}
bool FS_Type1Printer::isTrueTypeOrCID(int) const {
    return false;
}

bool FS_Type1Printer::scanFont(KWError& error, std::istream& stream) {
    PrinterFontHead head;
    if (const auto failure = scanHead(stream, head))
        return fontError(error, failure->code, failure->detail);
    head_ = std::move(head);
    return true;
}

bool FS_Type1Printer::loadFont(KWError& error, int, std::istream*) {
    KWCommonNS::KWMutex mutex(loadLock_);
    mutex.lock();
    if (!loaded_)
        loaded_ = readGlyphs(loadError_);
    if (!*loaded_)
        error = loadError_;
    return *loaded_;
}

UnicodeString FS_Type1Printer::getFamilyName(KWLang::LanguageID, int) const {
    return head_.familyName;
}

UnicodeString FS_Type1Printer::getSubFamilyName(KWLang::LanguageID, int) const {
    return type1SubFamilyName(head_.fullName, head_.familyName, head_.weightName);
}

UnicodeString FS_Type1Printer::getFullFontName(KWLang::LanguageID, int) const {
    return head_.fullName;
}

int FS_Type1Printer::getWeight(int) const {
    return head_.weight;
}
bool FS_Type1Printer::isItalic(int) const {
    return head_.italicAngle != 0;
}
bool FS_Type1Printer::isFixedWidthFont(int) const {
    return head_.isFixedPitch;
}
bool FS_Type1Printer::isSymbolicFont(int) const {
    return head_.isSymbolic;
}
unsigned int FS_Type1Printer::getEmbedableCharCount(int) const {
    return encodedGlyphs_;
}

} // namespace KWFontService_NS
