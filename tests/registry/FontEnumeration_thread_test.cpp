#include "registry/EnumerationFixture.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

/// Everything at once, from callbacks and beside them: none may wait for another for good, and each
/// walk sees whole records.
TEST(EnumerationInThreads, GoesTogetherWithLookupsAppendsAndFoldersThatAreAdded) {
    constexpr int kThreads = 6;
    constexpr int kRounds = 4;
    const TempDir files;
    TestFont vertical = TestFont::vertical();
    vertical.name = Name::english(u"Shared");
    files.write("base/v.ttf", vertical.build());
    files.write("base/h.ttf", namedFont(u"Shared", 700).build());
    files.write("own.ttf", namedFont(u"Own").build());
    for (int i = 0; i < kThreads * kRounds; ++i)
        files.write("more" + std::to_string(i) + "/a.ttf", namedFont(u"Shared", 100 + i).build());
    ASSERT_EQ(FS_AddFontFolderPath(files.uri("base")), 2);

    std::atomic<int> verticalSeen = 0;
    std::atomic<int> added = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                FS_ExtraFontManager document;
                for (int round = 0; round < kRounds; ++round) {
                    const int folder = kRounds * thread + round;
                    const int answer = enumerate(
                        u"Shared",
                        [&](const Reported& face, const FS_EnumLogFontEx&,
                            const FS_NewTextMetricEx& metric) {
                            EXPECT_EQ(face.family, "Shared");
                            EXPECT_TRUE(metric.hasValue());
                            FS_FontInfo font;
                            EXPECT_TRUE(font.createFont(u"Shared", face.weight, round % 2 != 0,
                                                        document.getExtraFonts(), false));
                            return 0;
                        },
                        &document);
                    EXPECT_EQ(answer, 0);
                    verticalSeen += enumerate(u"@Shared", [](auto&&...) { return 1; });
                    added += FS_AddFontFolderPath(files.uri("more" + std::to_string(folder)));
                    enumerate(
                        UnicodeString(),
                        [&](auto&&...) {
                            document.appendExtraFont(files.text("own.ttf"), u"Shared", 0, -1,
                                                     FS_FILETYPE_UNKNOWN, nullptr);
                            return 2;
                        },
                        &document);
                    FS_NewTextMetricEx metric;
                    EXPECT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Shared", 100 * thread, true,
                                                                metric, nullptr));
                }
                EXPECT_EQ(document.getFontsCount(), 1);
            });
        }
    }
    EXPECT_EQ(verticalSeen, kThreads * kRounds);
    EXPECT_EQ(added, kThreads * kRounds);
}

} // namespace
