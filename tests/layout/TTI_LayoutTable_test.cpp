#include "layout/TTI_LayoutTable.h"

#include "common/KWLimits.h"
#include "layout/GSUB_SingleSubst.h"
#include "layout/LayoutFixture.h"
#include "support/SfntBuilder.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Kind = TTI_LayoutTable::Kind;
using List = TTI_LayoutTable::List;
using Lists = std::vector<List>;

struct Reading {
    TTI_LayoutTable table;
    Lists bad;

    explicit Reading(const Bytes& bytes, Kind kind = Kind::Gsub)
        : bad(table.read(bytes.vector(), kind)) {}
    explicit Reading(const LayoutBytes& bytes, Kind kind = Kind::Gsub)
        : Reading(bytes.build(), kind) {}

    const TTI_LangSys* langSys(std::string_view script, std::uint32_t language = 0) const {
        const TTI_Script* found = table.script(tagValue(script));
        return found != nullptr ? found->find(language) : nullptr;
    }
};

Bytes single(std::uint16_t from, std::uint16_t to) {
    return SingleSubst{.pairs = {{from, to}}}.build();
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> orderOf(const TTI_LangSys& langSys) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> order;
    for (const auto& entry : langSys.lookupOrder)
        order.emplace_back(entry.tag(), entry.lookupIndex());
    return order;
}

// --- the header ---------------------------------------------------------------------------------

TEST(LayoutTable, ListsOfOffsetZeroAreAbsent) {
    const Reading reading(LayoutBytes{});
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_TRUE(reading.table.features().empty());
    EXPECT_EQ(reading.table.lookups().size(), 0U);
    EXPECT_EQ(reading.table.script(tagValue("latn")), nullptr);
    EXPECT_FALSE(reading.table.hasVertFeature());
}

TEST(LayoutTable, TheVersionDoesNotMatter) {
    Bytes bytes = SingleSubstGsub::vert({{3, 30}}).build();
    bytes.patchU32At(0, 0xDEADBEEF);
    const Reading reading(bytes);
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.table.substituteVertical(3), 30);
}

TEST(LayoutTable, AScriptListWithoutAFeatureListHasEmptyLanguageSystems) {
    const Reading reading(
        LayoutBytes{.scripts = scriptList({{"latn", scriptTable(langSysTable({0, 1}))}})});
    EXPECT_EQ(reading.bad, Lists());
    const TTI_LangSys* langSys = reading.langSys("latn");
    ASSERT_NE(langSys, nullptr);
    EXPECT_TRUE(langSys->features.empty());
    EXPECT_TRUE(langSys->lookupOrder.empty());
    EXPECT_EQ(langSys->featureCount, 2) << "as in the file";
}

TEST(LayoutTable, AListOutsideItsTableIsTheErrorOfThatList) {
    const LayoutBytes sound{.scripts = scriptList({{"latn", scriptTable(langSysTable({0}))}}),
                            .features = featureList({{"vert", featureTable({0})}}),
                            .lookups = lookupList({lookupTable(1, {single(3, 30)})})};
    ASSERT_EQ(Reading(sound).bad, Lists());
    const std::pair<const char*, List> lists[] = {
        {"features", List::Features}, {"lookups", List::Lookups}, {"scripts", List::Scripts}};
    for (const auto& [field, list] : lists) {
        const Lists result = {list};
        for (const bool gsub : {true, false}) {
            Bytes outside = sound.build();
            outside.patchU16At(field, 0xFFFF);
            EXPECT_EQ(Reading(outside, gsub ? Kind::Gsub : Kind::Gpos).bad, result) << field;
            Bytes atTheEnd = sound.build();
            atTheEnd.patchU16At(field, atTheEnd.size() - 1);
            EXPECT_EQ(Reading(atTheEnd).bad, result) << field << ": no room for its count";
            Bytes longList = sound.build();
            longList.patchU16At(longList.u16At(longList.offsetOf(field)), 0xFFFF);
            EXPECT_EQ(Reading(longList).bad, result) << field << ": no room for its records";
        }
    }
}

