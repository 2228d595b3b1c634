#include "embed/WoffWriter.h"

#include "embed/EmbedFixture.h"
#include "fonts/FS_DFont.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/FS_WOFF.h"
#include "support/TempDir.h"
#include "support/WoffFile.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

Bytes letters(std::size_t count) {
    Bytes text;
    for (std::size_t i = 0; i < count; ++i)
        text.u8('a' + i % 23);
    return text;
}

/// Empty when the writer says no.
Bytes written(const Bytes& sfnt) {
    KWMemStream input;
    input.append(sfnt.data(), sfnt.size());
    KWMemStream output;
    return makeWOFF(output, input) ? bytesOf(output) : Bytes();
}

/// One entry of the directory.
struct Entry {
    std::uint32_t offset, compLength, origLength, checksum;
};
Entry entryOf(const Bytes& woff, std::size_t index) {
    const std::size_t at = 44 + 20 * index;
    return {woff.u32At(at + 4), woff.u32At(at + 8), woff.u32At(at + 12), woff.u32At(at + 16)};
}
Bytes part(const Bytes& file, std::size_t at, std::size_t count) {
    return Bytes(std::vector<std::uint8_t>(file.begin() + static_cast<std::ptrdiff_t>(at),
                                           file.begin() + static_cast<std::ptrdiff_t>(at + count)));
}

TEST(WoffWriter, WritesTheHeaderOfTheFormat) {
    const Bytes sfnt = TestFont::latin().build();
    const Bytes woff = written(sfnt);
    Bytes header;
    header.tag("wOFF").u32(kTrueTypeVersion).u32(woff.size()).u16(sfnt.u16At(4)).u16(0);
    header.u32(sfnt.size()).u16(1).u16(0).zero(20);
    EXPECT_EQ(part(woff, 0, 44), header);
    EXPECT_EQ(written(TestFont::openType().build()).u32At(4), kOttoVersion);
}

// Readers that insist on multiples of four refuse such a file.
TEST(WoffWriter, TablesFollowEachOtherWithoutPadding) {
    const Bytes sfnt = SfntBuilder()
                           .table("aaaa", letters(501))
                           .table("bbbb", letters(3))
                           .table("cccc", letters(9))
                           .build();
    const Bytes woff = written(sfnt);
    std::uint32_t next = 44 + 20 * 3;
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(entryOf(woff, i).offset, next) << i;
        next += entryOf(woff, i).compLength;
    }
    EXPECT_EQ(woff.size(), next);
    EXPECT_NE(entryOf(woff, 2).offset % 4, 0U);
}

TEST(WoffWriter, ATableIsDeflatedWhereThatMakesItShorter) {
    const Bytes sfnt = SfntBuilder().table("aaaa", letters(5000)).table("bbbb", letters(6)).build();
    const Bytes woff = written(sfnt);
    const Entry large = entryOf(woff, 0);
    EXPECT_EQ(large.origLength, 5000U);
    EXPECT_EQ(part(woff, large.offset, large.compLength), deflated(letters(5000)));
    const Entry small = entryOf(woff, 1);
    EXPECT_EQ(small.origLength, 6U);
    EXPECT_EQ(small.compLength, 6U);
    EXPECT_EQ(part(woff, small.offset, small.compLength), letters(6));
}

TEST(WoffWriter, EachTableIsDeflatedByItself) {
    const Bytes zeros = Bytes().zero(5000);
    const Bytes woff =
        written(SfntBuilder().table("aaaa", letters(5000)).table("bbbb", zeros).build());
    const Entry second = entryOf(woff, 1);
    EXPECT_EQ(part(woff, second.offset, second.compLength), deflated(zeros));
}

TEST(WoffWriter, ATableThatDeflatesToItsOwnLengthIsStored) {
    // Looks for some letters whose stream is exactly as long.
    Bytes table;
    for (std::size_t same = 1; same < 40 && table.empty(); ++same) {
        Bytes candidate;
        candidate.fill(same, 'x').text("abcdefgh");
        if (deflated(candidate).size() == candidate.size())
            table = candidate;
    }
    ASSERT_FALSE(table.empty());
    const Bytes woff = written(SfntBuilder().table("aaaa", table).build());
    const Entry entry = entryOf(woff, 0);
    EXPECT_EQ(entry.compLength, entry.origLength);
    EXPECT_EQ(part(woff, entry.offset, entry.compLength), table);
}

