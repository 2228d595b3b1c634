// A layout table with the glyph classes it goes by, without a font around them. The input is a
// byte that is odd for GPOS, the length of the GDEF table in two bytes, GDEF, then GSUB or GPOS.
// All subtables are asked, all lookups applied, and the processing calls made for some scripts.

#include "FuzzTarget.h"
#include "LayoutExercise.h"
#include "common/TagText.h"
#include "layout/FS_GSUBGPOSInfo.h"
#include "layout/LookupRuns.h"
#include "layout/SubTableQueries.h"
#include "layout/TTI_Gdef.h"

namespace {

using namespace KWFontService_NS;
using KWCommonNS::ByteView;
using KWCommonNS::sfntTag;

/// A table can hold one subtable thousands of times.
constexpr std::size_t kMostAsked = 100;

void askSubTables(const TTI_LookupList& lookups) {
    std::size_t asked = 0;
    for (const TTI_Lookup& lookup : lookups) {
        for (const TTI_SubTablePtr& subtable : lookup.subtables) {
            if (!subtable || ++asked > kMostAsked)
                continue;
            for (const unsigned short gid :
                 std::initializer_list<unsigned short>{0, 10, 11, 0xFFFF})
                KWTest::SubTableQueries(gid).ask(*subtable);
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kHeader = 3;
    const ByteView input(data, size);
    if (!input.contains(0, kHeader))
        return 0;
    const bool isGpos = data[0] % 2 != 0;
    const std::size_t gdefSize = ByteView::loadU16(data + 1);
    const ByteView bytes = input.from(kHeader + gdefSize);

    TTI_Gdef gdef;
    gdef.read(input.sub(kHeader, gdefSize));
    TTI_LayoutTable gsub;
    TTI_LayoutTable gpos;
    TTI_LayoutTable& table = isGpos ? gpos : gsub;
    const auto kind = isGpos ? TTI_LayoutTable::Kind::Gpos : TTI_LayoutTable::Kind::Gsub;
    table.read(std::vector<std::uint8_t>(bytes.data(), bytes.data() + bytes.size()), kind);

    askSubTables(table.lookups());
    KWTest::LookupRuns runs(gdef, {12, 10, 11, 13, 10, 10, 11, 13, 12, 10, 14, 0xFFFF});
    for (const TTI_Lookup& lookup : table.lookups())
        runs.apply(table.lookups(), lookup, kind);
    // Those that differ in how they go through the lookups of a feature.
    for (const std::uint32_t script : {sfntTag("DFLT"), sfntTag("arab"), sfntTag("hebr")}) {
        const FS_GSUBGPOSInfo handle = findLayout(script, 0, &gdef, gsub, gpos);
        KWFuzz::exerciseLayout(&handle);
    }
    return 0;
}
