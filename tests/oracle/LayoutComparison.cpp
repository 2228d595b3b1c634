#include "LayoutComparison.h"

#include "LayoutText.h"

#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace KWTest::oracle {

namespace {

using KWFontService_NS::FS_FontInfo;
using KWFontService_NS::GlyphClassDef;
using KWFontService_NS::GlyphIDArray;
using KWFontService_NS::GlyphIDArray2;
using KWFontService_NS::GlyphIDClassPair;
using KWFontService_NS::GlyphIDPosition;

Run slotsOf(const Line& line) {
    Run run;
    for (const Placed& placed : line)
        run.push_back(placed.slot);
    return run;
}

template <class Array>
Array toLibrary(const Run& run) {
    Array array;
    for (const Slot& slot : run)
        array.push_back(slot.glyph, static_cast<GlyphClassDef>(slot.glyphClass));
    return array;
}
template <class Array>
Run fromLibrary(const Array& array) {
    Run run;
    for (const GlyphIDClassPair& pair : array)
        run.push_back({pair.getGlyphID(), static_cast<int>(pair.getGlyphClassDef())});
    return run;
}

GlyphIDPosition toLibrary(const Placed& placed) {
    GlyphIDPosition position(placed.length, placed.width);
    position.setMoveX1(placed.x1);
    position.setMoveX2(placed.x2);
    position.setMoveY(placed.y);
    position.setFlag(placed.flag);
    position.setGlyphID(placed.slot.glyph, static_cast<GlyphClassDef>(placed.slot.glyphClass));
    position.setVertGlyph(placed.height);
    position.setDecompositionType(static_cast<UDecompositionType>(placed.decomposition));
    position.setJoiningGroup(static_cast<UJoiningGroup>(placed.joining));
    position.setMoveY2(placed.y2);
    position.setSkipInfo(placed.skipInfo);
    position.setCompInfo(placed.compInfo);
    return position;
}
Placed fromLibrary(const GlyphIDPosition& position) {
    const auto narrow = [](int value) { return static_cast<std::int16_t>(value); };
    Placed placed;
    placed.length = narrow(position.getCorrespondLength());
    placed.width = narrow(position.getWidth());
    placed.x1 = narrow(position.getMoveX1());
    placed.x2 = narrow(position.getMoveX2());
    placed.y = narrow(position.getMoveY());
    placed.flag = position.getFlag();
    placed.slot = {position.getGlyphID(), static_cast<int>(position.getGlyphClassDef())};
    placed.decomposition = narrow(position.getDecompositionType());
    placed.joining = narrow(position.getJoiningGroup());
    placed.height = narrow(position.getHeight());
    placed.y2 = narrow(position.getMoveY2());
    placed.skipInfo = narrow(position.getSkipInfo());
    placed.compInfo = narrow(position.getCompInfo());
    return placed;
}

} // namespace

LayoutComparison::LayoutComparison(const Font& font, LibraryHandle library, Tag script,
                                   Tag language)
    : handle_(findHandle(font, script, language)), library_(std::move(library)) {}

const Layout& LayoutComparison::layout(Kind kind) const {
    return kind == Kind::Gsub ? handle_.font->gsub : handle_.font->gpos;
}
const LangSys* LayoutComparison::system(Kind kind) const {
    return kind == Kind::Gsub ? handle_.gsub : handle_.gpos;
}

int LayoutComparison::orderSize(Kind kind) const {
    return system(kind) == nullptr ? 0 : count(lookupOrder(layout(kind), *system(kind)));
}

std::vector<Tag> LayoutComparison::features(Kind kind) const {
    std::set<Tag> tags;
    if (system(kind) != nullptr) {
        for (const int index : *system(kind))
            tags.insert(at(layout(kind).features, index).tag);
    }
    return {tags.begin(), tags.end()};
}

std::vector<int> LayoutComparison::lookupIndices(const Case& asked) const {
    std::vector<int> indices;
    const Layout& table = layout(asked.kind());
    if (system(asked.kind()) == nullptr)
        return indices;
    if (!asked.byFeature()) {
        const auto order = lookupOrder(table, *system(asked.kind()));
        if (const auto* entry = find(order, asked.index))
            indices.push_back(entry->second);
        return indices;
    }
    for (const int index : *system(asked.kind())) {
        const Feature& feature = at(table.features, index);
        if (feature.tag == asked.tag)
            indices.insert(indices.end(), feature.lookups.begin(), feature.lookups.end());
    }
    return indices;
}

std::vector<const Lookup*> LayoutComparison::lookupsOf(const Case& asked) const {
    std::vector<const Lookup*> lookups;
    for (const int index : lookupIndices(asked))
        lookups.push_back(&at(layout(asked.kind()).lookups, index));
    return lookups;
}

// --- the calls ----------------------------------------------------------------------------------

std::string LayoutComparison::compareGSUB(const Case& asked, GsubOracle& oracle) const {
    const Run run = slotsOf(asked.line);
    // What no answer holds by chance.
    GsubOracle::AtPosition before{0, asked.index, {{0x1234, 1}}, {{0x4321, 3}}};
    const auto expected = oracle.processGSUB(asked.tag, run, before, asked.alternate);

    const auto input = toLibrary<GlyphIDArray>(run);
    auto out = toLibrary<GlyphIDArray>(before.out);
    auto skipped = toLibrary<GlyphIDArray>(before.skipped);
    int position = asked.index;
    const int result = FS_FontInfo::processGSUB(library_.get(), asked.tag, input, position, out,
                                                skipped, asked.alternate);
    const GsubOracle::AtPosition got{result, position, fromLibrary(out), fromLibrary(skipped)};
    if (got == expected && input == toLibrary<GlyphIDArray>(run))
        return {};
    const auto show = [](const GsubOracle::AtPosition& answer) {
        return std::to_string(answer.result) + ", position " + std::to_string(answer.position) +
               ", out" + text(answer.out) + ", skipped" + text(answer.skipped);
    };
    return "  expected: " + show(expected) + "\n  got:      " + show(got) + '\n';
}

