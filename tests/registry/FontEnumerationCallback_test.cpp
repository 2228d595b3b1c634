// What a callback of an enumeration may do.

#include "registry/EnumerationFixture.h"
#include "registry/FS_ServiceLock.h"
#include "support/OwnProcess.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using testing::ElementsAre;

using EnumerationCallback = EnumerationTest;

/// Whether another thread could take the service's lock.
bool isLockFree() {
    bool isFree = false;
    std::thread([&isFree] {
        isFree = g_fontServiceLock.tryLock();
        if (isFree)
            g_fontServiceLock.unlock();
    }).join();
    return isFree;
}

std::vector<std::string> familiesOf(const std::vector<Reported>& faces) {
    std::vector<std::string> families;
    for (const Reported& face : faces)
        families.push_back(face.family);
    return families;
}

TEST_F(EnumerationCallback, HasTheLockOfTheService) {
    pooled(u"Name");
    for (const Text name : {u"Name", u""}) {
        bool wasFree = true;
        enumerate(name, [&](const auto&, const auto&, const auto&) {
            wasFree = isLockFree();
            return 7;
        });
        EXPECT_FALSE(wasFree);
        EXPECT_TRUE(isLockFree()) << "an answer lets it go";
    }
}

TEST_F(EnumerationCallback, AKWErrorThatItThrowsEndsTheWalkWith1) {
    pooled(u"Name");
    pooled(u"Name", {700, false, 5});
    for (const Text name : {u"Name", u""}) {
        int calls = 0;
        EXPECT_EQ(enumerate(name,
                            [&calls](const auto&, const auto&, const auto&) -> int {
                                ++calls;
                                throw KWError(FS_ERROR_FONT_FILE, u"text");
                            }),
                  1);
        EXPECT_EQ(calls, 1);
        EXPECT_TRUE(isLockFree());
    }
    EXPECT_EQ(reported(u"Name").size(), 2U);
}

TEST_F(EnumerationCallback, WhateverElseItThrowsPassesThrough) {
    pooled(u"Name");
    for (const Text name : {u"Name", u""}) {
        EXPECT_THROW(enumerate(name,
                               [](const auto&, const auto&, const auto&) -> int {
                                   throw std::runtime_error("mine");
                               }),
                     std::runtime_error);
        EXPECT_TRUE(isLockFree());
        EXPECT_EQ(reported(name).size(), 1U);
    }
}

TEST_F(EnumerationCallback, AKWErrorOfAReaderEndsAWalkOfVerticalFacesWith1) {
    pooled(u"Name")->onLoad = []() -> bool { throw KWError(FS_ERROR_FONT_READ, u"text"); };
    EXPECT_EQ(enumerate(u"@Name", [](const auto&, const auto&, const auto&) { return 7; }), 1);
    EXPECT_TRUE(isLockFree());
}

TEST_F(EnumerationCallback, MayLookFontsUpWhichFillsTheFamilyItIsReporting) {
    write("fonts/a.ttf", namedFont(u"Name"));
    write("fonts/b.ttf", namedFont(u"Name", 700));
    ASSERT_EQ(addFolder("fonts"), 2);
    std::vector<int> weights;
    enumerate(u"Name", [&](const Reported& face, const auto&, const auto&) {
        FS_FontInfo font;
        EXPECT_TRUE(font.createFont(u"Name", 100 * static_cast<int>(weights.size()) + 100, true,
                                    nullptr, false));
        EXPECT_EQ(font.getGlyphID('A', false), TestFont::kA);
#ifndef _WIN32 // where a font that draws keeps its file, which the test has to remove
        FS_GlyphBMP bitmap;
        KWError error;
        EXPECT_TRUE(font.drawGlyph(TestFont::kA, 12, 72, &bitmap, FS_GlyphBMPSetting(), error));
#endif
        FS_NewTextMetricEx metric;
        EXPECT_TRUE(FS_FontInfo::getNewTextMetricEx(u"Name", 0, false, metric, nullptr));
        weights.push_back(face.weight);
        return 0;
    });
    EXPECT_THAT(weights, ElementsAre(400, 700)) << "what it filled is not seen in this walk";
    EXPECT_EQ(reported(u"Name").size(), 18U) << "but in the next";
}

TEST_F(EnumerationCallback, MayEnumerate) {
    pooled(u"A");
    pooled(u"B");
    int calls = 0;
    EXPECT_EQ(enumerate(Text(),
                        [&](const Reported&, const FS_EnumLogFontEx& font, const auto&) {
                            return enumerate(font.getFaceName(),
                                             [&](const auto&, const auto&, const auto&) {
                                                 return ++calls == 2 ? 9 : 0;
                                             });
                        }),
              9);
    EXPECT_EQ(calls, 2);
}

