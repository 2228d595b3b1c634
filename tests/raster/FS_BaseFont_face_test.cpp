#include "fonts/FS_TrueType.h"
#include "platform/Platform.h"
#include "raster/DrawFixture.h"

#include <KWCommon15/KWCStr.h>
#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

/// A font that counts how often its file is asked for and tells what it keeps of it.
class ProbeFont : public FS_TrueType {
public:
    explicit ProbeFont(const KWUri& fontUri) : FS_TrueType(fontUri) {}

    KWMemStream* getFontStream() override {
        ++asked;
        return unpacked.get();
    }
    std::uint64_t bytesHeld() const { return fontByteCount; }

    std::unique_ptr<KWMemStream> unpacked;
    int asked = 0;
};

KWPtr<ProbeFont> probe(const KWUri& uri) {
    return KWPtr<ProbeFont>(new ProbeFont(uri));
}

KWUri dataUri(const Bytes& file) {
    std::ostringstream text;
    text << "data:font/ttf," << std::hex << std::uppercase;
    for (const std::uint8_t byte : file)
        text << '%' << (byte < 16 ? "0" : "") << int{byte};
    return KWUri(UnicodeString::fromUTF8(text.str()));
}

TEST(FTFace, AFileIsOpenedByItsPath) {
    const TempDir folder;
    folder.write("font.ttf", squares().build());
    const auto font = probe(folder.uri("font.ttf"));
    FT_Face face = font->getFTFace(0);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->num_glyphs, 7);
    EXPECT_EQ(font->bytesHeld(), 0U);
}

TEST(FTFace, TheSameFaceIsAnsweredEveryTime) {
    const TempDir folder;
    folder.write("font.ttf", squares().build());
    const auto font = probe(folder.uri("font.ttf"));
    FT_Face face = font->getFTFace(0);
    const int asked = font->asked;
    EXPECT_EQ(font->getFTFace(0), face);
    EXPECT_EQ(font->asked, asked);
}

TEST(FTFace, PathsOfAnyBytesAreOpened) {
    if (KWPlatform::preferredSeparator() != u'/')
        GTEST_SKIP() << "names are UTF-16 here";
    const TempDir folder;
    const std::string name = "\xE5\xAD\x97 \xFF.ttf"; // not all UTF-8
    const std::string path = folder.write(name, squares().build()).string();
    const auto font = probe(KWUri(KWCommonNS::KWCStr(path.c_str()), KWCommonNS::URISTR_LOCAL));
    EXPECT_NE(font->getFTFace(0), nullptr);
}

// FreeType opens by bytes, which a path of Windows has in one code page and not in another.
TEST(FTFace, APathWithoutBytesIsReadIntoMemory) {
    const TempDir folder;
    const Bytes file = squares().build();
    const auto path = folder.path() / u"\u8868 \u0436.ttf";
    std::filesystem::rename(folder.write("font.ttf", file), path);
    const auto font = probe(fileUri(path));
    ASSERT_NE(font->getFTFace(0), nullptr);
    const bool opensByPath = KWPlatform::narrowPath(path.u16string()).has_value();
    EXPECT_EQ(font->bytesHeld(), opensByPath ? 0U : file.size());
    EXPECT_EQ(opensByPath, KWPlatform::preferredSeparator() == u'/');
}

TEST(FTFace, AFontWithoutAPathIsReadIntoMemory) {
    const Bytes file = squares().build();
    const auto font = probe(dataUri(file));
    FT_Face face = font->getFTFace(0);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->num_glyphs, 7);
    EXPECT_EQ(font->bytesHeld(), file.size());
    EXPECT_EQ(FT_Load_Glyph(face, 1, FT_LOAD_NO_SCALE), 0);
}

TEST(FTFace, AnUnpackedFontIsReadFromItsStream) {
    const TempDir folder;
    folder.write("font.woff", Bytes::ofText("something packed"));
    const Bytes file = squares().build();
    const auto font = probe(folder.uri("font.woff"));
    font->unpacked = std::make_unique<KWMemStream>();
    font->unpacked->append(file.data(), file.size());
    font->unpacked->seekg(5);
    FT_Face face = font->getFTFace(0);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->num_glyphs, 7);
    EXPECT_EQ(font->bytesHeld(), file.size());
    font->unpacked.reset();
    EXPECT_EQ(FT_Load_Glyph(face, 1, FT_LOAD_NO_SCALE), 0); // the bytes are the font's own
}