std::string LayoutComparison::compareGSUB3(const Case& asked, GsubOracle& oracle) const {
    const Run run = slotsOf(asked.line);
    const GsubOracle::WholeRun before{false, {{0x1234, 1}}, {7, 8}};
    const auto expected =
        oracle.processGSUB3(asked.index, run, asked.words, before, asked.alternate);

    auto input = toLibrary<GlyphIDArray2>(run);
    input.words() = asked.words;
    auto out = toLibrary<GlyphIDArray2>(before.run);
    out.words() = before.words;
    const bool changed =
        FS_FontInfo::processGSUB3(library_.get(), asked.index, input, out, asked.alternate);
    const GsubOracle::WholeRun got{changed, fromLibrary(out), out.words()};
    if (got == expected)
        return {};
    const auto show = [](const GsubOracle::WholeRun& answer) {
        return std::string(answer.changed ? "true" : "false") + "," + text(answer.run) +
               ", words " + text(answer.words);
    };
    return "  expected: " + show(expected) + "\n  got:      " + show(got) + '\n';
}

std::string LayoutComparison::compareGPOS(const Case& asked, GposOracle& oracle) const {
    const bool byFeature = asked.byFeature();
    Line line = asked.line;
    const int expected = byFeature ? oracle.processGPOS(asked.tag, line, asked.index, asked.rtl)
                                   : oracle.processGPOS3(asked.index, line, asked.rtl);

    std::vector<GlyphIDPosition> positions;
    for (const Placed& placed : asked.line)
        positions.push_back(toLibrary(placed));
    const int result =
        byFeature
            ? FS_FontInfo::processGPOS(library_.get(), asked.tag, positions, asked.index, asked.rtl)
            : FS_FontInfo::processGPOS3(library_.get(), asked.index, positions, asked.rtl);
    Line got;
    for (const GlyphIDPosition& position : positions)
        got.push_back(fromLibrary(position));
    if (result == expected && got == line)
        return {};
    return "  expected: " + std::to_string(expected) + '\n' + text(line) +
           "  got:      " + std::to_string(result) + '\n' + text(got);
}

std::string LayoutComparison::differences(const Case& asked) {
    ++counts_.cases;
    const auto count = [&](const auto& oracle) {
        for (const int lookup : oracle.applied())
            ++counts_.applied[{asked.kind(), at(layout(asked.kind()).lookups, lookup).type}];
    };
    try {
        if (asked.kind() == Kind::Gpos) {
            GposOracle oracle(handle_);
            std::string found = compareGPOS(asked, oracle);
            count(oracle);
            return found;
        }
        GsubOracle oracle(handle_);
        std::string found =
            asked.byFeature() ? compareGSUB(asked, oracle) : compareGSUB3(asked, oracle);
        count(oracle);
        return found;
    } catch (const Undefined&) {
        ++counts_.undefined;
        return {};
    }
}

// --- what differs -------------------------------------------------------------------------------

std::string LayoutComparison::describe(const Case& asked) const {
    constexpr const char* kNames[] = {"processGSUB", "processGSUB3", "processGPOS", "processGPOS3"};
    std::ostringstream out;
    out << kNames[static_cast<int>(asked.call)] << " index " << asked.index << " alternate "
        << asked.alternate << (asked.rtl ? " rtl" : "") << '\n';
    std::set<int> seen;
    for (const int lookup : lookupIndices(asked))
        out << text(layout(asked.kind()), lookup, seen);
    std::map<Glyph, std::string> glyphs;
    for (const Placed& placed : asked.line) {
        const Glyph glyph = placed.slot.glyph;
        glyphs[glyph] = std::to_string(handle_.font->glyphClasses(glyph)) + '/' +
                        std::to_string(handle_.font->markAttachClasses(glyph));
    }
    out << "  classes of GDEF:";
    for (const auto& [glyph, classes] : glyphs)
        out << ' ' << glyph << ':' << classes;
    if (asked.kind() == Kind::Gpos)
        out << "\n  line:\n" << text(asked.line);
    else
        out << "\n  run:" << text(slotsOf(asked.line)) << "\n  words: " << text(asked.words)
            << '\n';
    return out.str();
}

std::string LayoutComparison::check(const Case& asked) {
    std::string found = differences(asked);
    if (found.empty())
        return found;
    // Leave out what is not needed to differ.
    Case smallest = asked;
    for (std::size_t i = 0; i < smallest.line.size();) {
        Case smaller = smallest;
        smaller.line.erase(smaller.line.begin() + static_cast<std::ptrdiff_t>(i));
        if (i < smaller.words.size())
            smaller.words.erase(smaller.words.begin() + static_cast<std::ptrdiff_t>(i));
        if (smaller.byFeature() && static_cast<int>(i) < smaller.index)
            --smaller.index;
        const std::string difference = differences(smaller);
        if (difference.empty()) {
            ++i;
        } else {
            smallest = smaller;
            found = difference;
        }
    }
    return describe(smallest) + found;
}

} // namespace KWTest::oracle
