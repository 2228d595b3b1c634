#include "type1/StandardFonts.h"

#include "type1/NameKeys.h"

#include <map>

namespace KWFontService_NS {

namespace {

constexpr Type1StandardFont kStandardFonts[] = {
    {"Courier", 805, 250, 805, -250, -23, 623, 0.0F},
    {"Courier-Bold", 801, 250, 801, -250, -113, 749, 0.0F},
    {"Courier-BoldOblique", 801, 250, 801, -250, -113, 749, -12.0F},
    {"Courier-Oblique", 805, 250, 805, -250, -23, 623, -12.0F},
    {"Helvetica", 905, 212, 1037, -325, -665, 2028, 0.0F},
    {"Helvetica-Bold", 905, 212, 1048, -376, -628, 2034, 0.0F},
    {"Helvetica-BoldOblique", 905, 212, 1031, -376, -560, 1157, -12.0F},
    {"Helvetica-Oblique", 905, 212, 1025, -325, -517, 1082, -12.0F},
    {"Times-Roman", 891, 216, 1007, -307, -568, 2028, 0.0F},
    {"Times-Bold", 891, 216, 1026, -307, -558, 2034, 0.0F},
    {"Times-Italic", 891, 216, 1023, -307, -498, 1120, -15.5F},
    {"Times-BoldItalic", 891, 216, 1032, -307, -546, 1206, -15.0F},
    {"Symbol", 1010, 293, 1010, -293, -180, 1090, 0.0F},
    {"ZapfDingbats", 857, 143, 820, -143, -1, 981, 0.0F},
};

std::map<UnicodeString, const Type1StandardFont*> makeIndex() {
    std::map<UnicodeString, const Type1StandardFont*> index;
    for (const Type1StandardFont& font : kStandardFonts)
        index.emplace(normaliseFontName(UnicodeString(font.name)), &font);
    return index;
}

} // namespace

const Type1StandardFont* findStandardFont(const UnicodeString& normalisedName) {
    static const auto index = makeIndex();
    const auto found = index.find(normalisedName);
    return found != index.end() ? found->second : nullptr;
}

} // namespace KWFontService_NS
