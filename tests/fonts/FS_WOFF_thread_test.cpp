#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/FS_WOFF.h"
#include "support/FontBuilder.h"
#include "support/TempDir.h"
#include "support/WoffFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <sstream>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

constexpr std::size_t kThreads = 12;

/// Whether `work` was right in every one of many threads that start at once.
template <class Work>
bool rightInEveryThread(const Work& work) {
    std::barrier start(static_cast<std::ptrdiff_t>(kThreads));
    std::array<bool, kThreads> right{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([&, i] {
                start.arrive_and_wait();
                right[i] = work(i);
            });
        }
    }
    return std::ranges::all_of(right, [](bool one) { return one; });
}

TEST(WoffInThreads, LoadingDrawingAndEmbeddingTakeTurnsAtTheUnpackedFont) {
    const Bytes file = WoffFile::of(TestFont::latin().build()).build();
    const KWPtr<FS_WOFF> font(new FS_WOFF(KWUri()));
    std::istringstream stream(file.str());
    KWError scanError;
    ASSERT_TRUE(font->scanFont(scanError, stream));
    EXPECT_TRUE(rightInEveryThread([&font](std::size_t thread) {
        KWError error;
        if (thread % 3 == 0)
            return font->getFTFace(0) != nullptr;
        if (!font->loadFont(error, 0, nullptr))
            return false;
        // One thread at a time writes.
        KWMemStream subset;
        return thread != 1 || font->getEmbedFont({TestFont::kA}, subset, nullptr, 0);
    }));
}

TEST(CollectionInThreads, EveryFaceIsLoadedByItselfAndOpenedOnce) {
    const Bytes file =
        SfntCollection{.fonts = {TestFont::latin().sfnt(), TestFont::vertical().sfnt()}}.build();
    const TempDir dir;
    dir.write("two.ttc", file);
    const KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(dir.uri("two.ttc")));
    std::istringstream stream(file.str());
    KWError scanError;
    ASSERT_TRUE(font->scanFont(scanError, stream));
    EXPECT_TRUE(rightInEveryThread([&font](std::size_t thread) {
        const int face = static_cast<int>(thread % 2);
        KWError error;
        FT_FaceRec_* const opened = font->getFTFace(face);
        return opened != nullptr && opened == font->getFTFace(face) &&
               font->loadFont(error, face, nullptr) &&
               font->getGlyphID(face == 0 ? 'A' : 0x3042, false, face) == 2;
    }));
}

} // namespace
} // namespace KWFontService_NS
