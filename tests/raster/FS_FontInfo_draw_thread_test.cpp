#include "raster/DrawFixture.h"

#include <KWFontService17/FS_GlyphDrawInfo.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int kThreads = 4;
constexpr int kRounds = 60;
constexpr FS_GlyphBMPSetting kTurned{.rotationAngle = 30};

std::vector<std::string> draw(const FS_FontInfo& font, unsigned short gid, bool turned) {
    FS_GlyphBMP bitmap;
    KWError error;
    font.drawGlyph(gid, 12, 96, &bitmap, turned ? kTurned : FS_GlyphBMPSetting(), error);
    return picture(bitmap);
}

TEST(DrawThreads, ManyThreadsDrawOneFontAlike) {
    const Bytes file = unhinted(TestFont::vertical()).without("VORG").build();
    CreatedFont font(file);
    // Drawn by a font of its own, so that the threads are the first to open the shared face.
    CreatedFont single(file);
    const std::vector<std::string> upright = draw(single.info, TestFont::kHiraganaA, false);
    const std::vector<std::string> turned = draw(single.info, TestFont::kHiraganaA, true);
    ASSERT_NE(upright, turned);

    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t, view = font.info] {
            for (int round = 0; round < kRounds; ++round) {
                const bool isTurned = (round + t) % 2 == 0;
                if (draw(view, TestFont::kHiraganaA, isTurned) != (isTurned ? turned : upright))
                    ++wrong;
                FS_GlyphDrawInfo info;
                if (!view.getGlyphDrawInfo(TestFont::kBracket, info, false) ||
                    info.outlineXMax != 900.0F)
                    ++wrong;
                if (!view.isGlyphDrawInfoAvialable())
                    ++wrong;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(DrawThreads, FontsOpenAndCloseWhileOthersDraw) {
    const TempDir folder;
    folder.write("font.ttf", squares().build());
    const KWUri uri = folder.uri("font.ttf");
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds / 4; ++round) {
                FS_FontInfo font;
                if (!font.createFont(uri) || draw(font, 1, false).size() != 8)
                    ++wrong;
                font.deleteFont();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace KWFontService_NS
