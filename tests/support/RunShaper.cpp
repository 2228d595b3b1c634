#include "RunShaper.h"

#include "SfntBuilder.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <string>
#include <utility>

namespace KWTest {

using namespace KWFontService_NS;

std::vector<std::string_view> RunShaper::commonFeatures() {
    return {"abvm", "blwm", "calt", "ccmp", "clig", "curs", "dist", "kern",
            "liga", "locl", "mark", "mkmk", "rclt", "rlig", "rvrn"};
}

RunShaper::RunShaper(const FS_FontInfo& font, const Plan& plan)
    : font_(font), rtl_(plan.rtl), joining_(plan.joining),
      info_(font.getGSUBGPOSInfo(tagValue(plan.script),
                                 plan.language.empty() ? 0 : tagValue(plan.language))),
      substitutions_(stepsOf(plan, &FS_FontInfo::getGSUBFeatureTag)),
      positionings_(stepsOf(plan, &FS_FontInfo::getGPOSFeatureTag)) {}

std::vector<RunShaper::Step> RunShaper::stepsOf(const Plan& plan, TagAt tagAt) const {
    constexpr std::pair<std::string_view, Form> kForms[] = {{"isol", Form::Isolated},
                                                            {"init", Form::Initial},
                                                            {"medi", Form::Medial},
                                                            {"fina", Form::Final}};
    std::vector<Step> steps;
    for (int index = 0;; ++index) {
        const unsigned int tag = tagAt(info_.get(), index);
        if (tag == 0)
            return steps;
        if (std::ranges::any_of(plan.features,
                                [tag](std::string_view name) { return tagValue(name) == tag; }))
            steps.push_back({index, Form::None});
        for (const auto& [name, form] : kForms) {
            if (plan.joining && tagValue(name) == tag)
                steps.push_back({index, form});
        }
    }
}

void RunShaper::findForms(const UnicodeString& text) {
    const auto typeAt = [&text](int i) {
        return static_cast<UJoiningType>(
            u_getIntPropertyValue(text.char32At(i), UCHAR_JOINING_TYPE));
    };
    int before = -1; // the last character that is not transparent
    bool joinsOn = false;
    for (int i = 0; i < text.length(); ++i) {
        const UJoiningType type = typeAt(i);
        if (type == U_JT_TRANSPARENT)
            continue;
        const bool toBefore =
            type == U_JT_DUAL_JOINING || type == U_JT_RIGHT_JOINING || type == U_JT_JOIN_CAUSING;
        const bool joined = joinsOn && toBefore;
        if (before >= 0 && joined) {
            Form& form = slots_[static_cast<std::size_t>(before)].form;
            form = form == Form::Final      ? Form::Medial
                   : form == Form::Isolated ? Form::Initial
                                            : form;
        }
        const bool shaped = type == U_JT_DUAL_JOINING || type == U_JT_RIGHT_JOINING;
        slots_[static_cast<std::size_t>(i)].form = !shaped  ? Form::None
                                                   : joined ? Form::Final
                                                            : Form::Isolated;
        joinsOn = type == U_JT_DUAL_JOINING || type == U_JT_JOIN_CAUSING;
        before = i;
    }
}

const std::vector<GlyphIDPosition>& RunShaper::shape(const UnicodeString& text) {
    run_.clear();
    for (int i = 0; i < text.length(); ++i) {
        const unsigned short gid = font_.getGlyphID(text.charAt(i), false);
        run_.push_back(gid, font_.getGlyphClassDef(gid));
    }
    slots_.assign(static_cast<std::size_t>(run_.size()), {});
    if (joining_)
        findForms(text);
    for (const Step& step : substitutions_)
        substitute(step);
    position();
    return positions_;
}

void RunShaper::substitute(const Step& step) {
    run_.words().clear();
    if (step.form != Form::None) {
        for (const Slot& slot : slots_)
            run_.words().push_back(slot.form == step.form ? 0 : 1);
    }
    if (FS_FontInfo::processGSUB3(info_.get(), step.index, run_, out_, 1))
        readBack();
}

void RunShaper::readBack() {
    // Most lookups put one glyph in the place of another.
    if (out_.size() == run_.size() &&
        std::ranges::all_of(out_.words(), [](int word) { return word == 1; })) {
        std::swap(run_, out_);
        return;
    }
    std::swap(slots_, oldSlots_);
    slots_.clear();
    std::size_t from = 0; // in the run before
    for (int i = 0; i < out_.size();) {
        const int length = out_.ligaInfo(i);
        int marks = 0; // which a ligature passed over and which are among those it came from
        while (i + marks + 1 < out_.size() && out_.skipInfo(i + marks + 1) > 0)
            ++marks;
        int added = 0; // glyphs of a sequence, or the others of a context
        while (marks == 0 && i + added + 1 < out_.size() && out_.ligaInfo(i + added + 1) == 0)
            ++added;
        Slot slot = oldSlots_[from];
        if (length > 1 && added == 0)
            slot.components = static_cast<short>(length);
        slots_.push_back(slot);
        for (int k = 1; k <= marks; ++k) {
            const int offset = out_.skipInfo(i + k) - i;
            slots_.push_back(oldSlots_[from + static_cast<std::size_t>(offset)]);
            slots_.back().component = static_cast<short>(offset - (k - 1));
        }
        for (int k = 1; k <= added; ++k)
            slots_.push_back(oldSlots_[from + static_cast<std::size_t>(std::min(k, length - 1))]);
        from += static_cast<std::size_t>(length + marks);
        i += 1 + marks + added;
    }
    std::swap(run_, out_);
}

void RunShaper::position() {
    positions_.clear();
    for (int i = 0; i < run_.size(); ++i) {
        const Slot& slot = slots_[static_cast<std::size_t>(i)];
        const GlyphIDClassPair& glyph = run_[i];
        const bool mark = glyph.getGlyphClassDef() == GlyphClassDef::Mark;
        GlyphIDPosition& position = positions_.emplace_back();
        position.setGlyph(
            glyph.getGlyphID(), glyph.getGlyphClassDef(),
            mark ? 0 : static_cast<int>(font_.getGlyphWidth(glyph.getGlyphID(), 0, false)));
        position.setFlag(GLYPH_FLAG_LOOKUP_SKIP);
        position.setSkipInfo(slot.component);
        position.setCompInfo(slot.components > 1 ? slot.components : 0);
    }
    for (const Step& step : positionings_)
        FS_FontInfo::processGPOS3(info_.get(), step.index, positions_, rtl_);
}

} // namespace KWTest
