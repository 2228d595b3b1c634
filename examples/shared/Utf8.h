#pragma once

#include <unicode/unistr.h>

#include <string>

namespace examples {

inline std::string toUtf8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

} // namespace examples