TEST(LayoutTable, WhatIsSoundBesidesABadListStaysUsable) {
    const LayoutBytes sound{.scripts = scriptList({{"latn", scriptTable(langSysTable({0}))}}),
                            .features = featureList({{"vert", featureTable({0})}}),
                            .lookups = lookupList({lookupTable(1, {single(3, 30)})})};
    const auto without = [&](const char* field) {
        Bytes bytes = sound.build();
        return Reading(bytes.patchU16At(field, 0xFFFF));
    };
    const Reading noFeatures = without("features");
    EXPECT_FALSE(noFeatures.table.hasVertFeature());
    EXPECT_EQ(noFeatures.table.lookups().size(), 1U);
    EXPECT_NE(noFeatures.langSys("latn"), nullptr);
    const Reading noLookups = without("lookups");
    EXPECT_TRUE(noLookups.table.hasVertFeature());
    EXPECT_EQ(noLookups.table.substituteVertical(3), kNoGlyph);
    ASSERT_NE(noLookups.langSys("latn"), nullptr);
    EXPECT_EQ(noLookups.langSys("latn")->features.size(), 1U);
    EXPECT_EQ(without("scripts").table.substituteVertical(3), 30);
}

TEST(LayoutTable, EveryBadListIsTold) {
    Bytes bytes = Bytes().u32(0x00010000).u16(0xFFFF).u16(0xFFFF).u16(0xFFFF);
    EXPECT_EQ(Reading(bytes).bad, (Lists{List::Features, List::Lookups, List::Scripts}));
}

TEST(LayoutTable, VerticalFormsOfALookupListThatIsCutShortStayUsable) {
    // The first lookup is sound; the others are one with 15000 subtables.
    constexpr std::size_t kLookups = 1000;
    const Bytes first = lookupTable(1, {single(3, 30)});
    Bytes list;
    list.u16(kLookups).u16(2 + 2 * kLookups);
    for (std::size_t i = 1; i < kLookups; ++i)
        list.u16(2 + 2 * kLookups + first.size());
    list.bytes(first).u16(1).u16(0).u16(15000).zero(2 * 15000);
    const Reading reading(
        LayoutBytes{.features = featureList({{"vert", featureTable({0})}}), .lookups = list});
    EXPECT_EQ(reading.bad, Lists{List::Lookups});
    EXPECT_EQ(reading.table.substituteVertical(3), 30);
}

TEST(LayoutTable, EveryLengthAndEveryDamagedWordCanBeRead) {
    const Bytes whole =
        LayoutBytes{
            .scripts = scriptList(
                {{"latn", scriptTable(langSysTable({0, 1}), {{"DEU ", langSysTable({1})}})}}),
            .features = featureList({{"vert", featureTable({0, 1})}, {"smcp", featureTable({1})}}),
            .lookups = lookupList(
                {lookupTable(1, {single(3, 30)}), lookupTable(7, {extension(1, single(4, 40))})})}
            .build();
    for (std::size_t size = 0; size <= whole.size(); ++size)
        (void)Reading(whole.slice(0, size)).table.substituteVertical(3);
    for (std::size_t at = 0; at + 2 <= whole.size(); at += 2) {
        for (const int value : {0, 1, 0x7FFF, 0xFFFF}) {
            Bytes damaged = whole;
            damaged.patchU16At(at, value);
            for (const Kind kind : {Kind::Gsub, Kind::Gpos})
                (void)Reading(damaged, kind).table.substituteVertical(3);
        }
    }
}

// --- features -----------------------------------------------------------------------------------

TEST(LayoutTable, FeaturesStayInTheOrderOfTheFileWithTheirLookups) {
    const Reading reading(LayoutBytes{.features = featureList({{"smcp", featureTable({4, 2, 4})},
                                                               {"aalt", featureTable({})},
                                                               {"smcp", featureTable({9})}})});
    ASSERT_EQ(reading.table.features().size(), 3U);
    EXPECT_EQ(reading.table.features()[0].tag, tagValue("smcp"));
    EXPECT_EQ(values(reading.table.features()[0].lookupIndices),
              (std::vector<std::uint16_t>{4, 2, 4}));
    EXPECT_EQ(reading.table.features()[1].tag, tagValue("aalt"));
    EXPECT_TRUE(reading.table.features()[1].lookupIndices.empty());
    EXPECT_EQ(reading.table.vertFeature(), nullptr);
}

