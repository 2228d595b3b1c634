#include "registry/ExtraFontType.h"

#include "registry/RegistryFixture.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

const std::string kCff("OTTO\0\0\0\0", 8);
const std::string kGlyf("\0\1\0\0\0\0\0\0", 8);

// --- media types --------------------------------------------------------------------------------

TEST(FontTypeOfMedia, KnowsTheTypesThatWereInUse) {
    const std::pair<const char*, int> rows[] = {
        {"application/font-woff", 10},       {"application/x-font-ttf", 14},
        {"application/x-font-truetype", 14}, {"application/font-ttf", 14},
        {"application/font-truetype", 14},   {"application/x-font-otf", 15},
        {"application/x-font-opentype", 15}, {"application/font-otf", 15},
        {"application/font-opentype", 15},
    };
    for (const auto& [mediaType, type] : rows)
        EXPECT_EQ(fontTypeOfMedia(UnicodeString(mediaType)), type) << mediaType;
}

TEST(FontTypeOfMedia, ComparesExactlyAndLeavesEveryOtherTypeOpen) {
    for (const char* const other :
         {"", "font/ttf", "font/otf", "font/woff", "font/woff2", "font/sfnt", "font/collection",
          "application/font-sfnt", "application/font-woff2", "application/octet-stream",
          "Application/Font-Woff", "application/font-woff ", "application/font-wof"})
        EXPECT_EQ(fontTypeOfMedia(UnicodeString(other)), 0) << other;
}

// --- types --------------------------------------------------------------------------------------

struct Row {
    int asked;
    const char* mediaType;
    const char* extension;
    const std::string& file;
    int type;
    int concrete;
};

class ExtraFontTyping : public RegistryTest {
protected:
    ExtraFontType settle(int asked, const char* mediaType, const char* extension,
                         const std::string& file) {
        std::istringstream stream(file);
        const ExtraFontType settled =
            settleExtraFontType(service(), static_cast<FS_FontFileType>(asked),
                                UnicodeString(mediaType), UnicodeString(extension), stream);
        EXPECT_EQ(stream.tellg(), 0) << "the stream stays where it was";
        return settled;
    }
    template <std::size_t N>
    void check(const Row (&rows)[N]) {
        for (const Row& row : rows) {
            const ExtraFontType settled = settle(row.asked, row.mediaType, row.extension, row.file);
            EXPECT_EQ(settled.type, row.type)
                << row.asked << " " << row.mediaType << " " << row.extension;
            EXPECT_EQ(settled.concrete, row.concrete)
                << row.asked << " " << row.mediaType << " " << row.extension;
        }
    }
};

TEST_F(ExtraFontTyping, AnExtensionSettlesWhatNeitherTheCallerNorTheMediaTypeSays) {
    const Row rows[] = {
        {0, "", ".afm", kGlyf, 16, 3},
        {0, "", ".pfm", kGlyf, 16, 4},
        {0, "", ".ttf", kGlyf, 14, 5},
        {0, "", ".ttf", kCff, 15, 7},
        {0, "", ".ttc", kGlyf, 14, 6},
        {0, "", ".otf", kCff, 15, 7},
        {0, "", ".otf", kGlyf, 14, 5},
        {0, "", ".dfont", kGlyf, 0, 9},
        {0, "", ".woff", kGlyf, 0, 10},
        {0, "", ".bin", kGlyf, 0, 0},
        {0, "", "", kCff, 0, 0},
        {0, "font/ttf", ".bin", kGlyf, 0, 0},
        {0, "font/ttf", ".otf", kCff, 15, 7},
    };
    check(rows);
}

TEST_F(ExtraFontTyping, AMediaTypeGoesBeforeTheExtension) {
    const Row rows[] = {
        {0, "application/font-woff", ".ttf", kGlyf, 10, 10},
        {0, "application/font-ttf", ".woff", kGlyf, 14, 5},
        {0, "application/font-ttf", "", kCff, 14, 7},
        {0, "application/font-otf", ".dfont", kCff, 15, 7},
        {0, "application/font-otf", ".otf", kGlyf, 15, 5},
    };
    check(rows);
}

TEST_F(ExtraFontTyping, TheCallerGoesBeforeTheMediaType) {
    const Row rows[] = {
        {14, "application/font-woff", ".woff", kGlyf, 14, 5},
        {14, "", "", kCff, 14, 7},
        {15, "application/font-woff", ".pfm", kGlyf, 15, 5},
        {15, "", ".ttf", kCff, 15, 7},
        {16, "", ".afm", kGlyf, 16, 3},
        {16, "", ".unknown", kGlyf, 16, 4},
        {16, "", ".ttf", kCff, 16, 7},
        {16, "", ".woff", kGlyf, 16, 10},
        {16, "", ".dfont", kGlyf, 16, 9},
    };
    check(rows);
}

TEST_F(ExtraFontTyping, Request17TakesItsValueFromTheFile) {
    const Row rows[] = {
        {17, "", ".unknown", kGlyf, 14, 5}, {17, "", ".unknown", kCff, 15, 7},
        {17, "", "", kCff, 15, 7},          {17, "", ".pfm", kGlyf, 16, 4},
        {17, "", ".ttc", kGlyf, 14, 6},     {17, "", ".woff", kGlyf, 17, 10},
        {17, "", ".dfont", kGlyf, 17, 9},   {17, "application/font-woff", "", kGlyf, 14, 5},
    };
    check(rows);
}

TEST_F(ExtraFontTyping, ATypeOfAFileIsTakenAtItsWord) {
    for (const int type : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 18, -1}) {
        const Row rows[] = {{type, "application/font-ttf", ".otf", kCff, type, type}};
        check(rows);
    }
}

TEST_F(ExtraFontTyping, Requests14To16AreWrapped) {
    for (int type = 0; type <= 18; ++type) {
        const ExtraFontType settled{static_cast<FS_FontFileType>(type), FS_FILETYPE_TRUETYPE};
        EXPECT_EQ(settled.isWrapped(), type >= 14 && type <= 16) << type;
    }
}

} // namespace
