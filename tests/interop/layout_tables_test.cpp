// The layout tables of packaged fonts, as we and fontTools read them.

#include "layout/GPOS_ChainContextPos.h"
#include "layout/GPOS_CursivePos.h"
#include "layout/GPOS_MarkBasePos.h"
#include "layout/GPOS_MarkLigPos.h"
#include "layout/GPOS_MarkMarkPos.h"
#include "layout/GPOS_PairPos.h"
#include "layout/GPOS_SinglePos.h"
#include "layout/GSUB_AlternateSubst.h"
#include "layout/GSUB_ChainContextSubst.h"
#include "layout/GSUB_LigatureSubst.h"
#include "layout/GSUB_MultipleSubst.h"
#include "layout/GSUB_SingleSubst.h"
#include "layout/TTI_LayoutTable.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"
#include "support/ProcessRunner.h"

#include <KWFontService17/FS_Types.h>

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::ProcessResult;

/// How many entries a subtable has, and the sum of the numbers in them, found by asking for every
/// glyph of the font.
class Summary {
public:
    explicit Summary(int glyphCount) : glyphCount_(glyphCount) {}

    std::string operator()(const TTI_SubTable& subtable) {
        format_ = 1;
        count_ = sum_ = 0;
        add<GSUB_SingleSubstFormat1>(subtable, 1) || add<GSUB_SingleSubstFormat2>(subtable, 2) ||
            add<GSUB_MultipleSubstFormat1>(subtable, 1) ||
            add<GSUB_AlternateSubstFormat1>(subtable, 1) ||
            add<GSUB_LigatureSubstFormat1>(subtable, 1) ||
            add<TTI_ChainContextFormat2>(subtable, 2) ||
            add<TTI_ChainContextFormat3>(subtable, 3) || add<GPOS_SinglePosFormat1>(subtable, 1) ||
            add<GPOS_SinglePosFormat2>(subtable, 2) || add<GPOS_PairPosFormat1>(subtable, 1) ||
            add<GPOS_PairPosFormat2>(subtable, 2) || add<GPOS_CursivePosFormat1>(subtable, 1) ||
            add<GPOS_MarkBasePosFormat1>(subtable, 1) || add<GPOS_MarkLigPosFormat1>(subtable, 1) ||
            add<GPOS_MarkMarkPosFormat1>(subtable, 1);
        std::ostringstream line;
        line << subtable.lookupType() << ' ' << format_ << ' ' << count_ << ' ' << sum_;
        return line.str();
    }

private:
    template <class SubTable>
    bool add(const TTI_SubTable& subtable, int format) {
        const auto* found = dynamic_cast<const SubTable*>(&subtable);
        if (found == nullptr)
            return false;
        format_ = format;
        sum(*found);
        return true;
    }

    /// Calls `take` for each glyph that the subtable may apply at.
    template <class Take>
    void forGlyphs(const TTI_SubTable& subtable, Take take) {
        for (int gid = 0; gid < glyphCount_; ++gid) {
            if (subtable.mayApply(static_cast<unsigned short>(gid)))
                take(static_cast<unsigned short>(gid));
        }
    }
    template <class Take>
    void forAllGlyphs(Take take) {
        for (int gid = 0; gid < glyphCount_; ++gid)
            take(static_cast<unsigned short>(gid));
    }
    void addNumbers(const U16List& list) {
        for (const std::uint16_t number : list)
            sum_ += number;
    }
    void addClass(int glyphClass) { sum_ += glyphClass > 0 ? glyphClass : 0; }
    void addValue(const GPOS_ValueRecord& value) {
        sum_ += value.xPlacement() + value.yPlacement() + value.xAdvance() + value.yAdvance();
    }
    void addAnchor(const std::optional<GPOS_Anchor>& anchor) {
        if (anchor) {
            ++count_;
            sum_ += anchor->x() + anchor->y();
        }
    }
    void addMark(const std::optional<GPOS_Mark>& mark) {
        if (mark) {
            addAnchor(mark->anchor);
            sum_ += mark->markClass;
        }
    }
    void addRecords(const TTI_LookupRecords& records) {
        for (std::size_t i = 0; i < records.size(); ++i)
            sum_ += records[i].sequenceIndex + records[i].lookupListIndex;
    }
    void addCoverages(const TTI_CoverageList& list) {
        count_ += static_cast<long>(list.size());
        for (std::size_t i = 0; i < list.size(); ++i) {
            const auto coverage = TTI_Coverage::read(list.table(i));
            const GlyphDigest digest = coverage->digest();
            forAllGlyphs([&](unsigned short gid) {
                sum_ += digest.mayHold(gid) && coverage->coverageIndex(gid) >= 0 ? 1 : 0;
            });
        }
    }