TEST(LayoutTable, TheFirstOfTwoVertFeaturesIsTheVerticalOne) {
    const Reading reading(LayoutBytes{
        .features = featureList({{"aalt", featureTable({5})},
                                 {"vert", featureTable({1})},
                                 {"vert", featureTable({0})}}),
        .lookups = lookupList({lookupTable(1, {single(3, 30)}), lookupTable(1, {single(3, 33)})})});
    EXPECT_EQ(reading.table.vertFeature(), &reading.table.features()[1]);
    EXPECT_EQ(reading.table.substituteVertical(3), 33);
}

TEST(LayoutTable, AVertFeatureCountsByItsRecordAlone) {
    Bytes bytes = LayoutBytes{.features = featureList({{"vert", featureTable({0})}})}.build();
    bytes.patchU16At(bytes.offsetOf("features") + 4 + 2 + 4, 0xFFFF); // the record's offset
    const Reading reading(bytes);
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_TRUE(reading.table.hasVertFeature());
    EXPECT_TRUE(reading.table.vertFeature()->lookupIndices.empty());
}

TEST(LayoutTable, AFeatureTableThatIsCutOffHasTheLookupsItHolds) {
    const Bytes list = featureList({{"smcp", Bytes().u16(0).u16(0xFFFF).u16(7).u16(8)}});
    const Reading reading(LayoutBytes{.features = list});
    EXPECT_EQ(values(reading.table.features()[0].lookupIndices),
              (std::vector<std::uint16_t>{7, 8}));
}

// --- lookups ------------------------------------------------------------------------------------

TEST(LayoutTable, ALookupHasTypeFlagAndSubtablesInOrder) {
    const Reading reading(
        LayoutBytes{.lookups = lookupList({lookupTable(1, {single(3, 30), single(4, 40)}, 0x0109),
                                           lookupTable(99, {single(3, 30)}, 0x0010)})});
    ASSERT_EQ(reading.table.lookups().size(), 2U);
    const TTI_Lookup& first = *reading.table.lookup(0);
    EXPECT_EQ(first.type, 1U);
    EXPECT_EQ(first.flag, 0x0109U);
    ASSERT_EQ(first.subtables.size(), 2U);
    EXPECT_EQ(first.subtables[0]->substituteSingle(3), 30);
    EXPECT_EQ(first.subtables[1]->substituteSingle(4), 40);
    const TTI_Lookup& unknown = *reading.table.lookup(1);
    EXPECT_EQ(unknown.type, 99U);
    ASSERT_EQ(unknown.subtables.size(), 1U) << "its place is kept";
    EXPECT_EQ(unknown.subtables[0], nullptr);
    EXPECT_EQ(reading.table.lookup(2), nullptr);
}

TEST(LayoutTable, ABadSubtableOrLookupKeepsItsPlaceEmpty) {
    Bytes lookup = lookupTable(1, {single(3, 30), single(4, 40)});
    lookup.patchU16At(6, 0xFFFF); // the first subtable's offset
    Bytes list = lookupList({lookupTable(1, {single(5, 50)}), lookup});
    list.patchU16At(2, 0xFFF0); // the first lookup's offset
    const Reading reading(LayoutBytes{.lookups = list});
    EXPECT_EQ(reading.bad, Lists());
    ASSERT_EQ(reading.table.lookups().size(), 2U);
    EXPECT_EQ(reading.table.lookup(0)->type, 0U);
    EXPECT_TRUE(reading.table.lookup(0)->subtables.empty());
    ASSERT_EQ(reading.table.lookup(1)->subtables.size(), 2U);
    EXPECT_EQ(reading.table.lookup(1)->subtables[0], nullptr);
    EXPECT_EQ(reading.table.lookup(1)->subtables[1]->substituteSingle(4), 40);
}

