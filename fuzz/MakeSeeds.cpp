// Writes first inputs for every fuzz target: MakeSeeds FOLDER.

#include "FuzzTables.h"
#include "layout/LayoutSamples.h"
#include "support/FontBuilder.h"
#include "support/MetricsFiles.h"
#include "support/Type1Font.h"
#include "support/WoffFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

using namespace KWTest;
using KWFontService_NS::FS_MATHConstants;

class SeedFolder {
public:
    explicit SeedFolder(std::filesystem::path path) : path_(std::move(path)) {
        std::filesystem::create_directories(path_);
    }
    void add(const std::string& name, const Bytes& seed) const {
        std::ofstream stream(path_ / name, std::ios::binary);
        const std::string text = seed.str();
        stream.write(text.data(), static_cast<std::streamsize>(text.size()));
        if (!stream)
            throw std::runtime_error("cannot write " + (path_ / name).string());
    }
    void add(const std::string& name, std::string_view text) const {
        add(name, Bytes::ofText(text));
    }

private:
    std::filesystem::path path_;
};

const CmapMap kMap{{0x20, 1}, {'A', 2}, {'B', 3}, {0x3042, 2}};

Cmap cmapOf(int platform, int encoding, Bytes subtable) {
    return {.records = {{.platformID = static_cast<std::uint16_t>(platform),
                         .encodingID = static_cast<std::uint16_t>(encoding),
                         .subtable = std::move(subtable)}}};
}

Bytes variationSequences() {
    return CmapFormat14{
        .selectors = {{.varSelector = 0xFE00,
                       .defaults = {{.startUnicodeValue = 0x3042, .additionalCount = 1}},
                       .mappings = {{.unicodeValue = 0x300C, .glyphID = 4}}}}}
        .build();
}

TestFont macintosh() {
    TestFont font = TestFont::latin();
    font.version = kTrueVersion;
    font.name = Name{.records = {macName(1, "KWTest"), macName(4, "KWTest Regular")}};
    return font.without("OS/2");
}

void makeFontSeeds(const SeedFolder& folder) {
    folder.add("latin", TestFont::latin().build());
    folder.add("vertical", TestFont::vertical().build());
    folder.add("opentype", TestFont::openType().build());
    folder.add("macintosh", macintosh().build());
    TestFont longLoca = TestFont::latin();
    longLoca.outlines.longLoca = true;
    folder.add("long-loca", longLoca.build());
    SfntCollection collection;
    collection.fonts = {TestFont::latin().sfnt(), TestFont::vertical().sfnt()};
    folder.add("collection", collection.build());
    collection.fonts = {TestFont::openType().sfnt(), TestFont::openType().sfnt()};
    folder.add("collection-cff", collection.build());
    ResourceFile resources;
    resources.fonts = {macintosh().sfnt(), TestFont::vertical().sfnt()};
    resources.otherTypes = {"FOND"};
    folder.add("dfont", resources.build());
    folder.add("woff", WoffFile::of(TestFont::vertical().build()).build());
    folder.add("woff-cff", WoffFile::of(TestFont::openType().build()).build());
    // Changed bytes of stored tables reach the font; those of deflated ones mostly do not.
    WoffFile stored;
    const SfntBuilder sfnt = TestFont::latin().sfnt();
    for (const std::string& tag : sfnt.tags())
        stored.tables.push_back(WoffTable::plain(tag, sfnt.get(tag)));
    folder.add("woff-stored", stored.build());
}

CffCID cidKeyed() {
    return {.glyphs = {{0, 0, {14}}, {7, 1, {139, 107, 10, 14}}, {9, 0, {14}}},
            .fontDicts = {{.privateDict = CffPrivate{.dict = {140, 20}}},
                          {.privateDict = CffPrivate{.subrs = {{139, 22, 11}}}}},
            .globalSubrs = {{11}}};
}
Bytes cidKeyedCff() {
    return cidKeyed().build();
}
/// The same with a charset of format 1.
Bytes cidKeyedRangesCff() {
    CffSections sections = cidKeyed().sections();
    sections.charset = Bytes{1, 0, 7, 0, 0, 9, 0};
    return sections.build();
}

