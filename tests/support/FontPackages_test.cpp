#include "support/FontPackages.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

namespace KWTest {
namespace {

TEST(FontPackages, EveryListedFontIsInstalled) {
    for (const PackagedFont& font : packagedFonts())
        EXPECT_NO_THROW(packagedFont(font.name)) << font.path;
}

TEST(FontPackages, NamesAreUnique) {
    std::set<std::string_view> names;
    for (const PackagedFont& font : packagedFonts())
        EXPECT_TRUE(names.insert(font.name).second) << font.name;
}

TEST(FontPackages, AnUnknownNameIsAFailure) {
    EXPECT_THROW(packagedFont("NoSuchFont"), std::runtime_error);
}

} // namespace
} // namespace KWTest
