#include "LayoutModel.h"

#include <algorithm>

namespace KWTest::oracle {

namespace {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

const LangSys* findSystem(const Layout& layout, Tag script, Tag language) {
    const auto languages = layout.scripts.find(script);
    if (languages == layout.scripts.end())
        return nullptr;
    auto found = languages->second.find(language);
    if (found == languages->second.end())
        found = languages->second.find(0);
    return found == languages->second.end() ? nullptr : &found->second;
}

} // namespace

int typeOf(const SubTable& subtable, Kind kind) {
    const int context = kind == Kind::Gsub ? 5 : 7;
    const int chain = context + 1;
    return std::visit(Overloaded{
                          [](const Unknown&) { return 0; },
                          [](const SingleDelta&) { return 1; },
                          [](const SingleList&) { return 1; },
                          [](const Multiple&) { return 2; },
                          [](const Alternate&) { return 3; },
                          [](const Ligatures&) { return 4; },
                          [](const ReverseChain&) { return 8; },
                          [&](const ContextGlyphs& s) { return s.chain ? chain : context; },
                          [&](const ContextClasses&) { return context; },
                          [&](const ContextCoverages&) { return context; },
                          [&](const ChainClasses&) { return chain; },
                          [&](const ChainCoverages&) { return chain; },
                          [](const SinglePos&) { return 1; },
                          [](const PairGlyphs&) { return 2; },
                          [](const PairClasses&) { return 2; },
                          [](const Cursive&) { return 3; },
                          [](const MarkAttach& s) { return s.type; },
                          [](const MarkLigature&) { return 5; },
                      },
                      subtable);
}

std::vector<std::pair<Tag, int>> lookupOrder(const Layout& layout, const LangSys& system) {
    std::vector<std::pair<Tag, int>> order;
    for (const int index : system) {
        const Feature& feature = at(layout.features, index);
        for (const int lookup : feature.lookups)
            order.emplace_back(feature.tag, lookup);
    }
    std::ranges::stable_sort(order, {}, &std::pair<Tag, int>::second);
    return order;
}

Handle findHandle(const Font& font, Tag script, Tag language) {
    return {&font, script, findSystem(font.gsub, script, language),
            findSystem(font.gpos, script, language)};
}

} // namespace KWTest::oracle