Bytes rangesCff() {
    CffSections sections;
    sections.encoding = Bytes{1, 1, 65, 1};
    sections.charset = Bytes{1, 0, 34, 1};
    sections.globalSubrs = {{11}};
    sections.charStrings = {{14}, {139, 22, 14}, {14}};
    sections.privateDict = CffPrivate{.dict = cffReal("0.5").u8(10), .subrs = {{11}}};
    return sections.build();
}

/// Subrs of both kinds with stems and masks, an accented glyph, strings of the font.
Bytes accentedCff() {
    CffSections sections;
    sections.strings = {Bytes::ofText("one"), Bytes::ofText("Notice")};
    sections.topDict = cffInteger(392).u8(1);
    sections.charset = Bytes{0}.u16s({1, 34, 125, 391});
    sections.globalSubrs = {{140, 141, 1, 11}, {11}};
    sections.charStrings = {
        {14}, {139, 14}, {32, 10, 19, 0, 14}, {32, 29, 33, 10, 14}, {139, 139, 204, 247, 86, 14}};
    sections.privateDict =
        CffPrivate{.dict = {140, 20}, .subrs = {{140, 141, 18, 11}, {32, 29, 11}}};
    return sections.build();
}

void makeCffSeeds(const SeedFolder& folder) {
    const auto list = [](const std::vector<std::uint16_t>& glyphs, const Bytes& table) {
        return Bytes().u8(glyphs.size()).u16s(glyphs).bytes(table);
    };
    folder.add("name", list({2, 1}, TestFont::openType().sfnt().get("CFF ")));
    folder.add("cid", list({1, 2, 2}, cidKeyedCff()));
    folder.add("ranges", list({2}, rangesCff()));
    folder.add("accented", list({4, 2, 3}, accentedCff()));
    folder.add("beyond", list({1, 65535}, accentedCff()));
}

/// Pairs for the target `merge`.
void makeMergeSeeds(const SeedFolder& folder) {
    const auto pair = [](int kind, const Bytes& a, const Bytes& b) {
        return Bytes().u8(kind).u24(static_cast<std::uint32_t>(a.size())).bytes(a).bytes(b);
    };
    const Bytes accented = accentedCff();
    const Bytes ranges = rangesCff();
    folder.add("names", pair(0, accented, ranges));
    folder.add("names-twice", pair(0, ranges, ranges));
    folder.add("charset-2", pair(1, cidKeyedRangesCff(), cidKeyedCff()));
    folder.add("cids", pair(1, cidKeyedRangesCff(), cidKeyedRangesCff()));
    folder.add("kinds", pair(1, cidKeyedRangesCff(), accented));
    TestFont font = TestFont::latin();
    TestFont other = font;
    other.outlines.longLoca = true;
    other.outlines.glyphs[TestFont::kA] = {};
    font.outlines.glyphs[TestFont::kB] = {};
    folder.add("sfnt", pair(2, font.build(), other.build()));
    folder.add("sfnt-cmap", pair(3, other.build(), font.build()));
}