TEST(LayoutTable, AGsubExtensionLookupTakesTheTypeOfTheLastSubtableItWraps) {
    const Bytes unknown = Bytes().u16(9).u16(0);
    const Reading reading(LayoutBytes{
        .lookups = lookupList(
            {lookupTable(7, {extension(1, single(3, 30))}),
             lookupTable(7, {extension(1, single(3, 30)), extension(99, unknown)}),
             lookupTable(7, {extension(99, unknown), extension(7, extension(1, single(3, 30)))}),
             lookupTable(7, {}),
             lookupTable(7, {extension(1, single(3, 30)), extension(7, Bytes().u16(1))})})});
    EXPECT_EQ(reading.table.lookup(0)->type, 1U);
    EXPECT_EQ(reading.table.lookup(1)->type, 99U);
    EXPECT_NE(reading.table.lookup(1)->subtables[0], nullptr);
    EXPECT_EQ(reading.table.lookup(1)->subtables[1], nullptr);
    EXPECT_EQ(reading.table.lookup(2)->type, 1U);
    EXPECT_EQ(reading.table.lookup(3)->type, 7U) << "nothing was wrapped";
    EXPECT_EQ(reading.table.lookup(4)->type, 7U) << "read before the extension broke";
}

TEST(LayoutTable, AGposExtensionLookupKeepsTypeNine) {
    const Reading reading(
        LayoutBytes{.lookups = lookupList({lookupTable(9, {extension(1, Bytes().u16(1))})})},
        Kind::Gpos);
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.table.lookup(0)->type, 9U);
    EXPECT_EQ(reading.table.lookup(0)->subtables.size(), 1U);
}

TEST(LayoutTable, TypeOneOfGposIsNoSubstitution) {
    const Reading reading(LayoutBytes{.features = featureList({{"vert", featureTable({0})}}),
                                      .lookups = lookupList({lookupTable(1, {single(3, 30)})})},
                          Kind::Gpos);
    ASSERT_NE(reading.table.lookup(0)->subtables[0], nullptr) << "its bytes may be a positioning";
    EXPECT_EQ(reading.table.lookup(0)->subtables[0]->substituteSingle(3), kNoGlyph);
    EXPECT_EQ(reading.table.substituteVertical(3), kNoGlyph);
}

TEST(LayoutTable, TheMarkFilteringSetOfALookupIsNotRead) {
    // The field stands behind the offsets; bit 0x0010 says that it is there.
    Bytes lookup = Bytes().u16(1).u16(0x0010).u16(1).u16(10).u16(0xFFFF);
    lookup.bytes(single(3, 30));
    const Reading reading(LayoutBytes{.lookups = lookupList({lookup})});
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.table.lookup(0)->flag, 0x0010U) << "kept as in the file";
    EXPECT_EQ(reading.table.lookup(0)->subtables[0]->substituteSingle(3), 30);
}

TEST(LayoutTable, ALookupKnowsTheGlyphsOfAllItsSubtables) {
    const Reading reading(LayoutBytes{
        .lookups =
            lookupList({lookupTable(1, {single(3, 30), single(4000, 40)}), lookupTable(1, {})})});
    EXPECT_TRUE(reading.table.lookup(0)->mayApply(3));
    EXPECT_TRUE(reading.table.lookup(0)->mayApply(4000));
    EXPECT_FALSE(reading.table.lookup(0)->mayApply(2000));
    EXPECT_FALSE(reading.table.lookup(1)->mayApply(0));
}

TEST(LayoutTable, ItsBytesMayComeFromAnywhereAndMoveWithIt) {
    TTI_LayoutTable table;
    {
        std::vector<std::uint8_t> bytes = SingleSubstGsub::vert({{3, 30}}).build().vector();
        table.read(std::move(bytes), Kind::Gsub);
    }
    const TTI_LayoutTable moved = std::move(table);
    EXPECT_EQ(moved.substituteVertical(3), 30);
    EXPECT_EQ(moved.lookup(0)->subtables[0]->substituteSingle(3), 30);
    const TTI_Script* script = moved.script(tagValue("DFLT"));
    ASSERT_NE(script, nullptr);
    ASSERT_NE(script->find(0), nullptr);
    EXPECT_EQ(script->find(0)->features[0], &moved.features()[0]);
}

// --- scripts ------------------------------------------------------------------------------------

