#include "type1/WeightText.h"

#include "common/TextView.h"

#include <unicode/locid.h>

#include <string_view>

namespace KWFontService_NS {

namespace {

/// A text that holds `word` and one of the two modifiers has this weight. The empty modifier
/// stands in every text.
struct WeightWord {
    std::u16string_view word;
    std::u16string_view modifiers[2];
    int weight;
};

// The first that fits counts, so "bold" goes before "black".
constexpr WeightWord kWeightWords[] = {
    {u"thin", {}, 100},
    {u"light", {u"extra", u"ultra"}, 200},
    {u"light", {}, 300},
    {u"medium", {}, 500},
    {u"bold", {u"demi", u"semi"}, 600},
    {u"bold", {u"extra", u"ultra"}, 800},
    {u"bold", {}, 700},
    {u"black", {}, 900},
    {u"heavy", {}, 900},
};
constexpr int kNormalWeight = 400;

} // namespace

int weightFromText(const UnicodeString& text) {
    const UnicodeString lower = UnicodeString(text).toLower(icu::Locale::getRoot());
    const auto holds = [units = KWCommonNS::toView(lower)](std::u16string_view word) {
        return units.find(word) != std::u16string_view::npos;
    };
    for (const auto& [word, modifiers, weight] : kWeightWords) {
        if (holds(word) && (holds(modifiers[0]) || holds(modifiers[1])))
            return weight;
    }
    return kNormalWeight;
}

} // namespace KWFontService_NS
