#include "Paragraph.h"

#include "ArabicJoining.h"
#include "Failure.h"

#include <unicode/uchar.h>

#include <string>

namespace typeset {

using namespace KWFontService_NS;

ParagraphShaper::ParagraphShaper(const FontSet& fonts) : fonts_(fonts), shaper_(fonts) {
    UErrorCode status = U_ZERO_ERROR;
    breaker_.reset(icu::BreakIterator::createLineInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        throw Failure(ExitCode::text, std::string("ICU's line breaks: ") + u_errorName(status));
}

Paragraph ParagraphShaper::shape(const icu::UnicodeString& text, const ParagraphStyle& style) {
    TextRuns split = splitIntoRuns(text, fonts_, style.font, style.columns);
    Paragraph paragraph;
    paragraph.text = text;
    paragraph.rightToLeft = split.rightToLeft;
    paragraph.runs = std::move(split.runs);
    const std::vector<UDecompositionType> forms = joiningForms(text);
    for (std::size_t i = 0; i < paragraph.runs.size(); ++i) {
        paragraph.glyphs.push_back(
            shaper_.shape({text, paragraph.runs[i], forms, style.plan, style.language}));
        addClusters(paragraph, i);
    }
    addBoxes(paragraph, style.font);
    return paragraph;
}

void ParagraphShaper::addClusters(Paragraph& paragraph, std::size_t run) const {
    const std::vector<GlyphIDPosition>& glyphs = paragraph.glyphs[run];
    std::int32_t position = paragraph.runs[run].start;
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        const int length = glyphs[i].getCorrespondLength();
        const UChar32 character = paragraph.text.char32At(position);
        const bool follows = length == 0 || glyphs[i].getSkipInfo() > 0 ||
                             (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
        if (i == 0 || !follows)
            paragraph.clusters.push_back({position, position, run, i, i});
        position += length;
        paragraph.clusters.back().limit = position;
        paragraph.clusters.back().glyphsEnd = i + 1;
        if (length > 0 && glyphs[i].getGlyphID() == 0)
            paragraph.missing.push_back(static_cast<char32_t>(character));
    }
}

void ParagraphShaper::addBoxes(Paragraph& paragraph, std::size_t font) {
    breaker_->setText(paragraph.text);
    std::int32_t boundary = breaker_->next();
    for (const Cluster& cluster : paragraph.clusters) {
        const TextRun& run = paragraph.runs[cluster.run];
        const bool horizontal = run.writing != Writing::upright;
        int width = 0;
        int advance = 0;
        for (std::size_t i = cluster.firstGlyph; i < cluster.glyphsEnd; ++i) {
            const GlyphIDPosition& glyph = paragraph.glyphs[cluster.run][i];
            width += glyph.getWidthV(horizontal);
            advance += glyph.getMoveXV(horizontal);
        }
        const double perMille = 1000 * fonts_[run.font].sizeAdjust / fonts_[font].sizeAdjust /
                                fonts_[run.font].info.getUnitsPerEm();
        // From left to right what a glyph's advance gains or loses lies between it and the next.
        const bool kerned = horizontal && !run.rightToLeft();
        Box box;
        box.advance = static_cast<float>((kerned ? width : advance) * perMille);
        box.kern = static_cast<float>((kerned ? advance - width : 0) * perMille);
        box.blank = u_charType(paragraph.text.char32At(cluster.start)) == U_SPACE_SEPARATOR;
        while (boundary != icu::BreakIterator::DONE && boundary < cluster.limit)
            boundary = breaker_->next();
        box.breakAfter = boundary == cluster.limit;
        paragraph.boxes.push_back(box);
    }
}

} // namespace typeset
