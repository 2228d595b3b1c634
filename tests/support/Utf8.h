#pragma once

#include <unicode/unistr.h>

#include <string>

namespace KWTest {

inline std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

} // namespace KWTest
