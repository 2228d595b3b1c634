#pragma once

#include "registry/FS_FontPool.h"

#include <functional>
#include <utility>

namespace KWTest {

/// A font without a file, with the names and the style that a test gives it.
class FakeFont : public KWFontService_NS::FS_BaseFont {
public:
    using FontRef = KWFontService_NS::FS_FontRef;
    using Key = KWFontService_NS::FS_FontKey;
    using Pool = KWFontService_NS::FS_FontPool;
    using Text = icu::UnicodeString;
    using Uri = KWCommonNS::KWUri;

    explicit FakeFont(const Text& file = Text(u"/fonts/fake.ttf")) : FS_BaseFont(Uri(file)) {}
    ~FakeFont() override {
        if (onDestroy)
            onDestroy();
    }

    Text family{u"Fake Family"};
    Text postScript{u"Fake-PS"};
    int weight = 0;
    bool italic = false;
    int width = 0;
    std::function<void()> onDestroy;

    KWFontService_NS::FS_FontFileType getFontFileType(int) const override {
        return KWFontService_NS::FS_FILETYPE_TRUETYPE;
    }
    bool isType1Font(int) const override { return false; }
    bool isTrueTypeFont(int) const override { return true; }
    bool isType1OrNoCID(int) const override { return false; }
    bool isTrueTypeOrCID(int) const override { return true; }
    bool scanFont(KWCommonNS::KWError&, std::istream&) override { return true; }

    Text getFamilyName(KWCommonNS::KWLang::LanguageID, int) const override { return family; }
    Text getPostScriptName(KWCommonNS::KWLang::LanguageID, int) const override {
        return postScript;
    }
    void setPostScriptName(const Text& name, int) override { postScript = name; }
    int getWeight(int) const override { return weight; }
    bool isItalic(int) const override { return italic; }
    int getWidth(int) const override { return width; }

    void registerFileName(Pool& pool, const Uri& fileUri) override {
        pool.addFileName(fileUri, FontRef{this, 0}, Key::ofFace(*this, 0));
    }
    void registerFontNames(Pool& pool) override {
        Pool::addName(pool.byName, KWFontService_NS::normaliseFontName(family), FontRef{this, 0},
                      Key::ofFace(*this, 0));
    }
};

} // namespace KWTest
