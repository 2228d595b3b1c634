#include "NumberText.h"
#include "PdfFont.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace typeset {

namespace {

/// What a CMap block may hold at most (Adobe Technical Note 5014).
constexpr std::size_t kBlock = 100;

/// Codes and characters that both count up by one from the first on.
struct Range {
    unsigned short first;
    unsigned short last;
    std::u16string text;
};

std::string utf16Hex(const std::u16string& text) {
    std::string out;
    for (const char16_t unit : text)
        out += hexText(unit, 2);
    return out;
}

std::vector<Range> findRanges(const UsedGlyphs& glyphs) {
    std::vector<Range> ranges;
    for (const auto& [code, glyph] : glyphs) {
        if (glyph.text.empty())
            continue;
        // Only the low byte of a code and of the end of its text may count up in a range.
        if (!ranges.empty()) {
            Range& range = ranges.back();
            std::u16string next = range.text;
            next.back() = static_cast<char16_t>(next.back() + (code - range.first));
            if (code == range.last + 1 && (code & 0xFF) != 0 && glyph.text == next &&
                (next.back() & 0xFF) != 0) {
                range.last = code;
                continue;
            }
        }
        ranges.push_back({code, code, glyph.text});
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

std::string toUnicodeCMap(const UsedGlyphs& glyphs, int bytesOfCode) {
    std::vector<std::string> chars;
    std::vector<std::string> ranges;
    for (const Range& range : findRanges(glyphs)) {
        std::string entry = "<" + hexText(range.first, bytesOfCode) + "> <";
        if (range.first != range.last)
            entry += hexText(range.last, bytesOfCode) + "> <";
        entry += utf16Hex(range.text) + ">";
        (range.first == range.last ? chars : ranges).push_back(std::move(entry));
    }
    std::string out = "/CIDInit /ProcSet findresource begin\n"
                      "12 dict begin\n"
                      "begincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n"
                      "/CMapType 2 def\n"
                      "1 begincodespacerange\n";
    out += bytesOfCode == 1 ? "<00> <FF>\n" : "<0000> <FFFF>\n";
    out += "endcodespacerange\n";
    addBlocks(out, "bfchar", chars);
    addBlocks(out, "bfrange", ranges);
    out += "endcmap\n"
           "CMapName currentdict /CMap defineresource pop\n"
           "end\n"
           "end\n";
    return out;
}

} // namespace typeset