TEST_F(EnumerationCallback, MayAddFoldersWhoseFontsTheNextWalkSees) {
    constexpr int kBatch = 20; // enough for the list of fonts to move
    write("first/a.ttf", namedFont(u"First"));
    ASSERT_EQ(addFolder("first"), 1);
    for (int i = 0; i < 2 * kBatch; ++i)
        write("more" + std::to_string(i) + "/b.ttf", namedFont(u"First", 500 + i));
    int folder = 0;
    for (const Text name : {u"First", u""}) {
        const std::size_t before = reported(name).size();
        std::size_t calls = 0;
        enumerate(name, [&](const auto&, const auto&, const auto&) {
            for (int i = 0; calls == 0 && i < kBatch; ++i, ++folder)
                EXPECT_EQ(addFolder("more" + std::to_string(folder)), 1);
            ++calls;
            return 0;
        });
        EXPECT_EQ(calls, before);
        EXPECT_EQ(reported(name).size(), before + kBatch);
    }
}

TEST_F(EnumerationCallback, MayChangeTheNameThatItWasCalledFor) {
    pooled(u"Name");
    pooled(u"Name", {700, false, 5});
    Text name(u"Name");
    int calls = 0;
    enumerate(name, [&](const auto&, const auto&, const auto&) {
        name.remove();
        return ++calls, 0;
    });
    EXPECT_EQ(calls, 2);
}

class DocumentCallback : public EnumerationTest {
protected:
    DocumentCallback() {
        for (int i = 0; i < kFiles; ++i)
            write(fileName(i), namedFont(u"Inside"));
        append(0, u"Zero");
    }
    static std::string fileName(int i) { return "file" + std::to_string(i) + ".ttf"; }
    void append(int i, const Text& family) {
        EXPECT_GE(fonts.appendExtraFont(files.text(fileName(i)), family, 100 * i, -1,
                                        FS_FILETYPE_UNKNOWN, nullptr),
                  0);
    }

    static constexpr int kFiles = 9;
    FS_ExtraFontManager fonts;
};

TEST_F(DocumentCallback, MayAppendToTheDocument) {
    for (const Text name : {u"Zero", u""}) {
        const FS_ExtraFontManager former(fonts);
        FS_ExtraFontManager anew(&former);
        int calls = 0;
        enumerate(
            name,
            [&](const auto&, const auto&, const auto&) {
                for (int i = 1; i < kFiles; ++i) {
                    EXPECT_GE(anew.appendExtraFont(files.text(fileName(i)), u"Zero", 100 * i + 50,
                                                   -1, FS_FILETYPE_UNKNOWN, nullptr),
                              0);
                }
                return ++calls, 0;
            },
            &anew);
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(reported(u"Zero", &anew).size(), std::size_t{kFiles});
    }
}

TEST_F(DocumentCallback, MayFailToAppendToTheDocument) {
    write("bad.ttf", namedFont(u"Bad").without("hmtx"));
    for (const Text name : {u"Zero", u""}) {
        int calls = 0;
        enumerate(
            name,
            [&](const auto&, const auto&, const auto&) {
                EXPECT_EQ(fonts.appendExtraFont(files.text("bad.ttf"), u"Zero", 0, -1,
                                                FS_FILETYPE_UNKNOWN, nullptr),
                          -1);
                return ++calls, 0;
            },
            &fonts);
        EXPECT_EQ(calls, 1);
    }
    EXPECT_THAT(familiesOf(reported(Text(), &fonts)), ElementsAre("Zero"));
}

TEST_F(DocumentCallback, MayLeaveTheFontsOfTheDocumentBehind) {
    append(1, u"One");
    std::vector<Reported> faces;
    enumerate(
        Text(),
        [&](const Reported& face, const auto&, const auto&) {
            faces.push_back(face);
            fonts = FS_ExtraFontManager();
            return 0;
        },
        &fonts);
    EXPECT_THAT(familiesOf(faces), ElementsAre("Zero", "One"));
    EXPECT_EQ(fonts.getFontsCount(), 0);
}

void enumerateWithABadConfiguration() {
    const auto fail = [](FS_FontService&, const FS_OpenArguments&) {
        throw KWError(FS_ERROR_FONT_READ, u"text");
    };
    const FS_StartupStep steps[] = {{FS_StartupStep::Kind::configuration, fail}};
    const FS_StartupOverride failing(steps);
    EXPECT_EQ(enumerate(UnicodeString(), [](auto&&...) { return 7; }), 1);
    EXPECT_EQ(enumerate(UnicodeString(), [](auto&&...) { return 7; }), 0)
        << "the service then stands without fonts";
}

TEST(EnumFontFamilies, OpensTheServiceAndAnswers1WhereItsConfigurationFails) {
    KW_IN_OWN_PROCESS(enumerateWithABadConfiguration());
}

} // namespace
