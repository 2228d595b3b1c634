#include "fonts/FS_FontFileOptions.h"
#include "fonts/OperationSamples.h"
#include "fonts/SfntFixture.h"
#include "support/FontPackages.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphDrawInfo.h>

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <stdexcept>

namespace KWFontService_NS {

namespace {

using namespace KWTest;
using KWCommonNS::KWUtil;

/// Calls a facade operation with samples of its parameter types.
template <class Result, class... Parameters>
Result callFacade(const FS_FontInfo& info, Result (FS_FontInfo::*operation)(Parameters...) const) {
    return (info.*operation)(Sample<std::remove_cvref_t<Parameters>>::get()...);
}

TEST(FontInfo, WithoutAFontEveryForwardedOperationAnswersMissing) {
    const FS_FontInfo info;
    int operations = 0;
#define FS_FACADE_APART(...)
#define FS_FACADE_FORWARD(result, name, parameters, arguments, qualifier, missing)                 \
    {                                                                                              \
        ++operations;                                                                              \
        using Operation = result(FS_FontInfo::*) parameters const;                                 \
        const Operation operation = &FS_FontInfo::name;                                            \
        EXPECT_TRUE(answersAs([&] { return callFacade(info, operation); },                         \
                              []() -> result { return missing; }))                                 \
            << #name;                                                                              \
    }
#define FS_OPERATION(faces, wrapper, facade, ...) FS_FACADE_##facade(__VA_ARGS__)
#include "fonts/FS_FaceOperations.inc"
#undef FS_FACADE_APART
#undef FS_FACADE_FORWARD
    EXPECT_EQ(operations, 55);
}

TEST(FontInfo, WithoutAFontTheOtherOperationsAnswerMissing) {
    const FS_FontInfo info;
    EXPECT_FALSE(info.isCreatedFont());
    EXPECT_EQ(info.getFont(), nullptr);
    EXPECT_EQ(info.getError().getCode(), 0);
    EXPECT_EQ(info.getFontFileName(), KWUri());
    EXPECT_EQ(info.getFontFileType(), 0);
    EXPECT_EQ(info.getFontFileType2(), 0);
    EXPECT_FALSE(info.isFontCollection());
    EXPECT_FALSE(info.isExtraFont(nullptr, nullptr));
    EXPECT_FALSE(info.isTrueTypeFont());
    EXPECT_FALSE(info.isTrueTypeOrCID());
    EXPECT_FALSE(info.isType1Font());
    EXPECT_FALSE(info.isType1OrNoCID());
    EXPECT_EQ(info.getGlyphIDfromCID(1), 0xFFFF);
    EXPECT_FALSE(info.hasVerticalGlyph('A'));
    EXPECT_EQ(info.getTextWidth("A", -1000, false, nullptr), 0.0F);
    EXPECT_EQ(info.getTextWidth('A', -1000, false, nullptr), 0.0F);
    EXPECT_EQ(info.getGlyphVertOriginY(1, 0), 0.0F);
    EXPECT_EQ(info.getBaselindAdjust(), 0.0F);
    EXPECT_EQ(info.getFontSizeAdjust(), 1.0F);
    EXPECT_FALSE(info.isGlyphDrawInfoAvialable());
    FS_GlyphDrawInfo drawInfo;
    EXPECT_FALSE(info.getGlyphDrawInfo(1, drawInfo, false));
    EXPECT_EQ(info.getEudcGlyphID(0xE000), 0xFFFF);
    UnicodeString name = "untouched";
    int weight = 7;
    bool italic = true;
    EXPECT_FALSE(info.getEudcFontName(0xE000, name, weight, italic));
    EXPECT_EQ(name, UnicodeString("untouched"));
}

TEST(FontInfo, WithoutAFontNothingIsEmbedded) {
    const FS_FontInfo info;
    KWMemStream output;
    int length = 0;
    UnicodeString name;
    FS_CIDSystemInfo cid;
    Sample<FS_TTGlyphMap>::Sink glyphMap;
    const unsigned int tags[] = {0};
    EXPECT_FALSE(info.getEmbedFont({1}, output));
    EXPECT_FALSE(info.getEmbedFont({1}, output, tags));
    EXPECT_FALSE(info.getEmbedFontWithCmap({1}, output));
    EXPECT_FALSE(info.getEmbedFontStream(output));
    EXPECT_FALSE(info.getPSEmbedFont({1}, output, glyphMap));
    EXPECT_FALSE(info.getType1EmbedFont({1}, output));
    EXPECT_FALSE(info.getType1EmbedFont(0, "F", 0, output, length, length, length));
    EXPECT_FALSE(info.getType1FontStream(output, length, length, length));
    EXPECT_FALSE(info.makeSubsetFont({1}, output));
    EXPECT_FALSE(info.makeWebFont({1}, output));
    EXPECT_FALSE(info.makePostScriptCIDFontType0({1}, output, name, cid));
    EXPECT_EQ(output.length(), 0U);
}

TEST(FontInfo, EmbeddingIsRestrictedWithoutAFont) {
    EXPECT_EQ(FS_FontInfo().getEmbedStatus(), 2);
}

TEST(FontInfo, StyleWithoutAFontIsZeroUprightNormal) {
    int weight = 1;
    bool italic = true;
    int width = 1;
    FS_FontInfo().getFontStyle(&weight, &italic, &width);
    EXPECT_EQ(weight, 0);
    EXPECT_FALSE(italic);
    EXPECT_EQ(width, 5);
}

TEST(FontInfo, StyleSkipsWhatIsNotAskedFor) {
    FS_FontInfo().getFontStyle(nullptr, nullptr, nullptr);
    int width = 1;
    FS_FontInfo().getFontStyle(nullptr, nullptr, &width);
    EXPECT_EQ(width, 5);
}

TEST(FontInfo, ExtendedMorphingIsNeverApplied) {
    // Runs are opaque here: extended morphing never looks at them.
    alignas(std::max_align_t) std::array<std::byte, 64> storage{};
    auto& run = *reinterpret_cast<GlyphIDArray*>(storage.data());
    EXPECT_FALSE(FS_FontInfo::hasMorxInfo(nullptr));
    EXPECT_FALSE(FS_FontInfo::processMorx(nullptr, run, run));
}

TEST(FontInfo, AFileIsBoundByItsSignatureWhateverItsName) {
    const TempDir dir;
    dir.write("a.pfb", TestFont::latin().build());
    dir.write("b.ttf", TestFont::openType().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("a.pfb"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getFontFileType(), FS_FILETYPE_TRUETYPE);
    EXPECT_EQ(info.getFontFileType2(), FS_FILETYPE_TRUETYPE);
    EXPECT_EQ(info.getFontFileName(), dir.uri("a.pfb"));
    ASSERT_TRUE(info.createFont(dir.uri("b.ttf"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getFontFileType(), FS_FILETYPE_OPENTYPE);
    EXPECT_TRUE(info.getFont()->isOpenType());
}

TEST(FontInfo, ACreatedFontAnswersThroughTheFacade) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("a.ttf")));
    EXPECT_TRUE(info.isCreatedFont());
    EXPECT_TRUE(info.isTrueTypeFont());
    EXPECT_TRUE(info.isTrueTypeOrCID());
    EXPECT_FALSE(info.isType1Font());
    EXPECT_FALSE(info.isType1OrNoCID());
    EXPECT_FALSE(info.isFontCollection());
    EXPECT_EQ(info.getFamilyName(0), UnicodeString("KWTest Latin"));
    EXPECT_EQ(info.getUnitsPerEm(), 1000);
    EXPECT_EQ(info.getGlyphID('A', false), TestFont::kA);
    EXPECT_EQ(info.getGlyphWidth(TestFont::kA, 0, false), 600.0F);
    EXPECT_EQ(info.getTextWidth('A', -1000, false, nullptr), 600.0F);
    int missing = 7;
    EXPECT_EQ(info.getTextWidth(UnicodeString(), -1000, false, &missing), 0.0F);
    EXPECT_EQ(missing, -1);
}

TEST(FontInfo, AMissingFileIsAReadErrorWithItsPath) {
    const TempDir dir;
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(dir.uri("none.ttf")));
    EXPECT_FALSE(info.isCreatedFont());
    EXPECT_EQ(info.getError().getCode(), 1921);
    EXPECT_GE(info.getError().getMessage().indexOf(dir.text("none.ttf")), 0);
}

TEST(FontInfo, ADirectoryIsNotAFont) {
    const TempDir dir;
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(KWUri(dir.text(""))));
    EXPECT_EQ(info.getError().getCode(), 1921);
}

