#pragma once

#include "Bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

/// A CFF INDEX of these objects, with one-byte or wider offsets as their size asks.
Bytes cffIndex(const std::vector<Bytes>& objects);

/// A DICT operand in the five-byte form, the only one whose size does not depend on its value.
Bytes cffInteger(std::int32_t value);

/// A DICT operand of form 30: `cffReal("-1.5E-3")`.
Bytes cffReal(std::string_view number);

/// A Type 2 charstring: width difference from `nominalWidthX`, a filled rectangle, `endchar`. A box
/// without extent is a blank glyph.
Bytes rectangleCharstring(int widthDifference, int xMin, int yMin, int xMax, int yMax);

/// A Private DICT and the Local Subr INDEX behind it; without subrs it does not speak of them.
struct CffPrivate {
    Bytes dict{};
    std::vector<Bytes> subrs{};

    Bytes wholeDict() const;
};

/// An entry of FDArray: operators as they stand, then `Private`.
struct CffFontDict {
    Bytes dict{};
    std::optional<CffPrivate> privateDict{};
};

/// A `CFF ` table of sections (Adobe Technical Note 5176). Sections that are given come in the
/// order of the members, with their offsets in the Top DICT behind `topDict`. The places of the
/// sections are labels of the result: "names", "topDict", "strings", "globalSubrs", "encoding",
/// "charset", "fdSelect", "charStrings", "fdArray", "private0", "subrs0" ...
struct CffSections {
    Bytes header{1, 0, 4, 4};
    std::vector<Bytes> names{Bytes::ofText("KWTest-Regular")};
    Bytes topDict{}; ///< operators as they stand; ROS belongs at the start
    std::vector<Bytes> strings{};
    std::vector<Bytes> globalSubrs{};
    std::optional<Bytes> encoding{};
    std::optional<Bytes> charset{};
    std::optional<Bytes> fdSelect{};
    std::vector<Bytes> charStrings{};
    std::vector<CffFontDict> fontDicts{};
    std::optional<CffPrivate> privateDict{};

    Bytes build() const;
};

/// The operands and the operator ROS.
Bytes cffROS(int registrySID, int orderingSID, int supplement);

/// A minimal name-keyed `CFF `: charset format 0, standard encoding, every glyph name but `.notdef`
/// in the String INDEX, one Private DICT without subrs.
struct Cff {
    struct Glyph {
        std::string name{};
        Bytes charstring{};
    };

    std::string fontName = "KWTest-Regular";
    std::vector<Glyph> glyphs{}; // the first is .notdef
    int defaultWidthX = 500;
    int nominalWidthX = 500;

    Bytes build() const;
};

/// A CID-keyed `CFF ` of the collection Adobe-Identity: charset of ranges, FDSelect format 3.
struct CffCID {
    struct Glyph {
        std::uint16_t cid = 0;
        std::uint8_t fontDict = 0;
        Bytes charstring{};
    };

    std::vector<Glyph> glyphs{}; // the first is CID 0
    std::vector<CffFontDict> fontDicts = std::vector<CffFontDict>(1);
    std::vector<Bytes> globalSubrs{};

    CffSections sections() const;
    Bytes build() const { return sections().build(); }
};

} // namespace KWTest
