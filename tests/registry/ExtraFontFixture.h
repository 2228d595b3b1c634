#pragma once

#include "registry/FS_ExtraFontPool.h"
#include "registry/RegistryFixture.h"

#include <KWFontService17/FS_ExtraFontManager.h>

#include <gtest/gtest.h>

#include <string>

namespace KWTest {

/// A document with fonts of its own, and a scratch folder for their files.
class ExtraFontTest : public RegistryTest {
protected:
    using Text = icu::UnicodeString;
    using Manager = KWFontService_NS::FS_ExtraFontManager;
    using Type = KWFontService_NS::FS_FontFileType;

    ~ExtraFontTest() override { KWCommonNS::KWUri::setFetcher(nullptr); }

    /// Appends a file of the scratch folder, or what is a URL already.
    int append(Manager& to, std::string_view url, const Text& family, int weight = 0,
               int italic = -1, int type = 0) {
        error = KWCommonNS::KWError();
        return to.appendExtraFont(textOf(url), family, weight, italic, static_cast<Type>(type),
                                  &error);
    }
    int append(std::string_view url, const Text& family, int weight = 0, int italic = -1,
               int type = 0) {
        return append(fonts, url, family, weight, italic, type);
    }
    Text textOf(std::string_view url) const {
        const bool isUrl = url.empty() || url.find(':') != std::string_view::npos;
        return isUrl ? Text::fromUTF8(url) : files().text(url);
    }

    /// The font that a name means in the document, null when only the service could know it.
    static KWFontService_NS::FS_BaseFont* find(const Manager& in, const Text& name, int weight = 0,
                                               bool italic = false) {
        return in.getExtraFonts()
            ->findFont(name, KWFontService_NS::FS_FontKey::ofRequest(weight, italic, 0))
            .font;
    }
    KWFontService_NS::FS_BaseFont* find(const Text& name, int weight = 0, bool italic = false) {
        return find(fonts, name, weight, italic);
    }
    KWFontService_NS::FS_BaseFont* at(int index) const {
        return fonts.getExtraFonts()->fontAt(index);
    }

    void expectNothingAppended() {
        const KWFontService_NS::FS_ExtraFontPool& pool = *fonts.getExtraFonts();
        EXPECT_TRUE(pool.fonts.empty());
        EXPECT_TRUE(pool.byName.empty());
        EXPECT_TRUE(pool.byFileName.empty());
        EXPECT_TRUE(pool.byUri.empty());
    }
    /// An append that has just failed.
    void expectRefusal(int index, int code, const Text& message) {
        EXPECT_EQ(index, -1);
        EXPECT_EQ(error.getCode(), code);
        EXPECT_EQ(error.getMessage(), message);
        expectNothingAppended();
    }

    /// A `data:` URI with every byte percent-encoded.
    static std::string dataUrl(std::string_view mediaType, const Bytes& data) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        std::string url = "data:" + std::string(mediaType) + ",";
        for (const std::uint8_t byte : data)
            url.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
        return url;
    }

    Manager fonts;
    KWCommonNS::KWError error;
};

} // namespace KWTest
