#pragma once

#include "fonts/FS_OperationMacros.h"

#include <KWFontService17/FS_BaseFont.h>
#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_LogFont.h>
#include <KWFontService17/FS_MathConstants.h>
#include <KWFontService17/FS_NewTextMetricEx.h>
#include <KWFontService17/FS_TTGlyphMap.h>

#include <KWCommon15/KWMemStream.h>

#include <array>
#include <climits>
#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Arguments for the operations of the wide font interface, chosen by their types: likely ones and
// the edges of each type. Pointers and references lead to objects that outlive the call.

namespace KWFuzz {

template <class T, std::size_t N>
const T& pick(const T (&values)[N], std::size_t variant) {
    return values[variant % N];
}

template <class T>
struct Sample {
    /// Out parameters and records: an object of the type, with whatever the last call left in it.
    static T& get(std::size_t) {
        static T value{};
        return value;
    }
};

template <class T>
struct Sample<T*> {
    static T* get(std::size_t variant) {
        static std::array<std::remove_const_t<T>, 256> values{};
        return variant % 3 == 0 ? nullptr : values.data();
    }
};

/// Room for the glyphs of a text.
template <>
struct Sample<unsigned short*> {
    static unsigned short* get(std::size_t) {
        static std::array<unsigned short, 256> glyphs{};
        return glyphs.data();
    }
};

template <>
struct Sample<bool> {
    static bool get(std::size_t variant) { return variant % 2 != 0; }
};

/// Glyph ids and language ids.
template <>
struct Sample<unsigned short> {
    static unsigned short get(std::size_t variant) {
        static constexpr unsigned short kValues[] = {0,   1,      2,      3,      5,      6,     7,
                                                     100, 0x0409, 0x0411, 0x7FFF, 0xFFFE, 0xFFFF};
        return pick(kValues, variant);
    }
};

template <>
struct Sample<unsigned char> {
    static unsigned char get(std::size_t variant) {
        static constexpr unsigned char kValues[] = {0, 1, 0x41, 254, 255};
        return pick(kValues, variant);
    }
};

/// Characters, sizes, selectors and weights.
template <>
struct Sample<int> {
    static int get(std::size_t variant) {
        static constexpr int kValues[] = {0,  'A',     -1000,  0x300C,   0xFE00,
                                          12, 0x20,    0xF041, 0x10FFFF, INT_MAX,
                                          -1, 0x20000, 0xFFFF, 1,        INT_MIN};
        return pick(kValues, variant);
    }
};

/// Bare numbers, lengths of either kind, and values beyond the enumeration.
template <>
struct Sample<KWFontService_NS::FS_MATHConstants> {
    static KWFontService_NS::FS_MATHConstants get(std::size_t variant) {
        static constexpr int kValues[] = {0, 1, 2, 3, 4, 5, 54, 55, 56, -1, INT_MAX, INT_MIN};
        return static_cast<KWFontService_NS::FS_MATHConstants>(pick(kValues, variant));
    }
};

template <>
struct Sample<unsigned int> {
    static unsigned int get(std::size_t variant) {
        static constexpr unsigned int kValues[] = {0, 0x44464C54, 0x6C61746E, 0xFFFFFFFF, 1};
        return pick(kValues, variant);
    }
};

template <>
struct Sample<KWFontService_NS::UnicodeString> {
    static const KWFontService_NS::UnicodeString& get(std::size_t variant) {
        using KWFontService_NS::UnicodeString;
        static const UnicodeString kTexts[] = {
            UnicodeString(u"A\u0041\u00C1 BC\u00B4"), UnicodeString(),
            UnicodeString(u"\u3042\u300C\U00020000") + UChar{0xDC00} + UChar{0xD800},
            UnicodeString(u"A\uFE00\u300C\U000E0100\U0010FFFF\uE000")};
        return pick(kTexts, variant);
    }
};

template <>
struct Sample<std::string> {
    static std::string& get(std::size_t) {
        static std::string text;
        return text;
    }
};

template <>
struct Sample<std::vector<unsigned short>> {
    static const std::vector<unsigned short>& get(std::size_t variant) {
        static const std::vector<unsigned short> kLists[] = {
            {}, {2, 6, 6, 1}, {0xFFFF, 0xFFFE, 7, 8, 0}, manyGlyphs()};
        return pick(kLists, variant);
    }

private:
    static std::vector<unsigned short> manyGlyphs() {
        std::vector<unsigned short> many(200);
        for (std::size_t i = 0; i < many.size(); ++i)
            many[i] = static_cast<unsigned short>(many.size() - i);
        return many;
    }
};

/// Table lists.
template <>
struct Sample<const unsigned int*> {
    static const unsigned int* get(std::size_t variant) {
        static constexpr unsigned int kNone[] = {0};
        static constexpr unsigned int kSome[] = {0x68656164, 0x636D6170, 0x6E616D65, 0x7A7A7A7A, 0};
        static constexpr const unsigned int* kLists[] = {nullptr, kSome, kNone};
        return pick(kLists, variant);
    }
};

/// The font opens its own stream.
template <>
struct Sample<std::istream*> {
    static std::istream* get(std::size_t) { return nullptr; }
};

template <>
struct Sample<KWCommonNS::KWMemStream> {
    static KWCommonNS::KWMemStream& get(std::size_t) {
        static KWCommonNS::KWMemStream stream;
        stream.remove();
        return stream;
    }
};

template <>
struct Sample<KWFontService_NS::FS_TTGlyphMap> {
    class OneStream final : public KWFontService_NS::FS_TTGlyphMap {
    public:
        KWCommonNS::KWMemStream* getGlyphStream(unsigned short gid) override {
            return gid % 5 == 4 ? nullptr : &Sample<KWCommonNS::KWMemStream>::get(0);
        }
    };
    static KWFontService_NS::FS_TTGlyphMap& get(std::size_t) {
        static OneStream map;
        return map;
    }
};

/// An argument for a parameter of type P. What the operation may change is a copy of the sample.
template <class P>
decltype(auto) argument(std::size_t variant) {
    using T = std::remove_cvref_t<P>;
    constexpr bool kChanges =
        std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;
    if constexpr (kChanges && !std::is_same_v<decltype(Sample<T>::get(variant)), T&>) {
        static T changed;
        changed = Sample<T>::get(variant);
        return (changed);
    } else {
        return Sample<T>::get(variant);
    }
}

/// What an operation answers: handles are freed, the rest is of no interest.
template <class T>
void discard(const T&) {}
inline void discard(KWFontService_NS::FS_GSUBGPOSInfo* info) {
    KWFontService_NS::FS_FontInfo::deleteGSUBGPOSInfo(info);
}

/// Calls an operation with one variant of its arguments. The last is the face index; the others
/// move through their values at different paces.
template <class... Parameters, class Operation, std::size_t... I>
void callVariant(KWFontService_NS::FS_BaseFont& font, Operation operation, std::size_t variant,
                 std::index_sequence<I...>) {
    const auto call = [&] {
        return (font.*operation)(
            argument<Parameters>(variant * (I + 1) + (I + 1 == sizeof...(Parameters) ? 0 : I))...);
    };
    if constexpr (std::is_void_v<decltype(call())>)
        call();
    else
        discard(call());
}

template <class... Parameters, class Operation>
void callAllVariants(KWFontService_NS::FS_BaseFont& font, Operation operation) {
    constexpr std::size_t kVariants = sizeof...(Parameters) > 1 ? 15 : 1;
    for (std::size_t variant = 0; variant < kVariants; ++variant)
        callVariant<Parameters...>(font, operation, variant,
                                   std::index_sequence_for<Parameters...>());
}

/// Calls an operation with every variant of its arguments.
template <class Result, class... Parameters>
void callVariants(KWFontService_NS::FS_BaseFont& font,
                  Result (KWFontService_NS::FS_BaseFont::*operation)(Parameters...) const) {
    callAllVariants<Parameters...>(font, operation);
}
template <class Result, class... Parameters>
void callVariants(KWFontService_NS::FS_BaseFont& font,
                  Result (KWFontService_NS::FS_BaseFont::*operation)(Parameters...)) {
    callAllVariants<Parameters...>(font, operation);
}

} // namespace KWFuzz
