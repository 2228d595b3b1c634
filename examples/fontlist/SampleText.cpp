#include "SampleText.h"

#include <cstddef>

namespace fontlist {

using namespace KWFontService_NS;

namespace {

struct Sample {
    bool (FS_NewTextMetricEx::*isServed)() const;
    const char16_t* words;
};

/// What tells a font of its script goes first.
constexpr Sample kSamples[] = {
    {&FS_NewTextMetricEx::isJapanese, u"いろは色匂"},
    {&FS_NewTextMetricEx::isChineseSimp, u"简体汉字"},
    {&FS_NewTextMetricEx::isChineseTrad, u"繁體漢字"},
    {&FS_NewTextMetricEx::isKorean, u"가나다 한글"},
    {&FS_NewTextMetricEx::isLatin1, u"Hamburgefonts 123"},
    {&FS_NewTextMetricEx::isGreek, u"Ψυχή"},
    {&FS_NewTextMetricEx::isCyrillic, u"Южный"},
    {&FS_NewTextMetricEx::isArmenian, u"Բարեւ"},
    {&FS_NewTextMetricEx::isGeorgian, u"ანბანი"},
};

template <class IsServed>
icu::UnicodeString wordsOf(const FS_FontInfo& font, const IsServed& isServed) {
    constexpr int kMostSamples = 3; // as many as go into a line
    icu::UnicodeString text;
    int samples = 0;
    for (const Sample& sample : kSamples) {
        const icu::UnicodeString words(sample.words);
        if (samples == kMostSamples || !isServed(sample) || !covers(font, words))
            continue;
        text.append(samples == 0 ? u"" : u"  ").append(words);
        ++samples;
    }
    return text;
}

} // namespace

bool covers(const FS_FontInfo& font, const icu::UnicodeString& text) {
    std::vector<unsigned short> glyphs(static_cast<std::size_t>(text.length()));
    int count = 0;
    int firstMissing = -1;
    if (font.getGlyphIDs(text, glyphs.data(), count, false, &firstMissing))
        return firstMissing < 0;
    // A Type 1 font answers by the character.
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        if (font.getGlyphID(text.char32At(i), false) == FS_NO_GLYPH)
            return false;
    }
    return !text.isEmpty();
}

icu::UnicodeString sampleText(const FS_FontInfo& font, const FS_NewTextMetricEx& metric) {
    const icu::UnicodeString declared =
        wordsOf(font, [&metric](const Sample& sample) { return (metric.*sample.isServed)(); });
    return declared.isEmpty() ? wordsOf(font, [](const Sample&) { return true; }) : declared;
}

std::vector<unsigned short> firstGlyphs(const FS_FontInfo& font) {
    constexpr std::size_t kGlyphs = 16;
    constexpr unsigned short kTries = 300;
    std::vector<unsigned short> glyphs;
    for (unsigned short gid = 1; gid < kTries && glyphs.size() < kGlyphs; ++gid) {
        FS_GlyphDrawInfo outline;
        if (font.getGlyphDrawInfo(gid, outline, false) && !outline.contours.empty())
            glyphs.push_back(gid);
    }
    return glyphs;
}

} // namespace fontlist