TEST(WoffWriter, AnEmptyTableHasNoBytes) {
    const Bytes woff = written(SfntBuilder().table("aaaa", Bytes()).build());
    EXPECT_EQ(entryOf(woff, 0).compLength, 0U);
    EXPECT_EQ(entryOf(woff, 0).origLength, 0U);
    EXPECT_EQ(woff.size(), 64U);
}

TEST(WoffWriter, TagsLengthsAndSumsAreThoseOfTheDirectoryInItsOrder) {
    SfntBuilder builder = TestFont::latin().sfnt();
    const Bytes sfnt = builder.lie("head", {.checkSum = 0xDEADBEEF}).inGivenOrder().build();
    const Bytes woff = written(sfnt);
    for (std::size_t i = 0; i < sfnt.u16At(4); ++i) {
        const std::size_t record = 12 + 16 * i;
        EXPECT_EQ(woff.u32At(44 + 20 * i), sfnt.u32At(record));
        EXPECT_EQ(entryOf(woff, i).checksum, sfnt.u32At(record + 4));
        EXPECT_EQ(entryOf(woff, i).origLength, sfnt.u32At(record + 12));
    }
}

TEST(WoffWriter, TheSfntSizeIsThatOfTheSfntAsItStands) {
    Bytes sfnt = TestFont::latin().build();
    sfnt.zero(1001);
    EXPECT_EQ(written(sfnt).u32At(16), sfnt.size());
}

TEST(WoffWriter, AppendsToWhatIsThere) {
    const Bytes sfnt = TestFont::latin().build();
    KWMemStream input;
    input.append(sfnt.data(), sfnt.size());
    KWMemStream output;
    output.append("before", 6);
    ASSERT_TRUE(makeWOFF(output, input));
    const Bytes all = bytesOf(output);
    EXPECT_EQ(part(all, 6, all.size() - 6), written(sfnt));
    EXPECT_EQ(static_cast<std::size_t>(output.tellp()), all.size());
}

TEST(WoffWriter, AnSfntThatIsNotAllThereIsRefused) {
    const Bytes sfnt = TestFont::latin().build();
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{11}, std::size_t{12}, std::size_t{100}, sfnt.size() - 4})
        EXPECT_TRUE(written(Bytes(sfnt).truncate(size)).empty()) << size;
    for (const std::uint32_t lie : {0x7FFFFFFFU, 0xFFFFFFFFU}) {
        EXPECT_TRUE(written(TestFont::latin().sfnt().lie("head", {.offset = lie}).build()).empty());
        EXPECT_TRUE(written(TestFont::latin().sfnt().lie("head", {.length = lie}).build()).empty());
    }
}

TEST(WoffWriter, AnSfntWithoutTablesIsAHeader) {
    EXPECT_EQ(written(SfntBuilder().build()).size(), 44U);
}

// --- there and back -----------------------------------------------------------------------------

/// The sfnt that comes out of a WOFF file.
Bytes unpacked(const Bytes& woff) {
    const KWPtr<FS_WOFF> font(new FS_WOFF(KWUri()));
    std::istringstream stream(woff.str());
    KWError error;
    EXPECT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 0, nullptr));
    return bytesOf(*font->getFontStream());
}

TEST(WoffWriter, OurReaderGetsTheSfntBack) {
    for (const TestFont& source : {TestFont::latin(), TestFont::vertical(), TestFont::openType()}) {
        const Bytes sfnt = source.build();
        EXPECT_EQ(unpacked(written(sfnt)), sfnt);
    }
}

// --- makeWebFont --------------------------------------------------------------------------------

Bytes padded(Bytes sfnt) {
    return sfnt.padTo(4);
}

