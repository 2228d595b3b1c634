#pragma once

#include <string>

namespace typeset {

/// A CIDFont of type 0 as interpreters take it. The library writes charstrings plain, with
/// `lenIV` 0, by which Ghostscript and others mean enciphered ones without leading bytes.
/// @param font  as `makePostScriptCIDFontType0` wrote it
std::string withCipher(const std::string& font);

} // namespace typeset
