#pragma once

#include "registry/FS_FontService.h"
#include "service/FS_Startup.h"
#include "support/TempDir.h"
#include "support/TestFont.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

/// A sound font with a family name and a style of its own.
inline TestFont namedFont(std::u16string_view family, int weight = 400, bool italic = false,
                          int width = 5) {
    TestFont font = TestFont::latin();
    font.name = Name::english(family);
    font.os2.usWeightClass = static_cast<std::uint16_t>(weight);
    font.os2.usWidthClass = static_cast<std::uint16_t>(width);
    font.os2.fsSelection = italic ? 1 : 0;
    return font;
}

/// A service of the test's own that knows the extensions, and a scratch folder for fonts.
class RegistryTest : public testing::Test {
protected:
    using Service = KWFontService_NS::FS_FontService;
    using Folder = KWFontService_NS::FS_FontFolder;

    RegistryTest() {
        // Fonts ask it for a setting when they enter their names. Open from here on, it does not
        // start up in the middle of a test.
        KWFontService_NS::getFontService(nullptr, nullptr, nullptr);
        const KWFontService_NS::FS_StartupOverride noSteps({});
        KWFontService_NS::startUp(service(), {});
    }

    Service& service() { return *service_; }
    const TempDir& files() const { return files_; }

    void write(std::string_view name, const TestFont& font) { files_.write(name, font.build()); }

    /// Adds a folder of the scratch folder to the service; "" is the scratch folder itself.
    Folder& addFolder(std::string_view name, bool recursive) {
        Folder* const added = service().addFolder(std::make_unique<Folder>(uriOf(name), recursive));
        EXPECT_NE(added, nullptr) << name;
        return *added;
    }
    KWCommonNS::KWUri uriOf(std::string_view name) const {
        return name.empty() ? fileUri(files_.path()) : files_.uri(name);
    }

    /// The files of the pool's fonts, as names below the scratch folder.
    std::vector<std::string> fontFiles() {
        std::vector<std::string> names;
        for (const auto& font : service().fontPool.fonts)
            names.push_back(below(font->getUri()));
        return names;
    }
    /// The folders of the service in their order, as names below the scratch folder.
    std::vector<std::string> folderNames() {
        std::vector<std::string> names;
        for (const auto& folder : service().folders)
            names.push_back(below(*folder));
        return names;
    }
    std::string below(const KWCommonNS::KWUri& uri) const {
        std::string path;
        uri.getLocalPath().toUTF8String(path);
        return std::filesystem::path(path).lexically_relative(files_.path()).generic_string();
    }

    /// The file that a request finds, "" when it finds none.
    std::string found(const icu::UnicodeString& name, int weight = 0, bool italic = false,
                      int stretch = 0, bool skipAliases = false) {
        bool inAlias = false;
        const auto ref = service().findFont(
            name, KWFontService_NS::FS_FontKey::ofRequest(weight, italic, stretch), inAlias,
            skipAliases);
        return ref ? below(ref.font->getUri()) : std::string();
    }

private:
    std::unique_ptr<Service> service_ = std::make_unique<Service>();
    TempDir files_;
};

} // namespace KWTest
