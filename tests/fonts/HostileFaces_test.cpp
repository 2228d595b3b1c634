#include "common/KWLimits.h"
#include "fonts/FaceFixture.h"
#include "support/Rng.h"

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <cmath>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

Bytes collectionFile() {
    return collectionOf({firstFace(), secondFace()}).build();
}
Bytes resourceFile() {
    return resourcesOf({firstFace(), secondFace()}).build();
}

/// Scans, loads every face and asks of it what reaches into its tables. True when it scanned.
template <class Font>
bool opensAndAnswers(const Bytes& file) {
    FacesInMemory<Font> font(file);
    const bool opened = font.scan();
    EXPECT_LE(font->getFontCount(), static_cast<int>(KWCommonNS::kMaxFaces));
    for (int face = -1; face <= std::min(font->getFontCount(), 3); ++face) {
        font.load(face);
        EXPECT_TRUE(std::isfinite(font->getGlyphWidth(2, -1000, true, face)));
        font->getGlyphID('A', true, face);
        font->getFamilyName(0, face);
        KWMemStream output;
        font->getEmbedFontStream(output, &font.stream(), face);
        EXPECT_LE(output.size(), 64 * file.size() + 4096);
    }
    return opened;
}

template <class Font>
void cutAnywhere(const Bytes& whole) {
    ASSERT_TRUE(opensAndAnswers<Font>(whole));
    for (std::size_t size = 0; size < whole.size(); ++size)
        opensAndAnswers<Font>(Bytes(whole).truncate(size));
}

TEST(HostileFaces, AFileCutAtAnyByteIsRefusedOrReadAsFarAsItGoes) {
    cutAnywhere<FS_TrueTypeCollection>(collectionFile());
    cutAnywhere<FS_DFont>(resourceFile());
}

TEST(HostileFaces, EveryFieldOfACollectionMayLie) {
    const Bytes whole = collectionFile();
    const std::uint32_t places[] = {0,
                                    1,
                                    4,
                                    12,
                                    16,
                                    whole.u32At(12),
                                    whole.u32At(16),
                                    0x7FFFFFFFU,
                                    0x80000000U,
                                    0xFFFFFFF0U,
                                    0xFFFFFFFFU,
                                    static_cast<std::uint32_t>(whole.size())};
    for (std::size_t at = 0; at < 20; at += 4) {
        for (const std::uint32_t lie : places)
            opensAndAnswers<FS_TrueTypeCollection>(Bytes(whole).patchU32At(at, lie));
    }
}

