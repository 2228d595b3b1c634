#pragma once

// The one place that includes the system's header, without the macros that break plain names.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef UNICODE
#define UNICODE
#endif

#include <windows.h>

#include <string>
#include <string_view>

namespace KWPlatform {

// On Windows wchar_t is a UTF-16 code unit; only the type differs.
static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* toWide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

inline wchar_t* toWide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}

inline std::u16string_view toView(const wchar_t* text) {
    return reinterpret_cast<const char16_t*>(text);
}

} // namespace KWPlatform