void makeTableSeeds(const SeedFolder& folder) {
    const auto add = [&folder](std::string_view tag, const std::string& name, const Bytes& table) {
        const auto place = std::find(KWFuzz::kFuzzTables.begin(), KWFuzz::kFuzzTables.end(), tag);
        if (place == KWFuzz::kFuzzTables.end())
            throw std::runtime_error("no such table");
        folder.add(name, Bytes().u8(place - KWFuzz::kFuzzTables.begin()).bytes(table));
    };
    add("cmap", "cmap0", cmapOf(1, 0, CmapFormat0::of({{'A', 2}, {'B', 3}}).build()).build());
    add("cmap", "cmap2", cmapOf(3, 2, CmapFormat2::of(kMap).build()).build());
    add("cmap", "cmap4", cmapOf(3, 1, CmapFormat4::of(kMap).build()).build());
    add("cmap", "cmap4-array", cmapOf(3, 1, CmapFormat4::withGlyphArray(kMap).build()).build());
    add("cmap", "cmap4-symbol", cmapOf(3, 0, CmapFormat4::of({{0xF041, 2}}).build()).build());
    add("cmap", "cmap6", cmapOf(0, 3, CmapFormat6::of({{'A', 2}, {'B', 3}}).build()).build());
    add("cmap", "cmap8", cmapOf(3, 10, CmapFormat8::of(kMap).build()).build());
    add("cmap", "cmap10", cmapOf(3, 10, CmapFormat10::of({{'A', 2}, {'B', 3}}).build()).build());
    add("cmap", "cmap12", cmapOf(3, 10, CmapFormat12::of(kMap).build()).build());
    add("cmap", "cmap13", cmapOf(3, 10, CmapFormat13::of({{'A', 2}}).build()).build());
    add("cmap", "cmap14",
        Cmap{.records = {{.platformID = 0, .encodingID = 5, .subtable = variationSequences()},
                         {.subtable = CmapFormat4::of(kMap).build()}}}
            .build());
    add("kern", "kern", Kern{.subtables = {{.pairs = {{2, 3, -50}, {3, 2, 20}}}}}.build());
    add("GDEF", "gdef1",
        Gdef{.glyphClassDef = classDefFormat1(1, {1, 2, 3}), .markAttachClassDef = {}}.build());
    add("GDEF", "gdef2",
        Gdef{.glyphClassDef = classDefFormat2({{2, 3, 1}, {4, 4, 3}}),
             .markAttachClassDef = classDefFormat2({{4, 4, 1}})}
            .build());
    add("GSUB", "gsub", SingleSubstGsub::vert({{3, 4}}).build());
    add("GSUB", "gsub1", SingleSubstGsub::vert({{3, 4}}, 1).build());
    add("GPOS", "gpos", SingleSubstGsub{.script = "latn", .feature = "kern"}.build());
    add("MATH", "math",
        Math{.constants = MathConstants{{FS_MATHConstants::displayOperatorMinHeight, 150}},
             .glyphInfo = MathGlyphInfo{.italicsCorrections = {{2, 30}, {3, -12}}},
             .variants = MathVariants{.vertical = {{2, {{2, 100}, {3, 200}, {4, 300}}}},
                                      .horizontal = {{3, {{3, 100}, {4, 200}}, true}},
                                      .coverageFormat = 2}}
            .build());
    add("mort", "mort", Mort::vertical({{3, 4}}).build());
    add("glyf", "glyf", TestFont::vertical().outlines.glyf());
    add("glyf", "glyf-composite",
        CompositeGlyph{.components = {{.glyphIndex = 2}, {.glyphIndex = 3, .scale = {0.5}}}}
            .build());
    add("loca", "loca", TestFont::vertical().outlines.loca());
    add("hmtx", "hmtx", TestFont::vertical().hmtx.build());
    add("name", "name", Name::english(u"KWTest").build());
    add("name", "name-mac", Name{.records = {macName(1, "KWTest"), macName(20, "K")}}.build());
    add("OS/2", "os2", OS2{}.build());
    add("post", "post", Post{}.build());
    add("vhea", "vhea", Vhea{.numOfLongVerMetrics = 5}.build());
    add("vmtx", "vmtx", Vmtx{.metrics = {{1000, 180}, {500, 0}, {1000, 80}}}.build());
    add("VORG", "vorg", Vorg{.origins = {{.glyphIndex = 4, .vertOriginY = 900}}}.build());
    add("head", "head", TestFont::vertical().head.build());
    add("hhea", "hhea", TestFont::vertical().hhea.build());
    add("maxp", "maxp", Maxp{.numGlyphs = 5}.build());
    add("CFF ", "cff", TestFont::openType().sfnt().get("CFF "));
    add("CFF ", "cff-cid", cidKeyedCff());
    add("CFF ", "cff-ranges", rangesCff());
    add("fpgm", "fpgm", Bytes{0xB0, 0x00, 0x2C, 0x2D});
    add("prep", "prep", Bytes{0xB8, 0x01, 0xFF, 0x85});
}

