#pragma once

#include "layout/LayoutFixture.h"

#include <utility>
#include <vector>

namespace KWTest {

/// A subtable that applies somewhere in `kSampleRun`, unless its format never does.
struct LayoutSample {
    KWFontService_NS::TTI_LayoutTable::Kind kind;
    int lookupType;
    Bytes bytes;
    bool applies = true;

    /// A table whose second lookup has this subtable, or another in its place, as its last thing.
    /// The first one is what the contexts among the samples call.
    LayoutBytes table(const Bytes& subtable, int flag = 0) const {
        const Bytes single = kind == KWFontService_NS::TTI_LayoutTable::Kind::Gsub
                                 ? SingleSubst{.pairs = {{10, 13}}}.build()
                                 : singlePosFormat1({10}, 0x05, {7, 8});
        return {.lookups = lookupList(
                    {lookupTable(1, {single}), lookupTable(lookupType, {subtable}, flag)})};
    }
};

inline const std::vector<unsigned short> kSampleRun = {12, 10, 11, 13, 10, 10,
                                                       11, 13, 12, 10, 14, 0xFFFF};

/// One of every class, all with glyphs from 10 to 14.
inline std::vector<LayoutSample> layoutSamples() {
    using Kind = KWFontService_NS::TTI_LayoutTable::Kind;
    const RuleSetBytes rules = {
        {{.backtrack = {0}, .input = {0, 1}, .lookahead = {0}, .records = {{0, 0}}},
         {.input = {2}}},
        {{.input = {1}}}};
    const Bytes classes = classDefFormat2({{10, 12, 0}, {13, 14, 1}});
    const Bytes device = deviceTable(8, 12, 2, {0x1234, 0x5000});
    const std::vector<MarkBytes> marks = {
        {.glyph = 10, .anchor = anchorTable(1, 2)},
        {.glyph = 11, .markClass = 1, .anchor = anchorFormat3(1, 2, device, {})}};
    const std::vector<BaseBytes> bases = {{.glyph = 10, .anchors = {anchorTable(1, 2), {}}},
                                          {.glyph = 12, .anchors = {{}, anchorFormat2(1, 2, 3)}}};
    std::vector<LayoutSample> all = {
        {Kind::Gsub, 1, SingleSubst{.format = 1, .pairs = {{10, 20}, {11, 21}}}.build()},
        {Kind::Gsub, 1, SingleSubst{.pairs = {{10, 20}, {12, 21}}, .coverageFormat = 2}.build()},
        {Kind::Gsub, 2, glyphSets({{10, {1, 2}}, {12, {}}})},
        {Kind::Gsub, 3, glyphSets({{10, {1, 2}}, {12, {3}}}, 2)},
        {Kind::Gsub, 4,
         ligatureSubst({{10, {{.glyph = 1, .components = {11, 13}}, {.glyph = 2}}}})},
        {Kind::Gsub, 8, reverseChaining({{10, 1}, {11, 2}}, {{12}}, {{11}, {13}})},
        {Kind::Gpos, 1, singlePosFormat1({10, 11}, 0x15, {1, 2, 3})},
        {Kind::Gpos, 1, singlePosFormat2({10, 11}, 0x0F, {{1, 2, 3, 4}, {5, 6, 7, 8}})},
        {Kind::Gpos, 2,
         pairPosFormat1(4, 0x44, {{10, {{10, {1}, {2, 0}}, {11, {3}, {4, 0}}}}, {11, {}}})},
        {Kind::Gpos, 2,
         pairPosFormat2({10, 13}, 4, 1, classes, classes, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8})},
        {Kind::Gpos, 3,
         cursivePos({{.glyph = 10, .entry = anchorTable(1, 2), .exit = anchorTable(3, 4)},
                     {.glyph = 11, .exit = anchorTable(5, 6)}})},
        {Kind::Gpos, 4, markBasePos(marks, bases, 2)},
        {Kind::Gpos, 5,
         markLigPos(
             marks,
             {{.glyph = 10,
               .components = {{anchorTable(1, 2), {}}, {anchorTable(3, 4), anchorTable(5, 6)}}}},
             2)},
        {Kind::Gpos, 6, markBasePos(marks, bases, 2)},
    };
    for (const auto& [kind, first] : {std::pair(Kind::Gsub, 5), std::pair(Kind::Gpos, 7)}) {
        all.push_back({kind, first, contextFormat1({10, 11}, rules), false});
        all.push_back({kind, first, contextFormat2({10, 13}, classes, rules)});
        all.push_back({kind, first, contextFormat3({{10}, {11}}, {{0, 0}}), false});
        all.push_back({kind, first + 1, chainContextFormat1({10, 11}, rules), false});
        all.push_back(
            {kind, first + 1, chainContextFormat2({10, 13}, classes, classes, classes, rules)});
        all.push_back(
            {kind, first + 1, chainContextFormat3({{12}}, {{10}, {11}}, {{13}}, {{0, 0}})});
    }
    return all;
}

} // namespace KWTest
