// The way of a font from the system's registry into the service.

#include "registry/RegistryFixture.h"
#include "support/RegistrySandbox.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Hive = KWTest::RegistrySandbox::Hive;
using KWTest::namedFont;

constexpr const char16_t* kFonts = u"software\\microsoft\\windows nt\\currentversion\\Fonts";

class StartupOnWindows : public KWTest::RegistryTest {};

TEST_F(StartupOnWindows, LoadsTheFontsOfTheRegistryByTheirFullPathsAlone) {
    write("listed/a.ttf", namedFont(u"Listed Face"));
    write("listed/b.ttf", namedFont(u"Second String"));
    files().write("config.xml", "<font-config><font-folder path='" +
                                    files().path("none").generic_string() + "'/></font-config>");
    const KWTest::RegistrySandbox registry;
    const std::u16string folder = files().path("listed").u16string();
    registry.setText(Hive::localMachine, kFonts, u"Full", folder + u"\\a.ttf");
    registry.setText(Hive::localMachine, kFonts, u"Bare", u"b.ttf");
    registry.setText(Hive::localMachine, kFonts, u"Gone", folder + u"\\gone.ttf");
    startUp(service(), {files().path("config.xml").string().c_str(), nullptr});
    EXPECT_EQ(fontFiles(), std::vector<std::string>{"listed/a.ttf"});
    EXPECT_EQ(found(u"listed face"), "listed/a.ttf");
    EXPECT_EQ(found(u"Second String"), "");
    EXPECT_EQ(service().fontPool.fonts[0]->getMarks(), KWFontService_NS::FS_FONTMARK_REGISTRY);
}

TEST_F(StartupOnWindows, LinksTheEndUserDefinedFontsOfTheRegistry) {
    using KWTest::TestFont;
    TestFont own = namedFont(u"Own Signs");
    own.cmap = KWTest::Cmap::unicode({{0xE100, TestFont::kA}});
    write("own/a.tte", own);
    write("fonts/a.ttf", namedFont(u"Alpha"));
    files().write("config.xml", "<font-config><font-folder path='" +
                                    files().path("fonts").generic_string() + "'/></font-config>");
    const KWTest::RegistrySandbox registry;
    const std::u16string file = files().path("own").u16string() + u"\\a.tte";
    registry.setText(Hive::localMachine,
                     u"System\\CurrentControlSet\\Control\\NLS\\CodePage\\EUDCCodeRange",
                     u"Unicode", u"E100-E1FF");
    registry.setText(Hive::currentUser, u"EUDC\\936", u"Alpha", file);
    for (const char16_t* const key : {u"EUDC\\932", u"EUDC\\936", u"EUDC\\949", u"EUDC\\950"})
        registry.setText(Hive::currentUser, key, u"SystemDefaultEUDCFont", file);
    startUp(service(), {files().path("config.xml").string().c_str(), nullptr});
    EXPECT_TRUE(service().isEudcCodePoint(0xE100));
    EXPECT_FALSE(service().isEudcCodePoint(0xE000));
    EXPECT_EQ(fontFiles(),
              (std::vector<std::string>{"fonts/a.ttf", "own/a.tte", "own/a.tte", "own/a.tte"}));
    const auto link = service().fontPool.fonts[0]->getEudcFont(0);
    ASSERT_TRUE(link);
    EXPECT_EQ(link.font, service().fontPool.fonts[3].get());
    EXPECT_EQ(service().defaultEudcFont.font->getEudcGlyphID(0xE100, 0), TestFont::kA);
}

} // namespace