TEST(LayoutTable, ALanguageSystemHoldsItsFeaturesAndItsLookupsByIndex) {
    const Reading reading(
        LayoutBytes{.scripts = scriptList({{"latn", scriptTable(langSysTable({2, 0, 1}, 5))}}),
                    .features = featureList({{"smcp", featureTable({3, 1})},
                                             {"liga", featureTable({2})},
                                             {"smcp", featureTable({0})}})});
    const TTI_LangSys* langSys = reading.langSys("latn");
    ASSERT_NE(langSys, nullptr);
    EXPECT_EQ(langSys->requiredFeatureIndex, 5);
    EXPECT_EQ(langSys->featureCount, 3);
    const std::uint32_t smcp = tagValue("smcp");
    const std::uint32_t liga = tagValue("liga");
    EXPECT_EQ(orderOf(*langSys), (std::vector<std::pair<std::uint32_t, std::uint32_t>>{
                                     {smcp, 0}, {smcp, 1}, {liga, 2}, {smcp, 3}}));
    const auto found = langSys->featuresOf(smcp);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], &reading.table.features()[2]) << "in the order of the language system";
    EXPECT_EQ(found[1], &reading.table.features()[0]);
    EXPECT_EQ(langSys->features[0]->tag, liga) << "by tag";
    EXPECT_TRUE(langSys->featuresOf(tagValue("kern")).empty());
}

TEST(LayoutTable, ALookupOfTwoFeaturesIsInTheOrderTwice) {
    const Reading reading(LayoutBytes{
        .scripts = scriptList({{"latn", scriptTable(langSysTable({0, 1}))}}),
        .features = featureList({{"smcp", featureTable({1, 0})}, {"liga", featureTable({1})}})});
    const auto order = orderOf(*reading.langSys("latn"));
    ASSERT_EQ(order.size(), 3U);
    EXPECT_EQ(order[0].second, 0U);
    EXPECT_EQ(order[1].second, 1U);
    EXPECT_EQ(order[2].second, 1U);
}

TEST(LayoutTable, TheDefaultLanguageSystemIsUnderTagZero) {
    const Reading reading(LayoutBytes{
        .scripts =
            scriptList({{"latn", scriptTable(langSysTable({0}), {{"DEU ", langSysTable({})}})},
                        {"grek", scriptTable({}, {{"DEU ", langSysTable({0})}})}}),
        .features = featureList({{"smcp", featureTable({0})}})});
    EXPECT_EQ(reading.langSys("latn")->features.size(), 1U);
    ASSERT_NE(reading.langSys("latn", tagValue("DEU ")), nullptr);
    EXPECT_EQ(reading.langSys("latn", tagValue("DEU "))->features.size(), 0U);
    EXPECT_EQ(reading.langSys("grek"), nullptr);
    EXPECT_EQ(reading.langSys("grek", tagValue("DEU "))->features.size(), 1U);
    EXPECT_EQ(reading.table.script(tagValue("cyrl")), nullptr);
}

TEST(LayoutTable, TwoScriptRecordsOfOneTagAreMerged) {
    const Reading reading(LayoutBytes{
        .scripts =
            scriptList({{"latn", scriptTable(langSysTable({0}))},
                        {"latn", scriptTable(langSysTable({1}), {{"DEU ", langSysTable({1})}})}}),
        .features = featureList({{"smcp", featureTable({4})}, {"liga", featureTable({2})}})});
    const TTI_LangSys* langSys = reading.langSys("latn");
    EXPECT_EQ(langSys->features.size(), 2U);
    EXPECT_EQ(orderOf(*langSys), (std::vector<std::pair<std::uint32_t, std::uint32_t>>{
                                     {tagValue("liga"), 2}, {tagValue("smcp"), 4}}));
    EXPECT_NE(reading.langSys("latn", tagValue("DEU ")), nullptr);
}

