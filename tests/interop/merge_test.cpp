// Subsets of packaged fonts that became one again, read by others: FreeType, fontTools and poppler.

#include "CffSubsetFixture.h"
#include "fonts/FS_TrueType.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <KWCommon15/KWPtr.h>

#include <algorithm>
#include <numeric>

namespace KWFontService_NS {
namespace {

Bytes mergedCff(const Bytes& a, const Bytes& b, bool isCID) {
    std::istringstream first(a.str());
    std::istringstream second(b.str());
    KWMemStream output;
    if (!FS_MergeEmbeddedFonts::mergeCFF(output, &first, &second, isCID))
        return {};
    return bytesOf(output);
}

Bytes mergedSfnt(const Bytes& a, const Bytes& b, bool ignoreCmap) {
    std::istringstream first(a.str());
    std::istringstream second(b.str());
    KWMemStream output;
    if (!FS_MergeEmbeddedFonts::mergeTrueType(output, &first, &second, ignoreCmap))
        return {};
    return bytesOf(output);
}

Glyphs joined(const Glyphs& a, const Glyphs& b) {
    Glyphs all = a;
    all.insert(all.end(), b.begin(), b.end());
    return all;
}

// --- a page --------------------------------------------------------------------------------------

/// A PDF of one page that shows the glyphs of one font program, and nothing else.
class GlyphPage {
public:
    /// @param subtype  of FontFile3; empty for a FontFile2
    GlyphPage(const Bytes& program, const std::string& subtype) {
        const std::string file = subtype.empty() ? "/FontFile2" : "/FontFile3";
        add("<</Type/Catalog/Pages 2 0 R>>");
        add("<</Type/Pages/Kids[3 0 R]/Count 1>>");
        add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 600 600]/Contents 8 0 R"
            "/Resources<</Font<</F 4 0 R>>>>>>");
        font_ = objects_.size();
        add("");
        add("");
        add("<</Type/FontDescriptor/FontName/Merged/Flags 4/FontBBox[-1000 -1000 2000 2000]"
            "/ItalicAngle 0/Ascent 800/Descent -200/CapHeight 700/StemV 80" +
            file + " 7 0 R>>");
        const std::string bytes = program.str();
        add("<<" + (subtype.empty() ? std::string() : "/Subtype/" + subtype) + "/Length1 " +
            std::to_string(bytes.size()) + "/Length " + std::to_string(bytes.size()) +
            ">>stream\n" + bytes + "\nendstream");
    }

    /// Glyphs by two-byte codes: glyph ids, or CIDs.
    Bytes byCode(const Glyphs& glyphs, bool isTrueType) {
        objects_[font_] = "<</Type/Font/Subtype/Type0/BaseFont/Merged/Encoding/Identity-H"
                          "/DescendantFonts[5 0 R]>>";
        objects_[font_ + 1] = std::string("<</Type/Font/Subtype/") +
                              (isTrueType ? "CIDFontType2/CIDToGIDMap/Identity" : "CIDFontType0") +
                              "/BaseFont/Merged/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)"
                              "/Supplement 0>>/FontDescriptor 6 0 R/DW 1000>>";
        std::vector<std::string> codes;
        for (const unsigned short gid : glyphs)
            codes.push_back(KWTest::Bytes().u16(gid).hex());
        return page(codes);
    }
    /// Glyphs by name, 200 at most.
    Bytes byName(const std::vector<std::string>& names) {
        std::string differences;
        std::vector<std::string> codes;
        for (const std::string& name : names) {
            differences += "/" + name;
            codes.push_back(KWTest::Bytes().u8(codes.size()).hex());
        }
        objects_[font_] = "<</Type/Font/Subtype/Type1/BaseFont/Merged/FontDescriptor 6 0 R"
                          "/FirstChar 0/LastChar 0/Widths[1000]/Encoding<</Differences[0" +
                          differences + "]>>>>";
        objects_[font_ + 1] = "null";
        return page(codes);
    }

private:
    void add(std::string object) { objects_.push_back(std::move(object)); }

