#pragma once

#include <unicode/unistr.h>

/// @file
/// Export decoration of the companion library, and the text type of its namespace.
///
/// `KW_STATIC` is defined by a consumer that links the static form; `KWCOMMON_BUILD` is defined
/// only while the library itself is compiled.

#if defined(KW_STATIC)
#define KWCOMMON_API
#elif defined(_WIN32)
#if defined(KWCOMMON_BUILD)
#define KWCOMMON_API __declspec(dllexport)
#else
#define KWCOMMON_API __declspec(dllimport)
#endif
#else
#define KWCOMMON_API __attribute__((visibility("default")))
#endif

/// The companion library: values, URIs, streams, errors, locks and text.
namespace KWCommonNS {

using icu::UnicodeString;

} // namespace KWCommonNS
