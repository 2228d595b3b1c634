#include "TextRuns.h"

#include "Failure.h"

#include <unicode/uchar.h>

#include <memory>
#include <optional>

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// The level of each UTF-16 unit.
std::vector<UBiDiLevel> bidiLevels(const icu::UnicodeString& text, bool& rightToLeft) {
    const std::unique_ptr<UBiDi, decltype(&ubidi_close)> bidi(ubidi_open(), ubidi_close);
    UErrorCode status = U_ZERO_ERROR;
    ubidi_setPara(bidi.get(), text.getBuffer(), text.length(), UBIDI_DEFAULT_LTR, nullptr, &status);
    const UBiDiLevel* levels = ubidi_getLevels(bidi.get(), &status);
    if (U_FAILURE(status))
        throw Failure(ExitCode::text, std::string("ICU's directions: ") + u_errorName(status));
    rightToLeft = (ubidi_getParaLevel(bidi.get()) & 1) != 0;
    return {levels, levels + text.length()};
}

/// The script of a character; nothing for what every script uses.
std::optional<UScriptCode> scriptOf(UChar32 character) {
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(character, &status);
    if (U_FAILURE(status) || script == USCRIPT_COMMON || script == USCRIPT_INHERITED ||
        script == USCRIPT_UNKNOWN)
        return std::nullopt;
    // The two kanas are one script of OpenType, and stand together.
    return script == USCRIPT_HIRAGANA ? USCRIPT_KATAKANA : script;
}

bool hasGlyph(const FontFile& font, UChar32 character) {
    const unsigned short gid = font.info.getGlyphID(character, false);
    return gid != FS_NO_GLYPH && gid != 0;
}

class Splitter {
public:
    Splitter(const icu::UnicodeString& text, const FontSet& fonts, std::size_t font, bool columns)
        : text_(text), fonts_(fonts), wanted_(font), columns_(columns) {}

    TextRuns split();

private:
    std::size_t fontFor(UChar32 character) const;
    Writing writingOf(UChar32 character, std::size_t font, Writing before) const;
    /// What the characters up to the first letter go by.
    void findFirstLetter();

    const icu::UnicodeString& text_;
    const FontSet& fonts_;
    std::size_t wanted_;
    bool columns_;
    // Of the last letter.
    UScriptCode script_ = USCRIPT_COMMON;
    std::size_t font_ = 0;
};

std::size_t Splitter::fontFor(UChar32 character) const {
    if (hasGlyph(fonts_[wanted_], character))
        return wanted_;
    for (std::size_t i = fonts_.fallbacks; i < fonts_.size(); ++i) {
        if (hasGlyph(fonts_[i], character))
            return i;
    }
    return wanted_;
}

Writing Splitter::writingOf(UChar32 character, std::size_t font, Writing before) const {
    if (!columns_)
        return Writing::horizontal;
    if ((U_GET_GC_MASK(character) & U_GC_M_MASK) != 0)
        return before;
    switch (u_getIntPropertyValue(character, UCHAR_VERTICAL_ORIENTATION)) {
    case U_VO_UPRIGHT:
    case U_VO_TRANSFORMED_UPRIGHT:
        return Writing::upright;
    case U_VO_TRANSFORMED_ROTATED:
        return fonts_[font].info.hasVerticalGlyph(character) ? Writing::upright : Writing::sideways;
    default:
        return Writing::sideways;
    }
}

void Splitter::findFirstLetter() {
    font_ = wanted_;
    for (std::int32_t i = 0; i < text_.length(); i = text_.moveIndex32(i, 1)) {
        if (const auto script = scriptOf(text_.char32At(i))) {
            script_ = *script;
            font_ = fontFor(text_.char32At(i));
            return;
        }
    }
}

TextRuns Splitter::split() {
    TextRuns result;
    if (text_.isEmpty())
        return result;
    std::vector<UBiDiLevel> levels(static_cast<std::size_t>(text_.length()));
    if (!columns_)
        levels = bidiLevels(text_, result.rightToLeft);
    findFirstLetter();
    for (std::int32_t i = 0; i < text_.length(); i = text_.moveIndex32(i, 1)) {
        const UChar32 character = text_.char32At(i);
        TextRun run;
        run.start = i;
        run.level = levels[static_cast<std::size_t>(i)];
        if (const auto script = scriptOf(character)) {
            script_ = *script;
            font_ = run.font = fontFor(character);
        } else {
            const bool follows = hasGlyph(fonts_[font_], character) ||
                                 u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT);
            run.font = follows ? font_ : fontFor(character);
        }
        run.script = script_;
        const bool first = result.runs.empty();
        run.writing =
            writingOf(character, run.font, first ? Writing::upright : result.runs.back().writing);
        if (first || result.runs.back().level != run.level ||
            result.runs.back().script != run.script || result.runs.back().font != run.font ||
            result.runs.back().writing != run.writing)
            result.runs.push_back(run);
        result.runs.back().limit = text_.moveIndex32(i, 1);
    }
    return result;
}

} // namespace

TextRuns splitIntoRuns(const icu::UnicodeString& text, const FontSet& fonts, std::size_t font,
                       bool columns) {
    return Splitter(text, fonts, font, columns).split();
}

} // namespace typeset
