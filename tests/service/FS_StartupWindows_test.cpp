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

} // namespace
