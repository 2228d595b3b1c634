#pragma once

#include <KWFontService17/FS_Export.h>

namespace KWFontService_NS {

/// Numbers of the words in FS_Keyword.
enum class FS_Word : int {
    none, ///< no word, and the empty one
#define FS_KEYWORD(name, text) name,
#include "type1/FS_KeywordList.inc"
#undef FS_KEYWORD
};

/// The words that the configuration, Type 1 programs and CFF dictionaries are written in. Words are
/// equal when all their letters are, case included. Thread-safe.
class FS_Keyword {
public:
    static constexpr int kCount = 165;

    /// The number of a word; 0 when it is none of these.
    static int indexOf(const UnicodeString& word);
    /// The word of a number; empty for 0, and for numbers that no word has.
    static const UnicodeString& wordOf(int index);

    static FS_Word find(const UnicodeString& word) { return static_cast<FS_Word>(indexOf(word)); }
    static const UnicodeString& text(FS_Word word) { return wordOf(static_cast<int>(word)); }
};

} // namespace KWFontService_NS
