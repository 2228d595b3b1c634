#pragma once

#include "Failure.h"

#include <charconv>
#include <sstream>
#include <string>

namespace typeset {

/// Reads the whole of a text as a number. Throws `Failure` with the code and what the number is for
/// when it is none, or outside of the limits.
template <typename Number>
Number parseNumber(ExitCode code, const std::string& what, const std::string& text, Number least,
                   Number most) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    // Written so that "nan" is out of range, too.
    if (error != std::errc{} || stop != end || !(value >= least && value <= most)) {
        std::ostringstream message;
        message << what << " wants a number from " << least << " to " << most << ", not '" << text
                << "'";
        throw Failure(code, message.str());
    }
    return value;
}

} // namespace typeset