TEST(LayoutTable, ARepeatedLanguageAddsItsFeaturesToTheFirst) {
    const Reading reading(LayoutBytes{
        .scripts = scriptList({{"latn", scriptTable({}, {{"DEU ", langSysTable({0})},
                                                         {"DEU ", langSysTable({1, 0})}})}}),
        .features = featureList({{"smcp", featureTable({4})}, {"smcp", featureTable({2})}})});
    ASSERT_EQ(reading.table.script(tagValue("latn"))->size(), 1U);
    const TTI_LangSys* langSys = reading.langSys("latn", tagValue("DEU "));
    ASSERT_NE(langSys, nullptr);
    const std::vector<const TTI_Feature*> features(langSys->features.begin(),
                                                   langSys->features.end());
    const TTI_Feature* first = &reading.table.features()[0];
    EXPECT_EQ(features, (std::vector{first, first + 1, first})) << "in the order of the file";
    const std::uint32_t smcp = tagValue("smcp");
    EXPECT_EQ(orderOf(*langSys), (std::vector<std::pair<std::uint32_t, std::uint32_t>>{
                                     {smcp, 2}, {smcp, 4}, {smcp, 4}}));
}

TEST(LayoutTable, LanguageSystemsThatAreRepeatedTensOfThousandsOfTimesAreSortedOnce) {
    // 1000 records of one script with 40 languages of tag 0, all of them one. Sorted at each
    // repeat, this would take minutes under a checker.
    constexpr std::size_t kScripts = 1000;
    constexpr std::size_t kLanguages = 40;
    Bytes list;
    list.u16(kScripts);
    for (std::size_t i = 0; i < kScripts; ++i)
        list.tag("latn").u16(2 + 6 * kScripts);
    list.u16(0).u16(kLanguages);
    for (std::size_t i = 0; i < kLanguages; ++i)
        list.u32(0).u16(4 + 6 * kLanguages);
    list.u16(0).u16(0xFFFF).u16(2).u16(1).u16(0);
    // Room for all of it to be read.
    Bytes lookups = Bytes().u16(0).zero(2000000);
    const Reading reading(LayoutBytes{
        .scripts = list,
        .features = featureList({{"liga", featureTable({7})}, {"smcp", featureTable({9, 7})}}),
        .lookups = lookups});
    EXPECT_EQ(reading.bad, Lists());
    const TTI_LangSys* langSys = reading.langSys("latn");
    ASSERT_NE(langSys, nullptr);
    constexpr std::size_t kRepeats = kScripts * kLanguages;
    ASSERT_EQ(langSys->lookupOrder.size(), 3 * kRepeats);
    const auto order = orderOf(*langSys);
    for (std::size_t i = 0; i < 2 * kRepeats; ++i)
        ASSERT_EQ(order[i], std::pair(tagValue(i % 2 == 0 ? "smcp" : "liga"), 7U)) << i;
    for (std::size_t i = 2 * kRepeats; i < 3 * kRepeats; ++i)
        ASSERT_EQ(order[i], std::pair(tagValue("smcp"), 9U)) << i;
}

TEST(LayoutTable, AFeatureIndexPastTheFeaturesIsLeftOut) {
    const Reading reading(
        LayoutBytes{.scripts = scriptList({{"latn", scriptTable(langSysTable({7, 0, 0xFFFF}))}}),
                    .features = featureList({{"smcp", featureTable({0})}})});
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.langSys("latn")->features.size(), 1U);
}

TEST(LayoutTable, AScriptOrLanguageSystemOutsideTheTableIsLeftOut) {
    Bytes script = scriptTable(langSysTable({}), {{"DEU ", langSysTable({})}});
    script.patchU16At(8, 0xFFFF); // the language system's offset
    Bytes scripts = scriptList({{"cyrl", script}, {"latn", script}});
    scripts.patchU16At(6, 0xFFFF); // the first script's offset
    const Reading reading(LayoutBytes{.scripts = scripts});
    EXPECT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.table.script(tagValue("cyrl")), nullptr);
    EXPECT_NE(reading.langSys("latn"), nullptr);
    EXPECT_EQ(reading.langSys("latn", tagValue("DEU ")), nullptr);
}

// --- vertical forms -----------------------------------------------------------------------------