TEST(MakeWebFont, IsTheSubsetWithEveryTable) {
    EmbeddableFont font(TestFont::latin().build());
    KWMemStream output;
    ASSERT_TRUE(font.font().makeWebFont({TestFont::kA}, output, &font.stream(), 0));
    EXPECT_EQ(unpacked(bytesOf(output)), padded(font.subset({TestFont::kA})));
    KWMemStream all;
    ASSERT_TRUE(font.font().makeWebFont({TestFont::kA, TestFont::kB, TestFont::kC}, all,
                                        &font.stream(), 0));
    EXPECT_GT(all.size(), output.size());
}

TEST(MakeWebFont, OfAFaceOfACollectionIsOfThatFace) {
    const Bytes file =
        SfntCollection{.fonts = {TestFont::vertical().sfnt(), TestFont::latin().sfnt()}}.build();
    const KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(KWUri()));
    std::istringstream stream(file.str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 1, &stream));
    KWMemStream subset;
    KWMemStream web;
    ASSERT_TRUE(font->makeSubsetFont({TestFont::kC}, subset, &stream, 1));
    ASSERT_TRUE(font->makeWebFont({TestFont::kC}, web, &stream, 1));
    EXPECT_EQ(unpacked(bytesOf(web)), padded(bytesOf(subset)));
    EXPECT_FALSE(font->makeWebFont({TestFont::kC}, web, &stream, 2));
}

TEST(MakeWebFont, OfCffOutlinesIsTheSubsetInPlace) {
    EmbeddableFont font(TestFont::openType().build());
    KWMemStream subset;
    KWMemStream web;
    ASSERT_TRUE(font.font().makeSubsetFont({2}, subset, &font.stream(), 0));
    ASSERT_TRUE(font.font().makeWebFont({2}, web, &font.stream(), 0));
    EXPECT_EQ(bytesOf(web).u32At(4), kOttoVersion);
    EXPECT_EQ(unpacked(bytesOf(web)), padded(bytesOf(subset)));
    EXPECT_FALSE(font.font().makeWebFont({}, web, nullptr, 0)) << "there is no file to open";
}

TEST(MakeWebFont, ADFontHasNone) {
    ResourceFile resources;
    resources.fonts = {TestFont::latin().sfnt()};
    const KWPtr<FS_DFont> font(new FS_DFont(KWUri()));
    std::istringstream stream(resources.build().str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 0, &stream));
    KWMemStream output;
    EXPECT_FALSE(font->makeWebFont({TestFont::kA}, output, &stream, 0));
    EXPECT_FALSE(font->makeSubsetFont({TestFont::kA}, output, &stream, 0));
    EXPECT_EQ(output.size(), 0U);
}

TEST(MakeWebFont, OfAWoffFileIsCutFromTheUnpackedFont) {
    const TempDir files;
    const Bytes sfnt = TestFont::latin().build();
    files.write("a.woff", written(sfnt));
    const KWPtr<FS_WOFF> font(new FS_WOFF(files.uri("a.woff")));
    std::istringstream stream(written(sfnt).str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 0, nullptr));
    KWMemStream web;
    ASSERT_TRUE(font->makeWebFont({TestFont::kA}, web, nullptr, 0));
    // FreeType, which does not open our unpadded file, gets the unpacked one, too.
    EXPECT_NE(font->getFTFace(0), nullptr);
    EmbeddableFont source(sfnt);
    EXPECT_EQ(unpacked(bytesOf(web)), padded(source.subset({TestFont::kA})));
}

TEST(MakeWebFont, WithoutAFileIsNothing) {
    const TempDir files;
    const KWPtr<FS_TrueType> font(new FS_TrueType(files.uri("gone.ttf")));
    std::istringstream stream(TestFont::latin().build().str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream) && font->loadFont(error, 0, &stream));
    KWMemStream web;
    EXPECT_FALSE(font->makeWebFont({TestFont::kA}, web, nullptr, 0));
    EXPECT_EQ(web.size(), 0U);
}

} // namespace
} // namespace KWFontService_NS
