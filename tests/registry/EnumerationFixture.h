#pragma once

#include "registry/FakeFont.h"
#include "registry/RegistryFixture.h"

#include <KWFontService17/FS_ExtraFontManager.h>
#include <KWFontService17/FS_Functions.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_NewTextMetricEx.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace KWTest {

/// What one call of an enumeration told.
struct Reported {
    int type = 0;
    std::string family{};
    std::string full{};
    int weight = 400;
    bool italic = false;

    friend bool operator==(const Reported&, const Reported&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Reported& face) {
        return out << face.type << ' ' << face.family << '/' << face.full << ' ' << face.weight
                   << (face.italic ? " italic" : "");
    }
};

using EnumerationStep =
    std::function<int(const Reported&, const KWFontService_NS::FS_EnumLogFontEx&,
                      const KWFontService_NS::FS_NewTextMetricEx&)>;

/// Calls a step for each face, and answers what the enumeration answers.
inline int enumerate(const icu::UnicodeString& family, EnumerationStep step,
                     KWFontService_NS::FS_ExtraFontManager* extraFonts = nullptr,
                     int reserved = 0) {
    using namespace KWFontService_NS;
    const auto callback = [](FS_FontResourceType type, const FS_EnumLogFontEx* font,
                             const FS_NewTextMetricEx* metric, void* userData) {
        Reported face{.type = type, .weight = font->getWeight(), .italic = font->isItalic()};
        font->getFaceName().toUTF8String(face.family);
        font->getFullName().toUTF8String(face.full);
        return (*static_cast<EnumerationStep*>(userData))(face, *font, *metric);
    };
    return FS_EnumFontFamilies(family, callback, &step, extraFonts, reserved);
}

inline std::vector<Reported> reported(const icu::UnicodeString& family,
                                      KWFontService_NS::FS_ExtraFontManager* extraFonts = nullptr) {
    std::vector<Reported> faces;
    const int answer = enumerate(
        family,
        [&](const Reported& face, const auto&, const auto&) {
            faces.push_back(face);
            return 0;
        },
        extraFonts);
    EXPECT_EQ(answer, 0);
    return faces;
}

/// A font without a file that fills its records, or does not.
class RecordFont : public FakeFont {
public:
    using FakeFont::FakeFont;

    bool hasLogFont = true;
    bool hasMetric = true;
    int faceCount = 1;
    bool vertical = false;
    std::function<bool()> onLoad = [] { return true; };

    int getFontCount() const override { return faceCount; }
    bool getLogFont(KWFontService_NS::FS_EnumLogFontEx& font, int face) const override {
        if (hasLogFont)
            font = {family, family + icu::UnicodeString(char16_t(u'0' + face)), weight, italic};
        return hasLogFont;
    }
    bool getNewTextMetricEx(KWFontService_NS::FS_NewTextMetricEx&, int) const override {
        return hasMetric;
    }
    bool loadFont(KWCommonNS::KWError& error, int, std::istream*) override {
        return onLoad() || fontError(error, KWFontService_NS::FS_ERROR_FONT_FILE, u"refused");
    }
    bool hasVerticalGlyph(int) const override { return vertical; }
};

/// The one service, with the fonts that a test puts into it.
class EnumerationTest : public testing::Test {
protected:
    using Pool = KWFontService_NS::FS_FontPool;
    using Ref = KWFontService_NS::FS_FontRef;
    using Key = KWFontService_NS::FS_FontKey;
    using Text = icu::UnicodeString;

    EnumerationTest() {
        // The fonts of another test are still there; nothing finds them.
        for (Pool* const pool : {&service().fontPool, &service().aliasPool}) {
            for (auto& font : pool->fonts)
                service().keptFonts.push_back(font);
            pool->fonts.clear();
            pool->byName.clear();
            pool->byFileName.clear();
        }
    }

    static KWFontService_NS::FS_FontService& service() {
        return *KWFontService_NS::getFontService(nullptr, nullptr, nullptr);
    }
    static Pool& fontPool() { return service().fontPool; }
    static Pool& aliasPool() { return service().aliasPool; }

    void write(std::string_view name, const Bytes& bytes) { files.write(name, bytes); }
    void write(std::string_view name, const TestFont& font) { write(name, font.build()); }
    /// Adds a folder of the scratch folder; its files come in no order that a test may rely on.
    int addFolder(std::string_view name) {
        return KWFontService_NS::FS_AddFontFolderPath(files.uri(name));
    }
    KWCommonNS::KWPtr<RecordFont> pooled(Pool& pool, const Text& name, const Key& key = {},
                                         std::int16_t face = 0) {
        KWCommonNS::KWPtr<RecordFont> font(new RecordFont);
        font->family = name;
        font->weight = key.weight;
        font->italic = key.italic;
        pool.fonts.push_back(font);
        enter(pool, name, *font, key, face);
        return font;
    }
    KWCommonNS::KWPtr<RecordFont> pooled(const Text& name, const Key& key = {}) {
        return pooled(fontPool(), name, key);
    }
    static void enter(Pool& pool, const Text& name, KWFontService_NS::FS_BaseFont& font,
                      const Key& key = {}, std::int16_t face = 0) {
        Pool::addName(pool.byName, KWFontService_NS::normaliseFontName(name), Ref{&font, face},
                      key);
    }

    TempDir files;
};

} // namespace KWTest