TEST(FontInfo, AFileOfAnotherKindIsRefusedWithoutAMessage) {
    const TempDir dir;
    TestFont file = TestFont::latin();
    file.version = 0x00020000;
    dir.write("a.ttf", file.build());
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(dir.uri("a.ttf")));
    EXPECT_EQ(info.getError().getCode(), 0);
}

TEST(FontInfo, AFontMayComeAsADataUri) {
    std::string uri = "data:font/ttf,";
    for (const char c : TestFont::latin().build().str()) {
        constexpr const char* kDigits = "0123456789ABCDEF";
        const auto byte = static_cast<unsigned char>(c);
        uri += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(KWUri(UnicodeString(uri.c_str())))) << complaintOf(info.getError());
    EXPECT_EQ(info.getFamilyName(0), UnicodeString("KWTest Latin"));
    KWMemStream output;
    EXPECT_TRUE(info.getEmbedFont({TestFont::kA}, output));
}

/// Puts a fetcher in place for the length of a test.
class FetcherScope {
public:
    explicit FetcherScope(KWUri::Fetcher fetcher) { KWUri::setFetcher(std::move(fetcher)); }
    ~FetcherScope() { KWUri::setFetcher(nullptr); }
    FetcherScope(const FetcherScope&) = delete;
    FetcherScope& operator=(const FetcherScope&) = delete;
};