    void sumSingle(const TTI_SubTable& table) {
        forGlyphs(table, [&](unsigned short gid) {
            const unsigned short substitute = table.substituteSingle(gid);
            if (substitute != FS_NO_GLYPH) {
                ++count_;
                sum_ += substitute;
            }
        });
    }
    void sum(const GSUB_SingleSubstFormat1& table) { sumSingle(table); }
    void sum(const GSUB_SingleSubstFormat2& table) { sumSingle(table); }
    void sum(const GSUB_MultipleSubstFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) {
            if (const auto sequence = table.sequence(gid)) {
                ++count_;
                addNumbers(*sequence);
            }
        });
    }
    void sum(const GSUB_AlternateSubstFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) {
            const U16List glyphs = table.alternates(gid);
            count_ += glyphs.empty() ? 0 : 1;
            addNumbers(glyphs);
        });
    }
    void sum(const GSUB_LigatureSubstFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) {
            const GSUB_LigatureSet set = table.ligatures(gid);
            for (std::size_t i = 0; i < set.size(); ++i) {
                const auto ligature = set[i];
                ++count_;
                sum_ += ligature->glyph;
                addNumbers(ligature->components);
            }
        });
    }
    void sum(const TTI_ChainContextFormat2& table) {
        const TTI_ChainContextRuleSets sets = table.ruleSets();
        for (std::size_t i = 0; i < sets.size(); ++i) {
            const auto set = sets[static_cast<int>(i)];
            for (std::size_t k = 0; k < set.size(); ++k) {
                const auto rule = set[k];
                ++count_;
                addNumbers(rule->backtrack);
                addNumbers(rule->input);
                addNumbers(rule->lookahead);
                addRecords(rule->records);
            }
        }
        forAllGlyphs([&](unsigned short gid) {
            addClass(table.backtrackClassOf(gid));
            addClass(table.inputClassOf(gid));
            addClass(table.lookaheadClassOf(gid));
        });
    }
    void sum(const TTI_ChainContextFormat3& table) {
        const auto rule = table.rule();
        addCoverages(rule.backtrack);
        addCoverages(rule.input);
        addCoverages(rule.lookahead);
        addRecords(rule.records);
    }
    template <class SinglePos>
    void sumValues(const SinglePos& table) {
        forGlyphs(table, [&](unsigned short gid) {
            if (const auto value = table.value(gid)) {
                ++count_;
                addValue(*value);
            }
        });
    }
    void sum(const GPOS_SinglePosFormat1& table) { sumValues(table); }
    void sum(const GPOS_SinglePosFormat2& table) { sumValues(table); }
    void addPair(const std::optional<GPOS_PairValue>& pair) {
        if (pair) {
            ++count_;
            addValue(pair->first);
            addValue(pair->second);
        }
    }
    void sum(const GPOS_PairPosFormat1& table) {
        forGlyphs(table, [&](unsigned short first) {
            if (table.covers(first))
                forAllGlyphs([&](unsigned short second) { addPair(table.pair(first, second)); });
        });
    }
    void sum(const GPOS_PairPosFormat2& table) {
        for (int class1 = 0; table.pair(class1, 0); ++class1) {
            for (int class2 = 0; table.pair(class1, class2); ++class2)
                addPair(table.pair(class1, class2));
        }
        forAllGlyphs([&](unsigned short gid) {
            addClass(table.class1Of(gid));
            addClass(table.class2Of(gid));
        });
    }
    void sum(const GPOS_CursivePosFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) {
            addAnchor(table.entry(gid));
            addAnchor(table.exit(gid));
        });
    }
    void sum(const GPOS_MarkBasePosFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) { addMark(table.mark(gid)); });
        forAllGlyphs([&](unsigned short gid) {
            for (unsigned int markClass = 0; markClass < kMarkClasses; ++markClass)
                addAnchor(table.base(gid, markClass));
        });
    }
    void sum(const GPOS_MarkMarkPosFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) { addMark(table.mark(gid)); });
        forAllGlyphs([&](unsigned short gid) {
            for (unsigned int markClass = 0; markClass < kMarkClasses; ++markClass)
                addAnchor(table.mark2(gid, markClass));
        });
    }
    void sum(const GPOS_MarkLigPosFormat1& table) {
        forGlyphs(table, [&](unsigned short gid) { addMark(table.mark(gid)); });
        forAllGlyphs([&](unsigned short gid) {
            const auto ligature = table.ligature(gid);
            for (std::size_t row = 0; ligature && row < ligature->rows(); ++row) {
                for (unsigned int markClass = 0; markClass < kMarkClasses; ++markClass)
                    addAnchor(ligature->anchor(row, markClass));
            }
        });
    }

    static constexpr unsigned int kMarkClasses = 40;

    int glyphCount_;
    int format_ = 1;
    long count_ = 0;
    long sum_ = 0;
};

std::string ourLines(const std::filesystem::path& font) {
    Summary summary(KWTest::fontTable(font, "maxp").u16At(4));
    std::ostringstream lines;
    for (const bool gsub : {true, false}) {
        TTI_LayoutTable table;
        EXPECT_TRUE(table
                        .read(KWTest::fontTable(font, gsub ? "GSUB" : "GPOS").vector(),
                              gsub ? TTI_LayoutTable::Kind::Gsub : TTI_LayoutTable::Kind::Gpos)
                        .empty());
        for (const TTI_Lookup& lookup : table.lookups()) {
            lines << (gsub ? "GSUB" : "GPOS") << " lookup " << lookup.type << ' ' << lookup.flag
                  << ' ' << lookup.subtables.size() << '\n';
            for (const auto& subtable : lookup.subtables)
                lines << (subtable ? summary(*subtable) : "null") << '\n';
        }
    }
    return lines.str();
}

class LayoutTablesOf : public testing::TestWithParam<const char*> {};

TEST_P(LayoutTablesOf, AreReadAsFontToolsReadsThem) {
    const std::filesystem::path font = KWTest::packagedFont(GetParam());
    std::ifstream script(std::string(KW_INTEROP_SCRIPTS) + "/layout_tables.py");
    std::ostringstream source;
    source << script.rdbuf();
    const ProcessResult theirs = KWTest::runPython(source.str(), {font.string()});
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    EXPECT_FALSE(theirs.output.empty());
    EXPECT_EQ(ourLines(font), theirs.output);
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, LayoutTablesOf,
                         testing::Values("DejaVuSans", "DejaVuSerif", "LiberationSans",
                                         "LinLibertine", "Amiri", "LohitDevanagari", "C059-Roman",
                                         "LMRoman10", "WineTahoma", "IPAGothic", "NotoSansCJK",
                                         "TeXGyreTermesMath", "UMing"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
