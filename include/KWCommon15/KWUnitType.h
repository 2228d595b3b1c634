#pragma once

#include <cstdint>

namespace KWCommonNS {

/// What a number counts, or what sort of text a string is.
///
/// A real `KWValue` bears one of the number units, a string `KWValue` one of the text sorts. `None`
/// serves both: a plain number, and a text that stood in quotes or came from the program.
/// Source of the units: CSS Values and Units Level 4.
enum class KWUnitType : std::uint8_t {
    None, ///< plain number; quoted or plain text

    Percent,
    // absolute lengths: convertible among themselves
    Px,
    Pt,
    Pc,
    In,
    Cm,
    Mm,
    Q,
    // lengths relative to a font or a viewport: not convertible
    Em,
    Ex,
    Ch,
    Rem,
    Vw,
    Vh,
    Vmin,
    Vmax,
    // angles
    Deg,
    Grad,
    Rad,
    Turn,
    // times
    S,
    Ms,
    // frequencies
    Hz,
    KHz,
    // resolutions
    Dpi,
    Dpcm,
    Dppx,

    // text sorts
    Ident,        ///< an identifier that is not in the name table, escapes resolved
    Function,     ///< the opening of a function, escapes resolved, with its "("
    AtKeyword,    ///< "@" and a name, escapes resolved
    Hash,         ///< "#" and a name, escapes resolved
    Url,          ///< what an unquoted url( ) holds, escapes resolved
    UnicodeRange, ///< one unicode-range token as written
    Dimension,    ///< a number with a unit that this list does not know, as written
    Delimiter,    ///< one code point that belongs to no other token
    Bad,          ///< the readable part of a string or url that CSS calls bad
    List,         ///< source text of several tokens, trimmed, otherwise as written
};

} // namespace KWCommonNS