    /// Twenty to a line, each at a place of its own.
    Bytes page(const std::vector<std::string>& codes) {
        std::string content = "BT /F 24 Tf\n";
        for (std::size_t i = 0; i < codes.size(); ++i) {
            std::string code = codes[i];
            std::erase(code, ' ');
            content += "1 0 0 1 " + std::to_string(10 + i % 20 * 29) + " " +
                       std::to_string(570 - i / 20 * 29) + " Tm <" + code + "> Tj\n";
        }
        content += "ET";
        std::vector<std::string> objects = objects_;
        objects.push_back("<</Length " + std::to_string(content.size()) + ">>stream\n" + content +
                          "\nendstream");
        std::string file = "%PDF-1.4\n";
        std::string table = "0000000000 65535 f \n";
        for (std::size_t i = 0; i < objects.size(); ++i) {
            std::string offset = std::to_string(file.size());
            offset.insert(0, 10 - offset.size(), '0');
            table += offset + " 00000 n \n";
            file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
        }
        const std::string count = std::to_string(objects.size() + 1);
        const std::string at = std::to_string(file.size());
        file += "xref\n0 " + count + "\n" + table + "trailer<</Size " + count +
                "/Root 1 0 R>>\nstartxref\n" + at + "\n%%EOF\n";
        return KWTest::Bytes::ofText(file);
    }

    std::vector<std::string> objects_;
    std::size_t font_ = 0;
};

/// What poppler makes of a page: the bytes of a picture.
Bytes byPoppler(const KWTest::TempDir& folder, const Bytes& page) {
    const std::string pdf = folder.write("page.pdf", page).string();
    const std::string name = folder.path("page").string();
    const ProcessResult result =
        KWTest::runProgram("pdftoppm", {"-r", "100", "-gray", "-singlefile", pdf, name});
    EXPECT_TRUE(result.ok()) << result.describe();
    EXPECT_EQ(result.errors.find("Error"), std::string::npos) << result.errors; // names may warn
    return KWTest::readFile(name + ".pgm");
}

std::size_t inkOf(const Bytes& picture) {
    return static_cast<std::size_t>(
        std::ranges::count_if(picture.vector(), [](std::uint8_t pixel) { return pixel < 64; }));
}

// --- CFF -----------------------------------------------------------------------------------------

class CffMergeOf : public CffSubsetOf {
protected:
    /// Lists that share some glyphs. The charset of a merge counts names of the font's own, which
    /// follow each other, in one byte.
    std::vector<std::pair<Glyphs, Glyphs>> pairs() const {
        std::vector<std::pair<Glyphs, Glyphs>> all;
        std::uint32_t seed = 100;
        for (const auto& [a, b] : {std::pair{1u, 1u}, {5u, 20u}, {60u, 2u}, {100u, 100u}}) {
            Glyphs first = randomGlyphs(seed++, a);
            Glyphs second = randomGlyphs(seed++, b);
            second.push_back(first.front());
            all.emplace_back(std::move(first), std::move(second));
        }
        return all;
    }
    Bytes merged(const Glyphs& a, const Glyphs& b) {
        return mergedCff(table_->renumbered(a), table_->renumbered(b), table_->font().isCID);
    }
};

TEST_P(CffMergeOf, HasTheSourcesOutlinesAndWidthsForFreeType) {
    for (const auto& [a, b] : pairs()) {
        const Bytes table = merged(a, b);
        ASSERT_FALSE(table.empty());
        const FreeTypeFace face(table);
        for (const auto& [gid, place] :
             placesIn(table, static_cast<unsigned>(face->num_glyphs), joined(a, b)))
            expectSameOutline(*face_, face, sourceIndex(gid), packedIndex(gid, place));
    }
}

TEST_P(CffMergeOf, LooksTheSameWithHints) {
    for (const auto& [a, b] : pairs()) {
        const Bytes table = merged(a, b);
        const FreeTypeFace face(table);
        for (const auto& [gid, place] :
             placesIn(table, static_cast<unsigned>(face->num_glyphs), joined(a, b)))
            ASSERT_EQ(hintedPicture(*face_, sourceIndex(gid)),
                      hintedPicture(face, packedIndex(gid, place)))
                << gid;
    }
}

