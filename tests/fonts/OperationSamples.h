#pragma once

#include "fonts/FS_OperationMacros.h"

#include <KWFontService17/FS_BaseFont.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_NewTextMetricEx.h>
#include <KWFontService17/FS_TTGlyphMap.h>

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWUtil.h>

#include <array>
#include <cmath>
#include <type_traits>
#include <vector>

// Calls operations of the wide font interface with arguments made from nothing but their types, so
// that a test can walk the one list of operations.

namespace KWTest {

/// A value for a parameter of type T; references and pointers lead to an object that outlives the
/// call.
template <class T>
struct Sample {
    static T& get() {
        static T value{};
        return value;
    }
};

template <class T>
struct Sample<T*> {
    static T* get() {
        static std::array<std::remove_const_t<T>, 64> values{};
        return values.data();
    }
};

/// The font opens its own stream.
template <>
struct Sample<std::istream*> {
    static std::istream* get() { return nullptr; }
};

template <>
struct Sample<KWFontService_NS::FS_TTGlyphMap> {
    class Sink : public KWFontService_NS::FS_TTGlyphMap {
    public:
        KWCommonNS::KWMemStream* getGlyphStream(unsigned short) override { return &stream_; }

    private:
        KWCommonNS::KWMemStream stream_;
    };
    static KWFontService_NS::FS_TTGlyphMap& get() {
        static Sink sink;
        return sink;
    }
};

/// Calls one operation on a font.
template <class Result, class... Parameters>
Result callWithSamples(KWFontService_NS::FS_BaseFont& font,
                       Result (KWFontService_NS::FS_BaseFont::*operation)(Parameters...) const) {
    return (font.*operation)(Sample<std::remove_cvref_t<Parameters>>::get()...);
}
template <class Result, class... Parameters>
Result callWithSamples(KWFontService_NS::FS_BaseFont& font,
                       Result (KWFontService_NS::FS_BaseFont::*operation)(Parameters...)) {
    return (font.*operation)(Sample<std::remove_cvref_t<Parameters>>::get()...);
}

template <class T>
bool sameAnswer(const T& a, const T& b) {
    return a == b;
}
/// Not a number answers the same as not a number.
inline bool sameAnswer(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// Whether a call answers what `stated` does; of an operation without a result only that it
/// returns.
template <class Call, class Stated>
bool answersAs(const Call& call, const Stated& stated) {
    if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
        call();
        return true;
    } else {
        return sameAnswer(call(), stated());
    }
}

} // namespace KWTest
