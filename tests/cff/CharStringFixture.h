#pragma once

#include "cff/CFFDict.h"
#include "cff/CffFixture.h"
#include "cff/CharString.h"

#include <string>
#include <vector>

namespace KWTest {

/// An INDEX of these objects, read back.
inline KWFontService_NS::CFFIndex indexOf(const std::vector<Bytes>& objects) {
    TableStream stream(Bytes{0}.bytes(cffIndex(objects)));
    return KWFontService_NS::CFFIndex::read(stream.table, 1).value();
}

/// Global and local subrs that charstrings may call.
struct Subrs {
    KWFontService_NS::CFFIndex global;
    KWFontService_NS::CFFIndex local;

    explicit Subrs(const std::vector<Bytes>& globals = {}, const std::vector<Bytes>& locals = {})
        : global(indexOf(globals)), local(indexOf(locals)) {}
    operator KWFontService_NS::CharStringSubrs() const { return {global, local}; }
};

/// The operand of a call of the first subrs of a small INDEX.
constexpr int subrNumber(int index) {
    return index - 107;
}

/// Tokens as text: "1 2.5 rmoveto <> endchar", where <> is an operator that there is not.
inline std::string textOf(const KWFontService_NS::CharStringTokens& tokens) {
    using namespace KWFontService_NS;
    std::string text;
    for (const KWValue& token : tokens) {
        if (!text.empty())
            text += ' ';
        const auto word = static_cast<FS_Word>(KWCommonNS::KWNameEnum(token.getNameValue()));
        if (!token.isName())
            token.toString().toUTF8String(text);
        else if (word == FS_Word::none)
            text += "<>";
        else
            FS_Keyword::text(word).toUTF8String(text);
    }
    return text;
}

inline KWCommonNS::ByteView viewOf(const Bytes& bytes) {
    return KWCommonNS::ByteView(bytes.data(), bytes.size());
}

} // namespace KWTest
