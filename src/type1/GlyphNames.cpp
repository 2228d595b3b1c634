#include "type1/GlyphNames.h"

#include "type1/KeyedList.h"
#include "type1/StandardStrings.h"

#include <algorithm>
#include <iterator>

namespace KWFontService_NS {

namespace {

struct GlyphName {
    std::uint16_t character;
    std::string_view name;
};

#include "type1/GlyphNameData.inc"

static_assert(std::size(kFirstNames) == kFirstGlyphNames);
static_assert(std::size(kSecondNames) == kSecondGlyphNames);
static_assert(kFirstNames[0].name == "A" && kFirstNames[kFirstGlyphNames - 1].name == "zeta");
static_assert(kSecondNames[0].name == "twosuperior" &&
              kSecondNames[kSecondGlyphNames - 1].name == "afii57700");

struct Substitute {
    std::uint16_t from;
    std::uint16_t to;
};

// In the order of `from`.
constexpr Substitute kSubstitutes[] = {
    {0x00A0, 0x0020}, {0x00AD, 0x002D}, {0x021A, 0x0162}, {0x021B, 0x0163},
    {0x02C9, 0x00AF}, {0x0394, 0x2206}, {0x03A9, 0x2126}, {0x03BC, 0x00B5},
    {0x2215, 0x2044}, {0x2219, 0x00B7}, {0xF6C1, 0x015E}, {0xF6C2, 0x015F},
};

struct Tables {
    Tables() {
        add(kFirstNames);
        add(kSecondNames);
        for (int code = 0; code < 256; ++code) {
            const auto byte = static_cast<std::uint8_t>(code);
            if (const std::string_view name = standardName(byte); !name.empty())
                standardCodes.add(name, byte);
        }
        unicodeToName.sort();
        nameToUnicode.sort();
        standardCodes.sort();
    }

    KeyedList<int, std::string_view> unicodeToName;
    KeyedList<std::string_view, int> nameToUnicode;
    KeyedList<std::string_view, std::uint8_t> standardCodes;

private:
    template <std::size_t N>
    void add(const GlyphName (&names)[N]) {
        for (const GlyphName& row : names) {
            unicodeToName.add(row.character, row.name);
            nameToUnicode.add(row.name, row.character);
        }
    }
};

const Tables& tables() {
    static const Tables built;
    return built;
}

} // namespace

void initType1Tables() {
    tables();
}

std::string_view glyphNameOf(int ch) {
    return tables().unicodeToName.find(ch, {});
}

int characterOf(std::string_view glyphName) {
    return tables().nameToUnicode.find(glyphName, -1);
}

int substituteCharacter(int ch) {
    const auto found = std::ranges::lower_bound(kSubstitutes, ch, {}, &Substitute::from);
    return found != std::end(kSubstitutes) && found->from == ch ? found->to : ch;
}

std::string_view standardName(std::uint8_t code) {
    const std::uint16_t sid = standardEncodingSID(code);
    return sid != 0 ? standardString(sid) : std::string_view();
}

std::uint8_t standardCode(std::string_view glyphName) {
    return tables().standardCodes.find(glyphName, 0);
}

} // namespace KWFontService_NS
