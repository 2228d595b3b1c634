#pragma once

#include "cff/CFFDict.h"
#include "cff/CharString.h"
#include "support/Bytes.h"

#include <map>

namespace KWTest {

/// The tokens of a Type 1 charstring (Adobe Type 1 Font Format, chapter 6); an operator that there
/// is not is the empty word.
inline KWFontService_NS::CharStringTokens type1Tokens(const Bytes& charString) {
    using Word = KWFontService_NS::FS_Word;
    static const std::map<int, Word> kOperators{
        {1, Word::hstem},     {3, Word::vstem},    {4, Word::vmoveto},    {5, Word::rlineto},
        {6, Word::hlineto},   {7, Word::vlineto},  {8, Word::rrcurveto},  {9, Word::closepath},
        {10, Word::callsubr}, {11, Word::return_}, {13, Word::hsbw},      {14, Word::endchar},
        {21, Word::rmoveto},  {22, Word::hmoveto}, {30, Word::vhcurveto}, {31, Word::hvcurveto}};
    static const std::map<int, Word> kEscapes{
        {0, Word::dotsection},     {1, Word::vstem3}, {2, Word::hstem3},
        {6, Word::seac},           {7, Word::sbw},    {12, Word::div},
        {16, Word::callothersubr}, {17, Word::pop},   {33, Word::setcurrentpoint}};
    const auto wordOf = [](const std::map<int, Word>& words, int byte) {
        const auto found = words.find(byte);
        return KWFontService_NS::cffKey(found == words.end() ? Word::none : found->second);
    };
    KWFontService_NS::CharStringTokens tokens;
    for (std::size_t i = 0; i < charString.size(); ++i) {
        const int byte = charString.u8At(i);
        if (byte == 12)
            tokens.emplace_back(wordOf(kEscapes, charString.u8At(++i)));
        else if (byte < 32)
            tokens.emplace_back(wordOf(kOperators, byte));
        else if (byte < 247)
            tokens.emplace_back(byte - 139);
        else if (byte < 251)
            tokens.emplace_back((byte - 247) * 256 + charString.u8At(++i) + 108);
        else if (byte < 255)
            tokens.emplace_back(-(byte - 251) * 256 - charString.u8At(++i) - 108);
        else {
            tokens.emplace_back(static_cast<int>(charString.u32At(i + 1)));
            i += 4;
        }
    }
    return tokens;
}

} // namespace KWTest