TEST(LayoutTable, TheVerticalFormIsTheFirstAnswerOfTheVertLookups) {
    const Reading reading(
        LayoutBytes{.features = featureList({{"vert", featureTable({2, 9, 1, 2})}}),
                    .lookups = lookupList({lookupTable(1, {single(3, 1)}),
                                           lookupTable(1, {single(3, 2), single(5, 50)}),
                                           lookupTable(1, {single(4, 40), single(3, 30)})})});
    EXPECT_EQ(reading.table.substituteVertical(3), 30);
    EXPECT_EQ(reading.table.substituteVertical(4), 40);
    EXPECT_EQ(reading.table.substituteVertical(5), 50);
    EXPECT_EQ(reading.table.substituteVertical(6), kNoGlyph);
}

TEST(LayoutTable, AnExtensionServesVerticalFormsToo) {
    const Reading reading(
        LayoutBytes{.features = featureList({{"vert", featureTable({0})}}),
                    .lookups = lookupList({lookupTable(7, {extension(1, single(3, 30))})})});
    EXPECT_EQ(reading.table.substituteVertical(3), 30);
}

// --- tables that share too much -----------------------------------------------------------------

TEST(LayoutTable, FeaturesThatShareAHugeLookupListTakeItOnce) {
    // 2000 records of one feature table with 20000 lookups: 80 MB out of 52 KB, were they copied.
    constexpr std::size_t kRecords = 2000;
    Bytes list;
    list.u16(kRecords);
    for (std::size_t i = 0; i < kRecords; ++i)
        list.tag("liga").u16(2 + 6 * kRecords);
    list.u16(0).u16(20000).zero(40000);
    const Reading reading(LayoutBytes{.features = list});
    EXPECT_EQ(reading.bad, Lists());
    ASSERT_EQ(reading.table.features().size(), kRecords);
    const U16List& first = reading.table.features().front().lookupIndices;
    const U16List& last = reading.table.features().back().lookupIndices;
    EXPECT_EQ(last.size(), 20000U);
    EXPECT_EQ(first.begin(), last.begin());
}

TEST(LayoutTable, LookupsThatShareSubtablesWithoutEndAreAnError) {
    // 10000 lookups that are one, with 15000 subtables that are one.
    constexpr std::size_t kLookups = 10000;
    Bytes list;
    list.u16(kLookups);
    for (std::size_t i = 0; i < kLookups; ++i)
        list.u16(2 + 2 * kLookups);
    list.u16(1).u16(0).u16(15000);
    for (int i = 0; i < 15000; ++i)
        list.u16(6 + 2 * 15000);
    list.bytes(single(3, 30));
    const Reading reading(LayoutBytes{.lookups = list});
    EXPECT_EQ(reading.bad, Lists{List::Lookups});
    std::size_t subtables = 0;
    for (const TTI_Lookup& lookup : reading.table.lookups())
        subtables += lookup.subtables.size();
    EXPECT_GT(subtables, 1000U);
    EXPECT_LE(subtables * sizeof(GSUB_SingleSubstFormat2),
              KWCommonNS::kLayoutFreeBytes + KWCommonNS::kLayoutReadsOfEachByte * 54000)
        << "what is kept is no more than what may be read";
}

TEST(LayoutTable, LanguagesOfOneLangSysTableOrOfEqualOnesShareOneLanguageSystem) {
    Bytes scripts = scriptList({{"cyrl", Bytes()}, {"latn", Bytes()}});
    const std::size_t script = scripts.size();
    scripts.patchU16At(6, script).patchU16At(12, script); // both records name one script
    scripts.bytes(scriptTable(langSysTable({0}), {{"DEU ", langSysTable({0})},
                                                  {"ROM ", langSysTable({0}, 0)},
                                                  {"TRK ", langSysTable({0, 0})}}));
    const Reading reading(
        LayoutBytes{.scripts = scripts, .features = featureList({{"liga", featureTable({7})}})});
    const TTI_LangSys* shared = reading.langSys("latn");
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, reading.langSys("cyrl"));
    EXPECT_EQ(shared, reading.langSys("latn", tagValue("DEU ")));
    EXPECT_NE(shared, reading.langSys("latn", tagValue("ROM "))) << "another required feature";
    EXPECT_EQ(reading.langSys("latn", tagValue("ROM "))->requiredFeatureIndex, 0);
    EXPECT_NE(shared, reading.langSys("latn", tagValue("TRK "))) << "other features";
}