/// A stream that only goes forward, as one from a network does.
class ForwardOnly : public std::istream {
public:
    explicit ForwardOnly(std::string bytes) : std::istream(nullptr), buffer_(std::move(bytes)) {
        rdbuf(&buffer_);
    }

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(std::string bytes) : bytes_(std::move(bytes)) {
            setg(bytes_.data(), bytes_.data(), bytes_.data() + bytes_.size());
        }

    private:
        std::string bytes_;
    };
    Buffer buffer_;
};

TEST(FontInfo, AFetchedFontNeedNotSeek) {
    const FetcherScope fetcher([](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        return std::make_unique<ForwardOnly>(TestFont::latin().build().str());
    });
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(KWUri("app:font"))) << complaintOf(info.getError());
    EXPECT_EQ(info.getGlyphID('A', false), TestFont::kA);
}

TEST(FontInfo, AFetcherThatThrowsIsAFileThatDoesNotOpen) {
    const FetcherScope fetcher(
        [](const KWUri&, KWUri::ContentInfo&, UnicodeString&) -> std::unique_ptr<std::istream> {
            throw std::runtime_error("no network");
        });
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(KWUri("app:font")));
    EXPECT_EQ(info.getError().getCode(), 1921);
}

TEST(FontInfo, AFetcherThatThrowsLaterLeavesFalseAnswers) {
    int calls = 0;
    const FetcherScope fetcher([&calls](const KWUri&, KWUri::ContentInfo&,
                                        UnicodeString&) -> std::unique_ptr<std::istream> {
        if (++calls > 1)
            throw KWError(7);
        return std::make_unique<std::istringstream>(TestFont::latin().build().str());
    });
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(KWUri("app:font")));
    KWMemStream output;
    EXPECT_FALSE(info.getEmbedFont({TestFont::kA}, output));
    EXPECT_FALSE(info.getEmbedFontStream(output));
    FS_GlyphBMP bitmap;
    KWError drawError;
    EXPECT_FALSE(info.drawGlyph(TestFont::kA, 12, 72, &bitmap, {}, drawError));
    EXPECT_EQ(drawError.getCode(), 1934);
}

