#pragma once

#include "registry/FS_FontService.h"
#include "service/FS_Startup.h"
#include "service/FontConfigReader.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

/// A text as UTF-8; what is no text (bytes of a file name) comes out as "?".
inline std::string utf8(const icu::UnicodeString& text) {
    std::string bytes;
    return text.toUTF8String(bytes);
}

/// What reading a configuration gave. Complaints are "CODE message", with FILE for the path of the
/// configuration and DIR for that of its folder.
struct ConfigRead {
    std::unique_ptr<KWFontService_NS::FS_FontService> service =
        std::make_unique<KWFontService_NS::FS_FontService>();
    std::vector<std::string> complaints; ///< the recorded ones
    std::string thrown;                  ///< the one that was thrown; empty when none was

    /// The options of a file in the first folder; the defaults when there are none.
    const KWFontService_NS::FS_FontFileOptions& options(const char16_t* lowerName) const {
        static const KWFontService_NS::FS_FontFileOptions kNone;
        if (service->folders.empty())
            return kNone;
        const auto* const found = service->folders.front()->findOptions(lowerName);
        return found != nullptr ? *found : kNone;
    }
    /// How many code points count as end-user-defined.
    int eudcCount() const {
        int count = 0;
        for (int ch = 0; ch < 0x10000; ++ch)
            count += service->isEudcCodePoint(ch) ? 1 : 0;
        return count;
    }
    std::vector<std::string> folderPaths() const {
        std::vector<std::string> paths;
        for (const auto& folder : service->folders)
            paths.push_back(posixPath(*folder));
        return paths;
    }
};

/// Reads configurations into services of their own, beside a service that has no fonts.
class FontConfigTest : public testing::Test {
protected:
    FontConfigTest() {
        const KWFontService_NS::FS_StartupOverride noSteps({});
        running_ = KWFontService_NS::getFontService(nullptr, nullptr, nullptr);
    }

    const TempDir& files() const { return files_; }

    ConfigRead read(std::string_view document, const char* homePath = nullptr) {
        return readPath(files_.write("fonts.xml", document).string(), homePath);
    }
    /// A document with this content of `font-config`.
    ConfigRead readRoot(std::string_view content) {
        return read(std::string("<font-config>").append(content).append("</font-config>"));
    }
    /// A document with this content of a `font-folder`.
    ConfigRead readFolder(std::string_view content) {
        return readRoot(
            std::string("<font-folder path='/f'>").append(content).append("</font-folder>"));
    }
    /// A document with this content of `eudc-processing`, and with a folder before it.
    ConfigRead readEudc(std::string_view content) {
        return readRoot(std::string("<font-folder path='/f'/><eudc-processing>")
                            .append(content)
                            .append("</eudc-processing>"));
    }
    ConfigRead readPath(const std::string& path, const char* homePath = nullptr) {
        ConfigRead result;
        const std::size_t before = running_->errors.size();
        try {
            KWFontService_NS::readFontConfig(*result.service, path.c_str(), homePath);
        } catch (const KWFontService_NS::KWError& error) {
            result.thrown = describe(error, path);
        }
        for (std::size_t i = before; i < running_->errors.size(); ++i)
            result.complaints.push_back(describe(*running_->errors.get(i), path));
        return result;
    }

private:
    std::string describe(const KWFontService_NS::KWError& error, const std::string& path) const {
        std::string text = std::to_string(error.getCode()) + " " + utf8(error.getMessage());
        replaceAll(text, path, "FILE");
        replaceAll(text, files_.path().string(), "DIR");
        return text;
    }
    static void replaceAll(std::string& text, const std::string& what, const std::string& by) {
        for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
            text.replace(at, what.size(), by);
    }

    KWFontService_NS::FS_FontService* running_;
    TempDir files_;
};

} // namespace KWTest