TEST(LayoutTable, LanguageSystemsThatShareFeaturesWithoutEndAreAnError) {
    // 2000 scripts, each with a language system of its own out of one run of words, which serve as
    // counts and as features: some 250 of them, and each feature has 50 lookups.
    constexpr std::size_t kScripts = 2000;
    constexpr std::size_t kFewest = 200;
    constexpr std::size_t kFeatures = 300;
    Bytes list;
    list.u16(kScripts);
    for (std::size_t i = 0; i < kScripts; ++i)
        list.u32(i).u16(2 + 6 * kScripts + 4 * i);
    for (std::size_t i = 0; i < kScripts; ++i)
        list.u16(4 * kScripts).u16(0);
    for (std::size_t i = 0; i < 2 * kScripts + 3 + kFeatures; ++i)
        list.u16(kFewest + i * i / 7 % (kFeatures - kFewest));
    std::vector<std::pair<std::string, Bytes>> features(kFeatures - 1, {"smcp", Bytes()});
    features.emplace_back("liga", featureTable(std::vector<std::uint16_t>(50)));
    const LayoutBytes layout{.scripts = list, .features = featureList(features)};
    const Reading reading(layout);
    EXPECT_EQ(reading.bad, Lists{List::Scripts});
    std::size_t heap = 0;
    for (std::uint32_t i = 0; i < kScripts; ++i) {
        const TTI_Script* script = reading.table.script(i);
        for (const auto& [language, langSys] : script != nullptr ? *script : TTI_Script())
            heap += sizeof *langSys + langSys->features.size_bytes() +
                    langSys->lookupOrder.size_bytes();
    }
    EXPECT_GT(heap, 100000U);
    EXPECT_LE(heap, KWCommonNS::kLayoutFreeBytes +
                        KWCommonNS::kLayoutReadsOfEachByte * layout.build().size())
        << "what is kept is no more than what may be read";
}

TEST(LayoutTable, EmptyLanguageSystemsWithoutEndAreAnError) {
    // 2000 scripts that are one, with 1000 languages that are one.
    constexpr std::size_t kScripts = 2000;
    Bytes list;
    list.u16(kScripts);
    for (std::size_t i = 0; i < kScripts; ++i)
        list.u32(i).u16(2 + 6 * kScripts);
    list.u16(0).u16(1000);
    for (std::size_t i = 0; i < 1000; ++i)
        list.u32(i).u16(4 + 6 * 1000);
    list.u16(0).u16(0xFFFF).u16(0);
    const LayoutBytes layout{.scripts = list};
    const Reading reading(layout);
    EXPECT_EQ(reading.bad, Lists{List::Scripts});
    std::size_t langSystems = 0;
    for (std::uint32_t i = 0; i < kScripts; ++i) {
        if (const TTI_Script* script = reading.table.script(i))
            langSystems += script->size();
    }
    EXPECT_GT(langSystems, 1000U);
    EXPECT_LE(langSystems * KWCommonNS::kLayoutObjectCost,
              KWCommonNS::kLayoutFreeBytes +
                  KWCommonNS::kLayoutReadsOfEachByte * layout.build().size());
}

TEST(LayoutTable, OnlySoManySubtablesAreAskedForAVerticalForm) {
    std::vector<std::uint16_t> indices(20);
    std::vector<Bytes> lookups;
    Bytes many = Bytes().u16(1).u16(0).u16(200);
    for (int i = 0; i < 200; ++i)
        many.u16(6 + 2 * 200);
    many.bytes(single(3, 30));
    for (std::uint16_t i = 0; i < 20; ++i) {
        indices[i] = i;
        lookups.push_back(many);
    }
    lookups.push_back(lookupTable(1, {single(4, 40)}));
    indices.push_back(20);
    const Reading reading(LayoutBytes{.features = featureList({{"vert", featureTable(indices)}}),
                                      .lookups = lookupList(lookups)});
    ASSERT_EQ(reading.bad, Lists());
    EXPECT_EQ(reading.table.substituteVertical(3), 30);
    EXPECT_EQ(reading.table.substituteVertical(4), kNoGlyph) << "behind the limit";
}

} // namespace
} // namespace KWFontService_NS
