#pragma once

#include <unicode/unistr.h>

/// @file
/// What every public header of KWFontService17 builds on: the export macro, and the string type
/// of the interface.

/// @def KWFONTSERVICE_API
/// Marks a class or function as part of the library's binary interface; all else is hidden.
/// `KW_STATIC` is defined by a consumer that links the static form; `KWFONTSERVICE_BUILD` is
/// defined only while the library itself is compiled.
#if defined(KW_STATIC)
#define KWFONTSERVICE_API
#elif defined(_WIN32)
#if defined(KWFONTSERVICE_BUILD)
#define KWFONTSERVICE_API __declspec(dllexport)
#else
#define KWFONTSERVICE_API __declspec(dllimport)
#endif
#else
#define KWFONTSERVICE_API __attribute__((visibility("default")))
#endif

/// The font service: finding, reading, measuring, drawing and embedding fonts.
namespace KWFontService_NS {

/// Text is UTF-16 in ICU's string class throughout the interface.
using icu::UnicodeString;

} // namespace KWFontService_NS