/// A font for the target `layout`: two features of one tag with the second of two lookups and the
/// first, which it may call, under the scripts that the target asks for.
Bytes layoutSeed(KWFontService_NS::TTI_LayoutTable::Kind kind, LayoutBytes table) {
    const Bytes gdef = Gdef{
        .glyphClassDef = classDefFormat2({{10, 10, 1}, {11, 12, 2}, {13, 14, 3}}),
        .markAttachClassDef = classDefFormat2(
            {{13, 13, 1}})}.build();
    const Bytes script = scriptTable(langSysTable({0, 1}));
    table.scripts = scriptList({{"DFLT", script}, {"arab", script}, {"hebr", script}});
    table.features = featureList({{"test", featureTable({1, 0})}, {"test", featureTable({1})}});
    return Bytes()
        .u8(kind == KWFontService_NS::TTI_LayoutTable::Kind::Gpos ? 1 : 0)
        .u16(gdef.size())
        .bytes(gdef)
        .bytes(table.build());
}

/// Lookups of which the second has a ligature that is no glyph, of the last glyphs that the target
/// runs through, and a subtable that is asked after it.
LayoutBytes ligatureOfNoGlyph() {
    const auto none = [](std::uint16_t first) {
        return std::pair(first,
                         std::vector<LigatureBytes>{{.glyph = 0xFFFF, .components = {0xFFFF}}});
    };
    const auto other = [](std::uint16_t first) {
        return std::pair(first, std::vector<LigatureBytes>{{.glyph = 1, .components = {2}}});
    };
    return {.lookups = lookupList({lookupTable(1, {SingleSubst{.pairs = {{10, 13}}}.build()}),
                                   lookupTable(4, {ligatureSubst({none(0), none(14)}),
                                                   ligatureSubst({other(0), other(14)})})})};
}

void makeLayoutSeeds(const SeedFolder& folder) {
    folder.add("gsub4-no-glyph",
               layoutSeed(KWFontService_NS::TTI_LayoutTable::Kind::Gsub, ligatureOfNoGlyph()));
    int number = 0;
    for (const LayoutSample& sample : layoutSamples()) {
        const bool isGpos = sample.kind == KWFontService_NS::TTI_LayoutTable::Kind::Gpos;
        folder.add((isGpos ? "gpos" : "gsub") + std::to_string(sample.lookupType) + '-' +
                       std::to_string(number++),
                   layoutSeed(sample.kind, sample.table(sample.bytes, 0x08)));
    }
}

