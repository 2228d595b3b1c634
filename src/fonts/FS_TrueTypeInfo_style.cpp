// Names and style of a face.

#include "fonts/FS_TrueTypeInfo.h"

#include "fonts/FS_ServiceContext.h"

#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_WindowsRecords.h>

#include <new>
#include <type_traits>

namespace KWFontService_NS {

namespace {

constexpr int kFamilySymbolic = 12;
constexpr int kPanoseLatinText = 2;
constexpr int kPanoseLatinScript = 3;

} // namespace

UnicodeString FS_TrueTypeInfo::getFamilyName(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::Family);
}

UnicodeString FS_TrueTypeInfo::getSubFamilyName(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::SubFamily);
}

UnicodeString FS_TrueTypeInfo::getFullFontName(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::Full);
}

UnicodeString FS_TrueTypeInfo::getPostScriptName(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::PostScript);
}

UnicodeString FS_TrueTypeInfo::getPreferredFamily(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::PreferredFamily);
}

UnicodeString FS_TrueTypeInfo::getPreferredSubFamily(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::PreferredSubFamily);
}

UnicodeString FS_TrueTypeInfo::getPostScriptCIDFindfontName(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::CidFindfont);
}

UnicodeString FS_TrueTypeInfo::getCopyright(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::Copyright);
}

UnicodeString FS_TrueTypeInfo::getManufacturer(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::Manufacturer);
}

UnicodeString FS_TrueTypeInfo::getLicenseDescription(KWLang::LanguageID language) const {
    return nameTable_.get(language, TTI_Names::License);
}

void FS_TrueTypeInfo::setPostScriptName(const UnicodeString& name) {
    nameTable_.setDefaultPostScript(name);
}

int FS_TrueTypeInfo::getWeight() const {
    return headerTables_.usWeightClass;
}

bool FS_TrueTypeInfo::isItalic() const {
    return (headerTables_.fsSelection & 1) != 0 || headerTables_.italicAngle != 0.0F;
}

int FS_TrueTypeInfo::getWidth() const {
    return headerTables_.usWidthClass;
}

bool FS_TrueTypeInfo::getLogFont(FS_EnumLogFontEx& font) const {
    UnicodeString faceName = nameTable_.getDefault(TTI_Names::Family);
    if (faceName.isEmpty())
        faceName = nameTable_.getDefault(TTI_Names::PostScript);
    if (FS_ServiceContext::usePreferredFamily()) {
        const UnicodeString preferred = nameTable_.getDefault(TTI_Names::PreferredFamily);
        if (!preferred.isEmpty())
            faceName = preferred;
    }
    font =
        FS_EnumLogFontEx(faceName, nameTable_.getDefault(TTI_Names::Full), getWeight(), isItalic());
    return true;
}

FS_CodePageRange FS_TrueTypeInfo::getCodePageRangeBitFields() const {
    return {headerTables_.ulCodePageRange1, headerTables_.ulCodePageRange2};
}

bool FS_TrueTypeInfo::isSymbolicFont() const {
    const int family = headerTables_.familyClass;
    return family == kFamilySymbolic || (family == 0 && nameTable_.symbolNamesOnly());
}

bool FS_TrueTypeInfo::isFixedWidthFont() const {
    return headerTables_.isFixedPitch;
}

bool FS_TrueTypeInfo::isSerifLikeFont() const {
    const auto& panose = headerTables_.panose;
    return panose[TTI_Header::FamilyType] == kPanoseLatinText &&
           panose[TTI_Header::SerifStyle] >= 2 && panose[TTI_Header::SerifStyle] <= 10;
}

bool FS_TrueTypeInfo::isScriptLikeFont() const {
    return headerTables_.panose[TTI_Header::FamilyType] == kPanoseLatinScript;
}

unsigned char FS_TrueTypeInfo::getFamilyClass() const {
    return headerTables_.hasOS2 ? headerTables_.familyClass : std::uint8_t{0};
}

unsigned char FS_TrueTypeInfo::getFamilySubclass() const {
    return headerTables_.hasOS2 ? headerTables_.familySubclass : std::uint8_t{0};
}

const PANOSE* FS_TrueTypeInfo::getPanose() const {
    // The array of bytes gives room to the record, which is bytes alone.
    static_assert(std::is_trivial_v<PANOSE> && alignof(PANOSE) == 1);
    static_assert(sizeof(PANOSE) == std::tuple_size_v<decltype(headerTables_.panose)>);
    if (!headerTables_.hasOS2)
        return nullptr;
    return std::launder(reinterpret_cast<const PANOSE*>(headerTables_.panose.data()));
}

void FS_TrueTypeInfo::setEudcFont(const FS_FontRef& ref) {
    eudcLink_.set(ref);
}

FS_FontRef FS_TrueTypeInfo::getEudcFont() const {
    return eudcLink_.get();
}

} // namespace KWFontService_NS