TEST(FontInfo, AFetchedStreamThatThrowsIsAShortRead) {
    const FetcherScope fetcher([](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        auto stream = std::make_unique<std::istringstream>("\0\1");
        stream->exceptions(std::ios::failbit | std::ios::eofbit);
        return stream;
    });
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(KWUri("app:font")));
    EXPECT_EQ(complaintOf(info.getError()), readError("Offset table read error"));
}

TEST(FontInfo, AFailedCreateKeepsTheFontThatWasBound) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    dir.write("bad.ttf", "not a font at all");
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("a.ttf")));
    EXPECT_FALSE(info.createFont(dir.uri("bad.ttf")));
    EXPECT_EQ(info.getError().getCode(), 1921);
    EXPECT_EQ(info.getFamilyName(0), UnicodeString("KWTest Latin"));
}

TEST(FontInfo, AFontThatDoesNotLoadIsRefused) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().without("cmap").build());
    FS_FontInfo info;
    EXPECT_FALSE(info.createFont(dir.uri("a.ttf")));
    EXPECT_EQ(complaintOf(info.getError()), fileError("'cmap' table not found"));
}

TEST(FontInfo, DeletingForgetsTheFontAndKeepsTheError) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("a.ttf")));
    EXPECT_FALSE(info.createFont(dir.uri("none.ttf")));
    info.deleteFont();
    EXPECT_FALSE(info.isCreatedFont());
    EXPECT_EQ(info.getError().getCode(), 1921);
}

TEST(FontInfo, ACopyStaysValidWhenTheOriginalIsDeleted) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    FS_FontInfo copy;
    {
        FS_FontInfo info;
        ASSERT_TRUE(info.createFont(dir.uri("a.ttf")));
        copy = info;
        info.deleteFont();
    }
    EXPECT_EQ(copy.getFamilyName(0), UnicodeString("KWTest Latin"));
}

TEST(FontInfo, TheSettingsOfAFileReachTheAdjustments) {
    const TempDir dir;
    dir.write("a.ttf", TestFont::latin().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("a.ttf")));
    FS_FontFileOptions options;
    options.baselineAdjust = -0.25F;
    options.fontSizeAdjust = 1.5F;
    info.getFont()->setFontEntrySettings(&options);
    EXPECT_EQ(info.getBaselindAdjust(), -0.25F);
    EXPECT_EQ(info.getFontSizeAdjust(), 1.5F);
    info.getFont()->setFontEntrySettings(nullptr);
}

TEST(FontInfo, ACharacterThatIsSetUprightNeedsNoVerticalForm) {
    const TempDir dir;
    dir.write("v.ttf", TestFont::vertical().build());
    FS_FontInfo info;
    ASSERT_TRUE(info.createFont(dir.uri("v.ttf"))) << complaintOf(info.getError());
    EXPECT_TRUE(info.hasVerticalGlyph());
    EXPECT_TRUE(info.hasVerticalGlyph(0x300C));
    EXPECT_FALSE(info.hasVerticalGlyph(0x3042));
    EXPECT_FALSE(info.hasVerticalGlyph(0x4E00)) << "a missing glyph has no vertical form";
    bool hasVertical = true;
    EXPECT_FALSE(info.isNoVerticalGlyph(0x300C, &hasVertical));
    EXPECT_FALSE(hasVertical);
    EXPECT_TRUE(info.isNoVerticalGlyph('A', &hasVertical));
    EXPECT_FALSE(hasVertical);
}

TEST(FontInfo, PackagedFontsOpen) {
    for (const PackagedFont& packaged : packagedFonts()) {
        const std::string_view path = packaged.path;
        if (!path.ends_with(".ttf") && !path.ends_with(".otf"))
            continue;
        FS_FontInfo info;
        EXPECT_TRUE(info.createFont(fileUri(packagedFont(packaged.name))))
            << path << ' ' << complaintOf(info.getError());
        EXPECT_FALSE(info.getFamilyName(0).isEmpty()) << path;
        EXPECT_GT(info.getUnitsPerEm(), 0) << path;
    }
}

} // namespace
} // namespace KWFontService_NS