void makeTextSeeds(const std::filesystem::path& root) {
    const SeedFolder uri(root / "uri");
    uri.add("file", "file:///usr/share/fonts/a%20b.ttf");
    uri.add("relative", "../x/./y//z.ttf?q#f");
    uri.add("windows", "C:\\Windows\\Fonts\\msgothic.ttc");
    uri.add("unc", "\\\\server\\share\\dir\\file.ttf");
    uri.add("data", "data:font/ttf;charset=x;base64,AAEAAAAKAIAAAwAg");
    uri.add("data-percent", "data:text/plain,a%20b%ff%");
    uri.add("http", "HTTP://user@Ex%41mple.org:80/a/../b?c=%2f#d");

    const SeedFolder value(root / "value");
    value.add("range", "U+0-7F, u+4??, U+3000-30ff, U+10FFFF");
    value.add("numbers", "1 -2.5 +.5e3 1e400 12px 50% 1.2.3 99999999999");
    value.add("css", "a b\\26 c \"str\\\nx\" 'y' url( x.ttf ) f(1,2) #id @at /* c */ <!-- --> U+1");
    value.add("plain", "a;b,c 5. .5 x=y /Name (str)");

    const SeedFolder config(root / "config");
    config.add("plain",
               "<font-config><font-folder path=\"/fonts\" recursive=\"true\"/></font-config>");

    const SeedFolder xml(root / "xml");
    xml.add("plain", "<?xml version=\"1.0\"?><a b=\"c&amp;\"><d>t</d><![CDATA[x]]><e/></a>");
    xml.add("entities", "<!DOCTYPE a [<!ENTITY b 'x'><!ENTITY c '&b;&b;'>]><a q='&c;'>&c;</a>");
    xml.add("external", "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>");
    xml.add("encoding", "<?xml version='1.0' encoding='windows-1252'?><a>\xE9</a>");
    xml.add("broken", "<a><b></a>");
}

void makeType1Seeds(const std::filesystem::path& root) {
    const SeedFolder pfa(root / "pfa");
    const SeedFolder pfb(root / "pfb");
    const auto add = [&](const std::string& name, const Type1Font& font) {
        pfa.add(name, font.pfa());
        pfb.add(name, font.pfb());
    };
    Type1Font font = Type1Font::latin();
    add("latin", font);
    font.lineEnd = "\r";
    add("latin-cr", font);
    font.lenIV = 0;
    font.lineEnd = "\r\n";
    add("latin-crlf", font);
    add("symbols", Type1Font::symbols());
}

void makeType1SubsetSeeds(const SeedFolder& folder) {
    const auto add = [&folder](const std::string& name, std::string_view codes,
                               const Type1Font& font) {
        folder.add(
            name,
            Bytes().u8(codes.size()).text(codes).text("lead").bytes(font.privateText().vector()));
    };
    Type1Font font = Type1Font::latin();
    add("latin", "BA", font);
    font.subrs = {Type1CharString().op({}, 11)};
    add("subrs", "", font);
    font.announcedGlyphs = 2;
    add("more-than-announced", "AB", font);
    font.lenIV = -1;
    font.announcedGlyphs = 99999;
    add("fewer-than-announced", "A", font);
}

void makeMetricsSeeds(const std::filesystem::path& root) {
    const SeedFolder afm(root / "afm");
    AfmFile text = AfmFile::latin();
    afm.add("latin", text.build());
    text.lineEnd = "\r\n";
    text.encodingScheme = "FontSpecific";
    text.extraLines = {"MetricsSet 2", "IsFixedPitch true", "XHeight 500"};
    text.charMetrics.emplace_back("CH <41> ; WX 1 ; WY 2 ; N Omega ; L a b ;");
    afm.add("specific-crlf", text.build());
    afm.add("glyph-list", "0041;A\nStartCharMetrics 1\nC 65 ; WX 600 ; N A ;\n");

    const SeedFolder pfm(root / "pfm");
    PfmFile file = PfmFile::latin();
    pfm.add("latin", file.build());
    file.extents.clear();
    file.hasNames = false;
    file.charSet = 204;
    pfm.add("fixed", file.build());
    file.firstChar = 33;
    file.hasTextMetrics = false;
    pfm.add("bare", file.build());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    try {
        const std::filesystem::path root(argv[1]);
        makeFontSeeds(SeedFolder(root / "font"));
        makeTableSeeds(SeedFolder(root / "table"));
        makeLayoutSeeds(SeedFolder(root / "layout"));
        makeCffSeeds(SeedFolder(root / "cff"));
        makeMergeSeeds(SeedFolder(root / "merge"));
        makeTextSeeds(root);
        makeType1Seeds(root);
        makeType1SubsetSeeds(SeedFolder(root / "type1subset"));
        makeMetricsSeeds(root);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