TEST(HostileFaces, EveryFieldOfAResourceFileMayLie) {
    const Bytes whole = resourceFile();
    std::vector<std::size_t> words{0, 4, 8, 12};
    const std::size_t map = whole.u32At(4);
    for (std::size_t at = map; at + 4 <= whole.size(); at += 2)
        words.push_back(at);
    for (const std::size_t at : words) {
        for (const std::uint32_t lie : {0U, 1U, 0x00010001U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
            opensAndAnswers<FS_DFont>(Bytes(whole).patchU32At(at, lie));
    }
}

TEST(HostileFaces, AnyByteMayBeAnyOther) {
    Rng rng(20);
    for (int round = 0; round < 400; ++round) {
        Bytes collection = collectionFile();
        Bytes resources = resourceFile();
        for (int change = 0; change < 3; ++change) {
            collection.patchU8At(rng.below(static_cast<std::uint32_t>(collection.size())),
                                 rng.below(256));
            resources.patchU8At(rng.below(static_cast<std::uint32_t>(resources.size())),
                                rng.below(256));
        }
        opensAndAnswers<FS_TrueTypeCollection>(collection);
        opensAndAnswers<FS_DFont>(resources);
    }
}

// --- faces that share everything ----------------------------------------------------------------

/// Counts what is read of a file in memory.
class CountingBuffer : public std::stringbuf {
public:
    explicit CountingBuffer(const std::string& bytes) : std::stringbuf(bytes, std::ios::in) {}
    std::size_t bytesRead = 0;

protected:
    std::streamsize xsgetn(char* out, std::streamsize count) override {
        const std::streamsize got = std::stringbuf::xsgetn(out, count);
        bytesRead += static_cast<std::size_t>(got);
        return got;
    }
};

/// A collection that lists one font again and again.
Bytes sameFaceManyTimes(const TestFont& font, std::uint32_t times) {
    Bytes file;
    file.tag("ttcf").u32(0x00010000).u32(times);
    const std::uint32_t start = 12 + 4 * times;
    for (std::uint32_t i = 0; i < times; ++i)
        file.u32(start);
    return file.bytes(font.sfnt().offsetShift(start).build());
}

struct ScanOutcome {
    bool usable = false;
    std::size_t bytesRead = 0;
    Complaint complaint;
};

ScanOutcome scanCounting(const Bytes& file) {
    CountingBuffer buffer(file.str());
    std::istream stream(&buffer);
    const KWCommonNS::KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(KWUri()));
    KWError error;
    const bool usable = font->scanFont(error, stream);
    return {usable, buffer.bytesRead, complaintOf(error)};
}

TEST(HostileFaces, AHundredFacesMayShareAllTheyHave) {
    const ScanOutcome outcome = scanCounting(sameFaceManyTimes(firstFace(), 100));
    EXPECT_TRUE(outcome.usable) << outcome.complaint;
    EXPECT_LT(outcome.bytesRead, 100 * 2000U);
}

/// What an offset table and its probe take besides the faces.
constexpr std::size_t kOffsetTables = 5 * std::size_t{KWCommonNS::kMaxFaces};

TEST(HostileFaces, SharedNamesAreNotReadWithoutEnd) {
    TestFont font = firstFace();
    font.name.records.clear();
    for (int language = 1; language <= 1000; ++language) {
        NameRecord record = windowsName(1, u"N", static_cast<std::uint16_t>(language));
        record.string = Bytes();
        record.offset = 0;
        record.length = 60000;
        font.name.records.push_back(record);
    }
    font.name.records.front().string.fill(60000, 'x');
    const ScanOutcome outcome = scanCounting(sameFaceManyTimes(font, KWCommonNS::kMaxFaces));
    EXPECT_FALSE(outcome.usable);
    EXPECT_EQ(outcome.complaint.code, 1921) << outcome.complaint;
    EXPECT_LE(outcome.bytesRead, KWCommonNS::kMaxFacesScanBytes + kOffsetTables);
}

TEST(HostileFaces, ASharedDirectoryIsNotKeptWithoutEnd) {
    // One table at the end makes room for a directory that really has all its records.
    constexpr std::uint16_t kRecords = 60000;
    TestFont font = firstFace();
    Bytes records;
    for (std::uint32_t tag = 0x7A000000; tag < 0x7A000000U + kRecords; ++tag)
        records.u32(tag).zero(12);
    font.with("zzzz", records);
    Bytes file = sameFaceManyTimes(font, KWCommonNS::kMaxFaces);
    file.patchU16At(file.u32At(12) + 4, kRecords);
    const ScanOutcome outcome = scanCounting(file);
    EXPECT_FALSE(outcome.usable);
    EXPECT_EQ(outcome.complaint, readError("Table directory read error"));
    EXPECT_LE(outcome.bytesRead, KWCommonNS::kMaxFacesScanBytes + kOffsetTables);
}

/// How many faces of a collection load, one after the other.
int facesThatLoad(const Bytes& file, Complaint& complaint) {
    CollectionInMemory font(file);
    EXPECT_TRUE(font.scan()) << font.complaint();
    int loaded = 0;
    while (loaded < font->getFontCount() && font.load(loaded))
        ++loaded;
    EXPECT_TRUE(loaded == 0 || font.load(0)) << "a face that is loaded stays so";
    complaint = font.complaint();
    return loaded;
}

TEST(HostileFaces, ASharedTableIsNotLoadedWithoutEnd) {
    TestFont font = firstFace();
    font.name = {.records = {windowsName(1, u"N")}};
    font.with("GSUB", Bytes().u32(0x00010000).zero(std::size_t{1} << 20));
    const Bytes file = sameFaceManyTimes(font, 400);
    Complaint complaint;
    const int loaded = facesThatLoad(file, complaint);
    EXPECT_GE(loaded, 128);
    EXPECT_LE(loaded, 130);
    EXPECT_EQ(complaint, (Complaint{1921, "Font read error."}));
}

TEST(HostileFaces, OutlinesThatFacesShareCostTheirLoadsNothing) {
    TestFont font = firstFace();
    font.with("zzzz", Bytes().zero(std::size_t{1} << 20));
    Complaint complaint;
    EXPECT_EQ(facesThatLoad(sameFaceManyTimes(font, 400), complaint), 400) << complaint;
}

TEST(HostileFaces, ATableThatClaimsMoreThanTheFileCostsNoMoreThanTheFile) {
    SfntBuilder sfnt = firstFace().sfnt();
    sfnt.lie("hmtx", {.length = 0xFFFFFFFFU});
    CollectionInMemory font(SfntCollection{.fonts = {sfnt}}.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_TRUE(font.load(0)) << "of `hmtx` a load reads what it needs: " << font.complaint();
}

TEST(HostileFaces, SmallFacesWithoutNumberCostAtLeastTheirReads) {
    TestFont font = firstFace();
    font.name = {.records = {windowsName(1, u"N")}};
    const ScanOutcome outcome = scanCounting(sameFaceManyTimes(font, KWCommonNS::kMaxFaces));
    EXPECT_TRUE(outcome.usable) << outcome.complaint;
    EXPECT_LE(outcome.bytesRead, KWCommonNS::kMaxFacesScanBytes + kOffsetTables);
}

} // namespace
} // namespace KWFontService_NS