TEST_P(CffMergeOf, HasTheSourcesGlyphsForFontTools) {
    const Glyphs a = randomGlyphs(200, 100);
    const Glyphs b = randomGlyphs(201, 100);
    expectSameForFontTools(merged(a, b), joined(a, b));
}

TEST_P(CffMergeOf, IsLoadedCutAndMergedAgain) {
    const Glyphs a = randomGlyphs(210, 40);
    const Glyphs b = randomGlyphs(211, 40);
    const Glyphs c = randomGlyphs(212, 40);
    const Bytes all = mergedCff(merged(a, b), table_->renumbered(c), table_->font().isCID);
    ASSERT_FALSE(all.empty());
    expectSameForFontTools(all, joined(joined(a, b), c));
    Table loaded(all);
    const FreeTypeFace face(all);
    // FreeType counts CIDs.
    const Glyphs listed = joined(joined(Glyphs{0}, joined(a, b)), c);
    Glyphs every(loaded.font().isCID ? std::set<unsigned short>(listed.begin(), listed.end()).size()
                                     : static_cast<std::size_t>(face->num_glyphs));
    std::iota(every.begin(), every.end(), static_cast<unsigned short>(0));
    const Bytes again = loaded.renumbered(every);
    const FreeTypeFace cut(again);
    // Subsets have glyph ids for CIDs.
    for (const unsigned short gid : every)
        expectSameOutline(face, cut, loaded.font().isCID ? loaded.font().getSIDOfGlyph(gid) : gid,
                          gid);
}

TEST_P(CffMergeOf, LooksInAPdfAsASubsetOfAllGlyphsDoes) {
    const Glyphs a = randomGlyphs(220, 90);
    const Glyphs b = randomGlyphs(221, 90);
    const Glyphs all = joined(a, b);
    const bool isCID = table_->font().isCID;
    const auto pageOf = [&](const Bytes& program) {
        GlyphPage page(program, isCID ? "CIDFontType0C" : "Type1C");
        if (isCID)
            return page.byCode(all, false);
        std::vector<std::string> names;
        for (const unsigned short gid : all)
            names.push_back(table_->nameOf(gid));
        return page.byName(names);
    };
    const Bytes picture = byPoppler(folder_, pageOf(merged(a, b)));
    EXPECT_GT(inkOf(picture), 3000u);
    EXPECT_EQ(picture, byPoppler(folder_, pageOf(table_->renumbered(all))));
    EXPECT_NE(picture, byPoppler(folder_, pageOf(table_->renumbered(a))));
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, CffMergeOf,
                         testing::Values(Sample{"LMRoman10"}, Sample{"TeXGyreTermesMath"},
                                         Sample{"C059-Roman"}, Sample{"NimbusSans"},
                                         Sample{"LinLibertine"}, Sample{"FreeSerif"},
                                         Sample{"NotoSansCJK", true}, Sample{"NotoSerifCJK", true}),
                         [](const auto& parameter) {
                             std::string name = parameter.param.font;
                             std::erase(name, '-');
                             return name;
                         });

TEST(CffMerge, CidsBehindARunOfMoreThan256AreLostOnReaders) {
    Table source(KWTest::fontTable(KWTest::packagedFont("NotoSansCJK"), "CFF "));
    const auto run = [](unsigned short first, std::size_t count) {
        Glyphs glyphs(count);
        std::iota(glyphs.begin(), glyphs.end(), first);
        return glyphs;
    };
    const auto missing = [&](std::size_t count) {
        const Bytes table = mergedCff(source.renumbered(run(1, 200)),
                                      source.renumbered(run(201, count - 200)), true);
        const FreeTypeFace face(table);
        std::size_t lost = 0;
        for (unsigned cid = 1; cid <= count; ++cid)
            lost += FT_Load_Glyph(face.get(), cid, FT_LOAD_NO_SCALE) != 0 ? std::size_t{1}
                                                                          : std::size_t{0};
        return lost;
    };
    EXPECT_EQ(missing(256), 0u);
    EXPECT_GT(missing(300), 100u);
}

// --- TrueType ------------------------------------------------------------------------------------

