#include "registry/FS_ExtraFontPool.h"

#include "registry/RegistryFixture.h"
#include "support/CountdownNew.h"

#include <KWFontService17/FS_ExtraFontManager.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

class ExtraFontMemory : public RegistryTest {};

/// Appends with room for ever more allocations until one succeeds, and expects each failure to
/// leave the pool without a trace.
template <typename Append>
void expectNoTraceOfFailures(Append append) {
    bool taken = false;
    long failures = 0;
    for (long room = 0; !taken && room < 20'000; ++room) {
        FS_ExtraFontManager manager;
        const FS_ExtraFontPool& pool = *manager.getExtraFonts();
        KWError error;
        g_allocationsLeft = room;
        const int index = append(manager, error);
        g_allocationsLeft = -1;
        taken = index == 0;
        if (taken)
            break;
        ++failures;
        ASSERT_EQ(index, -1) << room;
        ASSERT_TRUE(error.isError()) << room;
        ASSERT_TRUE(pool.fonts.empty()) << room;
        ASSERT_TRUE(pool.byName.empty()) << room;
        ASSERT_TRUE(pool.byFileName.empty()) << room;
        ASSERT_TRUE(pool.byUri.empty()) << room;
    }
    EXPECT_TRUE(taken);
    EXPECT_GT(failures, 5) << "or nothing was refused";
}

TEST_F(ExtraFontMemory, AnAppendThatRunsOutOfMemoryLeavesNoTraceOfTheFont) {
    write("a.ttf", namedFont(u"Alpha"));
    const icu::UnicodeString path = files().text("a.ttf");
    expectNoTraceOfFailures([&](FS_ExtraFontManager& manager, KWError& error) {
        return manager.appendExtraFont(path, u"Document", 300, 1, FS_FILETYPE_UNKNOWN, &error);
    });
}

TEST_F(ExtraFontMemory, AnAppendOfABareFontThatRunsOutOfMemoryLeavesNoTraceOfTheFont) {
    write("a.ttf", namedFont(u"Alpha"));
    const icu::UnicodeString path = files().text("a.ttf");
    expectNoTraceOfFailures([&](FS_ExtraFontManager& manager, KWError& error) {
        return manager.appendExtraFont(path, u"Document", 0, -1, FS_FILETYPE_TRUETYPE, &error);
    });
}

TEST_F(ExtraFontMemory, ALocalFontThatRunsOutOfMemoryLeavesNoTraceOfItself) {
    write("a.ttf", namedFont(u"Alpha"));
    FS_FontInfo local;
    ASSERT_TRUE(local.createFont(files().uri("a.ttf")));
    expectNoTraceOfFailures([&](FS_ExtraFontManager& manager, KWError& error) {
        return manager.appendLocalFont(&local, u"Document", 300, 1, &error);
    });
}

TEST_F(ExtraFontMemory, ARuleThatRanOutOfMemoryIsDoneByTheNextTry) {
    write("a.ttf", namedFont(u"Alpha"));
    const icu::UnicodeString path = files().text("a.ttf");
    bool taken = false;
    for (long room = 0; !taken && room < 20'000; ++room) {
        FS_ExtraFontManager manager;
        ASSERT_EQ(manager.appendExtraFont(path, u"First", 400, 0, FS_FILETYPE_UNKNOWN, nullptr), 0);
        g_allocationsLeft = room;
        const int index =
            manager.appendExtraFont(path, u"Second", 700, 1, FS_FILETYPE_UNKNOWN, nullptr);
        g_allocationsLeft = -1;
        taken = index == 0;
        ASSERT_EQ(manager.appendExtraFont(path, u"Second", 700, 1, FS_FILETYPE_UNKNOWN, nullptr),
                  0);
        const auto found = [&](const char16_t* name) {
            return manager.getExtraFonts()
                ->findFont(name, FS_FontKey::ofRequest(700, true, 0))
                .font;
        };
        ASSERT_NE(found(u"Second"), nullptr) << room;
        ASSERT_NE(found(u"First"), nullptr) << room;
        ASSERT_TRUE(found(u"Second")->isItalic(0)) << room;
    }
    EXPECT_TRUE(taken);
}

} // namespace
