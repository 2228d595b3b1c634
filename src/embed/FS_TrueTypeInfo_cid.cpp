#include "embed/CIDFontWriter.h"
#include "embed/SourceStream.h"
#include "fonts/FS_TrueTypeInfo.h"

#include <KWCommon15/KWUUID.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace KWFontService_NS {

namespace {

/// "KW", four upper-case hexadecimal digits and "-": what tells subsets of one font apart.
std::string makeSubsetTag() {
    std::array<char, 8> tag{};
    const KWCommonNS::KWUUID random;
    std::snprintf(tag.data(), tag.size(), "KW%02X%02X-", unsigned{random.getBytes()[0]},
                  unsigned{random.getBytes()[1]});
    return tag.data();
}

/// A name that PostScript reads as one: what would end it, or start something else, is "_".
UnicodeString postScriptNameOf(UnicodeString name) {
    for (std::int32_t i = 0; i < name.length(); ++i) {
        const char16_t unit = name.charAt(i);
        if (unit <= u' ' || unit == 0x7F ||
            std::u16string_view(u"()<>[]{}/%").find(unit) != std::u16string_view::npos)
            name.setCharAt(i, u'_');
    }
    return name;
}

} // namespace

bool FS_TrueTypeInfo::makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs,
                                                 KWMemStream& output, UnicodeString& fontName,
                                                 FS_CIDSystemInfo& info) {
    return makePostScriptCIDFontType0(glyphs, output, fontName, info, nullptr);
}

bool FS_TrueTypeInfo::makePostScriptCIDFontType0(const std::vector<unsigned short>& glyphs,
                                                 KWMemStream& output, UnicodeString& fontName,
                                                 FS_CIDSystemInfo& info, std::istream* source) {
    const TTI_TableRecord* const record = getTableEntry(sfntTag("CFF "));
    const Type1CMap* const font = getCFFInfo();
    if (record == nullptr || font == nullptr)
        return false;
    const SourceStream stream(source, owner);
    if (!stream)
        return false;
    auto table = cffTable(*stream, *record);
    Type1Glyphs converted;
    if (!table || !convertToType1(*table, *font, glyphs, converted))
        return false;

    const std::string tag = makeSubsetTag();
    fontName = postScriptNameOf(UnicodeString::fromUTF8(tag) + getPostScriptName(0));
    info = {.Registry = "Kestrelworks", .Ordering = tag + "Subset", .Supplement = 1};
    std::string name;
    writeCIDFont(converted, font->topDict, fontName.toUTF8String(name), info, output);
    return !output.fail();
}

} // namespace KWFontService_NS