class TrueTypeMergeOf : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        path_ = KWTest::packagedFont(GetParam());
        ASSERT_TRUE(font_.createFont(KWTest::fileUri(path_)));
        const FreeTypeFace source(KWTest::readFile(path_));
        KWTest::Rng random(300);
        for (Glyphs* const glyphs : {&a_, &b_})
            for (int i = 0; i < 150; ++i)
                glyphs->push_back(static_cast<unsigned short>(
                    random.below(static_cast<std::uint32_t>(source->num_glyphs))));
        b_.push_back(a_.front());
    }

    Bytes cut(const Glyphs& glyphs, bool withCmap = false) {
        KWMemStream out;
        EXPECT_TRUE(withCmap ? font_.getEmbedFontWithCmap(glyphs, out)
                             : font_.getEmbedFont(glyphs, out));
        return bytesOf(out);
    }

    std::filesystem::path path_;
    KWTest::TempDir folder_;
    FS_FontInfo font_;
    Glyphs a_;
    Glyphs b_;
};

TEST_P(TrueTypeMergeOf, HasTheSourcesOutlinesAndWidthsForFreeType) {
    const FreeTypeFace source(KWTest::readFile(path_));
    for (const bool ignoreCmap : {true, false}) {
        const FreeTypeFace merged(
            mergedSfnt(cut(a_, !ignoreCmap), cut(b_, !ignoreCmap), ignoreCmap));
        ASSERT_EQ(merged->num_glyphs, source->num_glyphs);
        for (const unsigned short gid : joined(a_, b_))
            expectSameOutline(source, merged, gid, gid);
        if (!ignoreCmap) {
            EXPECT_EQ(merged.glyphOf('A'), source.glyphOf('A'));
        }
    }
}

TEST_P(TrueTypeMergeOf, HasTheSourcesGlyphsForFontTools) {
    std::vector<std::string> arguments{
        path_.string(), folder_.write("merged.ttf", mergedSfnt(cut(a_), cut(b_), true)).string()};
    for (const unsigned short gid : joined(a_, b_))
        arguments.push_back(std::to_string(gid));
    const ProcessResult result = KWTest::runPython(sourceOf("subset_compare.py"), arguments);
    EXPECT_TRUE(result.ok()) << result.describe();
    EXPECT_TRUE(result.output.starts_with("same ")) << result.describe();
}

TEST_P(TrueTypeMergeOf, IsTheSubsetOfAllGlyphsButForTheTablesThatStay) {
    const Bytes merged = mergedSfnt(cut(a_), cut(b_), true);
    const Bytes whole = cut(joined(a_, b_));
    const auto tableOf = [](const Bytes& file, std::uint32_t tag) {
        for (std::size_t i = 0; i < file.u16At(4); ++i)
            if (file.u32At(12 + 16 * i) == tag)
                return file.slice(file.u32At(20 + 16 * i), file.u32At(24 + 16 * i));
        return Bytes();
    };
    EXPECT_EQ(tableOf(merged, sfntTag("glyf")), tableOf(whole, sfntTag("glyf")));
    EXPECT_EQ(tableOf(merged, sfntTag("loca")), tableOf(whole, sfntTag("loca")));
    std::istringstream stream(merged.str());
    const KWCommonNS::KWPtr<FS_TrueType> again(new FS_TrueType(KWUri()));
    KWError error;
    EXPECT_TRUE(again->scanEmbeddedFont(error, stream) && again->loadEmbeddedFont(error, &stream));
}

TEST_P(TrueTypeMergeOf, LooksInAPdfAsASubsetOfAllGlyphsDoes) {
    const Glyphs all = joined(a_, b_);
    const auto pageOf = [&](const Bytes& program) {
        return GlyphPage(program, "").byCode(all, true);
    };
    const Bytes picture = byPoppler(folder_, pageOf(mergedSfnt(cut(a_), cut(b_), true)));
    EXPECT_GT(inkOf(picture), 3000u);
    EXPECT_EQ(picture, byPoppler(folder_, pageOf(cut(all))));
    EXPECT_NE(picture, byPoppler(folder_, pageOf(cut(a_))));
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, TrueTypeMergeOf,
                         testing::Values("DejaVuSans", "LiberationSerif", "IPAGothic"),
                         [](const auto& parameter) { return std::string(parameter.param); });

} // namespace
} // namespace KWFontService_NS
