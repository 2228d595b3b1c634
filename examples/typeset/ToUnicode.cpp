#include "PdfFont.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace typeset {

namespace {

/// What a CMap block may hold at most (Adobe Technical Note 5014).
constexpr std::size_t kBlock = 100;

/// Glyphs and characters that both count up by one from the first on.
struct Range {
    unsigned short first;
    unsigned short last;
    char32_t character;
};

std::string hex4(unsigned value) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned shift = 16; shift > 0; shift -= 4)
        out += kDigits[(value >> (shift - 4)) & 0xFU];
    return out;
}

std::string utf16Hex(char32_t character) {
    if (character <= 0xFFFF)
        return hex4(character);
    const auto code = static_cast<UChar32>(character);
    return hex4(U16_LEAD(code)) + hex4(U16_TRAIL(code));
}

std::vector<Range> findRanges(const UsedGlyphs& glyphs) {
    std::vector<Range> ranges;
    for (const auto& [gid, glyph] : glyphs) {
        // Only the low byte of a code and of its text may count up in a range.
        if (!ranges.empty()) {
            Range& range = ranges.back();
            const char32_t next = range.character + (gid - range.first);
            if (gid == range.last + 1 && (gid & 0xFF) != 0 && glyph.character == next &&
                (next & 0xFF) != 0) {
                range.last = gid;
                continue;
            }
        }
        ranges.push_back({gid, gid, glyph.character});
    }
    return ranges;
}

void addBlocks(std::string& out, const std::string& name, const std::vector<std::string>& entries) {
    for (std::size_t i = 0; i < entries.size(); i += kBlock) {
        const std::size_t end = std::min(entries.size(), i + kBlock);
        out += std::to_string(end - i) + " begin" + name + '\n';
        for (std::size_t j = i; j < end; ++j)
            out += entries[j] + '\n';
        out += "end" + name + '\n';
    }
}

} // namespace

std::string toUnicodeCMap(const UsedGlyphs& glyphs) {
    std::vector<std::string> chars;
    std::vector<std::string> ranges;
    for (const Range& range : findRanges(glyphs)) {
        std::string entry = "<" + hex4(range.first) + "> <";
        if (range.first != range.last)
            entry += hex4(range.last) + "> <";
        entry += utf16Hex(range.character) + ">";
        (range.first == range.last ? chars : ranges).push_back(std::move(entry));
    }
    std::string out = "/CIDInit /ProcSet findresource begin\n"
                      "12 dict begin\n"
                      "begincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n"
                      "/CMapType 2 def\n"
                      "1 begincodespacerange\n"
                      "<0000> <FFFF>\n"
                      "endcodespacerange\n";
    addBlocks(out, "bfchar", chars);
    addBlocks(out, "bfrange", ranges);
    out += "endcmap\n"
           "CMapName currentdict /CMap defineresource pop\n"
           "end\n"
           "end\n";
    return out;
}

} // namespace typeset
