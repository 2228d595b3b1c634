#include "type1/GlyphNames.h"

#include "type1/StandardStrings.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace KWFontService_NS {

namespace {

struct GlyphName {
    std::uint16_t character;
    std::string_view name;
};

#include "type1/GlyphNameData.inc"

static_assert(std::size(kFirstNames) == kFirstGlyphNames);
static_assert(std::size(kSecondNames) == kSecondGlyphNames);

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

/// A sorted list in which the first of equal keys stays.
template <class Key, class Value>
class KeyedList {
public:
    void add(Key key, Value value) { rows_.emplace_back(key, value); }
    void sort() {
        std::ranges::stable_sort(rows_, {}, &Row::first);
        const auto isRepeat = [](const Row& a, const Row& b) { return a.first == b.first; };
        rows_.erase(std::unique(rows_.begin(), rows_.end(), isRepeat), rows_.end());
    }
    Value find(Key key, Value missing) const {
        const auto found = std::ranges::lower_bound(rows_, key, {}, &Row::first);
        return found != rows_.end() && found->first == key ? found->second : missing;
    }

private:
    using Row = std::pair<Key, Value>;
    std::vector<Row> rows_;
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
