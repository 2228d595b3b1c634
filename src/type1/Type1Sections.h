#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <vector>

namespace KWFontService_NS {

/// The three parts of a font program, in either form of file the same (Adobe Type 1 Font Format,
/// chapter 7; Technical Note 5040).
struct Type1Sections {
    std::vector<std::uint8_t> clearText; ///< up to and with "currentfile eexec" and its line end
    std::vector<std::uint8_t> eexec;     ///< as it is encrypted, in bytes
    std::vector<std::uint8_t> trailer;   ///< the 512 zeros and `cleartomark`
    bool isWhole = false;                ///< the file has all three
    /// Bytes that a file in segments says each has, whether they are there or not.
    std::array<std::uint64_t, 3> announced{};
};

/// Takes a program in hexadecimal text apart, from the stream's position on. Digits go in pairs
/// that lie in one line; a single one at the end of a line counts nothing. The section ends before
/// the closing zeros, or at the first character that is neither a digit nor a blank: a letter from
/// G on ends it, too. False when no line begins with "currentfile eexec".
bool readPFASections(std::istream& stream, Type1Sections& sections);

/// Takes a program in segments apart, from the stream's position on. Text, binary and text come in
/// this order, each in one segment or more; behind the last text anything else is the end. False
/// for an unknown type, another order, and a segment that is longer than the file. A file may end
/// without the last text and the end mark.
/// @param sections  gets the sections that were read whole in either case
bool readPFBSections(std::istream& stream, Type1Sections& sections);

} // namespace KWFontService_NS