TEST(FTFace, AFailureIsNotTriedAgain) {
    const TempDir folder;
    const auto font = probe(folder.uri("font.ttf"));
    EXPECT_EQ(font->getFTFace(0), nullptr);
    folder.write("font.ttf", squares().build());
    EXPECT_EQ(font->getFTFace(0), nullptr);
}

TEST(FTFace, AFileThatFreeTypeRefusesIsNoFace) {
    const TempDir folder;
    folder.write("font.ttf", Bytes::ofText("no font at all"));
    folder.write("empty.ttf", Bytes());
    const auto font = probe(folder.uri("font.ttf"));
    EXPECT_EQ(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->bytesHeld(), 0U); // an answer of FreeType's own ends it
    EXPECT_EQ(probe(folder.uri("empty.ttf"))->getFTFace(0), nullptr);
    EXPECT_EQ(probe(dataUri(Bytes()))->getFTFace(0), nullptr);
    EXPECT_EQ(probe(dataUri(Bytes::ofText("none")))->getFTFace(0), nullptr);
}

TEST(FTFace, AFolderIsNoFace) {
    const TempDir folder;
    folder.makeFolder("font.ttf");
    EXPECT_EQ(probe(folder.uri("font.ttf"))->getFTFace(0), nullptr);
}

TEST(FTFace, AnIndexThatTheFileDoesNotHaveIsNoFaceAndSpoilsNothing) {
    const TempDir folder;
    folder.write("font.ttf", squares().build());
    const auto font = probe(folder.uri("font.ttf"));
    EXPECT_EQ(font->getFTFace(-1), nullptr);
    EXPECT_EQ(font->getFTFace(1), nullptr);
    FT_Face face = font->getFTFace(0);
    EXPECT_NE(face, nullptr);
    for (const int any : {-1, 1, 99})
        EXPECT_EQ(font->getFTFace(any), face) << "once it is open";
}

TEST(FTFace, TheFaceIsClosedBeforeTheBytesThatItUsesAreGone) {
    static int first;
    first = -1;
    {
        const auto font = probe(dataUri(squares().build()));
        FT_Face face = font->getFTFace(0);
        ASSERT_NE(face, nullptr);
        ASSERT_GT(font->bytesHeld(), 0U);
        face->generic.finalizer = [](void* object) {
            first = static_cast<FT_Face>(object)->stream->base[1];
        };
    }
    EXPECT_EQ(first, 1) << "the version 0x00010000";
}

TEST(FTFace, ACloserLetsGoOfOneHold) {
    static bool closed;
    closed = false;
    {
        const TempDir folder;
        folder.write("font.ttf", squares().build());
        const auto font = probe(folder.uri("font.ttf"));
        FT_Face face = font->getFTFace(0);
        ASSERT_NE(face, nullptr);
        face->generic.finalizer = [](void*) { closed = true; };
        ASSERT_EQ(FT_Reference_Face(face), 0);
        FS_FTFaceCloser()(face);
        EXPECT_FALSE(closed) << "the font holds it still";
    }
    EXPECT_TRUE(closed);
}

TEST(FTFace, AFetcherThatThrowsIsNoFace) {
    KWUri::setFetcher(
        [](const KWUri&, KWUri::ContentInfo&, UnicodeString&) -> std::unique_ptr<std::istream> {
            throw std::runtime_error("no net");
        });
    const auto font = probe(KWUri("http://example.org/font.ttf"));
    EXPECT_EQ(font->getFTFace(0), nullptr);
    KWUri::setFetcher({});
}

TEST(FTFace, AFetchedFontIsReadIntoMemory) {
    const Bytes file = squares().build();
    KWUri::setFetcher(
        [&](const KWUri&, KWUri::ContentInfo&, UnicodeString&) -> std::unique_ptr<std::istream> {
            return std::make_unique<std::istringstream>(file.str());
        });
    const auto font = probe(KWUri("http://example.org/font.ttf"));
    EXPECT_NE(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->bytesHeld(), file.size());
    KWUri::setFetcher({});
}

} // namespace
} // namespace KWFontService_NS
