#include "type1/FS_Keyword.h"

#include "common/TextView.h"

#include <array>
#include <string_view>
#include <unordered_map>

namespace KWFontService_NS {

namespace {

constexpr std::u16string_view kTexts[] = {
    u"",
#define FS_KEYWORD(name, text) text,
#include "type1/FS_KeywordList.inc"
#undef FS_KEYWORD
};
static_assert(std::size(kTexts) == FS_Keyword::kCount + 1);
static_assert(static_cast<int>(FS_Word::accFolder) == FS_Keyword::kCount);

struct Table {
    Table() {
        for (int i = 0; i <= FS_Keyword::kCount; ++i) {
            const auto at = static_cast<std::size_t>(i);
            words[at] = KWCommonNS::toText(kTexts[at]);
            indexes.emplace(kTexts[at], i);
        }
    }

    std::array<UnicodeString, std::size(kTexts)> words;
    std::unordered_map<std::u16string_view, int> indexes;
};

const Table& table() {
    static const Table words;
    return words;
}

} // namespace

int FS_Keyword::indexOf(const UnicodeString& word) {
    const auto& indexes = table().indexes;
    const auto found = indexes.find(KWCommonNS::toView(word));
    return found != indexes.end() ? found->second : 0;
}

const UnicodeString& FS_Keyword::wordOf(int index) {
    const auto& words = table().words;
    return words[index > 0 && index <= kCount ? static_cast<std::size_t>(index) : 0];
}

} // namespace KWFontService_NS
